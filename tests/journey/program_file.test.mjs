// What can be seen of the finished program from its file alone.

import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { homedir } from 'node:os';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { built } from './support/machine.mjs';
import { readProgram } from './support/pe_file.mjs';

const file = readFileSync(built('ORVANTA_PROGRAM'));
const program = readProgram(file);

// What every Windows 10 and 11 lists under Session Manager\KnownDLLs and therefore never takes from the program's own
// folder, and ntdll, which is in every process from its beginning.
const knownDlls = ['advapi32', 'clbcatq', 'combase', 'comdlg32', 'coml2', 'difxapi', 'gdi32', 'gdiplus', 'imagehlp',
  'imm32', 'kernel32', 'msctf', 'msvcrt', 'normaliz', 'nsi', 'ntdll', 'ole32', 'oleaut32', 'psapi', 'rpcrt4', 'sechost',
  'setupapi', 'shcore', 'shell32', 'shlwapi', 'user32', 'wldap32', 'ws2_32'];

test('it is a 64-bit program with a window of its own and no console', () => {
  assert.equal(program.signature, 'PE\0\0');
  assert.equal(program.machine, 0x8664);
  assert.equal(program.magic, 0x20b);
  assert.equal(program.subsystem, 2);
});

test('it weighs at most 420 kB', () => {
  assert.ok(file.length <= 420000, `${file.length} bytes`);
});

test('it imports known DLLs of Windows and nothing else', () => {
  const names = program.imports.map((name) => name.toLowerCase().replace(/\.dll$/, ''));
  assert.deepEqual(names.filter((name) => !knownDlls.includes(name)), []);
  assert.deepEqual([...names].sort(), ['advapi32', 'gdi32', 'kernel32', 'msvcrt', 'ntdll', 'ole32', 'shell32',
    'user32']);
});

test('it is hardened: ASLR with high entropy and relocations, DEP, aware of terminal services', () => {
  const highEntropy = 0x20, dynamicBase = 0x40, nxCompatible = 0x100, terminalServerAware = 0x8000;
  const wanted = highEntropy | dynamicBase | nxCompatible | terminalServerAware;
  assert.equal(program.dllCharacteristics & wanted, wanted);
  assert.equal(program.characteristics & 1, 0, 'the relocations are stripped');
  assert.notEqual(program.characteristics & 0x20, 0, 'no large addresses');
  assert.ok(program.relocations.size > 0);
  assert.ok(program.imageBase > 0xffffffffn);
  assert.deepEqual(program.sections.filter(({ isWritable, isExecutable }) => isWritable && isExecutable), []);
});

test('it guards its stack, and ends by the fast way of Windows when that was overrun', () => {
  // mov ecx, FAST_FAIL_STACK_COOKIE_CHECK_FAILURE; int 0x29
  assert.ok(file.includes(Buffer.from('b902000000cd29', 'hex')));
});

test('it does not ask the cryptographic service provider, whose DLLs would be loaded before it can say from where', () => {
  assert.deepEqual(['CryptAcquireContext', 'CryptGenRandom'].filter((name) => file.includes(name)), []);
});

test('nothing in it tells when or where it was built', () => {
  assert.equal(program.timeStamp, 0);
  assert.equal(program.symbols, 0);
  assert.equal(program.debug.size, 0);
  const tree = fileURLToPath(new URL('../../', import.meta.url));
  for (const place of [tree, tree.replace(/\/$/, ''), homedir() === '/' ? '/root/' : homedir(), '.cpp']) {
    assert.equal(file.indexOf(place), -1, place);
    assert.equal(file.indexOf(Buffer.from(place, 'utf16le')), -1, place);
  }
});

test('it exports nothing', () => {
  assert.equal(program.exports.size, 0);
});
