// Makes the setup file: the program and the product files in one program that unpacks them and starts it.
//
//   node tools/release/make_setup.mjs --program FILE --map FILE --products FOLDER --out FILE
//
// --program is what customers get (signed, if it is to be), --map its linker's map. tools/release/setup.nsi is what
// happens on the customer's machine.

import { spawnSync } from 'node:child_process';
import { copyFileSync, mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { parseArgs } from 'node:util';
import { releaseFacts } from './facts.mjs';
import { linkedLibraries, setupStub } from './linked_libraries.mjs';
import { thirdPartyNotices } from './notices.mjs';
import { productFiles } from './products.mjs';

const root = fileURLToPath(new URL('../../', import.meta.url));

/** A text as it stands between the quotes of a script: file names hold no quotes. */
const scriptText = (text) => text.replaceAll('$', '$$$$');

/** The part of the script that unpacks these files, whose contents lie in files named by their numbers. */
function unpackingScript(names) {
  const folders = new Set(names.flatMap((name) => {
    const parents = name.split('/').slice(0, -1);
    return parents.map((_, i) => parents.slice(0, i + 1).join('/'));
  }));
  const target = (name) => `$folder\\${scriptText(name).replaceAll('/', '\\')}`;
  return [
    ...[...folders].sort().map((folder) => `CreateDirectory "${target(folder)}"\n`),
    ...names.map((name, i) => `File "/oname=${target(name)}" ${i}\n`),
  ].join('');
}

function makeSetup({ program, map, products, out }) {
  const facts = releaseFacts();
  const notices = Buffer.from(thirdPartyNotices(facts, linkedLibraries(map), setupStub()));
  // Licence and notices are installed with the products, beside the copy of the program that stays there.
  const files = [
    ['OrvantaInstaller-LICENSE.txt', join(root, 'LICENSE')], ['OrvantaInstaller-NOTICES.txt', notices],
    ['OrvantaInstaller.exe', program],
    ...productFiles(products, facts).map((file) => [file, join(products, file)]),
  ].sort();
  const staged = mkdtempSync(join(tmpdir(), 'orvanta-setup-'));
  try {
    files.forEach(([, content], i) => {
      if (Buffer.isBuffer(content)) {
        writeFileSync(join(staged, String(i)), content);
      } else {
        copyFileSync(content, join(staged, String(i)));
      }
    });
    copyFileSync(join(root, 'resources/app.ico'), join(staged, 'app.ico'));
    writeFileSync(join(staged, 'files.nsh'), unpackingScript(files.map(([name]) => name)));
    const values = {
      OUTPUT: 'made.exe', FILES: 'files.nsh', ICON: 'app.ico', VERSION: facts.version,
      COMPANY: facts.publisher, PRODUCT: facts.productName, COPYRIGHT: facts.fileCopyright,
    };
    const made = spawnSync('makensis', ['-V2', '-WX', '-NOCONFIG', '-NOCD', '-INPUTCHARSET', 'UTF8',
      ...Object.entries(values).map(([name, value]) => `-D${name}=${scriptText(value)}`),
      join(root, 'tools/release/setup.nsi')], {
      cwd: staged, encoding: 'utf8',
      env: {
        PATH: process.env.PATH, TZ: 'UTC', LC_ALL: 'C.UTF-8', SOURCE_DATE_EPOCH: String(facts.time.getTime() / 1000),
      },
    });
    if (made.status !== 0) {
      throw new Error(`makensis could not make the setup file: ${made.error?.message ?? made.stdout + made.stderr}`);
    }
    copyFileSync(join(staged, 'made.exe'), out);
  } finally {
    rmSync(staged, { recursive: true });
  }
}

const { values } = parseArgs({
  options: Object.fromEntries(['program', 'map', 'products', 'out'].map((name) => [name, { type: 'string' }])),
});
try {
  makeSetup(values);
} catch (error) {
  console.error(`make_setup: ${error.message}`);
  process.exitCode = 1;
}
