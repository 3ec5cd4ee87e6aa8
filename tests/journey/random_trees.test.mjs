// Random product files, installed over what random earlier times have left and removed again. What the drive holds
// is compared byte for byte with a model that knows nothing of the program's code. ORVANTA_SEEDS=1-500 runs them all.

import assert from 'node:assert/strict';
import { after, describe, test } from 'node:test';
import { checkInstallation, checkRemoval, untouched } from './support/checked_runs.mjs';
import { makeMachinePool } from './support/machine_pool.mjs';
import { linkwardPlace } from './support/product_model.mjs';
import { everyFeature, makeCase } from './support/random_case.mjs';
import { seedsOfRun, withSeed } from './support/random.mjs';
import { at } from './support/tree.mjs';

/** Chosen so that together they hold every feature. */
const ordinarySeeds = [1, 2, 3, 4, 30, 39, 52, 120, 453];

async function checkSeed(machine, seed) {
  const { root, earlier, start, again } = makeCase(seed);
  machine.write(root);
  let state = untouched(root);
  if (earlier) {
    state = await checkInstallation(machine, state, earlier);
  }
  state = await checkInstallation(machine, state, start);
  const copyPath = `${linkwardPlace}/VeyraLinkwardInstaller.exe`;
  if (again && at(state.root, copyPath)?.kind === 'file') {
    state = await checkInstallation(machine, state, { programPath: copyPath, sourcePath: linkwardPlace, options: [] });
  }
  await checkRemoval(machine, state, start);
}

const pool = makeMachinePool();
after(() => pool.close());

test('the ordinary seeds hold everything that a case can hold', () => {
  const held = new Set(ordinarySeeds.flatMap((seed) => [...makeCase(seed).features]));
  assert.deepEqual(everyFeature.filter((feature) => !held.has(feature)), []);
});

// Two machines at a time; a minute is many times what a seed takes.
describe('random trees are installed by the rules and removed again', { concurrency: 2 }, () => {
  for (const seed of seedsOfRun(ordinarySeeds)) {
    test(`seed ${seed}`, { timeout: 60000 }, () =>
      withSeed(seed, 'random_trees', () => pool.lend((machine) => checkSeed(machine, seed))));
  }
});
