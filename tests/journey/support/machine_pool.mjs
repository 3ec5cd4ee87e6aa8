// Machines that several cases use one after the other.

import { readdirSync, rmSync } from 'node:fs';
import { join } from 'node:path';
import { makeMachine } from './machine.mjs';
import { readTree, writeTree } from './tree.mjs';

const shared = ['Program Files', 'ProgramData'];

/** What the drive of a machine holds besides what every machine has, as paths from its root. */
const additions = (machine) => ['', ...shared].flatMap((place) => readdirSync(join(machine.drive, place))
  .map((name) => join(place, name)).filter((path) => !machine.given.has(path)));

/** Takes everything off the drive that a new machine does not have. */
function clean(machine) {
  for (const path of additions(machine)) {
    rmSync(join(machine.drive, path), { recursive: true });
  }
}

/**
 * `lend` runs an act with a machine whose drive holds nothing of its own yet, and with two ways to its files: `write`
 * adds a tree to the drive, `read` gives the tree of what is not a new machine's. An act that fails loses its machine.
 */
export function makeMachinePool() {
  const idle = [];
  const ends = [];

  const makeOne = async () => {
    const machine = await makeMachine({ after: (end) => ends.push(end) });
    rmSync(machine.path('C:\\Setup'), { recursive: true });
    machine.given = new Set(['', ...shared].flatMap((place) =>
      readdirSync(join(machine.drive, place)).map((name) => join(place, name))));
    machine.write = (tree) => writeTree(machine.drive, machine.drive, tree);
    // The recorder's own file is none of the program's.
    machine.read = () => readTree(machine.drive, machine.drive,
      (path) => path === 'schtasks.log' || (machine.given.has(path) && !shared.includes(path)));
    return machine;
  };

  return {
    async lend(act) {
      const machine = idle.pop() ?? await makeOne();
      await act(machine);
      clean(machine);
      idle.push(machine);
    },
    close: async () => { await Promise.all(ends.map((end) => end())); },
  };
}
