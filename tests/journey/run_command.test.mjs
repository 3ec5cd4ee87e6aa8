// The command ./run: its arguments, and what it does around the installer. Build
// and Wine are replaced by small scripts that write down how they were called.

import assert from 'node:assert/strict';
import { spawn, spawnSync } from 'node:child_process';
import { cpSync, existsSync, mkdirSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { once } from 'node:events';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';

const realRun = fileURLToPath(new URL('../../run', import.meta.url));

/** A folder with ./run and scripts in place of everything that it calls. */
function makeTree(t) {
  const root = mkdtempSync(join(tmpdir(), 'orvanta-run-'));
  t.after(() => rmSync(root, { recursive: true }));
  const script = (path, text) => {
    mkdirSync(join(root, path, '..'), { recursive: true });
    writeFileSync(join(root, path), `#!/usr/bin/env bash\nroot='${root}'\n${text}\n`, { mode: 0o755 });
  };
  cpSync(realRun, join(root, 'run'));
  script('tools/bootstrap', 'echo "bootstrap $*" >> "$root/calls"');
  script('tools/wine_template', 'echo wine_template >> "$root/calls"');
  mkdirSync(join(root, 'tools', 'page'));
  writeFileSync(join(root, 'tools', 'page', 'preview.mjs'), 'console.log(process.argv.slice(2)); process.exitCode = 5;');
  script('tests/support/machine', 'echo "machine $1 $3" >> "$root/calls"');
  script('tests/support/with_display', 'DISPLAY=:made "$@"');
  writeFileSync(join(root, 'tools', 'show_installer.mjs'), `
    import { appendFileSync } from 'node:fs';
    import { spawnSync } from 'node:child_process';
    const words = process.argv.slice(2);
    const walks = words[0] === '--walk' && words.shift();
    appendFileSync('${root}/calls', \`show \${walks ? 'walking ' : ''}\${words.shift()}\\n\`);
    process.exitCode = spawnSync(words[0], words.slice(1), { stdio: 'inherit' }).status;`);
  script('tools/wine_environment', `PATH=$root/bin:$PATH
    record_schtasks() { cp "$2" "$1/drive_c/windows/system32/schtasks.exe"; }
    copy_machine() { mkdir -p "$1/drive_c/windows/system32"; echo copy >> "$root/calls"; }
    stop_machine() { echo stop >> "$root/calls"; [ ! -e "$root/slow" ] || kill "$(cat "$root/slow")"; }`);
  script('bin/wineserver', 'echo "wineserver $*" >> "$root/calls"');
  script('bin/cmake', `echo "cmake $1 $2 $3" >> "$root/calls"
    [ ! -e "$root/broken" ] || { echo "x.cpp:1: error: broken"; exit 1; }
    b=$root/build/release
    mkdir -p "$b/sample_products" "$b/tests/standins/schtasks"
    touch "$b/build.ninja" "$b/OrvantaInstaller.exe" "$b/sample_products/Fortwright.exe" "$b/tests/standins/schtasks/schtasks.exe"`);
  script('bin/wine64', `case $1 in
    *machine_report.exe) echo "the report, display: \${DISPLAY:-none}" ;;
    *) printf '%s|' "$@" > "$root/installer"
       echo "display: \${DISPLAY:-none}" >> "$root/installer"
       [ ! -e "$root/slow" ] || { echo $$ > "$root/slow"; echo started; exec sleep 60; }
       exit "$(cat "$root/exit_code" 2>/dev/null || echo 0)" ;;
    esac`);
  const environment = (display) => {
    const { DISPLAY: _, ...rest } = process.env;
    return { ...rest, ...display && { DISPLAY: display }, PATH: `${join(root, 'bin')}:${process.env.PATH}` };
  };
  const read = (name) => readFileSync(join(root, name), 'utf8');
  return {
    root,
    run: (args, display) => spawnSync(join(root, 'run'), args, { encoding: 'utf8', env: environment(display) }),
    start: (args, display) => spawn(join(root, 'run'), args, { env: environment(display) }),
    write: (name, text) => writeFileSync(join(root, name), text),
    exists: (name) => existsSync(join(root, name)),
    calls: () => read('calls').trimEnd().split('\n'),
    installer: () => read('installer'),
  };
}

test('wrong arguments give one line and exit code 2, and touch nothing', (t) => {
  const tree = makeTree(t);
  for (const args of [['--silent'], ['nonsense'], [''], ['--help', 'x'], ['--reset', '--', '-s']]) {
    const { status, stdout, stderr } = tree.run(args);
    assert.deepEqual([status, stdout, stderr.trimEnd().split('\n').length], [2, '', 1], args.join(' '));
    assert.match(stderr, /^run: /);
  }
  assert.equal(tree.exists('calls'), false);
});

test('help says what can be done', (t) => {
  const tree = makeTree(t);
  const help = tree.run(['--help']);
  assert.deepEqual([help.status, help.stderr], [0, '']);
  for (const word of ['./run -- --silent', './run -- --uninstall', './run --reset', './run page', './run page --help', 'exit code']) {
    assert.ok(help.stdout.includes(word), word);
  }
  assert.equal(tree.exists('calls'), false);
});

const windowCalls = (root, how) => ['bootstrap build test', 'wine_template', 'cmake --preset release ',
  'cmake --build --preset release', 'copy', 'wineserver -p', 'machine add_runtime ',
  'machine add_browser C:\\Program Files (x86)\\Microsoft\\Edge\\Application\\msedge.exe',
  'machine add_browser C:\\Program Files\\Google\\Chrome\\Application\\chrome.exe',
  'machine add_browser C:\\Program Files\\BraveSoftware\\Brave-Browser\\Application\\brave.exe',
  'machine set_default_browser C:\\Browsers\\default.exe', `show ${how}${root}/build/run`, 'stop'];

test('alone it opens the window on the display and passes the exit code on', (t) => {
  const tree = makeTree(t);
  tree.write('exit_code', '3');
  const { status, stdout } = tree.run([], ':7');
  assert.deepEqual([status, stdout], [3, 'Exit code of the installer: 3\n\nthe report, display: none\n']);
  assert.equal(tree.installer(), 'C:\\Setup\\OrvantaInstaller.exe|display: :7\n');
  assert.deepEqual(tree.calls(), windowCalls(tree.root, ''));
});

test('alone and without a display it walks through an installation on a screen of its own', (t) => {
  const tree = makeTree(t);
  const { status, stderr } = tree.run([]);
  assert.equal(status, 0);
  assert.match(stderr, /no display: walking through an installation/);
  assert.equal(tree.installer(), 'C:\\Setup\\OrvantaInstaller.exe|display: :made\n');
  assert.deepEqual(tree.calls(), windowCalls(tree.root, 'walking '));
});

test('the options go to the installer as they are and its exit code comes back', (t) => {
  const tree = makeTree(t);
  tree.write('exit_code', '1');
  const { status, stdout } = tree.run(['--', '--source', 'C:\\a b\\"x"', '', '--silent'], ':1');
  assert.equal(status, 1);
  assert.equal(stdout, 'Exit code of the installer: 1\n\nthe report, display: none\n');
  assert.equal(tree.installer(), 'C:\\Setup\\OrvantaInstaller.exe|--source|C:\\a b\\"x"||--silent|display: none\n');
  assert.deepEqual(tree.calls(), ['bootstrap build', 'wine_template', 'cmake --preset release ', 'cmake --build --preset release',
    'copy', 'wineserver -p', 'stop']);
  for (const name of ['Setup/OrvantaInstaller.exe', 'Setup/Fortwright.exe', 'windows/system32/schtasks.exe']) {
    assert.ok(tree.exists(`build/run/machine/drive_c/${name}`), name);
  }
});

test('the machine lasts from call to call until it is reset', (t) => {
  const tree = makeTree(t);
  const kept = 'build/run/machine/drive_c/kept';
  tree.run(['--', '-s']);
  tree.write(kept, '');
  tree.run(['--', '-u']);
  assert.ok(tree.exists(kept));
  assert.equal(tree.run(['--reset']).status, 0);
  assert.equal(tree.exists('build/run/machine'), false);
  tree.run(['--', '-s']);
  assert.equal(tree.exists(kept), false);
});

test('options that open a window need a display and keep it', (t) => {
  const tree = makeTree(t);
  // What follows --source is a folder, whatever it looks like.
  for (const args of [['--', '--uninstall-gui'], ['--', '--source', '--silent'], ['--', '--SILENT']]) {
    assert.equal(tree.run(args).status, 3, args.join(' '));
    assert.equal(tree.exists('installer'), false);
    assert.equal(tree.run(args, ':7').status, 0);
    assert.ok(tree.installer().endsWith('display: :7\n'));
    rmSync(join(tree.root, 'installer'));
  }
});

test('a build that fails is shown and gives exit code 3', (t) => {
  const tree = makeTree(t);
  mkdirSync(join(tree.root, 'build', 'release'), { recursive: true });
  tree.write('build/release/build.ninja', '');
  tree.write('broken', '');
  const { status, stdout, stderr } = tree.run(['--', '-s']);
  assert.deepEqual([status, stdout], [3, '']);
  assert.match(stderr, /x\.cpp:1: error: broken/);
  assert.equal(tree.exists('installer'), false);
});

test('a second call at the same time is refused, and a signal switches the machine off', async (t) => {
  const tree = makeTree(t);
  tree.write('slow', '');
  const first = tree.start(['--', '-s']);
  await once(first.stdout, 'data');
  const second = tree.run(['--', '-s']);
  assert.equal(second.status, 3);
  assert.match(second.stderr, /another \.\/run is still at work/);
  assert.ok(!tree.calls().includes('stop'));
  first.kill('SIGTERM');
  const [code] = await once(first, 'exit');
  assert.equal(code, 143);
  assert.equal(tree.calls().at(-1), 'stop');
});

test('page names its options without setting anything up', (t) => {
  const tree = makeTree(t);
  const help = 'tools/page/preview_help.txt';
  cpSync(join(realRun, '..', help), join(tree.root, help));
  for (const words of [['--help'], ['-h'], ['3', '--uninstall', '--help']]) {
    const { status, stdout, stderr } = tree.run(['page', ...words]);
    assert.deepEqual([status, stdout, stderr], [0, readFileSync(join(realRun, '..', help), 'utf8'), ''], words.join(' '));
  }
  assert.equal(tree.exists('calls'), false);
});

test('page shows the page with the arguments that follow', (t) => {
  const tree = makeTree(t);
  const { status, stdout } = tree.run(['page', '--x', 'y']);
  assert.deepEqual([status, stdout], [5, "[ '--x', 'y' ]\n"]);
});
