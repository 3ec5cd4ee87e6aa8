// Zips of which every machine makes the same bytes.

import { spawnSync } from 'node:child_process';
import { chmodSync, copyFileSync, mkdirSync, mkdtempSync, rmSync, utimesSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { basename, dirname, join } from 'node:path';

/**
 * A zip whose bytes depend on names and contents alone: one time for all, one mode, in order. `files` are pairs of a
 * name and a content, which is a Buffer or the path of a file.
 */
export function makeZip(zip, files, time) {
  const staged = mkdtempSync(join(tmpdir(), 'orvanta-release-'));
  try {
    for (const [name, content] of files) {
      const file = join(staged, name);
      mkdirSync(dirname(file), { recursive: true });
      if (Buffer.isBuffer(content)) {
        writeFileSync(file, content);
      } else {
        copyFileSync(content, file);
      }
      chmodSync(file, 0o644);
      utimesSync(file, time, time);
    }
    const made = spawnSync('zip', ['-q', '-X', '-9', 'made.zip', '-@'], {
      cwd: staged, encoding: 'utf8', input: files.map(([name]) => `${name}\n`).join(''),
      env: { PATH: process.env.PATH, TZ: 'UTC', LC_ALL: 'C.UTF-8' },
    });
    if (made.status !== 0) {
      throw new Error(`zip could not make ${basename(zip)}: ${made.stdout}${made.stderr}`);
    }
    copyFileSync(join(staged, 'made.zip'), zip);
  } finally {
    rmSync(staged, { recursive: true });
  }
}
