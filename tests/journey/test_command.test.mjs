// The command ./test and the scripts behind it: what they make of their arguments.

import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';

const run = (script, ...args) => spawnSync(fileURLToPath(new URL(`../../${script}`, import.meta.url)), args, { encoding: 'utf8' });

test('help tells floors, names and exit codes', () => {
  const { status, stdout, stderr } = run('test', '--help');
  assert.deepEqual([status, stderr], [0, '']);
  for (const word of ['./test unit', 'machine, page or journey', './test --case', './test --list', 'exit code']) {
    assert.ok(stdout.includes(word), word);
  }
});

for (const [script, ...args] of [
  ['test', '--fast'], ['test', ''], ['test', 'unit', '-x'], ['test', '--case'], ['test', '--case', ''],
  ['test', '--case', 'no case has this name'], ['tools/bootstrap', 'nonsense'],
  ['tests/support/machine', 'make'], ['tests/support/machine', 'fly', '/nowhere'],
]) {
  test(`${script} ${args.map((arg) => arg || "''").join(' ')} gives one line and exit code 2`, () => {
    const { status, stdout, stderr } = run(script, ...args);
    assert.deepEqual([status, stdout, stderr.trimEnd().split('\n').length], [2, '', 1]);
  });
}
