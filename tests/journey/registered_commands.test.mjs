// The commands that the products leave with Add/Remove Programs, started from there:
// Wine's uninstaller hands a command's text to CreateProcess as Windows does.

import assert from 'node:assert/strict';
import { after, before, describe, test } from 'node:test';
import { assertBothInstalled } from './support/assert_state.mjs';
import * as said from './support/expected_messages.mjs';
import * as expected from './support/expected_state.mjs';
import { atScreen, conversation, makeWindowMachine, openInstaller, startSurroundings } from './support/window.mjs';

let surroundings;
before(async () => { surroundings = await startSurroundings(); });
after(() => surroundings.stop());

const installedCopy = `${expected.linkwardFolder}\\VeyraLinkwardInstaller.exe`;

async function makeInstalledMachine(t) {
  const machine = await makeWindowMachine(t, surroundings);
  assert.equal((await machine.install('-s')).code, 0);
  return machine;
}

/** Opens the window by the entry of Add/Remove Programs with this key. */
const openByEntry = (t, machine, key) =>
  openInstaller(t, surroundings, machine, { starter: 'uninstaller.exe', options: ['--remove', key] });

const programOf = (program) => program.transcript.find(({ event }) => event === 'hello').program;

/** Everything gone but the program that did it, which goes with the next start of Windows. */
async function assertOnlyCopyPending(machine) {
  const report = await machine.report();
  assert.deepEqual(report.pending, [{ from: installedCopy, to: '' }]);
  assert.deepEqual(expected.filesBelow(report, expected.programFiles), ['Veyra Linkward\\VeyraLinkwardInstaller.exe']);
  assert.deepEqual(expected.filesBelow(report, expected.programData), []);
  assert.deepEqual([report.hosts, report.service, report.task, report.shortcut], [[], null, null, null]);
  assert.deepEqual(report.task_calls, [expected.createTaskCommand, expected.deleteTaskCommand]);
  return report;
}

describe('from Add/Remove Programs', { concurrency: 3 }, () => {
  test('the command of the web protection opens the removal screen and removes both products', async (t) => {
    const machine = await makeInstalledMachine(t);
    const { program, ended } = await openByEntry(t, machine, 'VeyraLinkward');
    assert.equal(programOf(program), installedCopy);
    await atScreen(program, 's-uninstall-confirm');
    await program.press('Uninstall Everything');
    await atScreen(program, 's-uninstall-done');
    await program.press('Close');
    assert.deepEqual(await ended, { code: 0, stdout: '', stderr: '' });
    assert.deepEqual(conversation(program),
      [...said.removal({ linkward: said.filesLeftForReboot.linkward }), said.closeRequest]);
    assert.deepEqual(program.troubles(), []);
    assert.deepEqual((await assertOnlyCopyPending(machine)).uninstall, []);
  });

  test('the command of the console opens the welcome screen, and closing it leaves all as it was', async (t) => {
    const machine = await makeInstalledMachine(t);
    const { program, ended } = await openByEntry(t, machine, 'FortwrightConsole');
    assert.equal(programOf(program), `${expected.consoleFolder}\\updater.exe`);
    await atScreen(program, 's-welcome');
    await program.post('{"action":"close"}');
    assert.deepEqual(await ended, { code: 0, stdout: '', stderr: '' });
    assert.deepEqual(conversation(program), [said.closeRequest]);
    assert.deepEqual(program.troubles(), []);
    await assertBothInstalled(machine);
  });

  test('the quiet command of the web protection removes both products without a window', async (t) => {
    const machine = await makeInstalledMachine(t);
    const entry = expected.shortKeys((await machine.report()).uninstall).find(({ key }) => key.endsWith('\\VeyraLinkward'));
    const [, , command] = entry.values.find(([name]) => name === 'QuietUninstallString');
    // Wine's uninstaller knows no quiet commands: an entry of our own has it in the place of the other one.
    const quietEntry = `HKLM\\${entry.key.replace(/VeyraLinkward$/, 'Quiet')}`;
    await machine.reg(quietEntry, '/v', 'DisplayName', '/d', 'Quiet', '/reg:64');
    await machine.reg(quietEntry, '/v', 'UninstallString', '/d', command, '/reg:64');
    assert.deepEqual(await machine.run('uninstaller.exe', ['--remove', 'Quiet']), { code: 0, stdout: '', stderr: '' });
    const { uninstall } = await assertOnlyCopyPending(machine);
    assert.deepEqual(uninstall, []);
  });
});
