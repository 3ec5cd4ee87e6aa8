// What sets a system up: which packages are asked for, how far that is, and what is said when it cannot be done.

import assert from 'node:assert/strict';
import { spawn, spawnSync } from 'node:child_process';
import { once } from 'node:events';
import { cpSync, mkdirSync, mkdtempSync, readFileSync, rmSync, symlinkSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';

const tools = fileURLToPath(new URL('../../tools/', import.meta.url));

function makeFolder(t) {
  const folder = mkdtempSync(join(tmpdir(), 'orvanta-bootstrap-'));
  t.after(() => rmSync(folder, { recursive: true }));
  return folder;
}

/** What apt-get prints while it installs three packages, as in Debian 13. */
const installation = `Reading package lists...
dlstatus:1:0.0000:Retrieving file 1 of 3
0 upgraded, 3 newly installed, 0 to remove and 0 not upgraded.
Need to get 1788 kB/2004 kB of archives.
Get:1 http://packages.example trixie/main amd64 nsis-common all 3.11-1 [1168 kB]
dlstatus:2:24.9410:Retrieving file 2 of 3
dlstatus:2:58.9410:Retrieving file 2 of 3
dlstatus:3:74.0000:Retrieving file 3 of 3
dlstatus:3:100.0000:Retrieving file 3 of 3
pmstatus:dpkg-exec:0.0000:Running dpkg
Preparing to unpack .../nsis-common_3.11-1_all.deb ...
pmstatus:libwine:amd64:25:Unpacking libwine:amd64: a part (amd64)
pmstatus:nsis:30.7692:Installing nsis (amd64)
Setting up nsis (3.11-1) ...
pmstatus:nsis:92.3077:Installed nsis (amd64)
and no line end`;
const log = installation.split('\n').filter((line) => !/^(dl|pm)status/.test(line)).join('\n');

test('each quarter of a download and of what follows it is one line, and the rest goes to the log', (t) => {
  const file = join(makeFolder(t), 'log');
  const { status, stdout, stderr } = spawnSync(join(tools, 'apt_progress'), [file], { input: installation, encoding: 'utf8' });
  assert.deepEqual([status, stdout, stderr.split('\n')], [0, '', [
    '  downloading 1788 kB: 58 %',
    '  downloading 1788 kB: 100 %',
    '  unpacking and setting up 3 packages: 25 %',
    '  unpacking and setting up 3 packages: 92 %',
    '',
  ]]);
  assert.equal(readFileSync(file, 'utf8'), `${log}\n`);
});

test('a work that stands still says so again and again', { timeout: 60000 }, async (t) => {
  const progress = spawn(join(tools, 'apt_progress'), [join(makeFolder(t), 'log'), '1'], { stdio: ['pipe', 'ignore', 'pipe'] });
  t.after(() => progress.kill());
  progress.stdin.write('dlstatus:1:7.5:Retrieving file 1 of 3\n');
  let shown = '';
  while (shown.split('\n').length < 3) {
    shown += String((await once(progress.stderr, 'data'))[0]);
  }
  assert.match(shown, /^( {2}downloading packages: 7 %\n){2,}$/);
  progress.stdin.end();
  assert.deepEqual(await once(progress, 'exit'), [0, null]);
});

test('on a terminal one line is written again and again and is gone at the end', (t) => {
  const folder = makeFolder(t);
  writeFileSync(join(folder, 'installation'), installation);
  const command = `'${tools}apt_progress' '${folder}/log' < '${folder}/installation'`;
  const { status, stdout } = spawnSync('script', ['-qec', command, '/dev/null'], { encoding: 'utf8', stdio: ['ignore', 'pipe', 'inherit'] });
  assert.equal(status, 0);
  assert.deepEqual(stdout.split('\r').slice(1), [
    'downloading packages: 0', 'downloading 1788 kB: 24', 'downloading 1788 kB: 58', 'downloading 1788 kB: 74',
    'downloading 1788 kB: 100', 'unpacking and setting up 3 packages: 0', 'unpacking and setting up 3 packages: 25',
    'unpacking and setting up 3 packages: 30', 'unpacking and setting up 3 packages: 92',
  ].map((text) => `  ${text} %\u001b[K`).concat('\u001b[K'));
});

/**
 * A copy of the tree's bootstrap on a system that has no package yet. `programs` are scripts of this system; with
 * `alone` it has besides them only what the bootstrap itself cannot do without.
 */
function makeSystem(t, programs, { alone = false } = {}) {
  const folder = makeFolder(t);
  const bin = join(folder, 'bin');
  mkdirSync(join(folder, 'tools'));
  mkdirSync(bin);
  for (const name of ['bootstrap', 'apt_progress']) {
    cpSync(join(tools, name), join(folder, 'tools', name));
  }
  const all = { 'dpkg-query': 'exit 1', id: 'echo 0', ...programs };
  for (const [name, text] of Object.entries(all)) {
    writeFileSync(join(bin, name), `#!/bin/bash\n${text}\n`, { mode: 0o755 });
  }
  if (alone) {
    ['bash', 'dirname'].forEach((name) => symlinkSync(`/bin/${name}`, join(bin, name)));
  }
  return {
    bootstrap: (...args) => spawnSync(join(folder, 'tools', 'bootstrap'), args,
      { encoding: 'utf8', env: { PATH: alone ? bin : `${bin}:/usr/bin:/bin`, TMPDIR: folder } }),
    calls: () => readFileSync(join(folder, 'calls'), 'utf8').trimEnd().split('\n'),
  };
}

const noteCall = 'echo "$LC_ALL $*" >> "$(dirname "$0")/../calls"';
const benchInstalled = '-o APT::Status-Fd=1 install -q -y --no-install-recommends nsis time';

test('what is missing is installed with one line that names it and the progress below', (t) => {
  const system = makeSystem(t, { 'apt-get': `${noteCall}
    [ "$1" = update ] || echo pmstatus:time:50.0:Installing time` });
  const { status, stdout, stderr } = system.bootstrap('bench');
  assert.deepEqual([status, stdout, stderr.split('\n')], [0, '', [
    'Installing 2 Debian packages and what they need: nsis time ...',
    '  unpacking and setting up packages: 50 %',
    '',
  ]]);
  assert.deepEqual(system.calls(), ['C.UTF-8 update -q', `C.UTF-8 ${benchInstalled}`]);
});

test('nothing is asked for and nothing said when nothing is missing', (t) => {
  const system = makeSystem(t, { 'dpkg-query': 'echo installed', 'apt-get': noteCall });
  const { status, stdout, stderr } = system.bootstrap('bench', 'build');
  assert.deepEqual([status, stdout, stderr], [0, '', '']);
  assert.throws(() => system.calls(), { code: 'ENOENT' });
});

test('whoever is not root goes through sudo', (t) => {
  const system = makeSystem(t, { id: 'echo 1000', sudo: `${noteCall}` });
  assert.equal(system.bootstrap('bench').status, 0);
  assert.deepEqual(system.calls(), [' env LC_ALL=C.UTF-8 apt-get update -q',
    ` env LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive apt-get ${benchInstalled}`]);
});

test('when packages cannot be installed the end of what apt-get said follows', (t) => {
  const system = makeSystem(t, { 'apt-get': `[ "$1" = update ] && exit
    echo 'dlstatus:1:3.0:Retrieving file 1 of 9'
    printf 'said %s\\n' {1..30} >&2
    exit 100` });
  const { status, stderr } = system.bootstrap('bench');
  assert.equal(status, 1);
  assert.deepEqual(stderr.split('\n').slice(1), [
    ...Array.from({ length: 20 }, (_, line) => `said ${line + 11}`), 'bootstrap: apt-get could not install them', '']);
});

test('a system without apt-get or without a way to become root is told so', (t) => {
  const without = makeSystem(t, {}, { alone: true }).bootstrap('bench');
  assert.deepEqual([without.status, without.stderr], [1,
    'bootstrap: there is no apt-get to install packages with; this needs Debian 12 or 13 (see README.md)\n']);
  const nobody = makeSystem(t, { id: 'echo 1000', 'apt-get': 'exit 0' }, { alone: true }).bootstrap('bench');
  assert.deepEqual([nobody.status, nobody.stderr], [1,
    'bootstrap: these packages are missing, and there is neither root nor sudo: nsis time\n']);
});
