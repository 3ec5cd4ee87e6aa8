// tools/make_kit: its arguments, the order of its work, and the kit and the zip that come of a build.

import assert from 'node:assert/strict';
import { execFileSync, spawnSync } from 'node:child_process';
import { cpSync, existsSync, mkdirSync, mkdtempSync, readFileSync, readdirSync, rmSync, statSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { after, test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { built } from './support/machine.mjs';

const tree = fileURLToPath(new URL('../../', import.meta.url));
const work = mkdtempSync(join(tmpdir(), 'orvanta-kit-'));
after(() => rmSync(work, { recursive: true }));

const filesBelow = (folder) => readdirSync(folder, { recursive: true })
  .filter((name) => statSync(join(folder, name)).isFile()).sort();

function run(command, args, environment = {}) {
  const { status, stdout, stderr } = spawnSync(command, args, { encoding: 'utf8', env: { ...process.env, ...environment } });
  return { status, stdout, stderr };
}
const makeKit = (from, out, environment) =>
  run('node', [join(tree, 'tools/release/make_kit.mjs'), '--built', from, '--out', out], environment);

/** A tree whose tools write down how they were called. */
function makeTree(name) {
  const root = join(work, name);
  const script = (path, text) => {
    mkdirSync(join(root, path, '..'), { recursive: true });
    writeFileSync(join(root, path), `#!/usr/bin/env bash\nroot='${root}'\n${text}\n`, { mode: 0o755 });
  };
  cpSync(join(tree, 'tools/make_kit'), join(root, 'tools/make_kit'));
  script('tools/bootstrap', 'echo "bootstrap $*" >> "$root/calls"');
  script('bin/cmake', `echo "cmake $*" >> "$root/calls"
    [ ! -e "$root/broken" ] || { echo "x.cpp:1: error: broken"; exit 1; }
    [ "$1" != --preset ] || { mkdir -p "$root/build/release" && touch "$root/build/release/build.ninja"; }`);
  script('bin/node', 'echo "node $*" >> "$root/calls"');
  return {
    root,
    run: (...args) => run(join(root, 'tools/make_kit'), args, { PATH: `${root}/bin:${process.env.PATH}` }),
    calls: () => readFileSync(join(root, 'calls'), 'utf8').trim().split('\n'),
  };
}

test('help tells what is made and the exit codes', () => {
  const { status, stdout, stderr } = run(join(tree, 'tools/make_kit'), ['--help']);
  assert.deepEqual([status, stderr], [0, '']);
  for (const word of ['build/kit/', 'acceptance-kit.zip', '--program FILE', 'exit code']) {
    assert.ok(stdout.includes(word), word);
  }
});

for (const [argument, complaint] of [['--fast', "unknown argument '--fast'"], ['', 'an empty argument means nothing']]) {
  test(`${argument || "''"} gives one line and exit code 2`, () => {
    assert.deepEqual(run(join(tree, 'tools/make_kit'), [argument]),
      { status: 2, stdout: '', stderr: `make_kit: ${complaint}; tools/make_kit --help explains\n` });
  });
}

test('a first call configures the build, every call builds the kit and packs it', () => {
  const fake = makeTree('whole');
  assert.deepEqual(fake.run(), { status: 0, stdout: '', stderr: 'make_kit: building ...\n' });
  const build = ['cmake --build --preset release --target acceptance_kit',
    'node tools/release/make_kit.mjs --built build/release/kit --out build'];
  const first = ['bootstrap build release', 'cmake --preset release', ...build];
  assert.deepEqual(fake.calls(), first);
  assert.equal(fake.run().status, 0);
  assert.deepEqual(fake.calls(), [...first, first[0], ...build]);
});

test('a build that fails is told with its log, and nothing is packed', () => {
  const fake = makeTree('broken');
  writeFileSync(join(fake.root, 'broken'), '');
  assert.deepEqual(fake.run(), { status: 1, stdout: '',
    stderr: 'make_kit: building ...\nmake_kit: the build could not be configured; see build/kit.log\n' });
  assert.ok(readFileSync(join(fake.root, 'build/kit.log'), 'utf8').includes('error: broken'));
  mkdirSync(join(fake.root, 'build/release'));
  writeFileSync(join(fake.root, 'build/release/build.ninja'), '');
  assert.equal(fake.run().stderr, 'make_kit: building ...\nmake_kit: the build failed; see build/kit.log\n');
  assert.ok(!fake.calls().some((call) => call.startsWith('node')));
});

test('the kit holds what was built, and its zip the same, byte for byte at every call', () => {
  const from = built('ORVANTA_KIT');
  const version = process.env.ORVANTA_VERSION;
  const zips = ['UTC', 'Asia/Tokyo'].map((zone) => {
    const out = join(work, zone.replace('/', ' '));
    const zip = join(out, `OrvantaInstaller-${version}-acceptance-kit.zip`);
    assert.deepEqual(makeKit(from, out, { TZ: zone }),
      { status: 0, stdout: `${join(out, 'kit')}\n${zip}\n`, stderr: '' });
    const unzipped = join(work, `unzipped ${zone.replace('/', ' ')}`);
    execFileSync('unzip', ['-q', zip, '-d', unzipped]);
    for (const folder of [join(out, 'kit'), unzipped]) {
      assert.deepEqual(filesBelow(folder), filesBelow(from));
      for (const name of filesBelow(from)) {
        assert.deepEqual(readFileSync(join(folder, name)), readFileSync(join(from, name)), name);
      }
    }
    return readFileSync(zip);
  });
  assert.deepEqual(zips[0], zips[1]);
  const samples = filesBelow(built('ORVANTA_SAMPLE_PRODUCTS')).map((name) => join('products', name));
  assert.deepEqual(filesBelow(from),
    ['OrvantaInstaller.exe', 'README.txt', 'acceptance.exe', 'machine_report.exe', ...samples].sort());
  assert.deepEqual(readFileSync(join(from, 'OrvantaInstaller.exe')), readFileSync(built('ORVANTA_PROGRAM')));
});

test('what an earlier call has left goes, also when nothing new can be made', () => {
  const out = join(work, 'again');
  mkdirSync(join(out, 'kit'), { recursive: true });
  writeFileSync(join(out, 'kit/old.exe'), '');
  const { status, stdout, stderr } = makeKit(join(work, 'nowhere'), out);
  assert.deepEqual([status, stdout], [1, '']);
  assert.match(stderr, /^make_kit: ENOENT: .*nowhere'\n$/);
  assert.equal(existsSync(join(out, 'kit')), false);
});
