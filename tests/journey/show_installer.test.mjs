// What ./run does when there is no display: the installer's window, walked through
// a whole installation on a machine like that of ./run.

import assert from 'node:assert/strict';
import { mkdirSync, mkdtempSync, readFileSync, readdirSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { describe, test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { startDisplay } from '../support/display.mjs';
import { assertBothInstalled } from './support/assert_state.mjs';
import * as said from './support/expected_messages.mjs';
import { installer, startCommand } from './support/machine.mjs';
import { browserPlaces, makeWindowMachine } from './support/window.mjs';

const tool = fileURLToPath(new URL('../../tools/show_installer.mjs', import.meta.url));
const browsers = ['Microsoft Edge', 'Google Chrome', 'Brave'];
const pictures = ['01-welcome.png', '02-close-browsers.png', '03-installing.png', '04-microsoft-edge.png',
  '05-google-chrome.png', '06-brave.png', '07-firefox-notice.png', '08-complete.png'];

const show = (words, environment = process.env) => startCommand(process.execPath, [tool, ...words], environment).ended;

/** A folder for pictures that goes with the test; what is in it already is none of the tool's or an old picture. */
function makeFolder(t) {
  const parent = mkdtempSync(join(tmpdir(), 'show-installer-'));
  t.after(() => rmSync(parent, { recursive: true }));
  const folder = join(parent, 'pictures');
  mkdirSync(folder);
  writeFileSync(join(folder, '09-of-an-earlier-walk.png'), '');
  writeFileSync(join(folder, 'notes.txt'), '');
  return folder;
}

/** Width and height of a picture; it must be a PNG. */
function sizeOf(file) {
  const bytes = readFileSync(file);
  assert.equal(bytes.toString('latin1', 0, 8), '\x89PNG\r\n\x1a\n');
  assert.equal(bytes.toString('latin1', 12, 16), 'IHDR');
  return [bytes.readUInt32BE(16), bytes.readUInt32BE(20)];
}

describe('the installer is shown', { concurrency: 3 }, () => {
  test('on a walk through a whole installation, with a picture of each screen', async (t) => {
    const display = await startDisplay();
    t.after(() => display.stop());
    const machine = await makeWindowMachine(t, { display }, { browsers });
    const folder = makeFolder(t);
    const { words, environment } = machine.outside(installer);
    const { code, stdout, stderr } = await show(['--walk', folder, ...words], environment);
    assert.equal(code, 0, stderr);

    assert.deepEqual(readdirSync(folder).sort(), [...pictures, 'notes.txt', 'transcript.jsonl']);
    for (const name of pictures) {
      assert.deepEqual(sizeOf(join(folder, name)), [920, 640], name);
    }
    const images = pictures.map((name) => readFileSync(join(folder, name), 'latin1'));
    assert.equal(new Set(images).size, pictures.length);
    assert.deepEqual(stderr.trimEnd().split('\n'), pictures.map((name) => `run:   ${join(folder, name)}`));

    const conversation = [
      ...said.bothInstalled(browsers),
      ...browsers.flatMap((_, index) => said.storeOpened(index)),
      ...said.amoOpened,
      said.closeRequest,
    ];
    assert.deepEqual(stdout.split('\n'), ['What page and program said to each other:', '',
      ...conversation.map(([from, text]) => `  ${from.padEnd(7)} ${text}`), '', '']);

    const lines = readFileSync(join(folder, 'transcript.jsonl'), 'utf8').split('\n');
    assert.equal(lines.pop(), '');
    const entries = lines.map((line) => JSON.parse(line));
    assert.deepEqual(entries.filter(({ event }) => event === 'message').map(({ from, text }) => [from, text]), conversation);
    assert.deepEqual([entries[0].event, entries.at(-1).event], ['hello', 'disconnected']);
    assert.deepEqual(entries.filter(({ event }) => event === 'trouble'), []);

    assert.deepEqual(await machine.launches(browsers.length + 1), [
      ...browsers.map((name) => [browserPlaces[name], `"${browserPlaces[name]}" ${said.storePage}`]),
      ['C:\\Browsers\\default.exe', `"C:\\Browsers\\default.exe" "${said.addonPage}"`],
    ]);
    await assertBothInstalled(machine);
  });

  test('and a walk whose installer ends before its page has come is over at once', async (t) => {
    for (const [command, how] of [[['false'], '1'], [['bash', '-c', 'kill -9 $$'], 'SIGKILL'],
      [['/no/such/program'], 'spawn /no/such/program ENOENT']]) {
      const folder = makeFolder(t);
      const started = performance.now();
      const { code, stdout, stderr } = await show(['--walk', folder, ...command]);
      assert.deepEqual([code, stdout, stderr],
        [3, '', `run: the walk came to a halt: the installer ended before its page had come (${how})\n`]);
      // Far from the minute that a program has to come.
      assert.ok(performance.now() - started < 30000);
      assert.deepEqual(readdirSync(folder).sort(), ['notes.txt']);
    }
  });

  test('to a person with its exit code passed on', async (t) => {
    const folder = makeFolder(t);
    assert.deepEqual(await show([folder, 'bash', '-c', 'echo "$1 $ORVANTA_WEBVIEW2_BRIDGE" | tr -s 0-9 N; exit 7', '_', 'on port']),
      { code: 7, stdout: 'on port N\n', stderr: '' });
    assert.deepEqual(await show([folder, '/no/such/program']),
      { code: 3, stdout: '', stderr: 'run: the installer did not end by itself (spawn /no/such/program ENOENT)\n' });
  });

  test('only with a folder and a command', async () => {
    for (const words of [[], ['--walk'], ['folder'], ['--walk', 'folder']]) {
      assert.deepEqual(await show(words),
        { code: 2, stdout: '', stderr: 'show_installer: name a folder and the command that starts the installer\n' }, words.join(' '));
    }
  });
});
