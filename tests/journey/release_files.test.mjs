// The files that a release makes of a finished program.

import assert from 'node:assert/strict';
import { execFileSync, spawnSync } from 'node:child_process';
import { existsSync, readFileSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { test } from 'node:test';
import { foreignObjects } from '../../tools/release/linked_libraries.mjs';
import {
  clone, done, filesBelow, git, makeDist, makeSetup, map, program, sha256, tree, version, work,
} from './support/release.mjs';

const contents = (folder) => Object.fromEntries(filesBelow(folder).map((name) => [name, sha256(readFileSync(join(folder, name)))]));

test('two clones in folders of different names give the same bytes, wherever and whenever', () => {
  const [first, second] = [['first', { TZ: 'UTC' }], ['the second', { TZ: 'Asia/Tokyo', TMPDIR: work }]].map(([name, environment]) => {
    const folder = clone(name);
    const [out, setup] = [join(folder, 'dist'), join(folder, `${name} setup.exe`)];
    assert.deepEqual(makeSetup(folder, setup, { environment }), done);
    assert.deepEqual(makeDist(folder, out, { setup, environment }), done);
    return contents(out);
  });
  assert.deepEqual(first, second);
  assert.deepEqual(Object.keys(first), [
    `OrvantaInstaller-${version}-x64-setup.exe`, `OrvantaInstaller-${version}-x64.zip`,
    `OrvantaInstaller-${version}.build.json`, `OrvantaInstaller-${version}.spdx.json`, 'SHA256SUMS',
    'winget/Brackenfold.OrvantaInstaller.installer.yaml', 'winget/Brackenfold.OrvantaInstaller.locale.en-US.yaml',
    'winget/Brackenfold.OrvantaInstaller.yaml',
  ]);
});

const plain = clone('plain');
const dist = join(plain, 'dist');
const setup = join(plain, 'setup.exe');
const madeSetup = makeSetup(plain, setup);
const made = makeDist(plain, dist, { setup });
const inDist = (name) => join(dist, `OrvantaInstaller-${version}${name}`);

test('the checksums fit all files', () => {
  assert.deepEqual([madeSetup, made], [done, done]);
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

test('without products there is neither a setup file nor a word about it', () => {
  const out = join(plain, 'without products');
  assert.deepEqual(makeDist(plain, out), done);
  assert.deepEqual(filesBelow(out), [`OrvantaInstaller-${version}-x64.zip`, `OrvantaInstaller-${version}.build.json`,
    `OrvantaInstaller-${version}.spdx.json`, 'SHA256SUMS']);
  for (const name of filesBelow(out)) {
    assert.doesNotMatch(readFileSync(join(out, name), 'latin1'), /setup_file|-setup|exehead/, name);
  }
});

test('a program with a part of an unknown library is not packed, nor one without a map of its libraries', () => {
  const text = readFileSync(map, 'utf8');
  assert.ok(foreignObjects(text).includes('new_op.o'));
  const out = join(work, 'refused');
  for (const [changed, because] of [
    [text.replaceAll(' new_op.o:(', ' curious.o:('), /: the program holds curious\.o, which is of no library that the notices know\n$/],
    ['', /: \S+ names no object file of a library\n$/],
  ]) {
    const mapFile = join(work, 'changed.map');
    writeFileSync(mapFile, changed);
    for (const [make, script] of [[makeDist, 'make_dist'], [makeSetup, 'make_setup']]) {
      const { status, stderr } = make(plain, out, { mapFile });
      assert.equal(status, 1);
      assert.ok(stderr.startsWith(`${script}: `), stderr);
      assert.match(stderr, because);
      assert.equal(existsSync(out), false);
    }
  }
});

test('the build record names commit, program, tools and packages, and neither place nor person', () => {
  const record = JSON.parse(readFileSync(inDist('.build.json'), 'utf8'));
  assert.deepEqual([record.version, record.commit, record.commit_time],
    [version, git(plain, 'rev-parse', 'HEAD'), '2026-05-04T03:02:02.000Z']);
  for (const [what, file, path] of [
    ['program', 'OrvantaInstaller.exe', program],
    ['setup_file', `OrvantaInstaller-${version}-x64-setup.exe`, inDist('-x64-setup.exe')],
  ]) {
    const bytes = readFileSync(path);
    assert.deepEqual(record[what], {
      file, size_bytes: bytes.length, sha256: sha256(bytes), is_signed: false, sha256_before_signing: sha256(bytes),
    });
  }
  assert.match(record.built_with.tools['x86_64-w64-mingw32-g++-win32'], /GCC/);
  assert.match(record.built_with.tools.makensis, /^v3\./);
  assert.equal(record.built_with.packages.cmake, execFileSync('dpkg-query', ['-W', '-f=${Version}', 'cmake'], { encoding: 'utf8' }));
  assert.equal(record.built_with.npm_lock_sha256, sha256(readFileSync(join(tree, 'package-lock.json'))));
  for (const place of [work, tree.replace(/\/$/, ''), process.env.HOME ?? '/root/']) {
    assert.equal(readFileSync(inDist('.build.json'), 'utf8').includes(place === '/' ? '/root/' : place), false, place);
  }
});

