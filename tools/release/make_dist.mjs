// Makes the files of a release from a finished program.
//
//   node tools/release/make_dist.mjs --program FILE --built FILE --map FILE --out FOLDER [--products FOLDER]
//
// --program is what customers get, --built the same program before it was signed, --map its linker's map. Everything
// but the program comes from the tree that this script is in, and from the packages that the program was built with.

import { spawnSync } from 'node:child_process';
import { lstatSync, mkdirSync, readdirSync, readFileSync, renameSync, rmSync, statSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { parseArgs } from 'node:util';
import { output, releaseFacts, sha256 } from './facts.mjs';
import { linkedLibraries } from './linked_libraries.mjs';
import { thirdPartyNotices } from './notices.mjs';
import { spdxDocument } from './sbom.mjs';
import { wingetManifests } from './winget.mjs';
import { makeZip } from './zip.mjs';

const root = fileURLToPath(new URL('../../', import.meta.url));
const json = (value) => `${JSON.stringify(value, null, 2)}\n`;

/** What a build depends on. */
function buildTools() {
  const tools = {};
  for (const tool of ['x86_64-w64-mingw32-g++-posix', 'x86_64-w64-mingw32-windres', 'clang++', 'ld.lld', 'cmake',
    'ninja', 'node']) {
    tools[tool] = output(tool, '--version').split('\n')[0];
  }
  const packages = {};
  for (const name of output('tools/bootstrap', '--list', 'build', 'release').split('\n').sort()) {
    const version = spawnSync('dpkg-query', ['-W', '-f=${Version}', name], { encoding: 'utf8' });
    packages[name] = version.status === 0 && version.stdout !== '' ? version.stdout : null;
  }
  const system = /^PRETTY_NAME="(.*)"$/m.exec(readFileSync('/etc/os-release', 'utf8'))[1];
  return { system, tools, packages, npm_lock_sha256: sha256(join(root, 'package-lock.json')) };
}

/** The plain files below a folder, sorted by their bytes. Throws for anything that has no place in a download. */
function productFiles(folder, facts) {
  const files = [];
  const walk = (below) => {
    for (const name of readdirSync(join(folder, below))) {
      const file = join(below, name);
      const kind = lstatSync(join(folder, file));
      if (kind.isDirectory()) {
        walk(file);
      } else if (!kind.isFile()) {
        throw new Error(`${file} among the products is neither a file nor a folder`);
      } else if (/\.pem$/i.test(name)) {
        throw new Error(`${file} among the products is a key, which nobody else may get`);
      } else {
        files.push(file);
      }
    }
  };
  walk('');
  for (const file of facts.requiredFiles) {
    if (!files.includes(file)) {
      throw new Error(`${file} is missing among the products`);
    }
  }
  const clash = files.find((file) => /^orvantainstaller(\.exe|-license\.txt|-notices\.txt)$/i.test(file));
  if (clash) {
    throw new Error(`${clash} is among the products; the release brings its own`);
  }
  return files.sort();
}

function makeDist({ program, built, map, out, products }) {
  const facts = releaseFacts();
  const libraries = linkedLibraries(map);
  const toShip = products ? productFiles(products, facts) : [];
  const programSha256 = sha256(program);
  mkdirSync(out);
  const put = (name, text) => writeFileSync(join(out, name), text);

  const name = `OrvantaInstaller-${facts.version}`;
  const notices = Buffer.from(thirdPartyNotices(facts, libraries));
  const zip = `${name}-x64.zip`;
  const documents = [
    ['LICENSE', join(root, 'LICENSE')], ['README.md', join(root, 'README.md')], ['THIRD-PARTY-NOTICES.txt', notices],
  ];
  makeZip(join(out, zip), [...documents, ['OrvantaInstaller.exe', program]].sort(), facts.time);
  put(`${name}.spdx.json`, json(spdxDocument(facts, libraries, programSha256)));

  if (products) {
    // Licence and notices are installed with the products, beside the copy of the program that stays there.
    const suite = `${name}-x64-with-products.zip`;
    const ours = [['OrvantaInstaller-LICENSE.txt', join(root, 'LICENSE')], ['OrvantaInstaller-NOTICES.txt', notices],
      ['OrvantaInstaller.exe', program]];
    makeZip(join(out, suite), [...ours, ...toShip.map((file) => [file, join(products, file)])].sort(), facts.time);
    mkdirSync(join(out, 'winget'));
    const manifests = wingetManifests(facts, { zipName: suite, zipSha256: sha256(join(out, suite)) });
    for (const [file, text] of Object.entries(manifests)) {
      put(join('winget', file), text);
    }
  }

  put(`${name}.build.json`, json({
    name: 'OrvantaInstaller',
    version: facts.version,
    commit: facts.commit,
    commit_time: facts.time.toISOString(),
    program: {
      file: 'OrvantaInstaller.exe', size_bytes: statSync(program).size, sha256: programSha256,
      is_signed: programSha256 !== sha256(built), sha256_before_signing: sha256(built),
    },
    linked: libraries.map(({ name: library, package: { name: from, version } }) => ({ library, package: from, version })),
    built_with: buildTools(),
  }));

  const files = readdirSync(out, { recursive: true }).filter((file) => statSync(join(out, file)).isFile()).sort();
  put('SHA256SUMS', files.map((file) => `${sha256(join(out, file))}  ${file}\n`).join(''));
}

const { values } = parseArgs({
  options: Object.fromEntries(['program', 'built', 'map', 'out', 'products'].map((name) => [name, { type: 'string' }])),
});
try {
  // All or nothing: what has gone wrong half-way must not be taken for a release.
  const unfinished = `${values.out}.unfinished`;
  rmSync(unfinished, { recursive: true, force: true });
  makeDist({ ...values, out: unfinished });
  rmSync(values.out, { recursive: true, force: true });
  renameSync(unfinished, values.out);
} catch (error) {
  console.error(`make_dist: ${error.message}`);
  process.exitCode = 1;
}
