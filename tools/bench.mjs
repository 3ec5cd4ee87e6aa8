// Measures what matters to a user of the installer: its size, the time of an
// installation and of a removal, and in the window the time until the page shows
// and answers, memory, and message throughput.
//
//   node tools/bench.mjs [ROUNDS]
//
// Build the release preset and run ./test once before. The numbers are of this
// machine and of Wine; compare them with numbers of the same machine only.

import { execFileSync } from 'node:child_process';
import { mkdirSync, readFileSync, readdirSync, statSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';

const rounds = Number(process.argv[2] ?? 5);
if (!Number.isInteger(rounds) || rounds < 1) {
  console.error(`bench: '${process.argv[2]}' is no number of rounds`);
  process.exit(2);
}
const release = fileURLToPath(new URL('../build/release', import.meta.url));
Object.assign(process.env, {
  ORVANTA_PROGRAM: join(release, 'OrvantaInstaller.exe'),
  ORVANTA_SAMPLE_PRODUCTS: join(release, 'sample_products'),
  ORVANTA_SCHTASKS: join(release, 'tests/standins/schtasks/schtasks.exe'),
  ORVANTA_BROWSER: join(release, 'tests/standins/browser/recorder_browser.exe'),
  ORVANTA_MACHINE_REPORT: join(release, 'tests/support/machine_report/machine_report.exe'),
  ORVANTA_WEBVIEW2_STANDIN_DIR: join(release, 'tests/standins/webview2_runtime'),
});
const { makeMachine } = await import('../tests/journey/support/machine.mjs');
const { atScreen, makeWindowMachine, openInstaller, startSurroundings } = await import('../tests/journey/support/window.mjs');

const endings = [];
const bench = { after: (ending) => endings.unshift(ending) };

function show(what, samples, unit) {
  const sorted = [...samples].sort((a, b) => a - b);
  const text = (value) => value.toFixed(value < 100 ? 1 : 0);
  console.log(`${what.padEnd(46)} ${text(sorted[Math.floor(sorted.length / 2)]).padStart(9)} ${unit}   `
    + `(${text(sorted[0])} to ${text(sorted.at(-1))})`);
}

async function timed(work) {
  const started = performance.now();
  await work();
  return performance.now() - started;
}

async function sample(work) {
  const samples = [];
  for (let i = 0; i < rounds; ++i) {
    samples.push(await work());
  }
  return samples;
}

/** Resident memory of the installer, in MB. */
function memoryOfInstaller() {
  for (const id of readdirSync('/proc').filter((name) => /^\d+$/.test(name))) {
    try {
      if (readFileSync(`/proc/${id}/cmdline`, 'latin1').startsWith('C:\\Setup\\OrvantaInstaller.exe')) {
        return Number(readFileSync(`/proc/${id}/status`, 'utf8').match(/VmRSS:\s+(\d+)/)[1]) / 1024;
      }
    } catch {
      // ended while we looked
    }
  }
  return NaN;
}

async function measure() {
  console.log(`Medians of ${rounds} rounds (least to most)\n`);
  show('size of the program', [statSync(process.env.ORVANTA_PROGRAM).size / 1000], 'kB');

  const machine = await makeMachine(bench);
  await machine.install('-u'); // the first program of a machine waits for its services
  show('(for comparison: a program that does nothing)', await sample(() => timed(() => machine.run('cmd', ['/c', 'exit']))), 'ms');
  show('removal from an empty machine', await sample(() => timed(() => machine.install('-u'))), 'ms');
  const installations = [];
  const removals = [];
  for (let i = 0; i < rounds; ++i) {
    installations.push(await timed(() => machine.install('-s')));
    removals.push(await timed(() => machine.install('-u')));
  }
  show('installation of both products', installations, 'ms');
  show('removal of both (2000 ms of it prescribed)', removals, 'ms');

  const large = machine.path('C:\\Large');
  mkdirSync(large);
  writeFileSync(join(large, 'Fortwright.exe'), Buffer.alloc(1000));
  writeFileSync(join(large, 'data.bin'), Buffer.alloc(200 * 1024 * 1024, 1));
  show('installation with another 200 MB', await sample(() => timed(() => machine.install('--source', 'C:\\Large', '-s'))), 'ms');

  const surroundings = await startSurroundings();
  bench.after(() => surroundings.stop());
  const shown = [];
  const answered = [];
  const memory = [];
  for (let i = 0; i < rounds; ++i) {
    const windowMachine = await makeWindowMachine(bench, surroundings);
    const started = performance.now();
    const { program, ended } = await openInstaller(bench, surroundings, windowMachine);
    shown.push(performance.now() - started);
    await atScreen(program, 's-welcome');
    await program.press('Install Selected');
    await atScreen(program, 's-close-browsers');
    await program.press('Continue');
    const sent = await program.waitFor(({ from, event }) => from === 'page' && event === 'message');
    const report = await program.waitFor(({ text }) => text?.includes('"progress"'));
    answered.push(report.t - sent.t);
    await atScreen(program, 's-firefox-notice');
    memory.push(memoryOfInstaller());
    const count = 10000;
    const burst = await timed(async () => {
      await program.postAll(Array.from({ length: count }, (_, n) => `{"action":"open_webstore","index":${n}}`));
      await program.waitFor(({ from, text }) => from === 'program' && text === `{"action":"webstore_opened","index":${count - 1}}`);
    });
    if (i === rounds - 1) {
      show('messages answered per second, page and bridge included', [count / (burst / 1000)], '1/s');
    }
    await program.post('{"action":"close"}');
    await ended;
  }
  show('start of the process to page loaded', shown, 'ms');
  show('request of the page to first report', answered, 'ms');
  show('memory of the installer after an installation', memory, 'MB');
  console.log(`\nsha256 ${execFileSync('sha256sum', [process.env.ORVANTA_PROGRAM], { encoding: 'utf8' }).slice(0, 64)}`);
}

try {
  await measure();
} finally {
  for (const ending of endings) {
    await ending();
  }
}
