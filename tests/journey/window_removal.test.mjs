// Removals in the installer's window, with real clicks in a real browser.

import assert from 'node:assert/strict';
import { after, before, describe, test } from 'node:test';
import { assertNothingInstalled } from './support/assert_state.mjs';
import * as said from './support/expected_messages.mjs';
import * as expected from './support/expected_state.mjs';
import { nobodyEndedIt, waitUntil } from './support/machine.mjs';
import {
  atScreen, browserPlaces, conversation, makeWindowMachine, openInstaller, startSurroundings,
} from './support/window.mjs';

let surroundings;
before(async () => { surroundings = await startSurroundings(); });
after(() => surroundings.stop());

async function confirmAndClose({ program, ended }) {
  await atScreen(program, 's-uninstall-confirm');
  await program.press('Uninstall Everything');
  await atScreen(program, 's-uninstall-done');
  await program.press('Close');
  assert.equal((await ended).code, 0);
  assert.deepEqual(program.troubles(), []);
}

const scripts = (program) => program.transcript.filter(({ event }) => event === 'script').map(({ text }) => text);

describe('in the window', { concurrency: 3 }, () => {
  test('a removal from the welcome screen takes both products away', async (t) => {
    const machine = await makeWindowMachine(t, surroundings);
    assert.equal((await machine.install('-s')).code, 0);
    const removal = await openInstaller(t, surroundings, machine);
    const { program } = removal;
    await atScreen(program, 's-welcome');
    await program.press('Uninstall');
    await confirmAndClose(removal);
    assert.deepEqual(conversation(program), [...said.removal(), said.closeRequest]);
    assert.deepEqual(scripts(program), []);
    assert.ok(!program.transcript.some(({ method }) => method === 'ICoreWebView2::add_NavigationCompleted'));
    await assertNothingInstalled(machine);
  });

  test('uninstall-gui opens the page on the removal screen once it has loaded', async (t) => {
    const machine = await makeWindowMachine(t, surroundings);
    assert.equal((await machine.install('-s')).code, 0);
    const removal = await openInstaller(t, surroundings, machine, { options: ['--uninstall-gui'] });
    const { program } = removal;
    await confirmAndClose(removal);
    assert.deepEqual(conversation(program), [...said.removal(), said.closeRequest]);
    assert.deepEqual(scripts(program), ["goTo('s-uninstall-confirm');"]);
    const names = program.transcript.map(({ event, method }) => method ?? event);
    // The handler is registered after the page has been handed over, and the script comes after the load.
    assert.ok(names.indexOf('ICoreWebView2::add_NavigationCompleted') > names.indexOf('navigate'));
    assert.ok(names.indexOf('script') > names.indexOf('loaded'));
    await assertNothingInstalled(machine);
  });

  test('every completed load in removal mode opens the removal screen again', async (t) => {
    const machine = await makeWindowMachine(t, surroundings);
    const { program } = await openInstaller(t, surroundings, machine, { options: ['--uninstall-gui'] });
    await atScreen(program, 's-uninstall-confirm');
    assert.deepEqual(scripts(program), ["goTo('s-uninstall-confirm');"]);
    await program.reload();
    await waitUntil(() => scripts(program).length === 2, 'the second script');
    assert.deepEqual(scripts(program), Array(2).fill("goTo('s-uninstall-confirm');"));
    assert.deepEqual(conversation(program), []);
  });

  test('a removal from a machine that holds nothing shows the same steps', async (t) => {
    const machine = await makeWindowMachine(t, surroundings);
    const removal = await openInstaller(t, surroundings, machine, { options: ['--uninstall-gui'] });
    await confirmAndClose(removal);
    assert.deepEqual(conversation(removal.program), [...said.removal(), said.closeRequest]);
    await assertNothingInstalled(machine);
  });

  test('a removal closes a running browser first', async (t) => {
    const machine = await makeWindowMachine(t, surroundings, { browsers: ['Brave'] });
    assert.equal((await machine.install('-s')).code, 0);
    const brave = await machine.startAndWait(browserPlaces.Brave, ['--stay']);
    const removal = await openInstaller(t, surroundings, machine);
    await atScreen(removal.program, 's-welcome');
    await removal.program.press('Uninstall');
    await confirmAndClose(removal);
    assert.deepEqual(conversation(removal.program),
      [...said.removal({ browsers: 'Closed 1 browser process(es)' }), said.closeRequest]);
    assert.notEqual((await brave.ended).code, nobodyEndedIt);
    const report = await assertNothingInstalled(machine);
    assert.deepEqual(report.task_calls, [expected.createTaskCommand, expected.deleteTaskCommand]);
  });

  test('a removal while the console runs says that its files go at the next restart', async (t) => {
    const machine = await makeWindowMachine(t, surroundings);
    assert.equal((await machine.install('-s')).code, 0);
    await machine.startAndWait(`${expected.consoleFolder}\\Fortwright.exe`, ['600000']);
    const removal = await openInstaller(t, surroundings, machine, { options: ['--uninstall-gui'] });
    await confirmAndClose(removal);
    assert.deepEqual(conversation(removal.program),
      [...said.removal({ console: said.filesLeftForReboot.console }), said.closeRequest]);
    const report = await machine.report();
    assert.deepEqual(report.pending, [{ from: `${expected.consoleFolder}\\Fortwright.exe`, to: '' }]);
    assert.deepEqual(expected.filesBelow(report, expected.programFiles), ['FWC\\Fortwright.exe']);
    assert.deepEqual([report.uninstall, report.hosts, report.service, report.shortcut], [[], [], null, null]);
  });
});
