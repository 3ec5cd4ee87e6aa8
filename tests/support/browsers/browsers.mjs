// The browsers that the tests expect the installer to know, in its order; the C++ tests have the same list.

import { readFileSync } from 'node:fs';

/**
 * `name` is what the user reads, `storeName` what the page writes on buttons, `program` the file name of the program,
 * `settings` the browser's key below SOFTWARE, `path` the program's place below a folder such as Program Files, and
 * `installedIn` the folder that it is usually installed in.
 */
export const browsers = JSON.parse(readFileSync(new URL('browsers.json', import.meta.url), 'utf8'));

export const browserNames = browsers.map(({ name }) => name);

/** What the page calls each browser on its buttons, by name. */
export const storeNames = Object.fromEntries(browsers.map(({ name, storeName }) => [name, storeName]));
