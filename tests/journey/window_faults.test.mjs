// What the window does when something is not as it should be: no runtime, a page
// that dies, messages that the page never sends.

import assert from 'node:assert/strict';
import { after, before, describe, test } from 'node:test';
import { startBridge } from '../standins/webview2_runtime/bridge/bridge.mjs';
import { startDisplay } from '../support/display.mjs';
import { assertConsoleAloneInstalled, assertNothingInstalled } from './support/assert_state.mjs';
import * as said from './support/expected_messages.mjs';
import { installer, waitUntil } from './support/machine.mjs';
import { atScreen, conversation, makeWindowMachine, openInstaller, screenOf, startSurroundings } from './support/window.mjs';

let surroundings;
before(async () => { surroundings = await startSurroundings(); });
after(() => surroundings.stop());

const unhandledException = 3;

const refused = 0x80004005;
const environmentCall = 'CreateWebViewEnvironmentWithOptionsInternal';
const environmentHandler = 'ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler';
const controllerHandler = 'ICoreWebView2CreateCoreWebView2ControllerCompletedHandler';

/** The calls for an environment and what handlers returned, in their order. */
const startCourse = (program) => program.transcript
  .filter(({ event, method }) => event === 'handled' || method === environmentCall)
  .map(({ method, handler, result }) => method ?? [handler, result]);

/** Asks the installer's windows to close, as the title bar's button does. */
const closeWindow = (machine) => machine.run('taskkill', ['/im', 'OrvantaInstaller.exe']);

/** A page that does not mind being sent nonsense: the installer's own. */
async function openForMessages(t) {
  const machine = await makeWindowMachine(t, surroundings);
  const installation = await openInstaller(t, surroundings, machine);
  await atScreen(installation.program, 's-welcome');
  return { machine, ...installation };
}

/** Sends a question whose answer is known, so that all before it has been dealt with when it comes. */
async function settle(program, index = 4711) {
  await program.post(`{"action":"open_webstore","index":${index}}`);
  await program.waitFor(({ from, text }) => from === 'program' && text === `{"action":"webstore_opened","index":${index}}`);
}

describe('in the window', { concurrency: 3 }, () => {
  for (const options of [[], ['/uninstall'], ['--Silent'], ['--source', '--silent']]) {
    test(`without a runtime [${options.join(' ')}] opens an empty window that closes with 0`, async (t) => {
      const display = await startDisplay({ width: 1600, height: 1200 });
      t.after(() => display.stop());
      const machine = await makeWindowMachine(t, { display }, { runtime: false });
      const { ended } = machine.start(installer, options);
      const screen = screenOf(display);
      await waitUntil(() => screen.window(), 'the window');
      const { x, y, width, height } = screen.window();
      // A caption on top, in the middle of the screen.
      assert.ok(width >= 920 && width <= 930 && height > 640 && height <= 680, `${width} x ${height}`);
      assert.deepEqual([x, y], [Math.trunc((1600 - width) / 2), Math.trunc((1200 - height) / 2)]);
      await waitUntil(async () => (await closeWindow(machine)).code === 0, 'somebody to tell that the window closes');
      const { code, stdout, stderr } = await ended;
      assert.deepEqual([code, stdout, stderr], [0, '', '']);
      await assertNothingInstalled(machine);
    });
  }

  for (const [failure, options, course] of [
    ['the control is refused', { controllerResult: refused | 0 },
      [environmentCall, [environmentHandler, 0], [controllerHandler, refused]]],
    ['the environment fails twice', { outcomes: 'fail-later,fail-later' },
      [environmentCall, environmentCall, [environmentHandler, 0], [environmentHandler, 0]]],
    ['the environment is refused twice', { outcomes: 'refuse,refuse' }, [environmentCall, environmentCall]],
  ]) {
    test(`when ${failure} the window stays empty and closes with 0`, async (t) => {
      const machine = await makeWindowMachine(t, surroundings);
      const bridge = await startBridge({ browser: surroundings.browser, ...options });
      t.after(() => bridge.stop());
      const { ended } = machine.start(installer, [], bridge.environment);
      const program = await bridge.nextProgram();
      await waitUntil(() => startCourse(program).length >= course.length, 'the failure');
      assert.deepEqual(startCourse(program), course);
      await waitUntil(async () => (await closeWindow(machine)).code === 0, 'the window to be there');
      const { code, stdout, stderr } = await ended;
      assert.deepEqual([code, stdout, stderr], [0, '', '']);
      await program.closed;
      assert.deepEqual(startCourse(program), course);
      assert.ok(!program.transcript.some(({ event }) => event === 'navigate'));
      assert.deepEqual(program.troubles(), []);
      await assertNothingInstalled(machine);
    });
  }

  const begun = [[environmentHandler, 0], [controllerHandler, 0]];
  for (const [what, outcomes, course] of [
    ['is refused and comes at the second attempt', 'refuse,later', [environmentCall, environmentCall, ...begun]],
    ['fails and comes at the second attempt', 'fail-later,later',
      [environmentCall, environmentCall, [environmentHandler, 0], ...begun]],
    ['fails and comes at the second attempt, both inside the call', 'fail-inside,inside',
      [environmentCall, environmentCall, [environmentHandler, 0], ...begun]],
    ['comes inside the call', 'inside', [environmentCall, ...begun]],
  ]) {
    test(`an environment that ${what} shows the page`, async (t) => {
      const machine = await makeWindowMachine(t, surroundings);
      const { program, ended } = await openInstaller(t, surroundings, machine, { outcomes });
      await atScreen(program, 's-welcome');
      assert.deepEqual(startCourse(program), course);
      await program.post('{"action":"close"}');
      const { code, stdout, stderr } = await ended;
      assert.deepEqual([code, stdout, stderr], [0, '', '']);
      assert.deepEqual(conversation(program), [said.closeRequest]);
      assert.deepEqual(program.troubles(), []);
    });
  }

  test('the death of the page\'s process leaves a window that can be closed', async (t) => {
    const { machine, program, ended } = await openForMessages(t);
    await program.crashPage();
    await waitUntil(async () => (await closeWindow(machine)).code === 0, 'the window to close');
    const { code, stdout, stderr } = await ended;
    assert.deepEqual([code, stdout, stderr], [0, '', '']);
    await program.closed;
    const crash = program.transcript.findIndex(({ event }) => event === 'crash');
    assert.deepEqual(program.transcript.slice(crash).map(({ from, event, method, text }) => [from, event, method ?? text]), [
      ['page', 'crash', undefined],
      ['program', 'call', 'ICoreWebView2WebMessageReceivedEventHandler::Release'],
      ['program', 'closed', undefined],
      ['runtime', 'note', 'the process ends'],
      ['program', 'disconnected', undefined],
    ]);
    assert.deepEqual(conversation(program), []);
    await assertNothingInstalled(machine);
  });

  for (const message of [
    '{"action":"open_webstore"}', '{"action":"open_webstore","index":"x"}', '{"action":"open_webstore","index":2147483648}',
    '{"action":"open_webstore","index":-99999999999}', '{"action":"open_webstore","index" :0}',
  ]) {
    test(`${message} ends the process at once and shows nothing`, async (t) => {
      const { machine, program, ended } = await openForMessages(t);
      await program.post(message);
      const { code, stdout, stderr } = await ended;
      assert.deepEqual([code, stdout, stderr], [unhandledException, '', '']);
      assert.deepEqual(conversation(program), [said.page(message)]);
      const { stdout: tasks } = await machine.run('tasklist', []);
      assert.doesNotMatch(tasks, /OrvantaInstaller|winedbg/i);
    });
  }

  test('messages that are no strings, unknown or oddly written are ignored', async (t) => {
    const { program } = await openForMessages(t);
    const ignored = ['', '{}', 'close', '{"action" : "close"}', '{"action":"CLOSE"}', '{"Action":"close"}', '[]', '\u0000',
      '{"action":"webstore_opened","index":0}', `{"action":"${'x'.repeat(1024 * 1024)}"}`, 'y'.repeat(1024 * 1024)];
    await program.postAll(ignored);
    const noStrings = [{ action: 'close' }, 7, true, null, ['close'], 0.5];
    await program.postAll(noStrings);
    await settle(program);
    assert.deepEqual(conversation(program), [
      ...[...ignored, ...noStrings.map((value) => JSON.stringify(value))].map(said.page),
      ...said.storeOpened(4711),
    ]);
    assert.deepEqual(program.troubles(), []);
  });

  test('an index is read like a number and answered also when it names no browser', async (t) => {
    const { machine, program } = await openForMessages(t);
    const cases = [['7', '7'], ['-1', '-1'], ['"5"', '5'], ['3abc', '3'], [' \t6', '6'], ['2147483647', '2147483647'],
      ['-2147483648', '-2147483648'], ['1,"index":2', '1']];
    await program.postAll(cases.map(([index]) => `{"action":"open_webstore","index":${index}}`));
    await settle(program);
    assert.deepEqual(conversation(program).filter(([from]) => from === 'program').slice(0, -1),
      cases.map(([, answer]) => said.program(`{"action":"webstore_opened","index":${answer}}`)));
    assert.deepEqual(await machine.launches(0), []);
  });

  test('ten thousand messages in one turn are answered one to one and in order', async (t) => {
    const { program } = await openForMessages(t);
    const numbers = Array.from({ length: 10000 }, (_, i) => i);
    await program.postAll(numbers.map((number) => `{"action":"open_webstore","index":${number}}`));
    await settle(program, 10000);
    assert.deepEqual(conversation(program).filter(([from]) => from === 'program'),
      [...numbers, 10000].map((number) => said.program(`{"action":"webstore_opened","index":${number}}`)));
    assert.deepEqual(program.troubles(), []);
  });

  test('a quoted true counts as true and duplicate keys count once', async (t) => {
    const { machine, program } = await openForMessages(t);
    const message = '{"action":"install","fwc":"true","fwc":false,"lw":True,"action":"close"}';
    await program.post(message);
    await program.waitFor(({ from, text }) => from === 'program' && text === '{"action":"install_complete"}');
    assert.deepEqual(conversation(program), [
      said.page(message), ...said.installed(true, false).slice(1),
    ]);
    await assertConsoleAloneInstalled(machine);
  });

  test('neither product chosen closes browsers and completes', async (t) => {
    const { machine, program } = await openForMessages(t);
    await program.post('{"action":"install"}');
    await program.waitFor(({ from, text }) => from === 'program' && text === '{"action":"install_complete"}');
    assert.deepEqual(conversation(program),
      [said.page('{"action":"install"}'), ...said.installed(false, false).slice(1)]);
    await assertNothingInstalled(machine);
  });
});
