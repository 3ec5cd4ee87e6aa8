// What goes with a release on paper: notices, list of components, winget manifests.

import assert from 'node:assert/strict';
import { execFileSync, spawnSync } from 'node:child_process';
import { readFileSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { test } from 'node:test';
import { faultsOf } from '../../tools/release/check_sbom.mjs';
import { clone, makeDist, makeSetup, program, sha256, tree, version, work } from './support/release.mjs';

const plain = clone('plain');
const dist = join(plain, 'dist');
const setup = join(plain, 'setup.exe');
makeSetup(plain, setup);
makeDist(plain, dist, { setup });
const inDist = (name) => join(dist, `OrvantaInstaller-${version}${name}`);
const readSbom = () => JSON.parse(readFileSync(inDist('.spdx.json'), 'utf8'));

/** The YAML of a manifest: names with texts, with lists of texts or of records, and with records. */
function readManifest(text) {
  const result = {};
  let inside;
  for (const line of text.split('\n').filter((each) => each !== '' && !each.startsWith('#'))) {
    const [, indent, name, value] = /^(- |  )?(?:(\w+):)? ?(.*)$/.exec(line);
    if (!indent) {
      result[name] = value;
      inside = name;
      continue;
    }
    const isItem = indent === '- ';
    if (result[inside] === '') {
      result[inside] = isItem ? [] : {};
    }
    if (isItem) {
      result[inside].push(name ? {} : value);
    }
    if (name) {
      (Array.isArray(result[inside]) ? result[inside].at(-1) : result[inside])[name] = value;
    }
  }
  return result;
}

test('the notices hold each package\'s own statement and the licences that it refers to', () => {
  const notices = execFileSync('unzip', ['-p', inDist('-x64.zip'), 'THIRD-PARTY-NOTICES.txt'], { encoding: 'utf8', maxBuffer: 1e7 });
  assert.ok(notices.startsWith(`Third-party notices for Orvanta Installer ${version}\n`));
  for (const name of ['g++-mingw-w64-x86-64-win32', 'mingw-w64-x86-64-dev']) {
    const packageVersion = execFileSync('dpkg-query', ['-W', '-f=${Version}', name], { encoding: 'utf8' });
    assert.ok(notices.includes(`Debian package ${name} ${packageVersion}\n`), name);
    assert.ok(notices.includes(readFileSync(`/usr/share/doc/${name}/copyright`, 'utf8').trimEnd()), name);
  }
  for (const text of ['GCC RUNTIME LIBRARY EXCEPTION', '0. Definitions.']) {
    assert.ok(notices.includes(text), text);
  }
});

test('the list of components is sound SPDX 2.3 and names program, setup file and the code of others in both', () => {
  const sbom = readSbom();
  assert.deepEqual(faultsOf(sbom), []);
  assert.equal(sbom.creationInfo.created, '2026-05-04T03:02:02Z');
  assert.deepEqual(sbom.packages.map(({ name, licenseConcluded }) => [name, licenseConcluded]), [
    ['OrvantaInstaller', 'MIT'],
    ['GCC run-time libraries (libstdc++, libgcc)', 'GPL-3.0-or-later WITH GCC-exception-3.1'],
    ['mingw-w64 run-time library and headers', 'ZPL-2.1'],
    ['OrvantaInstaller-setup', 'NOASSERTION'],
    ['NSIS exehead with its LZMA decompressor', 'Zlib AND (CPL-1.0 WITH LZMA-exception)'],
  ]);
  for (const [name, file, path] of [['OrvantaInstaller', 'OrvantaInstaller.exe', program],
    ['OrvantaInstaller-setup', `OrvantaInstaller-${version}-x64-setup.exe`, inDist('-x64-setup.exe')]]) {
    const { checksums, versionInfo, packageFileName } = sbom.packages.find((each) => each.name === name);
    assert.deepEqual(checksums, [{ algorithm: 'SHA256', checksumValue: sha256(readFileSync(path)) }]);
    assert.deepEqual([versionInfo, packageFileName], [version, file]);
  }
  assert.deepEqual(sbom.documentDescribes, ['SPDXRef-OrvantaInstaller', 'SPDXRef-OrvantaInstaller-setup']);
  assert.deepEqual(sbom.relationships.map((each) => [each.spdxElementId, each.relationshipType, each.relatedSpdxElement]
    .map((id) => id.replace('SPDXRef-', ''))), [
    ['DOCUMENT', 'DESCRIBES', 'OrvantaInstaller'],
    ['OrvantaInstaller', 'STATIC_LINK', 'GCC-runtime'],
    ['OrvantaInstaller', 'STATIC_LINK', 'mingw-w64-runtime'],
    ['DOCUMENT', 'DESCRIBES', 'OrvantaInstaller-setup'],
    ['OrvantaInstaller-setup', 'CONTAINS', 'OrvantaInstaller'],
    ['OrvantaInstaller-setup', 'CONTAINS', 'NSIS-exehead'],
  ]);
});

for (const [what, spoil] of [
  ['another version of the form', (sbom) => { sbom.spdxVersion = 'SPDX-2.2'; }],
  ['no time', (sbom) => { delete sbom.creationInfo.created; }],
  ['a time with parts of a second', (sbom) => { sbom.creationInfo.created = '2026-05-04T03:02:02.000Z'; }],
  ['a licence that nobody has published', (sbom) => { sbom.packages[1].licenseConcluded = 'GPL-3.0-or-later WITH no-such'; }],
  ['a checksum that is too short', (sbom) => { sbom.packages[0].checksums[0].checksumValue = 'abc'; }],
  ['a relationship to nothing', (sbom) => { sbom.relationships[1].relatedSpdxElement = 'SPDXRef-Nothing'; }],
  ['the same id twice', (sbom) => { sbom.packages[1].SPDXID = sbom.packages[2].SPDXID; }],
  ['a member of its own invention', (sbom) => { sbom.packages[1].license = 'MIT'; }],
]) {
  test(`the check of the list of components finds ${what}`, () => {
    const sbom = readSbom();
    spoil(sbom);
    assert.notDeepEqual(faultsOf(sbom), []);
    const file = join(work, 'spoiled.json');
    writeFileSync(file, JSON.stringify(sbom));
    assert.equal(spawnSync('node', [join(tree, 'tools/release/check_sbom.mjs'), file]).status, 1);
  });
}

test('the winget manifests say what the setup file does', () => {
  const manifest = (name) => readFileSync(join(dist, 'winget', `Brackenfold.OrvantaInstaller${name}.yaml`), 'utf8');
  const setupName = `OrvantaInstaller-${version}-x64-setup.exe`;
  const entry = (displayName, publisher, productCode) =>
    ({ DisplayName: displayName, Publisher: publisher, DisplayVersion: version, ProductCode: productCode });
  assert.deepEqual(readManifest(manifest('.installer')), {
    PackageIdentifier: 'Brackenfold.OrvantaInstaller',
    PackageVersion: version,
    Platform: ['Windows.Desktop'],
    MinimumOSVersion: '10.0.15063.0',
    InstallerType: 'exe',
    Scope: 'machine',
    InstallModes: ['interactive', 'silent', 'silentWithProgress'],
    InstallerSwitches: { Silent: '--silent', SilentWithProgress: '--silent' },
    ExpectedReturnCodes: [1, 2, 3].map((code) => ({ InstallerReturnCode: String(code), ReturnResponse: 'contactSupport' })),
    UpgradeBehavior: 'install',
    ElevationRequirement: 'elevatesSelf',
    ReleaseDate: '2026-05-04',
    AppsAndFeaturesEntries: [entry('Fortwright Console', 'Brackenfold LTD', 'FortwrightConsole'),
      entry('Veyra Linkward', 'Brackenfold', 'VeyraLinkward')],
    Installers: [{
      Architecture: 'x64',
      InstallerUrl: `https://www.brackenfold.example/download/${version}/${setupName}`,
      InstallerSha256: sha256(readFileSync(join(dist, setupName))).toUpperCase(),
    }],
    ManifestType: 'installer',
    ManifestVersion: '1.6.0',
  });
  const { DefaultLocale: locale, ManifestType: type } = readManifest(manifest(''));
  assert.deepEqual([locale, type], ['en-US', 'version']);
  const { PackageName: name, License: licence } = readManifest(manifest('.locale.en-US'));
  assert.deepEqual([name, licence], ['Orvanta Installer', 'MIT']);
});
