// A removal while somebody puts links in the place of the folders that are being removed.

import assert from 'node:assert/strict';
import { mkdirSync, readdirSync, readFileSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { test } from 'node:test';
import { dataFolder } from './support/expected_state.mjs';
import { startSwapping } from './support/folder_swapper.mjs';
import { makeMachine } from './support/machine.mjs';

const folderCount = 250;
// Enough that a removal that goes by paths touches something.
const removals = 6;
const wantedSwaps = 5000;

function write(path, text) {
  mkdirSync(join(path, '..'), { recursive: true });
  writeFileSync(path, text);
}

/** Every file below a folder of the host with its text. */
function contents(folder) {
  return Object.fromEntries(readdirSync(folder, { recursive: true, withFileTypes: true })
    .filter((entry) => entry.isFile())
    .map((entry) => join(entry.parentPath ?? entry.path, entry.name))
    .sort()
    .map((path) => [path, readFileSync(path, 'utf8')]));
}

test('nothing behind a link is touched however often folders are swapped for links during a removal', async (t) => {
  const machine = await makeMachine(t);
  const victim = machine.path('C:\\Elsewhere');
  for (let i = 0; i < 20; ++i) {
    write(join(victim, `precious ${i}.txt`), `precious ${i}`);
    write(join(victim, `deep ${i}`, 'er', 'precious.txt'), 'precious');
  }
  const before = contents(victim);
  assert.equal(Object.keys(before).length, 40);
  const data = machine.path(dataFolder);
  const away = machine.path('C:\\Away');
  mkdirSync(away);

  let swaps = 0;
  for (let removal = 1; removal <= removals; ++removal) {
    const folders = Array.from({ length: folderCount }, (_, i) => join(data, `folder ${i}`));
    for (const folder of folders) {
      write(join(folder, 'own.txt'), 'own');
      write(join(folder, 'sub', 'own.txt'), 'own');
    }
    const swapper = startSwapping(folders, victim, away);
    assert.equal((await machine.install('--uninstall')).code, 0);
    swaps += await swapper.stop();
    assert.deepEqual(contents(victim), before, `after ${removal} removals and ${swaps} swaps`);
  }
  t.diagnostic(`${swaps} links in ${removals} removals`);
  assert.ok(swaps >= wantedSwaps, `only ${swaps} swaps`);
});
