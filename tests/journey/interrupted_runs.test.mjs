// Installations and removals whose process is ended at random moments, and what a second run makes of that: after an
// installation all is as if nothing had happened, after a removal nothing is left. ORVANTA_SEEDS=1-300 runs that many.

import assert from 'node:assert/strict';
import { after, describe, test } from 'node:test';
import {
  assertInstalled, assertRemoved, checkInstallation, checkRemoval, installCommand, installedOnPaper, removeCommand,
  untouched,
} from './support/checked_runs.mjs';
import { commandToEnd, startAndKill } from './support/kill.mjs';
import { makeMachinePool } from './support/machine_pool.mjs';
import { addLibrary, milestonesOfInstallation, milestonesOfRemoval } from './support/milestones.mjs';
import { makers } from './support/product_model.mjs';
import { makeCase } from './support/random_case.mjs';
import { randomOf, seedsOfRun, withSeed } from './support/random.mjs';
import { at, contentDifferences, copyOf, differences, grow } from './support/tree.mjs';

/** Two of each kind, most of them killed while files are copied or removed. */
const ordinarySeeds = [13, 14, 27, 28, 33, 38, 39, 40];

/** How many kills found a run at its work. */
let killsAtWork = 0;

/** Kills a run of the program at a random moment, and perhaps the next one, too. */
async function killRuns(t, machine, random, command, milestones) {
  const moment = () => (random.chance(10) || milestones.length === 0 ? { milliseconds: random.below(700) }
    : { path: random.pick(milestones), milliseconds: random.below(random.pick([5, 25, 25, 400])) });
  for (let left = random.chance(25) ? 2 : 1; left > 0; --left) {
    let [before, { path, milliseconds }] = [machine.read(), moment()];
    while (!await startAndKill(machine, command, { path, milliseconds })) {
      // It was through before its moment came.
      [before, path, milliseconds] = [machine.read(), undefined, random.below(400)];
    }
    // A command that it had started goes on; nobody is so quick that the next run meets it.
    await commandToEnd(machine);
    const isAtWork = differences(machine.read(), before).length > 0;
    killsAtWork += isAtWork ? 1 : 0;
    t.diagnostic(`killed ${milliseconds} ms after ${path ?? 'the start'}, files ${isAtWork ? 'changed' : 'as before'}`);
  }
}

const killInstallation = (t, machine, random, state, start) => killRuns(t, machine, random, installCommand(start),
  milestonesOfInstallation(machine, random, installedOnPaper(state, start)));
const killRemoval = (t, machine, random, start) =>
  killRuns(t, machine, random, removeCommand(start), milestonesOfRemoval(machine, random));

/**
 * While the service runs its program cannot be replaced; a run that was ended may have stopped it. And what Wine makes
 * of the attributes of a file that is copied anew says nothing about Windows.
 */
async function installAgain(machine, before, start) {
  const { code } = await machine.run(...installCommand(start));
  const states = [before, { ...before, serviceRuns: false }].map((state) => installedOnPaper(state, start));
  return assertInstalled(machine, code, states, contentDifferences);
}

/** The makers' folders stay, also those that only a run that was ended has made. */
async function removeAgain(machine, before, start) {
  const { code } = await machine.run(...removeCommand(start));
  const root = copyOf(before.root);
  const there = machine.read();
  [makers, 'ProgramData/Brackenfold'].filter((place) => at(there, place)).forEach((place) => grow(root, place));
  await assertRemoved(machine, code, root);
}

const kinds = {
  'an installation, then installed': async (t, machine, random, state, start) => {
    await killInstallation(t, machine, random, state, start);
    await checkRemoval(machine, await installAgain(machine, state, start), start);
  },
  'a removal, then removed': async (t, machine, random, state, start) => {
    const installed = await checkInstallation(machine, state, start);
    await killRemoval(t, machine, random, start);
    await removeAgain(machine, installed, start);
  },
  'an installation, then removed': async (t, machine, random, state, start) => {
    await killInstallation(t, machine, random, state, start);
    await removeAgain(machine, state, start);
  },
  'a removal, then installed': async (t, machine, random, state, start) => {
    const installed = await checkInstallation(machine, state, start);
    await killRemoval(t, machine, random, start);
    // Without its program in the source the console stays as far removed as it is.
    const hasConsole = installed.hasConsole ? undefined : false;
    const again = await installAgain(machine, { ...installed, hasConsole, root: machine.read() }, start);
    await checkRemoval(machine, again, start);
  },
};

async function checkSeed(t, machine, seed, kind) {
  const random = randomOf(seed);
  const { root, earlier, start } = makeCase(seed);
  addLibrary(random, at(root, 'Setup'));
  machine.write(root);
  const state = earlier ? await checkInstallation(machine, untouched(root), earlier) : untouched(root);
  await kinds[kind](t, machine, random, state, start);
}

const pool = makeMachinePool();
after(() => pool.close());

const seeds = seedsOfRun(ordinarySeeds);

// Two machines at a time; the time allowed is many times what a seed takes.
describe('a second run makes good what the end of the first one has left', { concurrency: 2 }, () => {
  for (const seed of seeds) {
    const kind = Object.keys(kinds)[seed % 4];
    test(`seed ${seed}: ${kind}`, { timeout: 90000 }, (t) =>
      withSeed(seed, 'interrupted_runs', () => pool.lend((machine) => checkSeed(t, machine, seed, kind))));
  }
});

if (seeds === ordinarySeeds) {
  test('kills found runs at their work', () => {
    assert.ok(killsAtWork >= 3, `${killsAtWork} of ${seeds.length}`);
  });
}
