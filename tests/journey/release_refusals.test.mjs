// ./release: its help, and what it refuses before anything is built.

import assert from 'node:assert/strict';
import { cpSync, existsSync, mkdtempSync, readFileSync, rmSync, symlinkSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { test } from 'node:test';
import { clone, git, makeSetup, products, release, tree, version, work } from './support/release.mjs';

const refused = (because) => ({ status: 3, stdout: '', stderr: `release: ${because}\n` });

function replaceIn(folder, file, from, to) {
  const text = readFileSync(join(folder, file), 'utf8');
  assert.ok(text.includes(from), from);
  writeFileSync(join(folder, file), text.replace(from, to));
}

test('help tells files, options and exit codes', () => {
  const { status, stdout, stderr } = release(tree, '--help');
  assert.deepEqual([status, stderr], [0, '']);
  for (const word of ['./release --check', '--products', '--sign', '--password-file', '--timestamp', '-x64-setup.exe', 'SHA256SUMS',
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

const plain = clone('plain');

for (const [what, spoil, because] of [
  ['a key', (folder) => writeFileSync(join(folder, 'signing.PEM'), ''), 'signing.PEM among the products is a key, which nobody else may get'],
  ['a link', (folder) => symlinkSync('/etc', join(folder, 'more')), 'more among the products is neither a file nor a folder'],
  ['an installer of its own', (folder) => writeFileSync(join(folder, 'orvantainstaller.exe'), ''), 'orvantainstaller.exe is among the products; the release brings its own'],
  ['a name that ends in a blank', (folder) => writeFileSync(join(folder, 'rules/more '), ''), 'rules/more  among the products has a name that Windows does not allow'],
  ['a name of a device', (folder) => writeFileSync(join(folder, 'Aux.txt'), ''), 'Aux.txt among the products has a name that Windows does not allow'],
  ['a quoted name', (folder) => writeFileSync(join(folder, 'the "best"'), ''), 'the "best" among the products has a name that Windows does not allow'],
  ['two names that Windows takes for one', (folder) => writeFileSync(join(folder, 'read me FIRST.txt'), ''), 'Read me first.txt and read me FIRST.txt among the products have the same name on Windows'],
  ['a name that is too long', (folder) => writeFileSync(join(folder, 'rules', 'x'.repeat(195)), ''), `rules/${'x'.repeat(195)} among the products is longer than 200 characters`],
  ['no console', (folder) => rmSync(join(folder, 'Fortwright.exe')), 'Fortwright.exe is missing among the products'],
  ['no service', (folder) => rmSync(join(folder, 'VeyraLinkward.exe')), 'VeyraLinkward.exe is missing among the products'],
]) {
  test(`a folder of products with ${what} is refused`, () => {
    const folder = mkdtempSync(join(work, 'products-'));
    cpSync(products, folder, { recursive: true });
    spoil(folder);
    const out = join(work, 'refused.exe');
    assert.deepEqual(makeSetup(plain, out, { shipped: folder }), { status: 1, stdout: '', stderr: `make_setup: ${because}\n` });
    assert.equal(existsSync(out), false);
  });
}
