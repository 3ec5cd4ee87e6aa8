// The folder that a setup file unpacks into: where it is, and that none stays behind, whatever becomes of the setup file.

import assert from 'node:assert/strict';
import { chmodSync, cpSync, existsSync, mkdirSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { describe, test } from 'node:test';
import { startAndKill } from './support/kill.mjs';
import { built, waitUntil } from './support/machine.mjs';
import { filesBelow, products, tree, work } from './support/release.mjs';
import { assertTidy, makeMachineWithSetup, packSetup, setupFile, starts, unpacked } from './support/setup_file.mjs';

const folder = (number) => `C:\\Program Files\\Orvanta Installer Setup ${number}`;
const lock = (number) => `${folder(number)}.lock`;

/** Products with names that a script could misread, and with one that takes a moment to unpack. */
const shipped = join(work, 'products of all sorts');
cpSync(products, shipped, { recursive: true });
mkdirSync(join(shipped, 'Größen (100%) & mehr/$INSTDIR'), { recursive: true });
writeFileSync(join(shipped, "Größen (100%) & mehr/$INSTDIR/it's $0 `here` $$ жук.txt"), 'names');
writeFileSync(join(shipped, 'large.bin'), Buffer.alloc(60_000_000));

/** A recorder in the place of the program. */
const probe = packSetup({ from: built('ORVANTA_BROWSER'), shipped });

/** Starts a setup file whose program stays, and returns when the program runs. */
async function startAndStay(machine, milliseconds = 60000) {
  const before = starts(machine).length;
  const started = machine.start(setupFile, [`--stay=${milliseconds}`]);
  await waitUntil(() => starts(machine).length > before, 'the program to be started');
  return { ...started, program: starts(machine).at(-1)[0] };
}

/** Ends the programs that setup files have started. */
const endPrograms = (machine) => machine.run('taskkill.exe', ['/F', '/IM', 'OrvantaInstaller.exe']);

describe('the folder of a setup file', { concurrency: 3 }, () => {
  test('holds program, licence, notices and the products, byte by byte, and none of our own means', async (t) => {
    const machine = await makeMachineWithSetup(t, probe);
    const { ended } = await startAndStay(machine);
    const place = machine.path(folder(1));
    const names = filesBelow(place);
    assert.deepEqual(names, [...filesBelow(shipped), 'OrvantaInstaller-LICENSE.txt', 'OrvantaInstaller-NOTICES.txt',
      'OrvantaInstaller.exe'].sort());
    for (const name of filesBelow(shipped)) {
      assert.ok(readFileSync(join(place, name)).equals(readFileSync(join(shipped, name))), name);
    }
    assert.ok(readFileSync(join(place, 'OrvantaInstaller.exe')).equals(readFileSync(built('ORVANTA_BROWSER'))));
    assert.ok(readFileSync(join(place, 'OrvantaInstaller-LICENSE.txt')).equals(readFileSync(join(tree, 'LICENSE'))));
    assert.match(readFileSync(join(place, 'OrvantaInstaller-NOTICES.txt'), 'utf8'),
      /^- NSIS exehead with its LZMA decompressor\n {2}Zlib AND \(CPL-1\.0 WITH LZMA-exception\)\n {2}Debian package nsis-common /m);
    await endPrograms(machine);
    await ended;
    assertTidy(machine);
  });

  // Who may write there is Windows' own matter and cannot be shown here; see docs/testing.md.
  test('is in Program Files as Windows knows it, whatever the variables of a user say', async (t) => {
    const machine = await makeMachineWithSetup(t, probe);
    const elsewhere = ['ProgramFiles', 'ProgramW6432', 'ProgramFiles(x86)', 'ProgramData', 'TEMP', 'TMP']
      .map((name) => `@set ${name}=C:\\Elsewhere\r\n`).join('');
    mkdirSync(machine.path('C:\\Elsewhere'));
    writeFileSync(machine.path('C:\\elsewhere.bat'), `${elsewhere}@start /wait "" "${setupFile}" --x\r\n@exit /b %ERRORLEVEL%\r\n`);
    assert.equal((await machine.run('cmd.exe', ['/c', 'C:\\elsewhere.bat'])).code, 0);
    assert.deepEqual(starts(machine).map(([path]) => path), [`${folder(1)}\\OrvantaInstaller.exe`]);
    assert.deepEqual(filesBelow(machine.path('C:\\Elsewhere')), []);
    assertTidy(machine);
  });

  test('is another one for each of two setup files at once, and both go', async (t) => {
    const machine = await makeMachineWithSetup(t, probe);
    // The second begins while the first unpacks.
    const first = machine.start(setupFile, ['--stay=60000']);
    await waitUntil(() => existsSync(machine.path(folder(1))), 'the first folder');
    const second = machine.start(setupFile, ['--stay=60000']);
    await waitUntil(() => starts(machine).length === 2, 'both programs to be started');
    assert.deepEqual(starts(machine).map(([path]) => path).sort(),
      [1, 2].map((number) => `${folder(number)}\\OrvantaInstaller.exe`));
    for (const number of [1, 2]) {
      assert.ok(existsSync(machine.path(`${folder(number)}\\large.bin`)));
    }
    await endPrograms(machine);
    await Promise.all([first.ended, second.ended]);
    assertTidy(machine);
  });

  test('goes at the next start when the setup file was ended while it unpacked', async (t) => {
    const machine = await makeMachineWithSetup(t, probe);
    const path = 'Program Files/Orvanta Installer Setup 1';
    assert.ok(await startAndKill(machine, [setupFile, ['--x']], { path, milliseconds: 0 }));
    assert.deepEqual(starts(machine), []);
    assert.deepEqual(unpacked(machine), ['Orvanta Installer Setup 1', 'Orvanta Installer Setup 1.lock']);
    assert.equal((await machine.run(setupFile, ['--x'])).code, 0);
    assert.deepEqual(starts(machine).map(([program]) => program), [`${folder(1)}\\OrvantaInstaller.exe`]);
    assertTidy(machine);
    assert.deepEqual((await machine.report()).pending, []);
  });

  test('stays whole while the program in it runs, also when the setup file was ended, and goes at the start after that', async (t) => {
    const machine = await makeMachineWithSetup(t, probe);
    const { child, ended } = await startAndStay(machine);
    const whole = filesBelow(machine.path(folder(1)));
    child.kill('SIGKILL');
    await ended;
    assert.equal((await machine.run(setupFile, ['--x'])).code, 0);
    assert.deepEqual(starts(machine).map(([path]) => path), [1, 2].map((number) => `${folder(number)}\\OrvantaInstaller.exe`));
    assert.deepEqual(filesBelow(machine.path(folder(1))), whole);
    assert.deepEqual(unpacked(machine), ['Orvanta Installer Setup 1', 'Orvanta Installer Setup 1.lock']);
    await endPrograms(machine);
    assert.equal((await machine.run(setupFile, ['--x'])).code, 0);
    assertTidy(machine);
  });

  test('goes with everything that an earlier version has left in it, read-only files and deep folders included', async (t) => {
    const machine = await makeMachineWithSetup(t, probe);
    for (const number of [2, 30]) {
      const deep = machine.path(`${folder(number)}\\of an earlier version\\deep\\deeper`);
      mkdirSync(deep, { recursive: true });
      mkdirSync(machine.path(`${folder(number)}\\empty`));
      for (const name of ['OrvantaInstaller.exe', 'of an earlier version/deep/deeper/some', 'of an earlier version/.hidden']) {
        writeFileSync(join(machine.path(folder(number)), name), 'left');
        chmodSync(join(machine.path(folder(number)), name), 0o444);
      }
      writeFileSync(machine.path(lock(number)), '');
    }
    writeFileSync(machine.path(lock(4)), ''); // whose folder went before
    assert.equal((await machine.run(setupFile, ['--x'])).code, 0);
    assertTidy(machine);
  });

  test('is never one that somebody else has made, which stays as it is', async (t) => {
    const machine = await makeMachineWithSetup(t, probe);
    mkdirSync(machine.path(folder(1)));
    writeFileSync(machine.path(`${folder(1)}\\Fortwright.exe`), 'of somebody else');
    writeFileSync(machine.path(folder(2)), 'a file');
    assert.equal((await machine.run(setupFile, ['--x'])).code, 0);
    assert.deepEqual(starts(machine).map(([path]) => path), [`${folder(3)}\\OrvantaInstaller.exe`]);
    assert.deepEqual(unpacked(machine), ['Orvanta Installer Setup 1', 'Orvanta Installer Setup 2']);
    assert.equal(readFileSync(machine.path(`${folder(1)}\\Fortwright.exe`), 'utf8'), 'of somebody else');
    rmSync(machine.path(folder(1)), { recursive: true });
    rmSync(machine.path(folder(2)));
    assertTidy(machine);
  });
});
