// How far a run of the installer is, as one sees it from outside.

import { existsSync } from 'node:fs';
import { join } from 'node:path';
import { consolePlace, dataPlace, linkwardPlace } from './product_model.mjs';
import { at, file, folder, put } from './tree.mjs';

const shelves = 6;
const booksPerShelf = 25;
const bookPath = (random) => `library/shelf ${random.below(shelves)}/book ${random.below(booksPerShelf)}.txt`;

/** Adds enough to a source that an installation and a removal take a while. */
export function addLibrary(random, source) {
  const library = put(source, 'library', folder());
  for (let shelf = 0; shelf < shelves; ++shelf) {
    const place = put(library, `shelf ${shelf}`, folder());
    for (let book = 0; book < booksPerShelf; ++book) {
      put(place, `book ${book}.txt`, file(random.bytes(random.below(4000)), { readOnly: random.chance(10) }));
    }
  }
  put(source, 'map.bin', file(Buffer.alloc(6000000, random.bytes(4099))));
}

const shortcut = (machine) => `users/${machine.user}/Desktop/Fortwright Console.lnk`;
const taskCalls = 'schtasks.log';

/** Files of the library come twice, because most of the work is theirs. */
const filesOfLinkward = (random) => [bookPath(random), bookPath(random), 'map.bin', 'VeyraLinkwardInstaller.exe']
  .map((path) => `${linkwardPlace}/${path}`);

/** Files that an installation changes one after the other; `state` is what it leads to. */
export const milestonesOfInstallation = (machine, random, { root, hasConsole }) => [
  ...[`${consolePlace}/Fortwright.exe`, `${consolePlace}/updater.exe`, ...filesOfLinkward(random),
    `${linkwardPlace}/com.veyra.linkward.chromium.json`, `${linkwardPlace}/com.veyra.linkward.firefox.json`,
  ].filter((path) => at(root, path)?.kind === 'file'),
  ...(hasConsole ? [shortcut(machine), taskCalls] : []),
];

/** Files that a removal changes one after the other. */
export const milestonesOfRemoval = (machine, random) => [taskCalls, shortcut(machine), `${consolePlace}/updater.exe`,
  ...filesOfLinkward(random), `${linkwardPlace}/VeyraLinkward.exe`, `${dataPlace}/logs`,
].filter((path) => existsSync(join(machine.drive, path)));
