// Measures what matters to a user of the installer. See --help.

import { execFileSync } from 'node:child_process';
import { existsSync } from 'node:fs';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';

const usage = `usage: node tools/bench.mjs [--only PART] [ROUNDS]

Measures the release build and prints medians with the least and the most of
ROUNDS rounds (5 when not given). The parts:

  installer   its size, the time of an installation and of a removal, and in the
              window the time until the page shows and answers, memory, and
              message throughput
  peers       the same silent installation beside an NSIS package that does the
              same work and a bare loop of CopyFileW, in rotating order, up to
              10,000 files; ratios, time by number of files, memory

Build and try everything with ./test once before; what the peers need besides
comes with tools/bootstrap bench. Five rounds take about ten minutes, most of it
with the peers. The numbers are of this machine and of Wine: compare them with
numbers of the same machine only, and while nothing else is at work there.

The exit code is 0 when everything was measured, 1 when something failed, and 2
when the arguments make no sense.`;

function complain(words, code) {
  console.error(`bench: ${words}`);
  process.exit(code);
}

const parts = ['installer', 'peers'];
let chosen = parts;
let rounds = 5;
const words = process.argv.slice(2);
while (words.length > 0) {
  const word = words.shift();
  if (word === '-h' || word === '--help') {
    console.log(usage);
    process.exit(0);
  } else if (word === '--only') {
    chosen = parts.filter((part) => part === words[0]);
    if (chosen.length === 0) {
      complain(`--only needs ${parts.join(' or ')} (see --help)`, 2);
    }
    words.shift();
  } else if (/^[1-9][0-9]*$/.test(word)) {
    rounds = Number(word);
  } else {
    complain(`'${word}' is no number of rounds (see --help)`, 2);
  }
}

const root = fileURLToPath(new URL('..', import.meta.url));
const release = join(root, 'build/release');
Object.assign(process.env, {
  ORVANTA_PROGRAM: join(release, 'OrvantaInstaller.exe'),
  ORVANTA_SAMPLE_PRODUCTS: join(release, 'sample_products'),
  ORVANTA_SCHTASKS: join(release, 'tests/standins/schtasks/schtasks.exe'),
  ORVANTA_BROWSER: join(release, 'tests/standins/browser/recorder_browser.exe'),
  ORVANTA_MACHINE_REPORT: join(release, 'tests/support/machine_report/machine_report.exe'),
  ORVANTA_WEBVIEW2_STANDIN_DIR: join(release, 'tests/standins/webview2_runtime'),
  ORVANTA_COPY_LOOP: join(release, 'tools/bench/copy_loop.exe'),
  ORVANTA_NOTHING: join(release, 'tools/bench/nothing.exe'),
});
for (const needed of [process.env.ORVANTA_PROGRAM, process.env.ORVANTA_SAMPLE_PRODUCTS, join(root, 'build/wine/template')]) {
  if (!existsSync(needed)) {
    complain(`there is no ${needed}; run ./test once before`, 1);
  }
}

const endings = [];
const bench = { after: (ending) => endings.unshift(ending) };
async function end() {
  while (endings.length > 0) {
    await endings.shift()();
  }
}
process.on('SIGINT', async () => {
  await end();
  process.exit(130);
});
try {
  if (chosen.includes('installer')) {
    const { measureInstaller } = await import('./bench/installer.mjs');
    await measureInstaller(bench, rounds);
  }
  if (chosen.includes('peers')) {
    execFileSync(join(root, 'tools/bootstrap'), ['bench'], { stdio: ['ignore', 'inherit', 'inherit'] });
    execFileSync('cmake', ['--build', release, '--target', 'bench_programs'], { stdio: ['ignore', 'ignore', 'inherit'] });
    const { measurePeers } = await import('./bench/peers.mjs');
    await measurePeers(bench, rounds);
  }
} catch (error) {
  console.error(`bench: ${error.message}`);
  process.exitCode = 1;
} finally {
  await end();
}
