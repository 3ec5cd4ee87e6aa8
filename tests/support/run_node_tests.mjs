// Runs one test file with node's test runner and passes on its result. A file in
// which no test was executed, or in which one was skipped, counts as failed. Only a
// file whose tests are all skipped because this system cannot run them ends with
// 77, which CTest takes for skipped, and with a line that gives the reason.
// ORVANTA_CASE=<text> runs only the tests whose names hold the text.
//
//   node run_node_tests.mjs <file>

import { spawnSync } from 'node:child_process';
import { resolve } from 'node:path';

const file = resolve(process.argv[2]);
const chosen = process.env.ORVANTA_CASE;
const choice = chosen ? [`--test-name-pattern=${chosen.replace(/[\\^$.*+?()[\]{}|/]/g, '\\$&')}`] : [];
// Without --test, which would start a process for the file once more.
const run = spawnSync(process.execPath, ['--test-reporter=tap', ...choice, file], {
  encoding: 'utf8',
  maxBuffer: 64 * 1024 * 1024,
});
process.stdout.write(run.stdout);
process.stderr.write(run.stderr);

const count = (what) => Number(run.stdout.match(new RegExp(`^# ${what} (\\d+)$`, 'm'))?.[1] ?? NaN);
const notChosen = run.stdout.match(/# SKIP test name does not match pattern$/gm)?.length ?? 0;
// See notOnThisBase in bases.mjs.
const impossible = [...run.stdout.matchAll(/# SKIP not on this base: (.+)$/gm)].map(([, reason]) => reason);
const skipped = count('skipped') - notChosen + count('todo') + count('cancelled');
if (run.status === 0 && skipped > 0 && impossible.length === skipped && count('pass') === 0) {
  console.log(`not run on this base: ${[...new Set(impossible)].join('; ')}`);
  process.exit(77);
}
const complaint =
  run.status !== 0 ? 'a test failed'
  : !(count('pass') > 0) ? 'no test was executed'
  : skipped !== 0 ? 'a test was skipped'
  : undefined;
if (complaint) {
  console.error(`${file}: ${complaint}`);
  process.exit(1);
}
