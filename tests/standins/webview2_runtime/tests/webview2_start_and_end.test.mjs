// The stand-in runtime from both of its ends, a real program that calls it through its
// vtables and the page in Chromium: how it starts, what it hands out, how it ends.

import assert from 'node:assert/strict';
import { test } from 'node:test';
import { startBridge } from '../bridge/bridge.mjs';
import { browser, events, machine, pageFile, pageHtml, startLoadedPair, startPair } from './pairs.mjs';
import { startProbe } from './probe.mjs';

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

test('a handler is asked for nothing but what the one of a real loader answers', async (t) => {
  const { probe } = await startLoadedPair(t);
  assert.equal(await probe.run('script 1'), 'script 0x00000000 1');
  assert.equal(await probe.run('questions'), 'questions, IUnknown, its own id');
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

test('what is being done to the page is done to its end, also when the program ends before', async (t) => {
  const { probe, program } = await startLoadedPair(t);
  const pageGone = program.page.waitForEvent('close');
  const clicked = program.click('#later'); // waits for it
  probe.send('die');
  await program.closed;
  await program.page.evaluate(() => {
    const later = document.createElement('button');
    later.id = 'later';
    later.addEventListener('click', () => { chrome.webview.postMessage('too late'); });
    document.body.append(later);
  });
  await clicked;
  await pageGone;
  assert.equal(events(program).at(-1), 'program disconnected');
});
