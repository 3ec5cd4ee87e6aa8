// The finished program without a window: every mode by its exit code and by
// what the machine holds afterwards.

import assert from 'node:assert/strict';
import {
  appendFileSync, cpSync, existsSync, mkdirSync, readFileSync, renameSync, rmSync, symlinkSync,
} from 'node:fs';
import { join } from 'node:path';
import { describe, test } from 'node:test';
import { assertBothInstalled, assertLinkwardAloneInstalled, assertNothingInstalled } from './support/assert_state.mjs';
import * as expected from './support/expected_state.mjs';
import { built, installer, makeMachine, nobodyEndedIt, setupFolder } from './support/machine.mjs';

const { programData, programFiles } = expected;

// Several at a time: each has a machine of its own and mostly waits for it.
describe('without a window', { concurrency: 4 }, () => {
  test('a silent installation puts both products on the machine and a removal takes them away', async (t) => {
    const machine = await makeMachine(t);
    const installed = await machine.install('--silent');
    assert.deepEqual(installed, { code: 0, stdout: '', stderr: '' });
    await assertBothInstalled(machine);

    const removed = await machine.install('--uninstall');
    assert.deepEqual(removed, { code: 0, stdout: '', stderr: '' });
    const report = await assertNothingInstalled(machine);
    assert.deepEqual(report.task_calls, [expected.createTaskCommand, expected.deleteTaskCommand]);
    // Parent keys and the makers' folders stay, empty.
    assert.deepEqual(report.left_behind, [`${programFiles}\\`, `${programData}\\`,
      ...expected.hosts.map(({ key }) => `HKLM\\${key.replace(/\\com\.veyra\.linkward$/, '')}`)]);
  });

  test('a second installation replaces every file by the new one', async (t) => {
    const machine = await makeMachine(t);
    assert.equal((await machine.install('-s')).code, 0);

    const sources = ['WebView2Loader.dll', 'Fortwright.exe', 'Read me first.txt', 'veyra-linkward.crx',
      'malware-sites.vybf', 'rules\\exceptions.txt', 'rules\\categories\\Default categories.json',
      'VeyraLinkwardCommunicator.exe'];
    for (const name of sources) {
      appendFileSync(machine.path(`${setupFolder}\\${name}`), 'second edition');
    }
    assert.equal((await machine.install('-s')).code, 0);
    await assertBothInstalled(machine);

    const places = {
      'WebView2Loader.dll': expected.consoleFolder,
      'Fortwright.exe': expected.consoleFolder,
      'veyra-linkward.crx': `${expected.linkwardFolder}\\extensions`,
      'malware-sites.vybf': expected.dataFolder,
    };
    for (const name of sources) {
      const installedFile = machine.path(`${places[name] ?? expected.linkwardFolder}\\${name}`);
      assert.deepEqual(readFileSync(installedFile), readFileSync(machine.path(`${setupFolder}\\${name}`)), name);
    }
  });

  const installing = [['--install'], ['-i'], ['-s'], ['--uninstall-gui', '--silent'], ['what', '-i', '/uninstall']];
  for (const options of installing) {
    test(`${options.join(' ')} installs without a window`, async (t) => {
      const machine = await makeMachine(t);
      assert.equal((await machine.install(...options)).code, 0);
      await assertBothInstalled(machine);
    });
  }

  const removing = [['-u'], ['--install', '--uninstall'], ['-u', '-s', '--uninstall-gui']];
  for (const options of removing) {
    test(`${options.join(' ')} removes without a window`, async (t) => {
      const machine = await makeMachine(t);
      assert.equal((await machine.install('-s')).code, 0);
      assert.equal((await machine.install(...options)).code, 0);
      await assertNothingInstalled(machine);
    });
  }

  test('a removal from a machine that holds nothing succeeds and leaves nothing', async (t) => {
    const machine = await makeMachine(t);
    assert.equal((await machine.install('--uninstall')).code, 0);
    const report = await assertNothingInstalled(machine);
    assert.deepEqual(report.left_behind, []);
  });

  test('source names the folder of the products and is taken as it stands', async (t) => {
    const machine = await makeMachine(t);
    renameSync(machine.path(setupFolder), machine.path('C:\\My media'));
    mkdirSync(machine.path(setupFolder));
    cpSync(machine.path('C:\\My media\\OrvantaInstaller.exe'), machine.path(installer));
    const { code } = await machine.install('--source', 'C:\\My media\\', '--install');
    assert.equal(code, 0);
    await assertBothInstalled(machine);
  });

  test('a program in the root of a drive takes the products from there and not from the current folder', async (t) => {
    const machine = await makeMachine(t);
    const media = machine.path('C:\\Media');
    renameSync(machine.path(setupFolder), media);
    mkdirSync(join(media, 'documents'));
    symlinkSync(media, join(machine.drive, '..', 'dosdevices', 'e:'));
    const command = 'cd /d E:\\documents && start /wait E:\\OrvantaInstaller.exe --silent';
    assert.equal((await machine.run('cmd.exe', ['/c', command])).code, 0);
    await assertBothInstalled(machine);
  });

  test('without the console program only the web protection is installed and the exit code is 1', async (t) => {
    const machine = await makeMachine(t);
    rmSync(machine.path(`${setupFolder}\\Fortwright.exe`));
    assert.deepEqual(await machine.install('--install'), { code: 1, stdout: '', stderr: '' });
    await assertLinkwardAloneInstalled(machine);
  });

  test('without the console library both products are installed and the exit code is 0', async (t) => {
    const machine = await makeMachine(t);
    rmSync(machine.path(`${setupFolder}\\WebView2Loader.dll`));
    assert.equal((await machine.install('--install')).code, 0);
    await assertBothInstalled(machine, { consoleFiles: expected.consoleFiles.slice(0, 2) });
  });

  test('a missing source folder gives exit code 1 and nothing that was there is lost', async (t) => {
    const machine = await makeMachine(t);
    assert.equal((await machine.install('-s')).code, 0);
    assert.deepEqual(await machine.install('--source', 'C:\\nowhere', '-s'), { code: 1, stdout: '', stderr: '' });
    await assertBothInstalled(machine);
  });

  test('a removal by the installed copy schedules what is in use and a restart finishes it', async (t) => {
    const machine = await makeMachine(t);
    assert.equal((await machine.install('-s')).code, 0);
    const copy = `${expected.linkwardFolder}\\VeyraLinkwardInstaller.exe`;
    assert.equal((await machine.run(copy, ['--uninstall'])).code, 0);

    const report = await machine.report();
    assert.deepEqual(report.pending.map(({ from, to }) => [from, to]), [[copy, '']]);
    assert.deepEqual(expected.filesBelow(report, programFiles), ['Veyra Linkward\\VeyraLinkwardInstaller.exe']);
    assert.equal(report.service, null);
    assert.deepEqual(report.uninstall, []);
    assert.deepEqual(report.hosts, []);

    await machine.restart();
    const restarted = await machine.report();
    assert.deepEqual(expected.filesBelow(restarted, programFiles), []);
    assert.deepEqual(restarted.pending, []);
    // Folders are not scheduled: the empty one remains.
    assert.ok(existsSync(machine.path(expected.linkwardFolder)));
  });

  test('a product that is installed again before the restart is whole after it', async (t) => {
    const machine = await makeMachine(t);
    assert.equal((await machine.install('-s')).code, 0);
    const copies = [`${expected.linkwardFolder}\\VeyraLinkwardInstaller.exe`, `${expected.consoleFolder}\\updater.exe`];
    // Each copy leaves itself to the restart, and with the first the other goes: put it there again.
    assert.equal((await machine.run(copies[0], ['--uninstall'])).code, 0);
    cpSync(machine.path(installer), machine.path(copies[1]));
    assert.equal((await machine.run(copies[1], ['--uninstall'])).code, 0);
    assert.deepEqual((await machine.report()).pending, copies.map((from) => ({ from, to: '' })));

    assert.deepEqual(await machine.install('-s'), { code: 0, stdout: '', stderr: '' });
    await assertBothInstalled(machine);
    await machine.restart();
    await assertBothInstalled(machine);
  });

  test('a removal while the console runs schedules its files and removes the rest', async (t) => {
    const machine = await makeMachine(t);
    assert.equal((await machine.install('-s')).code, 0);
    const program = `${expected.consoleFolder}\\Fortwright.exe`;
    const running = await machine.startAndWait(program, ['600000']);
    assert.equal((await machine.install('-u')).code, 0);
    const report = await machine.report();
    assert.deepEqual(report.pending.map(({ from }) => from), [program]);
    assert.deepEqual(expected.filesBelow(report, programFiles), ['FWC\\Fortwright.exe']);
    await machine.restart();
    await running.ended;
    await assertNothingInstalled(machine);
  });

  test('running browsers are closed before an installation and before a removal', async (t) => {
    const machine = await makeMachine(t);
    const browserFile = 'C:\\Browsers\\Chrome.EXE';
    mkdirSync(machine.path('C:\\Browsers'));
    cpSync(built('ORVANTA_BROWSER'), machine.path(browserFile));
    for (const option of ['--install', '--uninstall']) {
      const browser = await machine.startAndWait(browserFile, ['--stay']);
      assert.equal((await machine.install(option)).code, 0);
      assert.notEqual((await browser.ended).code, nobodyEndedIt);
    }
  });
});
