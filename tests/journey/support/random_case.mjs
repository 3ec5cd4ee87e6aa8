// A machine before an installation, made up by a seed, and how the installer is started there.

import { readFileSync } from 'node:fs';
import { built } from './machine.mjs';
import { addLeftovers, featuresOfLeftovers } from './random_leftovers.mjs';
import { randomOf } from './random.mjs';
import { addLinks, featuresOfSource, makeSource } from './random_source.mjs';
import { flipped, randomFile } from './random_trees.mjs';
import { copyOf, entry, file, folder, grow, put, remove } from './tree.mjs';

/** All that a case can hold. */
export const everyFeature = [...featuresOfSource, ...featuresOfLeftovers,
  'installer renamed', 'installer elsewhere', 'its name in the source', 'its name in other letter case',
  'source missing', 'source spelled otherwise', 'earlier installation', 'installed again from its copy',
];

const usualName = 'OrvantaInstaller.exe';
const otherNames = ['Setup ü 1.0.exe', 'VeyraLinkwardInstaller.exe', 'updater.exe', 'OrvantaInstaller.pem',
  'no ending'];
const spellings = ['C:\\SETUP', 'C:\\Setup\\', 'C:/Setup', 'c:\\Medium\\..\\setup\\.'];

const installerFile = () => file(readFileSync(built('ORVANTA_PROGRAM')));

/** Puts a node in the place of what has its name, in this spelling. */
function replace(parent, name, node) {
  remove(parent, name);
  put(parent, name, node);
}

/** Puts the installer somewhere. Returns how it is started. */
function placeInstaller(random, root, source) {
  const name = random.holds(25, 'installer renamed') ? random.pick(otherNames) : usualName;
  if (!random.holds(35, 'installer elsewhere')) {
    replace(source, name, installerFile());
    return { programPath: `Setup/${name}`, sourcePath: 'Setup', options: [] };
  }
  put(grow(root, 'Medium'), name, installerFile());
  const programPath = `Medium/${name}`;
  if (random.holds(25, 'its name in the source')) {
    replace(source, name, randomFile(random));
  } else if (random.holds(25, 'its name in other letter case')) {
    replace(source, flipped(name), randomFile(random));
  }
  if (random.holds(6, 'source missing')) {
    return { programPath, sourcePath: 'Nowhere', options: ['--source', 'C:\\Nowhere'] };
  }
  const spelling = random.holds(60, 'source spelled otherwise') ? random.pick(spellings) : 'C:\\Setup';
  return { programPath, sourcePath: 'Setup', options: ['--source', spelling] };
}

/** The source of an earlier edition, which shares some names with `source`. */
function makeEarlierSource(random, source) {
  const earlier = makeSource(random);
  for (const { name, node } of source.entries.values()) {
    if (node.kind !== 'link' && random.chance(30) && !entry(earlier, name)) {
      put(earlier, name, copyOf(node));
    }
  }
  replace(earlier, usualName, installerFile());
  return earlier;
}

/**
 * The case of a seed: `root` is what is on drive C besides what every machine has, `start` how the installer is
 * started, `earlier` how an installation before that one is, where there is one, and `again` whether the installed
 * copy installs once more.
 */
export function makeCase(seed) {
  const random = randomOf(seed);
  const root = folder();
  ['Program Files', 'ProgramData'].forEach((name) => put(root, name, folder()));
  const source = put(root, 'Setup', makeSource(random));
  if (random.chance(30)) {
    addLinks(random, root, source);
  }
  if (random.chance(75)) {
    addLeftovers(random, root, source);
  }
  const start = placeInstaller(random, root, source);
  let earlier;
  if (random.holds(30, 'earlier installation')) {
    put(root, 'Earlier', makeEarlierSource(random, source));
    earlier = { programPath: `Earlier/${usualName}`, sourcePath: 'Earlier', options: [] };
  }
  const again = random.holds(12, 'installed again from its copy');
  return { root, start, earlier, again, features: random.features };
}
