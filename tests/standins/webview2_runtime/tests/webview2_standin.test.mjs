// The stand-in runtime, seen from both of its ends: a real program that calls it
// through its vtables, and the page in Chromium.

import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { after, before, test } from 'node:test';
import { launchChromium } from '../../../../tools/chromium.mjs';
import { startBridge } from '../bridge/bridge.mjs';
import { startDisplay } from '../../../support/display.mjs';
import { startMachine } from './machine.mjs';
import { startProbe } from './probe.mjs';

const pageHtml = `<!doctype html>
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

let browser;
let display;
let machine;
let folder;
let pageFile;

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
async function startPair(t, { troubles = [], ...bridgeOptions } = {}) {
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
async function startLoadedPair(t, options) {
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

/** The machine's DPI, for programs that start from now on. */
function setDpi(dpi) {
  machine.run('reg', 'add', 'HKCU\\Control Panel\\Desktop', '/v', 'LogPixels', '/t', 'REG_DWORD', '/d', String(dpi), '/f');
}

const events = (program) => program.transcript.map(({ from, event }) => `${from} ${event}`);

test('objects, handlers and events come in the order of a real runtime', async (t) => {
  const { probe, program } = await startPair(t);
  assert.deepEqual(await probe.run('controller', 2), ['controller call 0x00000000 child', 'controller 0x00000000 given']);
  assert.equal(await probe.run('bounds 10 20 410 320'), 'bounds 0x00000000 child 10 20 410 320');
  assert.equal(await probe.run('settings'), 'settings 0x00000000 0x00000000 0x00000000');
  assert.equal(await probe.run('background 255 8 12 20'), 'background 0x00000000');
  assert.equal(await probe.run('listen'), 'listen 0x00000000 token');
  assert.equal(await probe.run('listen-loads'), 'listen to loads 0x00000000');
  assert.deepEqual(await probe.run(`navigate Z:${pageFile}`, 3), ['navigate 0x00000000', 'message early', 'loaded']);
  assert.equal(await probe.run('script 6 * 7'), 'script 0x00000000 42');
  assert.equal(await probe.quit(), 0);
  await program.closed;

  const wanted = [
    ['program', 'hello'],
    ['program', 'call', 'CreateWebViewEnvironmentWithOptionsInternal', 'true, 0, C:\\data, null'],
    ['program', 'handled', 'ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler', 0],
    ['program', 'call', 'ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler::Release', '0 left'],
    ['program', 'create controller', 96],
    ['runtime', 'controller', 0],
    ['program', 'call', 'ICoreWebView2Controller::get_CoreWebView2', ''],
    ['program', 'handled', 'ICoreWebView2CreateCoreWebView2ControllerCompletedHandler', 0],
    ['program', 'call', 'ICoreWebView2CreateCoreWebView2ControllerCompletedHandler::Release', '0 left'],
    ['program', 'bounds', 10, 20, 410, 320, 96],
    ['program', 'call', 'ICoreWebView2::get_Settings', ''],
    ['program', 'call', 'ICoreWebView2Settings::put_IsZoomControlEnabled', 'FALSE'],
    ['program', 'call', 'ICoreWebView2Settings::put_IsStatusBarEnabled', 'FALSE'],
    ['program', 'call', 'ICoreWebView2Settings::put_AreDevToolsEnabled', 'TRUE'],
    ['program', 'background', 255, 8, 12, 20],
    ['program', 'call', 'ICoreWebView2::add_WebMessageReceived', ''],
    ['program', 'call', 'ICoreWebView2::add_NavigationCompleted', ''],
    ['program', 'navigate', pageHtml],
    ['page', 'message', 'early'],
    ['page', 'loaded'],
    ['program', 'handled', 'ICoreWebView2WebMessageReceivedEventHandler', 0],
    ['program', 'handled', 'ICoreWebView2NavigationCompletedEventHandler', 0],
    ['program', 'script', '6 * 7'],
    ['page', 'script result', '42'],
    ['program', 'handled', 'ICoreWebView2ExecuteScriptCompletedHandler', 0],
    ['program', 'call', 'ICoreWebView2ExecuteScriptCompletedHandler::Release', '0 left'],
    ['program', 'call', 'ICoreWebView2WebMessageReceivedEventHandler::Release', '0 left'],
    ['program', 'call', 'ICoreWebView2NavigationCompletedEventHandler::Release', '0 left'],
    ['program', 'closed'],
    ['runtime', 'note', 'the process ends'],
    ['program', 'disconnected'],
  ];
  // Whether the first message is handled before or after the page has loaded is nobody's promise.
  const order = (entries) => [
    entries.filter(([, event]) => event !== 'loaded'), entries.filter(([, event]) => event === 'loaded'),
  ];
  const got = program.transcript.map(({ t: _time, processId: _id, program: _path, ...entry }) => Object.values(entry));
  assert.deepEqual(order(got), order(wanted));
});

for (const { name, outcomes, lines } of [
  { name: 'later from the message loop, by default', lines: ['call 0x00000000', '0x00000000 given later'] },
  { name: 'inside the call', outcomes: 'inside', lines: ['0x00000000 given inside', 'call 0x00000000'] },
  { name: 'later with a failure', outcomes: 'fail-later', lines: ['call 0x00000000', '0x80004005 null later'] },
  { name: 'never, when the call fails', outcomes: 'refuse,inside', lines: ['call 0x80004005'] },
]) {
  test(`the environment handler comes ${name}`, async (t) => {
    const bridge = await startBridge({ browser, outcomes });
    const probe = startProbe(machine, bridge.environment);
    t.after(async () => {
      await probe.quit();
      await bridge.stop();
    });
    assert.deepEqual([await probe.run('environment', lines.length)].flat(), lines.map((line) => `environment ${line}`));
  });
}

test('without a bridge there is an environment but no controller', async (t) => {
  const probe = startProbe(machine);
  t.after(() => probe.quit());
  assert.deepEqual(await probe.run('environment', 2),
    ['environment call 0x00000000', 'environment 0x00000000 given later']);
  assert.deepEqual(await probe.run('controller', 2), ['controller call 0x00000000 child', 'controller 0x80004005 null']);
});

test('a controller can be refused, and is aborted with its parent', async (t) => {
  const { probe } = await startPair(t, { controllerResult: 0x8000FFFF | 0 });
  assert.deepEqual(await probe.run('controller', 2), ['controller call 0x00000000 child', 'controller 0x8000FFFF null']);

  const second = await startPair(t, { preparePage: () => new Promise(() => {}) }); // a page that never comes
  assert.equal(await second.probe.run('controller'), 'controller call 0x00000000 child');
  assert.equal(await second.probe.run('destroy-parent'), 'controller 0x80004004 null');
});

test('each object answers its own ids with one identity', async (t) => {
  const { probe } = await startLoadedPair(t);
  assert.equal(await probe.run('identities'),
    'identity 0x00000000 same, 0x00000000 same, 0x00000000 same, 0x80004002 null, 0x00000000 same, 0x00000000 same');
});

test('texts of the program reach the page as they are', async (t) => {
  const { probe, program } = await startLoadedPair(t);
  assert.equal(await probe.run('post {"action":"status","text":"Grüße \u{1F600} \u2028 </script>"}'), 'post 0x00000000');
  assert.equal(await probe.run('post-half-pair'), 'post 0x00000000');
  assert.equal(await probe.run('post-size 1000000'), 'post 0x00000000');
  assert.equal(await probe.run('script seen.length'), 'script 0x00000000 3');
  assert.deepEqual(await program.page.evaluate(() => seen.slice(0, 2).map((text) => [...text].map((c) => c.codePointAt(0)))),
    [[...'{"action":"status","text":"Grüße \u{1F600} \u2028 </script>"}'].map((c) => c.codePointAt(0)), [97, 0xD83D, 98]]);
  assert.equal(await program.page.evaluate(() => seen[2] === 'x'.repeat(1000000)), true);
});

test('strings of the page arrive as they are, anything else as E_INVALIDARG', async (t) => {
  const { probe, program } = await startLoadedPair(t);
  await program.post('plain');
  assert.equal(await probe.next(), 'message plain');
  await program.post('');
  assert.equal(await probe.next(), 'message ');
  await program.post('Grüße \u{1F600}');
  assert.equal(await probe.next(), 'message Gr\\u00FC\\u00DFe \\uD83D\\uDE00');
  await program.page.evaluate(() => chrome.webview.postMessage('a\uD83Db'));
  assert.equal(await probe.next(), 'message a\\uD83Db');
  for (const value of [{ action: 'close' }, 7, true, null, ['a'], undefined]) {
    await program.post(value);
    assert.equal(await probe.next(), 'message 0x80070057');
  }
  assert.deepEqual(program.messages().slice(-6).map(({ json }) => json),
    ['{"action":"close"}', '7', 'true', 'null', '["a"]', 'null']);
  await program.post('x'.repeat(1024 * 1024));
  assert.equal(await probe.next(), 'message of 1048576');
});

test('listeners of the page can be added and removed, and are called in order', async (t) => {
  const { probe, program } = await startLoadedPair(t);
  await program.page.evaluate(() => {
    window.calls = [];
    window.second = (event) => calls.push(`second ${event.data} ${event.source === chrome.webview}`);
    chrome.webview.addEventListener('message', () => calls.push('first'));
    chrome.webview.addEventListener('message', window.second);
  });
  await probe.run('post a');
  await probe.run('script 1'); // the page has it when this is answered
  await program.page.evaluate(() => chrome.webview.removeEventListener('message', window.second));
  await probe.run('post b');
  assert.equal(await probe.run('script calls.join()'), 'script 0x00000000 "first,second a true,first"');
  await assert.rejects(program.page.evaluate(() => {
    const loop = {};
    loop.loop = loop;
    chrome.webview.postMessage(loop);
  }), /circular/);
  await assert.rejects(program.page.evaluate(() => chrome.webview.postMessage()), /1 argument required/);
});

test('whoever waits for what cannot come any more is told at once', async (t) => {
  const { bridge, probe, program } = await startPair(t);
  const never = { what: 'a miracle' };
  const waits = [program.waitFor(() => false, never), bridge.nextProgram()].map((wait) => wait.catch(({ message }) => message));
  assert.equal(await probe.quit(), 0);
  assert.match(await waits[0], /^the program has gone while somebody waited for a miracle; the last entries are\n/);
  await assert.rejects(program.waitFor(() => false, never), /^Error: the program has gone while somebody waited for a miracle/);
  await bridge.stop();
  assert.equal(await waits[1], 'the bridge has stopped');
});

test('a message for which there is no document is lost, and said to be', async (t) => {
  const { probe, program } = await startPair(t, { troubles: ['lost: too early'] });
  await probe.run('controller', 2);
  assert.equal(await probe.run('post too early'), 'post 0x00000000');
  await program.waitFor(({ event }) => event === 'lost');
});

test('scripts give JSON, and null for what throws or has no value', async (t) => {
  const { probe } = await startLoadedPair(t, { troubles: ['error: Error: thrown\n    at <anonymous>:1:7'] });
  assert.equal(await probe.run('script ({a:[1,"\\u00e9"]})'), 'script 0x00000000 {"a":[1,"\\u00E9"]}');
  assert.equal(await probe.run('script undefined'), 'script 0x00000000 null');
  assert.equal(await probe.run('script throw Error("thrown")'), 'script 0x00000000 null');
  assert.equal(await probe.run('script-unheard window.unheard = 1'), 'script call 0x00000000');
  assert.equal(await probe.run('script window.unheard'), 'script 0x00000000 1');
});

test('every navigation makes a new document at about:blank and completes', async (t) => {
  const { probe, program } = await startLoadedPair(t);
  await program.page.evaluate(() => { window.leftOver = true; });
  assert.deepEqual(await probe.run(`navigate Z:${pageFile}`, 3), ['navigate 0x00000000', 'message early', 'loaded']);
  assert.equal(await probe.run('script [location.href, document.compatMode, "leftOver" in window, document.title].join()'),
    'script 0x00000000 "about:blank,CSS1Compat,false,probe page"');
  assert.equal(await probe.run('navigate-size 1048577'), 'navigate 0x80070057');
  assert.deepEqual(await probe.run('navigate-size 1048576', 2), ['navigate 0x00000000', 'loaded']);
  assert.equal(await probe.run('script document.body.textContent.length'), 'script 0x00000000 1048576');
});

test('bursts of ten thousand messages arrive complete and in order, both ways', async (t) => {
  const { probe, program } = await startLoadedPair(t);
  await probe.run('script seen.length = 0');
  const started = performance.now();
  assert.equal(await probe.run('burst 10000'), 'burst done');
  assert.equal(await probe.run('script seen.length + " " + seen.every((text, i) => text === String(i))'),
    'script 0x00000000 "10000 true"');
  const toPage = performance.now();
  assert.equal(await probe.run('counting'), 'counting');
  await program.postAll(Array.from({ length: 10000 }, (_, i) => String(i)));
  // The answer to the last script comes after everything that the page posted before.
  await probe.run('script 1');
  assert.equal(await probe.run('count'), 'count 10000 out of order 0');
  const toProgram = performance.now();
  t.diagnostic(`10,000 messages to the page ${Math.round(toPage - started)} ms, to the program ${Math.round(toProgram - toPage)} ms`);
});

test('a handler that answers at once gets its answers through in order', async (t) => {
  const { probe, program } = await startLoadedPair(t);
  assert.equal(await probe.run('echo'), 'echoing');
  await program.postAll(['1', '2', '3']);
  assert.deepEqual([await probe.next(), await probe.next(), await probe.next()], ['message 1', 'message 2', 'message 3']);
  assert.equal(await probe.run('script seen.join()'), 'script 0x00000000 "echo 1,echo 2,echo 3"');
  const textsFrom = (side) => program.messages().filter(({ from }) => from === side).map(({ text }) => text);
  assert.deepEqual(textsFrom('page'), ['early', '1', '2', '3']);
  assert.deepEqual(textsFrom('program'), ['echo 1', 'echo 2', 'echo 3']);
});

test('a handler that pumps messages is not entered again', async (t) => {
  const { probe, program } = await startLoadedPair(t);
  assert.equal(await probe.run('pump'), 'pumping');
  await program.post('1');
  assert.equal(await probe.next(), 'message 1'); // its handler now waits for an event of the runtime
  await program.post('2');
  assert.deepEqual([await probe.next(), await probe.next()], ['pumped', 'message 2']);
  await program.waitFor(({ text }) => text?.startsWith('messages were pumped inside a handler'));
});

test('the page follows the bounds and the DPI', async (t) => {
  setDpi(144);
  t.after(() => setDpi(96));
  const { probe, program } = await startLoadedPair(t);
  const size = () => program.page.evaluate(() => [innerWidth, innerHeight, devicePixelRatio]);
  assert.match(await probe.run('bounds 0 0 1380 960'), /child 0 0 1380 960$/);
  await probe.run('script 1');
  assert.equal(program.transcript.findLast(({ event }) => event === 'bounds').dpi, 144);
  assert.deepEqual(await size(), [920, 640, 1.5]);
  await probe.run('bounds 0 0 0 0'); // minimised
  await probe.run('script 1');
  assert.deepEqual(await size(), [920, 640, 1.5]);
  const png = await program.screenshot(join(folder, 'shot.png'));
  assert.deepEqual([png.readUInt32BE(16), png.readUInt32BE(20)], [1380, 960]);
  assert.deepEqual(readFileSync(join(folder, 'shot.png')), png);
});

test('a colour that is neither opaque nor clear is refused', async (t) => {
  const { probe } = await startLoadedPair(t);
  assert.equal(await probe.run('background 128 8 12 20'), 'background 0x80070057');
  assert.equal(await probe.run('background 0 8 12 20'), 'background 0x00000000');
});

test('clicks in the page are real ones', async (t) => {
  const { probe, program } = await startLoadedPair(t);
  await program.click('#send', { position: { x: 10, y: 20 } });
  assert.equal(await probe.next(), 'message {"trusted":true,"x":110,"y":70}');
});

test('with a screen the page is seen in the program\'s window, and the mouse and the keyboard reach it', async (t) => {
  const { probe, program } = await startLoadedPair(t, { paint: true });
  await program.waitFor(({ event }) => event === 'first frame');
  assert.equal(await probe.run('pixel 500 500'), 'pixel 255 0 0');
  const useScreen = (...words) => execFileSync('xdotool', words, { env: { ...process.env, DISPLAY: display.name } });
  useScreen('mousemove', '150', '90', 'click', '1');
  assert.equal(await probe.next(), 'message {"trusted":true,"x":150,"y":90}');
  // The button has the focus now: a space presses it, as its key and its character.
  useScreen('key', 'space');
  assert.equal(await probe.next(), 'message key  ');
  assert.equal(await probe.next(), 'message {"trusted":true,"x":0,"y":0}');
  for (const [key, name] of [['Tab', 'Tab'], ['Escape', 'Escape'], ['a', 'a'], ['Left', 'ArrowLeft']]) {
    useScreen('key', key);
    assert.equal(await probe.next(), `message key ${name}`);
  }
});

test('faults of the program are told: wrong thread, unused method, wrong handler, second controller, leak', async (t) => {
  const { probe, program } = await startLoadedPair(t, {
    troubles: [
      'trouble: called on a thread that did not create the environment: ICoreWebView2::PostWebMessageAsString',
      'trouble: called a method that the installer has no use for: ICoreWebView2::OpenDevToolsWindow',
      'trouble: ICoreWebView2WebMessageReceivedEventHandler does not answer its own id',
      'trouble: a second controller was asked for',
      'trouble: not released at the end of the process: ICoreWebView2 x1',
    ],
  });
  assert.equal(await probe.run('other-thread'), 'other thread 0x8001010E');
  assert.equal(await probe.run('unused'), 'unused 0x80004001');
  assert.equal(await probe.run('listen-badly'), 'listen badly 0x80004002');
  assert.equal(await probe.run('controller'), 'controller call 0x80004001 child');
  probe.send('leak');
  await probe.quit();
  await program.closed;
});

test('after Close everything fails and every handler is let go', async (t) => {
  const { probe, program } = await startLoadedPair(t);
  assert.equal(await probe.run('close'), 'close 0x00000000');
  assert.equal(await probe.run('post late'), 'post 0x8007139F');
  const closed = program.transcript.indexOf(await program.waitFor(({ event }) => event === 'closed'));
  assert.deepEqual(program.transcript.slice(closed - 2, closed).map(({ method, arguments: left }) => [method, left]), [
    ['ICoreWebView2WebMessageReceivedEventHandler::Release', '0 left'],
    ['ICoreWebView2NavigationCompletedEventHandler::Release', '0 left'],
  ]);
  assert.equal(await probe.quit(), 0);
  await program.closed;
  assert.ok(!program.transcript.some(({ event, text }) => event === 'message' && text === 'late'));
});

test('a page that has crashed loses messages; a browser that is gone fails the calls', async (t) => {
  const { probe, program } = await startLoadedPair(t, { troubles: ['lost: into the void'] });
  await program.crashPage();
  assert.equal(await probe.run('post into the void'), 'post 0x00000000');
  await program.waitFor(({ event }) => event === 'lost');
  await program.loseBrowser();
  await program.waitFor(({ text }) => text === 'the browser is gone');
  assert.equal(await probe.run('post nobody'), 'post 0x8007139F');
});

test('a process that ends at once is seen to, without a word of its own', async (t) => {
  const { probe, program } = await startLoadedPair(t);
  probe.send('die');
  await program.closed;
  assert.equal(events(program).at(-1), 'program disconnected');
  assert.equal(events(program).includes('program closed'), false);
  assert.equal(program.transcript.some(({ text }) => text === 'the process ends'), false);
});
