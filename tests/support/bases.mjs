// What differs between the systems that the tests run on: Debian 12 has Wine 8, Debian 13 has Wine 10.

import { execFileSync } from 'node:child_process';
import { fileURLToPath } from 'node:url';

const wine64 = fileURLToPath(new URL('../../tools/wine/wine64', import.meta.url));

/** The version of the Wine that machines run under, such as 8 or 10.2. */
export const wineVersion = Number(
  /^wine-(\d+(\.\d+)?)/.exec(execFileSync(wine64, ['--version'], { encoding: 'utf8' }))[1]);

/**
 * The reason to skip a test that this system cannot run. run_node_tests.mjs knows it by its beginning, and the run
 * says at its end what it did without.
 */
export const notOnThisBase = (reason) => `not on this base: ${reason}`;

/**
 * Whether a copy over a file that is there has the attributes of its source, as on Windows. Under Wine 8 the file that
 * is there keeps its own.
 */
export const copyTakesAttributes = wineVersion >= 10;
