// What earlier times have left on a machine, made up by a seed's random choices.

import { consolePlace, dataPlace, firefoxAddonId, firefoxAddons, linkwardPlace, makers } from './product_model.mjs';
import { fill, flipped, occupy, randomFile } from './random_trees.mjs';
import { at, file, folder, grow, link, put, remove } from './tree.mjs';

export const featuresOfLeftovers = [
  'makers spelled otherwise', 'left in the console folder', 'left in the install folder', 'left in the data folder',
  'read-only target', 'file for folder', 'folder for file', 'neighbours', 'Firefox entries', 'link to somebody else',
  'file for a whole place',
];

const plainFile = { kind: 'file' };
const ownFiles = ['Fortwright.exe', 'WebView2Loader.dll', 'updater.exe'].map((name) => ({ name, node: plainFile }));
const installerCopy = { name: 'VeyraLinkwardInstaller.exe', node: plainFile };

/** Leaves something in a place, some of it where an installation of the entries `coming` puts its own. */
function leave(random, root, path, coming) {
  const place = grow(root, path);
  fill(random, place, { room: 100, depth: 1, atMost: 6 });
  for (const { name, node } of coming) {
    if (random.chance(30)) {
      occupy(random, place, name, node);
    }
  }
}

/** Adds things in the places that an installation of `source` writes to, and beside them. */
export function addLeftovers(random, root, source) {
  const coming = [...source.entries.values()].filter(({ node }) => node.kind !== 'link');
  const endingIn = (ending) => coming.filter(({ name }) => name.toLowerCase().endsWith(ending));
  if (random.holds(10, 'makers spelled otherwise')) {
    grow(root, `Program Files/${flipped('Brackenfold')}`);
    grow(root, `ProgramData/${flipped('Brackenfold/Veyra Linkward')}`);
  }
  if (random.holds(50, 'left in the console folder')) {
    leave(random, root, consolePlace, ownFiles);
  }
  if (random.holds(70, 'left in the install folder')) {
    leave(random, root, linkwardPlace, [...coming, installerCopy]);
    if (at(root, `${linkwardPlace}/extensions`)?.kind !== 'file') {
      leave(random, root, `${linkwardPlace}/extensions`, endingIn('.crx'));
    }
  }
  if (random.holds(50, 'left in the data folder')) {
    leave(random, root, dataPlace, endingIn('.vybf'));
  }
  if (random.holds(40, 'neighbours')) {
    fill(random, grow(root, `${makers}/Other product`), { room: 100, depth: 1 });
    put(grow(root, 'ProgramData/Brackenfold'), 'neighbour.vybf', randomFile(random));
  }
  if (random.holds(25, 'Firefox entries')) {
    const addons = grow(root, firefoxAddons);
    put(addons, firefoxAddonId,
      random.chance(50) ? randomFile(random) : fill(random, folder(), { room: 60, depth: 2 }));
    put(addons, `${firefoxAddonId}.xpi`, randomFile(random));
  }
  if (random.holds(15, 'link to somebody else')) {
    put(fill(random, grow(root, 'Elsewhere/somebody'), { room: 60, depth: 1 }), 'important.txt', randomFile(random));
    put(grow(root, linkwardPlace), 'somebody', link('Elsewhere/somebody'));
  }
  if (random.holds(12, 'file for a whole place')) {
    const path = random.pick([makers, consolePlace, linkwardPlace, `${linkwardPlace}/extensions`,
      'ProgramData/Brackenfold', dataPlace, `${dataPlace}/logs`]);
    const cut = path.lastIndexOf('/');
    const parent = grow(root, path.slice(0, cut));
    remove(parent, path.slice(cut + 1));
    put(parent, path.slice(cut + 1), file('in the way'));
  }
}
