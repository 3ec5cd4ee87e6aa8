// ./release: what it refuses, and what it makes of a finished program, signed and unsigned, in clones of the tree.

import assert from 'node:assert/strict';
import { execFileSync, spawnSync } from 'node:child_process';
import { createHash } from 'node:crypto';
import {
  cpSync, existsSync, mkdirSync, mkdtempSync, readdirSync, readFileSync, rmSync, symlinkSync, writeFileSync,
} from 'node:fs';
import { createServer } from 'node:http';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { after, test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { faultsOf } from '../../tools/release/check_sbom.mjs';
import { foreignObjects } from '../../tools/release/linked_libraries.mjs';
import { built, startCommand } from './support/machine.mjs';

const tree = fileURLToPath(new URL('../../', import.meta.url));
const program = built('ORVANTA_PROGRAM');
const map = program.replace(/\.exe$/, '.map');

const work = mkdtempSync(join(tmpdir(), 'orvanta-release-test-'));
after(() => rmSync(work, { recursive: true }));

/** The sample products, without the keys among them, which are there to be left out by an installation. */
const products = join(work, 'products');
cpSync(built('ORVANTA_SAMPLE_PRODUCTS'), products, { recursive: true, filter: (file) => !file.endsWith('.pem') });

const identity = {
  GIT_AUTHOR_NAME: 'A', GIT_AUTHOR_EMAIL: 'a@brackenfold.example', GIT_AUTHOR_DATE: '2026-05-04T03:02:02Z',
  GIT_COMMITTER_NAME: 'A', GIT_COMMITTER_EMAIL: 'a@brackenfold.example', GIT_COMMITTER_DATE: '2026-05-04T03:02:02Z',
  GIT_CONFIG_GLOBAL: '/dev/null',
};
const git = (folder, ...args) => execFileSync('git', ['-C', folder, ...args], {
  encoding: 'utf8', env: { ...process.env, ...identity }, stdio: ['ignore', 'pipe', 'pipe'],
}).trim();

/** A repository of the tree as it is now, changes that are not committed included. */
const origin = join(work, 'origin');
mkdirSync(origin);
for (const file of git(tree, 'ls-files', '-co', '--exclude-standard').split('\n')) {
  if (existsSync(join(tree, file))) {
    cpSync(join(tree, file), join(origin, file));
  }
}
git(origin, 'init', '-q');
git(origin, 'add', '-A');
git(origin, 'commit', '-q', '-m', 'All of it');
const version = /project\(OrvantaInstaller VERSION (\S+)/.exec(readFileSync(join(origin, 'CMakeLists.txt'), 'utf8'))[1];

let clones = 0;
function clone(name = `clone ${++clones}`) {
  git(work, 'clone', '-q', origin, name);
  return join(work, name);
}

const withoutPassword = { ...process.env };
delete withoutPassword.ORVANTA_SIGN_PASSWORD;

function run(folder, command, args, environment = {}) {
  const { status, stdout, stderr } = spawnSync(join(folder, command), args,
    { cwd: folder, encoding: 'utf8', env: { ...withoutPassword, ...identity, ...environment } });
  return { status, stdout, stderr };
}
const release = (folder, ...args) => run(folder, 'release', args);
const refused = (because) => ({ status: 3, stdout: '', stderr: `release: ${because}\n` });

function replaceIn(folder, file, from, to) {
  const text = readFileSync(join(folder, file), 'utf8');
  assert.ok(text.includes(from), from);
  writeFileSync(join(folder, file), text.replace(from, to));
}

const sha256 = (bytes) => createHash('sha256').update(bytes).digest('hex');
const filesBelow = (folder) => readdirSync(folder, { recursive: true, withFileTypes: true })
  .filter((entry) => entry.isFile()).map((entry) => join(entry.path, entry.name).slice(folder.length + 1)).sort();
const contents = (folder) => Object.fromEntries(filesBelow(folder).map((name) => [name, sha256(readFileSync(join(folder, name)))]));

function makeDist(folder, out, { from = program, built: unsigned = program, mapFile = map, shipped } = {}) {
  const { status, stdout, stderr } = spawnSync('node', [join(folder, 'tools/release/make_dist.mjs'), '--program', from,
    '--built', unsigned, '--map', mapFile, '--out', out, ...shipped ? ['--products', shipped] : []],
  { cwd: work, encoding: 'utf8', env: { ...process.env, TZ: out.includes('second') ? 'Asia/Tokyo' : 'UTC' } });
  return { status, stdout, stderr };
}
const done = { status: 0, stdout: '', stderr: '' };

test('help tells files, options and exit codes', () => {
  const { status, stdout, stderr } = release(tree, '--help');
  assert.deepEqual([status, stderr], [0, '']);
  for (const word of ['./release --check', '--products', '--sign', '--password-file', '--timestamp', 'SHA256SUMS',
    'exit code']) {
    assert.ok(stdout.includes(word), word);
  }
});

for (const [args, because] of [
  [['--fast'], "unknown argument '--fast'; ./release --help explains"],
  [[''], "unknown argument ''; ./release --help explains"],
  [['--sign'], '--sign needs a value; ./release --help explains'],
  [['--products', ''], '--products needs a value; ./release --help explains'],
  [['--products', '/nowhere'], "there is no folder '/nowhere'"],
  [['--timestamp', 'http://localhost'], '--timestamp means nothing without --sign'],
]) {
  test(`${args.map((arg) => arg || "''").join(' ')} gives one line and exit code 2`, () => {
    assert.deepEqual(release(tree, ...args), { status: 2, stdout: '', stderr: `release: ${because}\n` });
  });
}

test('a clean clone may be released, also with its own tag', () => {
  const folder = clone();
  const yes = { status: 0, stdout: `Version ${version} may be released from commit ${git(folder, 'rev-parse', 'HEAD')}.\n`, stderr: '' };
  assert.deepEqual(release(folder, '--check'), yes);
  git(folder, 'tag', '-a', '-m', 'It', `v${version}`);
  assert.deepEqual(release(folder, '--check'), yes);
});

test('a tree with changes is refused: changed, new, staged', () => {
  const folder = clone();
  writeFileSync(join(folder, 'new file'), '');
  const because = 'there are changes that are not committed:';
  assert.deepEqual(release(folder), refused(`${because} "new file"`));
  git(folder, 'add', 'new file');
  assert.deepEqual(release(folder, '--check'), refused(`${because} "new file"`));
  git(folder, 'rm', '-qf', 'new file');
  writeFileSync(join(folder, 'README.md'), 'Changed\n');
  assert.deepEqual(release(folder, '--check'), refused(`${because} README.md`));
  assert.equal(existsSync(join(folder, 'build')), false);
});

test('a folder that is no clone, or a part of another, is refused', () => {
  const folder = clone();
  rmSync(join(folder, '.git'), { recursive: true });
  assert.deepEqual(release(folder, '--check'), refused('this is no clone; a release is made from a commit'));
  git(work, 'init', '-q');
  assert.deepEqual(release(folder, '--check'), refused('this is no clone of its own'));
  rmSync(join(work, '.git'), { recursive: true });
});

for (const [what, to, because] of [
  ['without a section in the change log', '## 0.0.1', `CHANGELOG.md has no section for ${version}`],
  ['with a section of a longer version only', `## ${version}1`, `CHANGELOG.md has no section for ${version}`],
  ['that the change log calls unreleased', `## ${version} (Unreleased)\n\nThen`, `CHANGELOG.md still calls ${version} unreleased`],
]) {
  test(`a version ${what} is refused`, () => {
    const folder = clone();
    replaceIn(folder, 'CHANGELOG.md', `## ${version}`, to);
    git(folder, 'commit', '-qam', 'Change');
    assert.deepEqual(release(folder, '--check'), refused(because));
  });
}

test('a tag that disagrees is refused', () => {
  const folder = clone();
  const tagged = git(folder, 'rev-parse', 'HEAD');
  git(folder, 'tag', `v${version}`);
  git(folder, 'commit', '-q', '--allow-empty', '-m', 'Later');
  assert.deepEqual(release(folder, '--check'), refused(`the tag v${version} is at another commit, ${tagged.slice(0, 12)}`));
  git(folder, 'tag', '-d', `v${version}`);
  git(folder, 'tag', 'v9.8.7');
  assert.deepEqual(release(folder, '--check'), refused(`the tag v9.8.7 is at this commit, whose version is ${version}`));
});

test('two clones in folders of different names give the same bytes', () => {
  const [first, second] = ['first', 'the second'].map((name) => {
    const folder = clone(name);
    const out = join(folder, 'dist');
    assert.deepEqual(makeDist(folder, out, { shipped: products }), done);
    return contents(out);
  });
  assert.deepEqual(first, second);
  assert.deepEqual(Object.keys(first), [
    `OrvantaInstaller-${version}-x64-with-products.zip`, `OrvantaInstaller-${version}-x64.zip`,
    `OrvantaInstaller-${version}.build.json`, `OrvantaInstaller-${version}.spdx.json`, 'SHA256SUMS',
    'winget/Brackenfold.OrvantaInstaller.installer.yaml', 'winget/Brackenfold.OrvantaInstaller.locale.en-US.yaml',
    'winget/Brackenfold.OrvantaInstaller.yaml',
  ]);
});

const plain = clone('plain');
const dist = join(plain, 'dist');
const made = makeDist(plain, dist, { shipped: products });
const inDist = (name) => join(dist, `OrvantaInstaller-${version}${name}`);
const readJson = (name) => JSON.parse(readFileSync(inDist(name), 'utf8'));

test('the checksums fit all files', () => {
  assert.deepEqual(made, done);
  const check = spawnSync('sha256sum', ['--check', '--strict', '--quiet', 'SHA256SUMS'], { cwd: dist, encoding: 'utf8' });
  assert.deepEqual([check.status, check.stdout, check.stderr], [0, '', '']);
  const named = readFileSync(join(dist, 'SHA256SUMS'), 'utf8').trim().split('\n').map((line) => line.slice(66));
  assert.deepEqual(named, filesBelow(dist).filter((name) => name !== 'SHA256SUMS'));
});

test('the zip holds program, README, licence and notices, with the time of the commit and nobody\'s name', () => {
  const out = join(work, 'unzipped');
  execFileSync('unzip', ['-q', inDist('-x64.zip'), '-d', out], { env: { ...process.env, TZ: 'UTC' } });
  assert.deepEqual(filesBelow(out), ['LICENSE', 'OrvantaInstaller.exe', 'README.md', 'THIRD-PARTY-NOTICES.txt']);
  assert.deepEqual(readFileSync(join(out, 'OrvantaInstaller.exe')), readFileSync(program));
  assert.deepEqual(readFileSync(join(out, 'LICENSE')), readFileSync(join(tree, 'LICENSE')));
  const listed = execFileSync('unzip', ['-Z', '-T', inDist('-x64.zip')], { encoding: 'utf8' }).split('\n').slice(2, 6);
  for (const line of listed) {
    assert.match(line, /^-rw-r--r-- .* [bt]- defX 20260504\.030202 /);
  }
});

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

test('a program with a part of an unknown library is not packed, nor one without a map of its libraries', () => {
  const text = readFileSync(map, 'utf8');
  assert.ok(foreignObjects(text).includes('new_op.o'));
  const out = join(work, 'refused');
  for (const [changed, because] of [
    [text.replaceAll(' new_op.o:(', ' curious.o:('), /^make_dist: the program holds curious\.o, which is of no library that the notices know\n$/],
    ['', /^make_dist: \S+ names no object file of a library\n$/],
  ]) {
    const mapFile = join(work, 'changed.map');
    writeFileSync(mapFile, changed);
    const { status, stderr } = makeDist(plain, out, { mapFile });
    assert.equal(status, 1);
    assert.match(stderr, because);
    assert.equal(existsSync(out), false);
  }
});

test('the list of components is sound SPDX 2.3 and names program, libraries and their packages', () => {
  const sbom = readJson('.spdx.json');
  assert.deepEqual(faultsOf(sbom), []);
  assert.equal(sbom.creationInfo.created, '2026-05-04T03:02:02Z');
  const [installer, ...libraries] = sbom.packages;
  assert.deepEqual(installer.checksums, [{ algorithm: 'SHA256', checksumValue: sha256(readFileSync(program)) }]);
  assert.equal(installer.versionInfo, version);
  assert.deepEqual(libraries.map(({ name, licenseConcluded }) => [name, licenseConcluded]), [
    ['GCC run-time libraries (libstdc++, libgcc)', 'GPL-3.0-or-later WITH GCC-exception-3.1'],
    ['mingw-w64 run-time library and headers', 'ZPL-2.1'],
  ]);
  assert.deepEqual(sbom.relationships.map(({ relationshipType }) => relationshipType),
    ['DESCRIBES', 'STATIC_LINK', 'STATIC_LINK']);
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
    const sbom = readJson('.spdx.json');
    spoil(sbom);
    assert.notDeepEqual(faultsOf(sbom), []);
    const file = join(work, 'spoiled.json');
    writeFileSync(file, JSON.stringify(sbom));
    assert.equal(spawnSync('node', [join(tree, 'tools/release/check_sbom.mjs'), file]).status, 1);
  });
}

test('the build record names commit, program, tools and packages, and neither place nor person', () => {
  const record = readJson('.build.json');
  assert.deepEqual([record.version, record.commit, record.commit_time],
    [version, git(plain, 'rev-parse', 'HEAD'), '2026-05-04T03:02:02.000Z']);
  const hash = sha256(readFileSync(program));
  assert.deepEqual(record.program, {
    file: 'OrvantaInstaller.exe', size_bytes: readFileSync(program).length, sha256: hash, is_signed: false,
    sha256_before_signing: hash,
  });
  assert.match(record.built_with.tools['x86_64-w64-mingw32-g++-win32'], /GCC/);
  assert.equal(record.built_with.packages.cmake, execFileSync('dpkg-query', ['-W', '-f=${Version}', 'cmake'], { encoding: 'utf8' }));
  assert.equal(record.built_with.npm_lock_sha256, sha256(readFileSync(join(tree, 'package-lock.json'))));
  for (const place of [work, tree.replace(/\/$/, ''), process.env.HOME ?? '/root/']) {
    assert.equal(readFileSync(inDist('.build.json'), 'utf8').includes(place === '/' ? '/root/' : place), false, place);
  }
});

test('the zip with products holds the program beside all of them', () => {
  const listed = execFileSync('unzip', ['-Z1', inDist('-x64-with-products.zip')], { encoding: 'utf8' }).trim().split('\n');
  assert.deepEqual(listed.sort(), ['OrvantaInstaller-LICENSE.txt', 'OrvantaInstaller-NOTICES.txt', 'OrvantaInstaller.exe',
    ...filesBelow(products)].sort());
});

test('the winget manifests say what the program does', () => {
  const manifest = (name) => readFileSync(join(dist, 'winget', `Brackenfold.OrvantaInstaller${name}.yaml`), 'utf8');
  const zip = `OrvantaInstaller-${version}-x64-with-products.zip`;
  assert.equal(manifest('.installer'), `# yaml-language-server: $schema=https://aka.ms/winget-manifest.installer.1.6.0.schema.json

PackageIdentifier: Brackenfold.OrvantaInstaller
PackageVersion: ${version}
Platform:
- Windows.Desktop
MinimumOSVersion: 10.0.15063.0
InstallerType: zip
NestedInstallerType: exe
NestedInstallerFiles:
- RelativeFilePath: OrvantaInstaller.exe
Scope: machine
InstallModes:
- interactive
- silent
- silentWithProgress
InstallerSwitches:
  Silent: --silent
  SilentWithProgress: --silent
ExpectedReturnCodes:
- InstallerReturnCode: 1
  ReturnResponse: contactSupport
- InstallerReturnCode: 3
  ReturnResponse: contactSupport
UpgradeBehavior: install
ElevationRequirement: elevationRequired
ReleaseDate: 2026-05-04
AppsAndFeaturesEntries:
- DisplayName: Fortwright Console
  Publisher: Brackenfold LTD
  DisplayVersion: ${version}
  ProductCode: FortwrightConsole
- DisplayName: Veyra Linkward
  Publisher: Brackenfold
  DisplayVersion: ${version}
  ProductCode: VeyraLinkward
Installers:
- Architecture: x64
  InstallerUrl: https://www.brackenfold.example/download/${version}/${zip}
  InstallerSha256: ${sha256(readFileSync(join(dist, zip))).toUpperCase()}
ManifestType: installer
ManifestVersion: 1.6.0
`);
  assert.match(manifest(''), /\nDefaultLocale: en-US\nManifestType: version\nManifestVersion: 1\.6\.0\n$/);
  assert.match(manifest('.locale.en-US'), /\nPackageName: Orvanta Installer\nLicense: MIT\n/);
});

for (const [what, spoil, because] of [
  ['a key', (folder) => writeFileSync(join(folder, 'signing.PEM'), ''), 'signing.PEM among the products is a key, which nobody else may get'],
  ['a link', (folder) => symlinkSync('/etc', join(folder, 'more')), 'more among the products is neither a file nor a folder'],
  ['an installer of its own', (folder) => writeFileSync(join(folder, 'orvantainstaller.exe'), ''), 'orvantainstaller.exe is among the products; the release brings its own'],
  ['no console', (folder) => rmSync(join(folder, 'Fortwright.exe')), 'Fortwright.exe is missing among the products'],
  ['no service', (folder) => rmSync(join(folder, 'VeyraLinkward.exe')), 'VeyraLinkward.exe is missing among the products'],
]) {
  test(`a folder of products with ${what} is refused`, () => {
    const folder = mkdtempSync(join(work, 'products-'));
    cpSync(products, folder, { recursive: true });
    spoil(folder);
    const out = join(work, 'refused');
    assert.deepEqual(makeDist(plain, out, { shipped: folder }), { status: 1, stdout: '', stderr: `make_dist: ${because}\n` });
    assert.equal(existsSync(out), false);
  });
}

// Signing, with a key made for this test. Its certificate stands for a root that everybody knows.
const password = 'open sesame; $(true) "quoted"';
const inWork = (name) => join(work, name);
const openssl = (...args) => execFileSync('openssl', args, { cwd: work, stdio: 'pipe', env: { ...process.env, PASSWORD: password } });
openssl('req', '-x509', '-newkey', 'rsa:2048', '-nodes', '-keyout', 'key.pem', '-out', 'certificate.pem', '-days', '2',
  '-subj', '/CN=Signer', '-addext', 'keyUsage=critical,digitalSignature,keyCertSign', '-addext', 'extendedKeyUsage=codeSigning');
openssl('pkcs12', '-export', '-inkey', 'key.pem', '-in', 'certificate.pem', '-out', 'store.p12', '-passout', 'env:PASSWORD');
writeFileSync(inWork('password'), `${password}\n`);
writeFileSync(inWork('wrong password'), 'wrong\n');
writeFileSync(inWork('empty'), '');

const sign = (args, environment) => run(tree, 'tools/release/sign', args, environment);
const byFile = ['--password-file', inWork('password')];
const roots = ['--roots', inWork('certificate.pem')];

test('a signed program is the built one with a signature, and still passes every test of the program file', () => {
  const signed = inWork('signed.exe');
  assert.deepEqual(sign([program, signed, inWork('store.p12'), ...byFile, ...roots]), done);
  const bytes = readFileSync(signed);
  const original = readFileSync(program);
  const headers = original.readUInt32LE(0x3c) + 24;
  // Apart from the checksum and the place of the signature, nothing may differ.
  for (const copy of [bytes, original]) {
    copy.fill(0, headers + 64, headers + 68);
    copy.fill(0, headers + 112 + 4 * 8, headers + 112 + 5 * 8);
  }
  assert.ok(bytes.length > original.length);
  assert.ok(bytes.subarray(0, original.length).equals(original));
  const tests = fileURLToPath(new URL('program_file.test.mjs', import.meta.url));
  const again = spawnSync(process.execPath, ['--test', tests],
    { encoding: 'utf8', env: { ...process.env, ORVANTA_PROGRAM: signed, NODE_TEST_CONTEXT: undefined } });
  assert.equal(again.status, 0, again.stdout);
  const count = readFileSync(tests, 'utf8').match(/^test\(/gm).length;
  assert.match(again.stdout, new RegExp(`^[#ℹ] pass ${count}$`, 'm'));
});

test('a signed program is packed as such', () => {
  const signed = inWork('signed to pack.exe');
  assert.deepEqual(sign([program, signed, inWork('store.p12'), ...roots], { ORVANTA_SIGN_PASSWORD: password }), done);
  const out = join(plain, 'signed');
  assert.deepEqual(makeDist(plain, out, { from: signed }), done);
  const record = JSON.parse(readFileSync(join(out, `OrvantaInstaller-${version}.build.json`), 'utf8'));
  assert.deepEqual(
    [record.program.is_signed, record.program.sha256, record.program.sha256_before_signing],
    [true, sha256(readFileSync(signed)), sha256(readFileSync(program))]);
});

test('a signature that does not verify leaves no signed program', () => {
  const signed = inWork('distrusted.exe');
  // Without our certificate among the roots.
  const { status, stderr } = sign([program, signed, inWork('store.p12'), ...byFile]);
  assert.equal(status, 1);
  assert.match(stderr, /\nsign: the signature does not stand up to verification\n$/);
  assert.equal(existsSync(signed), false);
});

test('a wrong password signs nothing and is not repeated', () => {
  const signed = inWork('unsigned.exe');
  const { status, stderr } = sign([program, signed, inWork('store.p12'), '--password-file', inWork('wrong password'), ...roots]);
  assert.equal(status, 1);
  assert.match(stderr, /\nsign: the program could not be signed\n$/);
  assert.equal(stderr.includes('wrong\n'), false);
  assert.equal(existsSync(signed), false);
});

for (const [what, args, because] of [
  ['no password', [inWork('store.p12')], "needs the key's password: --password-file, or ORVANTA_SIGN_PASSWORD in the environment"],
  ['an empty password file', [inWork('store.p12'), '--password-file', inWork('empty')], `'${inWork('empty')}' is empty`],
  ['a missing password file', [inWork('store.p12'), '--password-file', '/no/file'], "there is no file '/no/file' that can be read"],
  ['a missing key store', ['/no/store', ...byFile], "there is no key store '/no/store' that can be read"],
  ['a token without its library', ['pkcs11:object=k', ...byFile], 'a key in a token needs --pkcs11-module'],
  ['a token without a certificate', ['pkcs11:object=k', '--pkcs11-module', inWork('password'), ...byFile], 'a key in a token needs --certificate'],
  ['a PIN in the address', ['pkcs11:object=k?pin-value=1234', ...byFile], 'the PIN does not belong into the address of the key'],
  ['a token\'s library for a file', [inWork('store.p12'), '--pkcs11-module', inWork('password'), ...byFile], '--pkcs11-module and --certificate are for a key in a token'],
]) {
  test(`${what} is refused before anything is built`, () => {
    assert.deepEqual(release(plain, '--sign', ...args), { status: 2, stdout: '', stderr: `sign: ${because}\n` });
  });
}

test('a key in a token signs as well', () => {
  const tokens = inWork('tokens');
  mkdirSync(tokens);
  writeFileSync(inWork('softhsm2.conf'), `directories.tokendir = ${tokens}\nobjectstore.backend = file\n`);
  const environment = { SOFTHSM2_CONF: inWork('softhsm2.conf') };
  const softhsm = (...args) => execFileSync('softhsm2-util', args, { cwd: work, stdio: 'pipe', env: { ...process.env, ...environment } });
  openssl('pkcs8', '-topk8', '-nocrypt', '-in', 'key.pem', '-out', 'key.p8');
  softhsm('--init-token', '--free', '--label', 'release', '--pin', '1234', '--so-pin', '12345678');
  softhsm('--import', 'key.p8', '--token', 'release', '--label', 'signer', '--id', 'a1', '--pin', '1234');
  const signed = inWork('by token.exe');
  assert.deepEqual(sign([program, signed, 'pkcs11:token=release;object=signer;type=private', ...roots,
    '--pkcs11-module', '/usr/lib/softhsm/libsofthsm2.so', '--certificate', inWork('certificate.pem')],
  { ...environment, ORVANTA_SIGN_PASSWORD: '1234' }), done);
  assert.ok(readFileSync(signed).length > readFileSync(program).length);
});

test('a time stamp server is asked, and what it answers is verified', async () => {
  openssl('req', '-x509', '-newkey', 'rsa:2048', '-nodes', '-keyout', 'tsa.key', '-out', 'tsa.pem', '-days', '2',
    '-subj', '/CN=Time', '-addext', 'keyUsage=critical,digitalSignature', '-addext', 'extendedKeyUsage=critical,timeStamping');
  writeFileSync(inWork('tsa.conf'), `[tsa]\ndefault_tsa = it\n[it]\nserial = ${inWork('serial')}\nsigner_cert = ${inWork('tsa.pem')}
signer_key = ${inWork('tsa.key')}\nsigner_digest = sha256\ndefault_policy = 1.2.3.4\ndigests = sha256, sha384, sha512\n`);
  writeFileSync(inWork('serial'), '01\n');
  writeFileSync(inWork('both.pem'), readFileSync(inWork('certificate.pem'), 'utf8') + readFileSync(inWork('tsa.pem'), 'utf8'));
  let isBroken = false;
  const server = createServer(async (request, response) => {
    const parts = [];
    for await (const part of request) {
      parts.push(part);
    }
    writeFileSync(inWork('query'), Buffer.concat(parts));
    openssl('ts', '-reply', '-config', 'tsa.conf', '-queryfile', 'query', '-out', 'reply');
    response.writeHead(isBroken ? 500 : 200, { 'Content-Type': 'application/timestamp-reply' });
    response.end(isBroken ? '' : readFileSync(inWork('reply')));
  });
  await new Promise((resolve) => { server.listen(0, '127.0.0.1', resolve); });
  const stamp = (signed) => startCommand(join(tree, 'tools/release/sign'), [program, signed, inWork('store.p12'), ...byFile,
    '--roots', inWork('both.pem'), '--timestamp', `http://127.0.0.1:${server.address().port}/`], withoutPassword).ended;
  try {
    assert.deepEqual(await stamp(inWork('stamped.exe')), { code: 0, stdout: '', stderr: '' });
    const shown = execFileSync('osslsigncode', ['verify', '-in', inWork('stamped.exe'), '-CAfile', inWork('both.pem'),
      '-TSA-CAfile', inWork('both.pem')], { encoding: 'utf8' });
    assert.match(shown, /CN=Time/);
    isBroken = true;
    const { code, stderr } = await stamp(inWork('unstamped.exe'));
    assert.equal(code, 1);
    assert.match(stderr, /\nsign: the program could not be signed\n$/);
    assert.equal(existsSync(inWork('unstamped.exe')), false);
  } finally {
    server.close();
  }
});
