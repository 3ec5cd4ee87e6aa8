// The command ./test and the scripts behind it: what they make of their arguments.

import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { notOnThisBase } from '../support/bases.mjs';

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

const here = notOnThisBase('the moon is new');
for (const [what, code, said, ...skips] of [
  ['a file whose tests pass', 0, /^$/, false, false],
  ['a file that this system can run none of', 77, /^not run on this base: the moon is new$/, here, here],
  ['a file that this system can run only a part of', 1, /: a test was skipped$/, false, here],
  ['a file with a test that is skipped for a reason of its own', 1, /: no test was executed$/, here, 'too slow'],
]) {
  test(`${what} ends with ${code}`, (t) => {
    const folder = mkdtempSync(join(tmpdir(), 'orvanta-tests-'));
    t.after(() => rmSync(folder, { recursive: true }));
    const file = join(folder, 'some.test.mjs');
    writeFileSync(file, `import { describe, test } from 'node:test';
      describe('some', () => {
        ${skips.map((skip, index) => `test('test ${index}', { skip: ${JSON.stringify(skip)} }, () => {});`).join('\n')}
      });`);
    const environment = { ...process.env };
    delete environment.NODE_TEST_CONTEXT; // that of this test, which would have the runner report to it
    const { status, stdout, stderr } = spawnSync(process.execPath,
      [fileURLToPath(new URL('../support/run_node_tests.mjs', import.meta.url)), file], { encoding: 'utf8', env: environment });
    const verdict = stderr.trimEnd() || stdout.split('\n').filter((line) => line.startsWith('not run')).join();
    assert.equal(status, code, stdout + stderr);
    assert.match(verdict, said);
  });
}
