// .ci/run and the checks behind it: what passed, what failed, and what could not be run.

import assert from 'node:assert/strict';
import { execFileSync, spawnSync } from 'node:child_process';
import { cpSync, mkdirSync, mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { dirname, join } from 'node:path';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';

const root = fileURLToPath(new URL('../../', import.meta.url));

/** A folder with the files of the tree that `copied` names and with `scripts`, small ones in place of others. */
function makeTree(t, copied, scripts) {
  const folder = mkdtempSync(join(tmpdir(), 'orvanta-checks-'));
  t.after(() => rmSync(folder, { recursive: true }));
  copied.forEach((file) => cpSync(join(root, file), join(folder, file)));
  for (const [file, text] of Object.entries(scripts)) {
    mkdirSync(dirname(join(folder, file)), { recursive: true });
    writeFileSync(join(folder, file), `#!/bin/bash\n${text}\n`, { mode: 0o755 });
  }
  return {
    folder,
    run: (file, ...args) => spawnSync(join(folder, file), args,
      { encoding: 'utf8', env: { ...process.env, PATH: `${join(folder, 'bin')}:${process.env.PATH}` } }),
  };
}

const checks = { format: 'Formatting', includes: 'Direction of includes', shell: 'Shell scripts',
  workflows: 'Workflows', tidy: 'clang-tidy', cppcheck: 'cppcheck', fuzz: 'Fuzzing', reproducible: 'Reproducible release' };

for (const [what, ends, code, last] of [
  ['passes when every check does', {}, 0, 'All passed'],
  ['names each check that could not be run', { format: 77, tidy: 77 }, 0,
    'Passed what this system can check, without: Formatting, clang-tidy'],
  ['ends with the first check that fails', { format: 77, shell: 1, tidy: 77 }, 1, 'Shell scripts'],
]) {
  test(`.ci/run ${what}`, (t) => {
    const tree = makeTree(t, ['.ci/run'], {
      test: '', 'tools/bootstrap': '', 'bin/cmake': '',
      ...Object.fromEntries(Object.keys(checks).map((name) => [`tools/checks/${name}`, `exit ${ends[name] ?? 0}`])),
    });
    const { status, stdout, stderr } = tree.run('.ci/run');
    assert.deepEqual([status, stderr], [code, '']);
    assert.equal(stdout.trimEnd().split('\n').at(-1).replace(/ \[\d+:\d\d\]$/, ''), `== ${last}`);
  });
}

for (const [check, tool] of [['format', 'clang-format'], ['tidy', 'clang-tidy']]) {
  const version = (number) => `[ "$1" != --version ] || echo 'Debian ${tool} version ${number}.0.6'`;
  const copied = [`tools/checks/${check}`, 'tools/checks/pinned_tool'];

  test(`${check} does not judge by another ${tool} than the tree's`, (t) => {
    const tree = makeTree(t, copied, { [`bin/${tool}-14`]: 'exit 127', [`bin/${tool}`]: version(19) });
    const { status, stdout, stderr } = tree.run(`tools/checks/${check}`);
    assert.deepEqual([status, stdout, stderr],
      [77, '', `${check}: not run: the tree goes by ${tool} 14 (Debian 12), and here is 19\n`]);
  });

  test(`${check} takes the tree's ${tool} beside a newer one`, (t) => {
    const tree = makeTree(t, copied, {
      'bin/cmake': '', 'a.cpp': '', [`bin/${tool}`]: version(19),
      [`bin/${tool}-14`]: `${version(14)}; [ "$1" = --version ] || { echo "error: judged" >&2; exit 1; }`,
    });
    execFileSync('git', ['init', '-q'], { cwd: tree.folder });
    const { status, stdout, stderr } = tree.run(`tools/checks/${check}`, ...check === 'tidy' ? ['a.cpp'] : []);
    assert.equal(status, 1);
    assert.match(stdout + stderr, /error: judged/);
  });
}
