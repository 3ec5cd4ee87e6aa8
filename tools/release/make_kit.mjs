// Makes a kit that a build has put together ready to be carried away.
//
//   node tools/release/make_kit.mjs --built FOLDER --out FOLDER
//
// --built is the kit in the build's folder, --out gets a copy of it and its zip.

import { cpSync, mkdirSync, readdirSync, rmSync, statSync } from 'node:fs';
import { join } from 'node:path';
import { parseArgs } from 'node:util';
import { releaseFacts } from './facts.mjs';
import { makeZip } from './zip.mjs';

const { values: { built, out } } = parseArgs({ options: { built: { type: 'string' }, out: { type: 'string' } } });

try {
  const { version, time } = releaseFacts();
  const kit = join(out, 'kit');
  const zip = join(out, `OrvantaInstaller-${version}-acceptance-kit.zip`);
  // What has gone wrong half-way must not be taken for a kit.
  rmSync(kit, { recursive: true, force: true });
  rmSync(zip, { force: true });
  const files = readdirSync(built, { recursive: true }).filter((name) => statSync(join(built, name)).isFile()).sort();
  mkdirSync(out, { recursive: true });
  cpSync(built, kit, { recursive: true });
  makeZip(zip, files.map((name) => [name, join(kit, name)]), time);
  console.log(`${kit}\n${zip}`);
} catch (error) {
  console.error(`make_kit: ${error.message}`);
  process.exitCode = 1;
}
