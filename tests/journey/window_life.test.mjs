// The installer's window from its set-up to its end, whatever is done in it.

import assert from 'node:assert/strict';
import { existsSync, readFileSync, writeFileSync } from 'node:fs';
import { after, before, describe, test } from 'node:test';
import { startDisplay } from '../support/display.mjs';
import { assertNothingInstalled } from './support/assert_state.mjs';
import * as said from './support/expected_messages.mjs';
import * as expected from './support/expected_state.mjs';
import { built, waitUntil } from './support/machine.mjs';
import {
  atScreen, conversation, makeWindowMachine, openInstaller, screenOf, startInstallation, startSurroundings,
} from './support/window.mjs';

let surroundings;
before(async () => { surroundings = await startSurroundings(); });
after(() => surroundings.stop());

describe('the window', { concurrency: 3 }, () => {
  test('the control is set up step by step before the page is loaded', async (t) => {
    const machine = await makeWindowMachine(t, surroundings);
    const { program } = await openInstaller(t, surroundings, machine);
    const pageFile = readFileSync(built('ORVANTA_PAGE_FILE'), 'utf8');
    const steps = program.transcript.filter(({ from }) => from === 'program').map(({ event, method, ...details }) => [
      method ?? event, details.arguments ?? details.html ?? details.dpi
        ?? [details.a, details.r, details.g, details.b].filter((value) => value !== undefined).join()]);
    const names = steps.map(([name]) => name);
    const from = names.indexOf('create controller');
    assert.deepEqual(steps.slice(0, from).filter(([name]) => name.startsWith('CreateWebView')), [
      ['CreateWebViewEnvironmentWithOptionsInternal',
        `true, 0, ${await machine.temporaryFolder()}\\VeyraInstaller_WebView2, null`]]);
    assert.deepEqual(names.slice(from).filter((name) => !/handled|Release/.test(name)), [
      'create controller',
      'ICoreWebView2Controller::get_CoreWebView2',
      'bounds',
      'ICoreWebView2::get_Settings',
      'ICoreWebView2Settings::put_IsZoomControlEnabled',
      'ICoreWebView2Settings::put_IsStatusBarEnabled',
      'ICoreWebView2Settings::put_AreDevToolsEnabled',
      'background',
      'ICoreWebView2::add_WebMessageReceived',
      'navigate',
    ]);
    for (const name of names.filter((candidate) => candidate.startsWith('ICoreWebView2Settings::put'))) {
      assert.equal(steps.find(([candidate]) => candidate === name)[1], 'FALSE');
    }
    assert.deepEqual(steps.find(([name]) => name === 'background')[1], '255,8,12,20');
    assert.equal(steps.find(([name]) => name === 'navigate')[1], pageFile);
    const bounds = program.transcript.find(({ event }) => event === 'bounds');
    assert.deepEqual([bounds.left, bounds.top, bounds.right, bounds.bottom, bounds.dpi], [0, 0, 920, 640, 96]);
  });

  test('at 144 DPI the page keeps its size on a finer screen, and the window its own whatever the mouse does', async (t) => {
    const display = await startDisplay({ width: 1600, height: 1200 });
    t.after(() => display.stop());
    const machine = await makeWindowMachine(t, { display }, { dpi: 144 });
    await machine.restart();
    const { program } = await openInstaller(t, surroundings, machine);
    const sizes = () => program.transcript.filter(({ event }) => event === 'bounds')
      .map(({ left, top, right, bottom, dpi }) => [left, top, right, bottom, dpi]);
    assert.deepEqual(sizes(), [[0, 0, 1380, 960, 144]]);
    assert.deepEqual(await program.page.evaluate(() => [innerWidth, innerHeight, devicePixelRatio]), [920, 640, 1.5]);

    const screen = screenOf(display);
    const before = screen.window();
    const [right, bottom] = [before.x + before.width, before.y + before.height];
    const caption = [before.x + before.width / 2, before.y + (before.height - 960) / 2].map(Math.trunc);
    screen.doubleClick(...caption); // maximises a window that can be
    screen.drag(right - 1, bottom - 1, 60, 40); // by the corner
    screen.drag(right - 1, before.y + 500, 60, 0); // by the edge
    // It can be moved: what was done before has been dealt with when it arrives.
    screen.drag(...caption, -40, 20);
    const moved = { ...before, x: before.x - 40, y: before.y + 20 };
    await waitUntil(() => screen.window().x === moved.x && screen.window().y === moved.y, 'the window to be moved');
    assert.deepEqual(screen.window(), moved);
    assert.ok(sizes().every(([, , width, height]) => width === 1380 && height === 960), JSON.stringify(sizes()));
  });

  test('closing in the middle of a run ends the program at once with 0', async (t) => {
    const machine = await makeWindowMachine(t, surroundings);
    // Holds the run, which waits fifteen seconds at most, in the middle of the console's installation.
    writeFileSync(machine.path('C:\\schtasks.hold'), '');
    const { program, ended } = await openInstaller(t, surroundings, machine);
    await startInstallation(program);
    await program.waitFor(({ event, text }) => event === 'message' && text?.includes('Created desktop shortcut'));
    await waitUntil(() => existsSync(machine.path('C:\\schtasks.log')), 'the task to be scheduled');
    await program.post('{"action":"close"}');
    const { code, stdout, stderr } = await ended;
    assert.deepEqual([code, stdout, stderr], [0, '', '']);
    const throughShortcut = said.consoleInstalled(40).slice(0, 4);
    assert.deepEqual(conversation(program),
      [said.installRequest(true, true), ...said.browsersClosed(), ...throughShortcut, said.closeRequest]);
    // What was done stays; what would have followed is not there.
    const report = await machine.report();
    assert.deepEqual(expected.filesBelow(report, expected.programFiles), expected.consoleFiles);
    assert.deepEqual(report.task_calls, [expected.createTaskCommand]);
    assert.equal(report.shortcut.target, `${expected.consoleFolder}\\Fortwright.exe`);
    assert.deepEqual([report.uninstall, report.hosts, report.service, report.pending], [[], [], null, []]);
  });

  test('going back and cancelling send nothing', async (t) => {
    const machine = await makeWindowMachine(t, surroundings);
    const { program } = await openInstaller(t, surroundings, machine);
    await atScreen(program, 's-welcome');
    await program.press('Install Selected');
    await atScreen(program, 's-close-browsers');
    await program.press('Back');
    await atScreen(program, 's-welcome');
    await program.press('Uninstall');
    await atScreen(program, 's-uninstall-confirm');
    await program.press('Cancel');
    await atScreen(program, 's-welcome');
    assert.deepEqual(conversation(program), []);
    await assertNothingInstalled(machine);
  });
});
