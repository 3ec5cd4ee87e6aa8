// The installer beside two peers: an NSIS package that does the same work, and a bare loop of CopyFileW.

import { execFileSync } from 'node:child_process';
import { cpSync, mkdirSync, readFileSync, readdirSync, rmSync, statSync, writeFileSync } from 'node:fs';
import { dirname, join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { built, installer, makeMachine, startCommand } from '../../tests/journey/support/machine.mjs';
import { cell, median, ratios, show, showProgress, showTable, timed } from './figures.mjs';

const fileCounts = [0, 1, 10, 100, 1000, 10000];
/** A package of more files takes minutes here: Wine looks through the whole folder several times for each of them. */
const most_packaged = 1000;
const target = 'C:\\Program Files\\Brackenfold\\Veyra Linkward\\many';
/** Below this the clock of the host's file system, which ticks every few milliseconds, says too little for a ratio. */
const least_ms = 40;

/** Gives the machine the sample products with `count` files of 1 kB beside them, as folder and as NSIS package. */
function prepare(machine, count) {
  const source = machine.path(`C:\\Source${count}`);
  const many = join(source, 'many');
  const words = ['-V2', `-DSOURCE=${built('ORVANTA_SAMPLE_PRODUCTS')}`, `-DOUTPUT=${machine.path(`C:\\Package${count}.exe`)}`];
  cpSync(built('ORVANTA_SAMPLE_PRODUCTS'), source, { recursive: true });
  if (count > 0) {
    mkdirSync(many);
    for (let i = 0; i < count; ++i) {
      writeFileSync(join(many, `data file ${i}.bin`), Buffer.alloc(1000, i));
    }
    words.push(`-DMANY=${many}`);
  }
  if (count > most_packaged) {
    return;
  }
  execFileSync('makensis', [...words, fileURLToPath(new URL('peer.nsi', import.meta.url))]);
}

/**
 * From the birth of the target folder to the last change of a file in it, in ms, as the host's file system has them:
 * the listing of the source counts, the start of the program and what else it installs does not.
 */
function copyPhase(folder, count) {
  const names = readdirSync(folder);
  if (names.length !== count) {
    throw new Error(`${names.length} of ${count} files were copied`);
  }
  const ends = names.map((name) => statSync(join(folder, name)).ctimeMs);
  return ends.reduce((a, b) => Math.max(a, b)) - statSync(folder).birthtimeMs;
}

/** Measures and prints; what must be ended afterwards is left with `bench.after`. */
export async function measurePeers(bench, rounds) {
  const machine = await makeMachine(bench);
  for (const variable of ['ORVANTA_COPY_LOOP', 'ORVANTA_NOTHING']) {
    cpSync(built(variable), machine.path(`C:\\${variable}.exe`));
  }
  for (const count of fileCounts) {
    showProgress(`making a package with ${count} more files`);
    prepare(machine, count);
  }
  const folder = machine.path(target);

  /**
   * Runs a program to its end: how long it took, how long it copied, its own processor time (ms) and the most memory that
   * it had (MB).
   */
  async function run(what, program, args, count) {
    const { words, environment } = machine.outside(program);
    const usage = machine.path('C:\\usage.txt');
    let code;
    const ms = await timed(async () => {
      ({ code } = await startCommand('/usr/bin/time', ['-f', '%M %U %S', '-o', usage, ...words, ...args], environment).ended);
    });
    if (code !== 0) {
      throw new Error(`${what} ended with ${code}`);
    }
    const copied = count > 0 ? copyPhase(folder, count) : 0;
    const [memory, user, system] = readFileSync(usage, 'utf8').split(' ').map(Number);
    return { ms, copied, cpu: (user + system) * 1000, memory: memory / 1024 };
  }

  /** Makes the machine one that has neither product again. */
  async function clean(after) {
    for (const place of ['C:\\Program Files\\Brackenfold', 'C:\\ProgramData\\Brackenfold']) {
      rmSync(machine.path(place), { recursive: true, force: true });
    }
    if (after === 'installer' || after === 'package') {
      await machine.install('-u');
    }
  }

  const contestants = {
    installer: (count) => run('the installer', installer, ['--source', `C:\\Source${count}`, '--silent'], count),
    package: (count) => run('the NSIS package', `C:\\Package${count}.exe`, ['/S'], count),
    loop: async (count) => {
      mkdirSync(dirname(folder), { recursive: true });
      return run('the loop', 'C:\\ORVANTA_COPY_LOOP.exe', [`C:\\Source${count}\\many\\`, `${target}\\`], count);
    },
    nothing: () => run('the program that does nothing', 'C:\\ORVANTA_NOTHING.exe', [], 0),
  };

  await machine.install('-u'); // the first program of a machine waits for its services
  showProgress('seeing that installer and package do the same');
  const outcomes = [];
  for (const name of ['installer', 'package']) {
    rmSync(machine.path('C:\\schtasks.log'), { force: true });
    await contestants[name](0);
    // What may differ: the size of the updaters and uninstallers, and the date of the installation.
    const { hosts, manifests, service, task_calls: taskCalls, shortcut } = await machine.report();
    outcomes.push(JSON.stringify({ hosts, manifests, service, taskCalls, shortcut }));
    await clean(name);
  }
  if (outcomes[0] !== outcomes[1]) {
    throw new Error(`the NSIS package does not what the installer does:\n${outcomes.join('\n')}`);
  }
  const results = [];
  for (const count of fileCounts) {
    const names = ['installer', ...(count <= most_packaged ? ['package'] : []),
      // Without files there is nothing to copy in a loop; what a start costs is asked once.
      count === 0 ? 'nothing' : 'loop'];
    const result = Object.fromEntries(names.map((name) => [name, { ms: [], copied: [], cpu: [], memory: [] }]));
    for (let round = 0; round < rounds; ++round) {
      showProgress(`${count} files beside the sample products, round ${round + 1} of ${rounds}`);
      // Each has every place in the order as often as the others.
      const order = names.map((_, i) => names[(i + round) % names.length]);
      for (const name of order) {
        for (const [figure, value] of Object.entries(await contestants[name](count))) {
          result[name][figure].push(value);
        }
        await clean(name);
      }
    }
    results.push([count, result]);
  }
  showProgress('');

  const few = (samples) => (median(samples) < least_ms ? `(${samples.map((value) => value.toFixed(0)).join(', ')})` : cell(samples));
  const each = (samples, count) => cell(samples.map((value) => value / count * 1000));
  console.log(`\nBeside an NSIS package and a bare loop of CopyFileW: medians of ${rounds} rounds (least to most) in rotating order`);
  console.log('\nWhole silent installation, ms: the sample products and so many files of 1 kB in one folder\n');
  showTable([['files', 'installer', 'NSIS package', 'installer / package'],
    ...results.map(([count, { installer: ours, package: theirs }]) => [String(count), cell(ours.ms),
      ...(theirs ? [cell(theirs.ms), cell(ratios(ours.ms, theirs.ms), 2)] : ['-', '-'])])]);
  console.log(`\nCopying of these files alone, ms (single values where it took less than ${least_ms} ms)\n`);
  showTable([['files', 'installer', 'loop', 'NSIS package', 'installer / loop', 'installer, per 1,000', 'loop, per 1,000'],
    ...results.filter(([count]) => count > 0).map(([count, { installer: ours, loop, package: theirs }]) => [
      String(count), few(ours.copied), few(loop.copied), theirs ? few(theirs.copied) : '-',
      ...(median(loop.copied) < least_ms ? ['-', '-', '-']
        : [cell(ratios(ours.copied, loop.copied), 2), each(ours.copied, count), each(loop.copied, count)])])]);

  const samples = Object.fromEntries(results);
  console.log('\nThe same by processor time of the program, ms, which a busy machine changes least: its share for these files\n');
  const share = (count, name) => samples[count][name].cpu.map((value) => value - median(samples[0][name === 'loop' ? 'nothing' : name].cpu));
  showTable([['files', 'installer', 'loop', 'installer / loop'],
    ...fileCounts.filter((count) => count >= 1000).map((count) => [String(count), cell(share(count, 'installer')),
      cell(share(count, 'loop')), cell(ratios(share(count, 'installer'), share(count, 'loop')), 2)])]);
  const nothing = median(samples[0].nothing.memory);
  console.log(`\nMemory at its peak, above the ${nothing.toFixed(1)} MB of a program that does nothing`
    + ` (${cell(samples[0].nothing.ms)} ms from start to end)\n`);
  const above = (what, count, name) => show(`${what}, ${count} files`,
    samples[count][name].memory.map((value) => value - nothing), 'MB');
  for (const count of [0, most_packaged]) {
    above('installer', count, 'installer');
    above('NSIS package', count, 'package');
  }
  above('loop', most_packaged, 'loop');
  above('installer', fileCounts.at(-1), 'installer');
  above('loop', fileCounts.at(-1), 'loop');
}
