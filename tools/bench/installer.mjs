// The installer by itself: size, installation, removal, window, memory, messages.

import { execFileSync } from 'node:child_process';
import { mkdirSync, readFileSync, readdirSync, statSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { makeMachine } from '../../tests/journey/support/machine.mjs';
import { atScreen, makeWindowMachine, openInstaller, startSurroundings } from '../../tests/journey/support/window.mjs';
import { show, showProgress, timed } from './figures.mjs';

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

/** Measures and prints; what must be ended afterwards is left with `bench.after`. */
export async function measureInstaller(bench, rounds) {
  async function sample(what, work) {
    const samples = [];
    for (let i = 0; i < rounds; ++i) {
      showProgress(`${what}, round ${i + 1} of ${rounds}`);
      samples.push(await work());
    }
    showProgress('');
    return samples;
  }

  console.log(`Medians of ${rounds} rounds (least to most)\n`);
  show('size of the program', [statSync(process.env.ORVANTA_PROGRAM).size / 1000], 'kB');

  const machine = await makeMachine(bench);
  await machine.install('-u'); // the first program of a machine waits for its services
  const measure = async (what, work) => show(what, await sample(what, () => timed(work)), 'ms');
  await measure('(for comparison: a program that does nothing)', () => machine.run('cmd', ['/c', 'exit']));
  await measure('removal from an empty machine', () => machine.install('-u'));
  const removals = [];
  show('installation of both products', await sample('installation and removal', async () => {
    const installation = await timed(() => machine.install('-s'));
    removals.push(await timed(() => machine.install('-u')));
    return installation;
  }), 'ms');
  show('removal of both (2000 ms of it prescribed)', removals, 'ms');

  const large = machine.path('C:\\Large');
  mkdirSync(large);
  writeFileSync(join(large, 'Fortwright.exe'), Buffer.alloc(1000));
  writeFileSync(join(large, 'data.bin'), Buffer.alloc(200 * 1024 * 1024, 1));
  await measure('installation with another 200 MB', () => machine.install('--source', 'C:\\Large', '-s'));

  const surroundings = await startSurroundings();
  bench.after(() => surroundings.stop());
  const answered = [];
  const memory = [];
  const messageRates = [];
  const shown = await sample('installation in the window', async () => {
    const windowMachine = await makeWindowMachine(bench, surroundings);
    const started = performance.now();
    const { program, ended } = await openInstaller(bench, surroundings, windowMachine);
    const shownAfter = performance.now() - started;
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
    messageRates.push(count / (burst / 1000));
    await program.post('{"action":"close"}');
    await ended;
    return shownAfter;
  });
  show('messages answered per second, page and bridge included', [messageRates.at(-1)], '1/s');
  show('start of the process to page loaded', shown, 'ms');
  show('request of the page to first report', answered, 'ms');
  show('memory of the installer after an installation', memory, 'MB');
  console.log(`\nsha256 ${execFileSync('sha256sum', [process.env.ORVANTA_PROGRAM], { encoding: 'utf8' }).slice(0, 64)}`);
}
