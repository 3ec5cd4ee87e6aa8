// Product files made up by a seed's random choices: what a source folder holds.

import { readFileSync } from 'node:fs';
import { join } from 'node:path';
import { built } from './machine.mjs';
import { deepen, fill, flipped, foldersOf, largeFile, randomFile, roomOfSource } from './random_trees.mjs';
import { file, folder, grow, link, put } from './tree.mjs';

export const featuresOfSource = [
  'no console program', 'folder for the console program', 'no console library', 'folder for the console library',
  'no service program', 'updater', 'other letter case', 'file named as the installer copy',
  'folder named as the installer copy', 'file named as a manifest', 'folder named as a manifest',
  'file named extensions', 'folder named extensions', 'file named logs', 'folder named logs', 'deep folders',
  'large file', 'empty folder', 'read-only file', 'link to a folder', 'link to a file', 'link to nothing',
];

const spelled = (random, name) => (random.holds(10, 'other letter case') ? flipped(name) : name);

function addConsoleFile(random, source, name, what) {
  if (random.holds(10, `no ${what}`)) {
    return;
  }
  const isFolder = random.holds(4, `folder for the ${what}`);
  put(source, isFolder ? name : spelled(random, name),
    isFolder ? fill(random, folder(), { room: 60, depth: 2 }) : randomFile(random));
}

/** The service runs for real; what follows the program in its file tells one edition from another. */
const serviceProgram = (random) => file(Buffer.concat(
  [readFileSync(join(built('ORVANTA_SAMPLE_PRODUCTS'), 'VeyraLinkward.exe')), random.bytes(8)]));

/** A source folder, without the installer. */
export function makeSource(random) {
  const source = folder();
  addConsoleFile(random, source, 'Fortwright.exe', 'console program');
  addConsoleFile(random, source, 'WebView2Loader.dll', 'console library');
  if (!random.holds(30, 'no service program')) {
    put(source, spelled(random, 'VeyraLinkward.exe'), serviceProgram(random));
  }
  put(source, 'VeyraLinkwardCommunicator.exe', randomFile(random));
  if (random.holds(15, 'updater')) {
    put(source, spelled(random, 'updater.exe'), randomFile(random));
  }
  // Names that the installation gives to things of its own.
  for (const [name, words] of [['VeyraLinkwardInstaller.exe', 'named as the installer copy'],
    ['com.veyra.linkward.chromium.json', 'named as a manifest'], ['extensions', 'named extensions'],
    ['logs', 'named logs']]) {
    if (random.holds(10, `folder ${words}`)) {
      put(source, name, fill(random, folder(), { room: 100, depth: 2 }));
    } else if (random.holds(8, `file ${words}`)) {
      // Not read-only: Wine lets root write a manifest into such a file, Windows lets nobody.
      put(source, name, file(random.bytes(40)));
    }
  }
  fill(random, source, { room: roomOfSource });
  if (random.holds(25, 'deep folders')) {
    deepen(random, put(source, 'deep', folder()), { room: roomOfSource - 5 });
  }
  if (random.holds(25, 'large file')) {
    put(random.pick(foldersOf(source)), 'large.bin', largeFile(random));
  }
  if (random.holds(30, 'empty folder')) {
    put(random.pick(foldersOf(source)), 'empty folder', folder());
  }
  if (foldersOf(source).some(({ entries }) => [...entries.values()].some(({ node }) => node.readOnly))) {
    random.features.add('read-only file');
  }
  return source;
}

/**
 * Adds links to a source, which lead to a folder beside it. None leads to a folder above itself. Wine does not show
 * one that leads nowhere.
 */
export function addLinks(random, root, source) {
  const elsewhere = fill(random, grow(root, 'Elsewhere'), { room: 100, depth: 1 });
  put(elsewhere, 'folder', fill(random, folder(), { room: 60, depth: 2 }));
  put(elsewhere, 'file.txt', randomFile(random));
  for (const [feature, name, to] of [['link to a folder', 'linked folder', 'folder'],
    ['link to a file', 'linked.txt', 'file.txt'], ['link to a file', 'linked.vybf', 'file.txt'],
    ['link to nothing', 'lost.txt', 'nowhere']]) {
    if (random.holds(50, feature)) {
      put(random.pick(foldersOf(source)), name, link(`Elsewhere/${to}`));
    }
  }
}
