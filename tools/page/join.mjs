// The joined installer page without a build of the program.

import { spawnSync } from 'node:child_process';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';

export const projectFolder = fileURLToPath(new URL('../..', import.meta.url));

/** Joins the page's pieces into the file `html`, as the build does. Ends the process when they are refused. */
export function joinPage(html) {
  const step = join(projectFolder, 'src', 'ui', 'page', 'join_pieces.cmake');
  const { status, error } = spawnSync('cmake', ['-D', `HTML=${html}`, '-P', step], { stdio: 'inherit' });
  if (status !== 0) {
    console.error(error ? `cmake cannot be started: ${error.message}` : 'The page could not be joined.');
    process.exit(1);
  }
}
