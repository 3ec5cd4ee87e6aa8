// Makes the files of a release from a finished program.
//
//   node tools/release/make_dist.mjs --program FILE --built FILE --map FILE --out FOLDER
//                                    [--setup FILE --setup-built FILE]
//
// --program is what customers get, --built the same program before it was signed, --map its linker's map; --setup and
// --setup-built are the same of a setup file that holds the program. All else comes from the tree that this script is
// in, and from the packages that the program was built with.

import { spawnSync } from 'node:child_process';
import { copyFileSync, mkdirSync, readdirSync, readFileSync, renameSync, rmSync, statSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { parseArgs } from 'node:util';
import { output, releaseFacts, sha256 } from './facts.mjs';
import { linkedLibraries, setupStub } from './linked_libraries.mjs';
import { thirdPartyNotices } from './notices.mjs';
import { spdxDocument } from './sbom.mjs';
import { wingetManifests } from './winget.mjs';
import { makeZip } from './zip.mjs';

const root = fileURLToPath(new URL('../../', import.meta.url));
const json = (value) => `${JSON.stringify(value, null, 2)}\n`;

/** What a build depends on. */
function buildTools() {
  const tools = {};
  for (const tool of ['x86_64-w64-mingw32-g++-win32', 'x86_64-w64-mingw32-windres', 'clang++', 'ld.lld', 'cmake',
    'ninja', 'node']) {
    tools[tool] = output(tool, '--version').split('\n')[0];
  }
  tools.makensis = output('makensis', '-VERSION');
  const packages = {};
  for (const name of output('tools/bootstrap', '--list', 'build', 'release').split('\n').sort()) {
    const version = spawnSync('dpkg-query', ['-W', '-f=${Version}', name], { encoding: 'utf8' });
    packages[name] = version.status === 0 && version.stdout !== '' ? version.stdout : null;
  }
  const system = /^PRETTY_NAME="(.*)"$/m.exec(readFileSync('/etc/os-release', 'utf8'))[1];
  return { system, tools, packages, npm_lock_sha256: sha256(join(root, 'package-lock.json')) };
}

/** What the build record says of a file that may have been signed. */
const fileRecord = (file, shipped, built) => ({
  file, size_bytes: statSync(shipped).size, sha256: sha256(shipped), is_signed: sha256(shipped) !== sha256(built),
  sha256_before_signing: sha256(built),
});

function makeDist({ program, built, map, out, setup, 'setup-built': setupBuilt }) {
  const facts = releaseFacts();
  const libraries = linkedLibraries(map);
  mkdirSync(out);
  const put = (name, text) => writeFileSync(join(out, name), text);

  const name = `OrvantaInstaller-${facts.version}`;
  const notices = Buffer.from(thirdPartyNotices(facts, libraries));
  const zip = `${name}-x64.zip`;
  const documents = [
    ['LICENSE', join(root, 'LICENSE')], ['README.md', join(root, 'README.md')], ['THIRD-PARTY-NOTICES.txt', notices],
  ];
  makeZip(join(out, zip), [...documents, ['OrvantaInstaller.exe', program]].sort(), facts.time);

  const setupFile = setup && { name: `${name}-x64-setup.exe`, sha256: sha256(setup), stub: setupStub() };
  if (setupFile) {
    copyFileSync(setup, join(out, setupFile.name));
    mkdirSync(join(out, 'winget'));
    for (const [file, text] of Object.entries(wingetManifests(facts, setupFile))) {
      put(join('winget', file), text);
    }
  }
  put(`${name}.spdx.json`, json(spdxDocument(facts, { libraries, programSha256: sha256(program), setupFile })));

  put(`${name}.build.json`, json({
    name: 'OrvantaInstaller',
    version: facts.version,
    commit: facts.commit,
    commit_time: facts.time.toISOString(),
    program: fileRecord('OrvantaInstaller.exe', program, built),
    ...setupFile && { setup_file: fileRecord(setupFile.name, setup, setupBuilt) },
    linked: libraries.map(({ name: library, package: { name: from, version } }) => ({ library, package: from, version })),
    built_with: buildTools(),
  }));

  const files = readdirSync(out, { recursive: true }).filter((file) => statSync(join(out, file)).isFile()).sort();
  put('SHA256SUMS', files.map((file) => `${sha256(join(out, file))}  ${file}\n`).join(''));
}

const { values } = parseArgs({
  options: Object.fromEntries(['program', 'built', 'map', 'out', 'setup', 'setup-built'].map((name) => [name, { type: 'string' }])),
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
