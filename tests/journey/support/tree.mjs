// Folders as values: made up, written to a drive of the host, read back and compared byte for byte.

import { createHash } from 'node:crypto';
import {
  chmodSync, lstatSync, mkdirSync, readFileSync, readdirSync, readlinkSync, statSync, symlinkSync, writeFileSync,
} from 'node:fs';
import { dirname, join, relative, resolve } from 'node:path';

// What a file or folder is:
//   { kind: 'file', bytes, readOnly }
//   { kind: 'folder', entries }             `entries` by folded name: { name, node }
//   { kind: 'link', to }                    `to` is a path from the drive's root

export const file = (bytes, { readOnly = false } = {}) => ({ kind: 'file', bytes: Buffer.from(bytes), readOnly });
export const folder = () => ({ kind: 'folder', entries: new Map() });
export const link = (to) => ({ kind: 'link', to });

/** A name as Windows compares it: without letter case, one UTF-16 unit for another. */
export const fold = (name) => name.replace(/./gsu, (letter) => {
  const upper = letter.toUpperCase();
  return upper.length === letter.length ? upper : letter;
});

export const entry = (parent, name) => parent.entries.get(fold(name));
export const child = (parent, name) => entry(parent, name)?.node;

/** Puts a node into a folder. What has the name already keeps its spelling, as on Windows. */
export function put(parent, name, node) {
  parent.entries.set(fold(name), { name: entry(parent, name)?.name ?? name, node });
  return node;
}

export const remove = (parent, name) => parent.entries.delete(fold(name));

/** The entries in the order in which NTFS, and Wine with it, gives them. */
export const inOrder = (parent) => [...parent.entries].sort(([a], [b]) => (a < b ? -1 : 1)).map(([, found]) => found);

/** The node at a path such as 'Program Files/Brackenfold', or undefined. */
export const at = (root, path) =>
  path.split('/').reduce((node, name) => (node?.kind === 'folder' ? child(node, name) : undefined), root);

/** What a node is to somebody who follows links; undefined for a link that leads nowhere. */
export const followed = (root, node) => (node?.kind === 'link' ? at(root, node.to) : node);

/** Makes a path's folders, those that are missing. */
export const grow = (root, path) =>
  path.split('/').reduce((node, name) => child(node, name) ?? put(node, name, folder()), root);

/** A tree of its own, in which every file has the attributes given. */
export function copyOf(node, attributes = {}) {
  if (node.kind !== 'folder') {
    return { ...node, ...attributes };
  }
  const entries = [...node.entries].map(([key, found]) => [key, { ...found, node: copyOf(found.node, attributes) }]);
  return { ...node, entries: new Map(entries) };
}

/** Adds what a folder holds to the host's folder `place`, on a drive whose root is `drive`. */
export function writeTree(drive, place, node) {
  mkdirSync(place, { recursive: true });
  for (const { name, node: below } of node.entries.values()) {
    const path = join(place, name);
    if (below.kind === 'folder') {
      writeTree(drive, path, below);
    } else if (below.kind === 'link') {
      symlinkSync(relative(place, join(drive, below.to)), path);
    } else {
      writeFileSync(path, below.bytes);
    }
    if (below.readOnly) {
      // The write bits are what Wine takes the read-only attribute from.
      chmodSync(path, statSync(path).mode & ~0o222);
    }
  }
}

/** The host's folder `place`, without the entries whose paths from the drive's root `isLeftOut` picks. */
export function readTree(drive, place, isLeftOut = () => false) {
  const tree = folder();
  for (const name of readdirSync(place)) {
    const path = join(place, name);
    const status = lstatSync(path);
    if (isLeftOut(relative(drive, path))) {
      continue;
    }
    if (entry(tree, name)) {
      throw new Error(`two names that Windows cannot tell apart: ${path}`);
    }
    put(tree, name, status.isDirectory() ? readTree(drive, path, isLeftOut)
      : status.isSymbolicLink() ? link(relative(drive, resolve(dirname(path), readlinkSync(path))))
        : file(readFileSync(path), { readOnly: (status.mode & 0o222) === 0 }));
  }
  return tree;
}

function* lines(node, path = '') {
  for (const { name, node: below } of node.entries.values()) {
    const place = path + name;
    yield [place, below.kind === 'folder' ? 'folder'
      : below.kind === 'link' ? `link to ${below.to}`
        : `${below.readOnly ? 'read-only ' : ''}file of ${below.bytes.length} bytes, `
          + createHash('sha1').update(below.bytes).digest('hex').slice(0, 12)];
    if (below.kind === 'folder') {
      yield* lines(below, `${place}/`);
    }
  }
}

/** In what one tree differs from the expected one: a list that is empty when both are the same. */
export function differences(actual, expected) {
  const [there, wanted] = [actual, expected].map((tree) => new Map(lines(tree)));
  return [
    ...[...wanted].filter(([path]) => !there.has(path)).map(([path, what]) => `missing: ${path} (${what})`),
    ...[...there].filter(([path]) => !wanted.has(path)).map(([path, what]) => `too much: ${path} (${what})`),
    ...[...wanted].filter(([path, what]) => there.has(path) && there.get(path) !== what)
      .map(([path, what]) => `other: ${path} (${there.get(path)} instead of ${what})`),
  ].sort();
}

/** The same for names and bytes alone, whatever the attributes. */
export const contentDifferences = (actual, expected) =>
  differences(...[actual, expected].map((tree) => copyOf(tree, { readOnly: false })));
