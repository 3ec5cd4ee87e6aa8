// The bridge between the stand-in WebView2 runtime and Debian's Chromium. See
// README.md beside this file for how tests use it.

import { createServer } from 'node:net';
import { launchChromium } from '../../../../tools/chromium.mjs';
import { serveProgram } from './program_session.mjs';

/**
 * Starts a bridge on a free port of this machine. Options: `browser`, one that is running already and
 * stays open afterwards; and those of serveProgram, which hold for every program that connects.
 */
export async function startBridge({ browser: givenBrowser, ...options } = {}) {
  const started = performance.now();
  const now = () => performance.now() - started;
  const browser = givenBrowser ?? await launchChromium();
  const programs = [];
  const waiting = [];
  let taken = 0;

  const server = createServer((socket) => {
    programs.push(serveProgram(socket, browser, now, options));
    waiting.shift()?.come();
  });
  await new Promise((resolve, reject) => {
    server.once('error', reject);
    server.listen(0, '127.0.0.1', resolve);
  });
  const { port } = server.address();

  /** The next program that connects, or has connected and was not taken yet. */
  async function nextProgram({ timeoutMs = 60000 } = {}) {
    const index = taken++;
    if (programs.length <= index) {
      await new Promise((resolve, reject) => {
        const giveUp = (why) => reject(new Error(why));
        const timer = setTimeout(giveUp, timeoutMs, `no program came within ${timeoutMs} ms`);
        const settling = (settle) => (...words) => {
          clearTimeout(timer);
          settle(...words);
        };
        waiting.push({ come: settling(resolve), giveUp: settling(giveUp) });
      });
    }
    return programs[index];
  }

  async function stop() {
    server.close();
    for (const { giveUp } of waiting.splice(0)) {
      giveUp('the bridge has stopped');
    }
    for (const program of programs) {
      program.disconnect();
    }
    await Promise.all(programs.map(({ closed }) => closed));
    if (!givenBrowser) {
      await browser.close();
    }
  }

  return {
    port,
    /** What the program's environment needs so that the stand-in finds this bridge. */
    environment: { ORVANTA_WEBVIEW2_BRIDGE: String(port) },
    now,
    nextProgram,
    stop,
  };
}
