// The setup file that customers download, run on a machine: every mode of the program through it, by exit code and by
// what the machine holds afterwards.

import assert from 'node:assert/strict';
import { randomBytes } from 'node:crypto';
import { cpSync, mkdirSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { dirname, join } from 'node:path';
import { after, before, describe, test } from 'node:test';
import { assertBothInstalled, assertNothingInstalled } from './support/assert_state.mjs';
import * as expected from './support/expected_state.mjs';
import { built, startCommand } from './support/machine.mjs';
import { products, work } from './support/release.mjs';
import {
  assertTidy, giveSetup, makeMachineWithSetup, packSetup, setupFile, starts, temporary, unpacked,
} from './support/setup_file.mjs';
import { byFile, inWork, roots, sign } from './support/signing.mjs';
import { atScreen, makeWindowMachine, openInstaller, startSurroundings } from './support/window.mjs';

const { linkwardFilesOfSetup: linkwardFiles } = expected;
const suite = packSetup();
/** A recorder in the place of the program. */
const probe = packSetup({ from: built('ORVANTA_BROWSER') });

let surroundings;
before(async () => { surroundings = await startSurroundings(); });
after(() => surroundings.stop());

describe('the setup file', { concurrency: 3 }, () => {
  test('installs and removes silently as the program does, and leaves nothing of itself', async (t) => {
    const machine = await makeMachineWithSetup(t, suite);
    assert.deepEqual(await machine.run(setupFile, ['--silent']), { code: 0, stdout: '', stderr: '' });
    await assertBothInstalled(machine, { linkwardFiles });
    assertTidy(machine);
    assert.deepEqual(readFileSync(machine.path(`${expected.linkwardFolder}\\VeyraLinkwardInstaller.exe`)),
      readFileSync(built('ORVANTA_PROGRAM')));
    assert.deepEqual(await machine.run(setupFile, ['--uninstall']), { code: 0, stdout: '', stderr: '' });
    const { left_behind: leftBehind } = await assertNothingInstalled(machine);
    assert.deepEqual(leftBehind.slice(0, 2), [`${expected.programFiles}\\`, `${expected.programData}\\`]);
    assertTidy(machine);
  });

  test('a signed one verifies, starts and finds itself undamaged', async (t) => {
    const signed = inWork('signed setup.exe');
    assert.equal(sign([suite, signed, inWork('store.p12'), ...byFile, ...roots]).status, 0);
    const machine = await makeMachineWithSetup(t, signed);
    assert.equal((await machine.run(setupFile, ['-s'])).code, 0);
    await assertBothInstalled(machine, { linkwardFiles });
    assertTidy(machine);
  });

  for (const [option, screen] of [['', 's-welcome'], ['--uninstall-gui', 's-uninstall-confirm']]) {
    test(`opens the window ${option || 'without options'} and ends with it`, async (t) => {
      const machine = await giveSetup(await makeWindowMachine(t, surroundings), suite);
      const { program, ended } = await openInstaller(t, surroundings, machine,
        { starter: setupFile, options: option ? [option] : [] });
      await atScreen(program, screen);
      assert.deepEqual(unpacked(machine), ['Orvanta Installer Setup 1', 'Orvanta Installer Setup 1.lock']);
      // Not even in passing: a program of the user could exchange it there.
      assert.deepEqual(temporary(machine), []);
      await program.post('{"action":"close"}');
      assert.deepEqual(await ended, { code: 0, stdout: '', stderr: '' });
      assertTidy(machine);
    });
  }

  test('takes the products from the folder that somebody else names, also from one below the current folder', async (t) => {
    const machine = await makeMachineWithSetup(t, suite);
    cpSync(products, machine.path('C:\\Media\\our edition'), { recursive: true });
    writeFileSync(machine.path('C:\\Media\\our edition\\Read me first.txt'), 'Our edition');
    const command = `cd /d C:\\Media && start /wait "" "${setupFile}" --silent --source "our edition"`;
    writeFileSync(machine.path('C:\\Media\\install.bat'), `@${command}\r\n@exit /b %ERRORLEVEL%\r\n`);
    assert.equal((await machine.run('cmd.exe', ['/c', 'C:\\Media\\install.bat'])).code, 0);
    await assertBothInstalled(machine);
    assert.equal(readFileSync(machine.path(`${expected.linkwardFolder}\\Read me first.txt`), 'utf8'), 'Our edition');
    assertTidy(machine);
  });

  test('hands on the exit code of an installation that fails', async (t) => {
    const machine = await makeMachineWithSetup(t, suite);
    assert.deepEqual(await machine.run(setupFile, ['-s', '--source', 'C:\\nowhere']), { code: 1, stdout: '', stderr: '' });
    assertTidy(machine);
  });

  test('hands on any exit code, and gives 2 for a program that was ended by force', async (t) => {
    const machine = await makeMachineWithSetup(t, probe);
    // The host sees eight bits of an exit code.
    for (const [code, seen] of [[3, 3], [255, 255], [-2147483645, 3], [-1, 2]]) {
      assert.equal((await machine.run(setupFile, [`--exit=${code}`])).code, seen, `${code}`);
    }
    assertTidy(machine);
  });

  test('passes every option on as it was typed', async (t) => {
    const machine = await makeMachineWithSetup(t, probe);
    cpSync(built('ORVANTA_BROWSER'), machine.path('C:\\direct.exe'));
    const typed = ['', ' --silent', '  --uninstall-gui   --x ', ' "a b" c"d e"f', ' --source "C:\\Set up\\\\"', ' --source',
      ' a\\\\"b c\\"', ' ""', ' $0$$INSTDIR$\\n${PROGRAM}', ' \'single\' `back`', ' /S /NCRC', ' "/D=x"', ' "open',
      '\tafter a tab', ` ${'x'.repeat(903)}`];
    // A script of cmd.exe, which passes on what stands behind a program letter by letter.
    for (const program of ['C:\\direct.exe', `"${setupFile}"`]) {
      for (const tail of typed) {
        writeFileSync(machine.path('C:\\typed.bat'), `@${program}${tail}\r\n@exit /b %ERRORLEVEL%\r\n`);
        assert.equal((await machine.run('cmd.exe', ['/c', 'C:\\typed.bat'])).code, 0, tail);
      }
    }
    assert.equal((await machine.run(setupFile, ['Größe ж'])).code, 0);
    const behindName = (commandLine) => commandLine.replace(/^("[^"]*"|[^ \t]+)/, '');
    const all = starts(machine);
    const direct = all.slice(0, typed.length).map(([, ...commandLine]) => behindName(commandLine.join('\t')));
    const folder = 'C:\\Program Files\\Orvanta Installer Setup 1';
    assert.deepEqual(all.slice(typed.length).map(([path, ...commandLine]) => [path, commandLine.join('\t')]),
      [...direct, ' "Größe ж"'].map((tail) => [`${folder}\\OrvantaInstaller.exe`,
        `"${folder}\\OrvantaInstaller.exe" --source "${folder}"${tail}`]));
    assert.deepEqual(direct.map((tail) => tail.trim()), typed.map((tail) => tail.trim()));
    assertTidy(machine);
  });

  test('starts nothing, and gives 2, when it cannot pass on all of the options', async (t) => {
    const machine = await makeMachineWithSetup(t, probe);
    const deepFile = `C:\\${'d'.repeat(200)}\\setup.exe`;
    mkdirSync(dirname(machine.path(deepFile)));
    cpSync(probe, machine.path(deepFile));
    for (const [file, ...options] of [[setupFile, '/D=C:\\elsewhere', '--silent'], [setupFile, '--silent', '/D=C:\\elsewhere'],
      [setupFile, 'x'.repeat(904)], [setupFile, 'x'.repeat(5000)], [deepFile, 'x'.repeat(850)]]) {
      const { code, stdout, stderr } = await machine.run(file, options);
      assert.deepEqual([options[0].slice(0, 20), code, stdout, stderr], [options[0].slice(0, 20), 2, '', '']);
    }
    assert.deepEqual(starts(machine), []);
    assertTidy(machine);
  });

  test('damaged, or the beginning of one, gives 2 and shows no box', async (t) => {
    // Stored as it is, so that nothing but the check of the whole file can find a change in it.
    const shipped = join(work, 'products with noise');
    const noise = randomBytes(20000);
    cpSync(products, shipped, { recursive: true });
    writeFileSync(join(shipped, 'noise.bin'), noise);
    const whole = readFileSync(packSetup({ from: built('ORVANTA_BROWSER'), shipped }));
    const machine = await giveSetup(await makeWindowMachine(t, surroundings), probe);
    const place = whole.indexOf(noise);
    assert.ok(place > 0);
    const changed = Buffer.from(whole);
    changed[place + 10000] ^= 1;
    const header = whole.indexOf('NullsoftInst');
    assert.ok(header > 0);
    for (const [what, bytes, options] of [
      ['changed', changed, []],
      ['changed, with its check switched off', changed, ['/NCRC']],
      ['cut off', whole.subarray(0, whole.length - 5000), []],
      ['cut off in its head', whole.subarray(0, header + 60), []],
      // Then nothing is left that says that it is a silent one.
      ['cut off before its head', whole.subarray(0, header - 100), ['/S']],
    ]) {
      rmSync(machine.path(setupFile));
      writeFileSync(machine.path(setupFile), bytes);
      const { child, ended } = machine.start(setupFile, [...options, '--silent']);
      const limit = setTimeout(() => child.kill('SIGKILL'), 60000);
      assert.deepEqual([what, await ended], [what, { code: 2, stdout: '', stderr: '' }]);
      clearTimeout(limit);
    }
    assert.deepEqual(starts(machine), []);
    assertTidy(machine);
  });

  test('gives 2 and leaves nothing when there is no room to unpack', async (t) => {
    const machine = await makeMachineWithSetup(t, probe);
    const { words, environment } = machine.outside(setupFile);
    // No file of its processes may become larger than 40 blocks of 512 bytes: as on a disk that is full.
    const limited = 'trap "" XFSZ; ulimit -f 40; exec "$@"';
    const { code, stdout, stderr } = await startCommand('/bin/sh', ['-c', limited, 'sh', ...words, '--silent'], environment).ended;
    assert.deepEqual([code, stdout, stderr], [2, '', '']);
    assert.deepEqual(starts(machine), []);
    assertTidy(machine);
  });

  test('gives 2 and leaves nothing when the program cannot be started', async (t) => {
    const noProgram = join(work, 'no program');
    writeFileSync(noProgram, 'Not a program');
    const machine = await makeMachineWithSetup(t, packSetup({ from: noProgram }));
    assert.deepEqual(await machine.run(setupFile, ['--silent']), { code: 2, stdout: '', stderr: '' });
    assertTidy(machine);
  });
});
