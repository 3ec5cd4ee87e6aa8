// What the tests of the stand-in share: a browser, a screen and a machine for a whole
// file, and pairs of a probe program with its bridge. Registers its hooks when imported.

import assert from 'node:assert/strict';
import { mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { after, before } from 'node:test';
import { launchChromium } from '../../../../tools/chromium.mjs';
import { startDisplay } from '../../../support/display.mjs';
import { startBridge } from '../bridge/bridge.mjs';
import { startMachine } from './machine.mjs';
import { startProbe } from './probe.mjs';

/** The page that the probe loads. */
export const pageHtml = `<!doctype html>
<html><head><meta charset="utf-8"><title>probe page</title></head>
<body style="margin:0;background:#ff0000">
<button id="send" style="position:absolute;left:100px;top:50px;width:200px;height:100px;border:0">send</button>
<script>
  const view = window.chrome.webview;
  const seen = [];
  view.postMessage('early');
  view.addEventListener('message', (event) => seen.push(event.data));
  document.getElementById('send').addEventListener('click', (event) => {
    view.postMessage(JSON.stringify({ trusted: event.isTrusted, x: event.clientX, y: event.clientY }));
  });
  document.addEventListener('keydown', (event) => view.postMessage('key ' + event.key));
</script>
</body></html>`;

export let browser;
export let display;
export let machine;
export let folder;
export let pageFile;

before(async () => {
  [browser, display] = await Promise.all([launchChromium(), startDisplay()]);
  machine = startMachine({ display: display.name });
  folder = mkdtempSync(join(tmpdir(), 'standin-'));
  pageFile = join(folder, 'page.html');
  writeFileSync(pageFile, pageHtml);
});

after(async () => {
  machine.stop();
  await Promise.all([browser.close(), display.stop()]);
  rmSync(folder, { recursive: true });
});

/** A probe with its bridge, ended and checked for faults when the test is over. */
export async function startPair(t, { troubles = [], ...bridgeOptions } = {}) {
  const bridge = await startBridge({ browser, ...bridgeOptions });
  const probe = startProbe(machine, bridge.environment);
  t.after(async () => {
    await probe.quit();
    await bridge.stop();
  });
  assert.match(await probe.run('environment', 2).then((lines) => lines.join()), /environment call 0x00000000/);
  const program = await bridge.nextProgram();
  t.after(() => assert.deepEqual(program.troubles(), troubles));
  return { bridge, probe, program };
}

/** The same with the page loaded and the handlers registered. */
export async function startLoadedPair(t, options) {
  const pair = await startPair(t, options);
  const { probe, program } = pair;
  assert.deepEqual(await probe.run('controller', 2), ['controller call 0x00000000 child', 'controller 0x00000000 given']);
  assert.match(await probe.run('bounds 0 0 920 640'), /^bounds 0x00000000/);
  assert.equal(await probe.run('listen'), 'listen 0x00000000 token');
  assert.equal(await probe.run('listen-loads'), 'listen to loads 0x00000000');
  assert.deepEqual(await probe.run(`navigate Z:${pageFile}`, 3), ['navigate 0x00000000', 'message early', 'loaded']);
  await program.ready();
  return pair;
}

/** The machine's DPI, for programs that start from now on; any other program ends, as Wine 10 wants it for that. */
export function setDpi(dpi) {
  machine.run('reg', 'add', 'HKCU\\Control Panel\\Desktop', '/v', 'LogPixels', '/t', 'REG_DWORD', '/d', String(dpi), '/f');
  machine.switchOff();
}

/** Who did what, in order. */
export const events = (program) => program.transcript.map(({ from, event }) => `${from} ${event}`);
