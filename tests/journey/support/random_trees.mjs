// Folders and files made up by a seed's random choices.

import { child, entry, file, folder, put } from './tree.mjs';

// A name that begins with a dot is a hidden file's on Wine. Other ways to hide a file need attributes that not every
// file system of a host can keep.
const stems = ['a', 'b', 'with blank', ' blank first', '..two dots', '.dot', 'many.dots.in it', 'café', 'Ärger',
  '日本語', '🔒', 'İı', 'ﬁle', '%TEMP%', 'x&y', "it's", '[1] {2}', '-', '--uninstall', '#', 'con1', 'Fortwright',
  'webview2loader', 'updater', 'VeyraLinkward', 'long'];
const endings = ['', '.txt', '.exe', '.dll', '.EXE', '.Dll', '.json', '.pem', '.PEM', '.Pem', '.crx', '.CRX', '.vybf',
  '.VYBF', '.pem.txt', '.txt.pem', '.vybf.crx', '.crx.vybf', '.pemx', '.crx~', '.été'];
const wholeNames = ['.pem', '.crx', '.vybf', '..crx', '..pem', 'pem', 'vybf', 'crx'];
const sizes = [0, 0, 1, 17, 511, 4096, 5000, 20000];

/** Room for the names below a folder of the source, so that its copy in the install folder keeps within MAX_PATH. */
export const roomOfSource = 190;

function randomName(random, room) {
  if (random.chance(8)) {
    return random.pick(wholeNames);
  }
  const stem = random.pick(stems);
  return (stem === 'long' ? 'n'.repeat(Math.max(1, Math.min(120, room - 20))) : stem) + random.pick(endings);
}

export const randomFile = (random) => file(random.bytes(random.chance(80) ? random.pick(sizes) : random.below(3000)),
  { readOnly: random.chance(20) });

/** A file too large to be copied in one piece. */
export const largeFile = (random) => file(random.bytes(65535 + random.below(3) + random.pick([0, 0, 70000])));

/** Adds random files and folders to one that has them already; `room` is what is left for the names of a path. */
export function fill(random, parent, { room, depth = 0, atMost = 12 }) {
  for (let left = random.below(atMost + 1); left > 0; --left) {
    const name = randomName(random, room);
    if (name.length + 1 > room || entry(parent, name)) {
      continue;
    }
    if (depth < 3 && room > 40 && random.chance(30)) {
      fill(random, put(parent, name, folder()), { room: room - name.length - 1, depth: depth + 1, atMost: 4 });
    } else {
      put(parent, name, randomFile(random));
    }
  }
  return parent;
}

/** Adds a chain of folders, each with a file, as deep as the room allows. */
export function deepen(random, parent, { room }) {
  let place = parent;
  for (let left = room - 20, level = 1; left > 0; ++level) {
    const name = `level ${level}`;
    place = put(place, name, folder());
    put(place, 'here.txt', randomFile(random));
    left -= name.length + 1;
  }
  put(place, 'empty', folder());
}

/** All folders of a tree, its root first. */
export function foldersOf(parent) {
  return [parent, ...[...parent.entries.values()].filter(({ node }) => node.kind === 'folder')
    .flatMap(({ node }) => foldersOf(node))];
}

/** The same name in the other letter case, where Windows and Wine agree on what that is. */
export const flipped = (name) => name.replace(/[a-zA-Zà-öø-þÀ-ÖØ-Þ]/g, (letter) =>
  (letter === letter.toUpperCase() ? letter.toLowerCase() : letter.toUpperCase()));

/** Puts something into `parent` that an installation of `wanted` meets there; most of the time of the same kind. */
export function occupy(random, parent, name, wanted) {
  if (child(parent, name)) {
    return;
  }
  const spelled = random.chance(50) ? flipped(name) : name;
  const isOther = wanted.kind === 'folder' ? random.holds(25, 'file for folder') : random.holds(25, 'folder for file');
  if ((wanted.kind === 'folder') === isOther) {
    const { readOnly } = put(parent, spelled, randomFile(random));
    random.holds(readOnly ? 100 : 0, 'read-only target');
    return;
  }
  const place = put(parent, spelled, folder());
  put(place, 'older', randomFile(random));
  for (const { name: below, node } of wanted.kind === 'folder' ? wanted.entries.values() : []) {
    if (random.chance(40)) {
      occupy(random, place, below, node);
    }
  }
}
