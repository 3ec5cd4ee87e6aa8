// The preview's simulated program and the messages that it plays, for node. The preview has them as plain scripts,
// because a page that is a file may load nothing else.

import { readFileSync } from 'node:fs';

const read = (path) => readFileSync(new URL(`../../${path}`, import.meta.url), 'utf8');

// Of the page they read the list of browsers alone.
export const { programMessages, createSimulatedHost } = new Function('installerPage',
  `${read('tools/page/program_messages.js')}\n${read('tools/page/simulated_host.js')}
   return { programMessages, createSimulatedHost };`)(read('src/ui/page/09_state_and_flow.js'));

/** What the simulated program answers to `requests`, one after the other, as texts. Settings: see createSimulatedHost. */
export async function simulatedAnswers(requests, settings = {}) {
  const answers = [];
  const host = createSimulatedHost({ browsers: 0, pause: 0, failing: false, ...settings }, (direction, text) => {
    if (direction === 'in') answers.push(text);
  });
  for (const request of requests) {
    host.webview.postMessage(request);
    // Behind all that the request has set going: timers of one delay end in their order.
    await new Promise((resolve) => { setTimeout(resolve, 0); });
  }
  return answers;
}
