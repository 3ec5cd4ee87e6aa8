// The preview: the page beside its simulated program, walked as a designer would.

import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { mkdtempSync, readdirSync, readFileSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { after, before, describe, test } from 'node:test';
import { fileURLToPath, pathToFileURL } from 'node:url';
import * as said from '../journey/support/expected_messages.mjs';
import { browserNames } from '../support/browsers/browsers.mjs';
import { simulatedAnswers } from '../support/simulated_program.mjs';
import { launchChromium, pageText } from './support/installer_page.mjs';

const tool = fileURLToPath(new URL('../../tools/page/preview.mjs', import.meta.url));
const protocol = ['h', 'cpp'].map((ending) =>
  readFileSync(new URL(`../../src/ui/protocol.${ending}`, import.meta.url), 'utf8')).join('');

let folder;
let browser;
let page;
let frame;
let requests;

before(async () => {
  folder = mkdtempSync(join(tmpdir(), 'orvanta_preview_'));
  const { status, stderr } = preview('--no-open');
  assert.equal(status, 0, stderr);
  browser = await launchChromium();
  page = await browser.newPage({ viewport: { width: 1500, height: 760 } });
  page.on('request', (request) => requests.push(request.url()));
  await page.clock.install({ time: new Date('2026-03-02T08:50:00Z') });
  await page.clock.pauseAt(new Date('2026-03-02T09:00:00Z'));
});
after(async () => {
  await browser.close();
  rmSync(folder, { recursive: true });
});

function preview(...words) {
  return spawnSync(process.execPath, [tool, `--folder=${folder}`, ...words], {
    encoding: 'utf8', env: { ...process.env, DISPLAY: '', WAYLAND_DISPLAY: '' },
  });
}

/** Opens the preview, with a fake clock and no pause between the messages. */
async function open(query) {
  requests = [];
  await page.goto(`${pathToFileURL(join(folder, 'preview.html')).href}?${query}`);
  await page.selectOption('#pause', '0');
  findFrame();
}

function findFrame() {
  [frame] = page.mainFrame().childFrames();
}

const active = () => frame.evaluate(() => document.querySelector('.screen.active')?.id);
const press = (selector) => frame.evaluate((s) => document.querySelector(s).click(), selector);
const log = () => page.evaluate(() => Array.from(document.querySelectorAll('#log > *'), (line) => line.textContent));

/** Moves the clock. The page and its frame have one each, so both go by small steps in turn. */
async function wait(ms) {
  for (let gone = 0; gone < ms; gone += 250) await page.clock.runFor(Math.min(250, ms - gone));
}

describe('preview', () => {
  test('consists of files, and shows the page as the program carries it', async () => {
    assert.deepEqual(readdirSync(folder).sort(), ['page.html', 'page.js', 'preview.html', 'program_messages.js', 'simulated_host.js']);
    assert.equal(readFileSync(join(folder, 'page.html'), 'utf8'), pageText);
    await open('browsers=3');
    assert.equal(await page.evaluate('installerPage'), pageText);
    assert.equal(await active(), 's-welcome');
    assert.equal(await frame.evaluate('document.compatMode'), 'CSS1Compat');
    assert.deepEqual(await page.evaluate(() => {
      const { width, height } = document.getElementById('page').getBoundingClientRect();
      return [width, height];
    }), [920, 640]);
  });

  for (const count of [0, 2, browserNames.length]) {
    test(`walks through an installation with ${count} detected browsers, without a request to anybody`, async () => {
      await open(`browsers=${count}`);
      await press('#btn-install');
      await wait(100);
      await press('#s-close-browsers .btn-primary');
      await wait(400);
      assert.equal((await log())[0], '< {"action":"install","fwc":true,"lw":true}');
      await wait(2000);
      for (let step = 1; step <= count; ++step) {
        assert.equal(await active(), 's-browser');
        assert.equal(await frame.evaluate("document.getElementById('browser-counter').textContent"),
          `Browser ${step} of ${count}`);
        await press('#btn-open-store');
        await wait(2500);
        await press('#browser-confirm .btn-primary');
        await wait(1000);
      }
      assert.equal(await active(), 's-firefox-notice');
      await press('#s-firefox-notice .btn-primary');
      await wait(1000);
      assert.equal(await active(), 's-complete');
      await press('#s-complete .btn-primary');
      const lines = await log();
      assert.deepEqual(lines.slice(-3),
        ['> {"action":"amo_opened"}', '< {"action":"close"}', 'The program would close its window now.']);
      assert.deepEqual(requests.map((url) => url.replace(/.*\//, '').replace(/\?.*/, '')),
        ['preview.html', 'page.js', 'program_messages.js', 'simulated_host.js']);
    });
  }

  test('walks through a removal', async () => {
    await open('mode=uninstall');
    await wait(100);
    assert.equal(await active(), 's-uninstall-confirm');
    await press('#s-uninstall-confirm .btn-primary');
    await wait(2000);
    assert.equal(await active(), 's-uninstall-done');
    assert.equal((await log())[0], '< {"action":"uninstall"}');
    assert.equal((await log()).at(-1), '> {"action":"uninstall_done"}');
  });

  test('starts anew with other settings', async () => {
    await open('browsers=3');
    await press('#btn-install');
    await wait(100);
    await page.fill('#browsers', '1');
    await page.check('#failing');
    await page.click('#install');
    findFrame();
    assert.equal(await active(), 's-welcome');
    await press('#card-fwc');
    await press('#btn-install');
    await wait(100);
    await press('#s-close-browsers .btn-primary');
    await wait(2000);
    assert.equal(await frame.evaluate("document.getElementById('browser-counter').textContent"), 'Browser 1 of 1');
    const arrow = { page: '<', program: '>' };
    assert.deepEqual(await log(), said.installed(false, true, { browsers: browserNames.slice(0, 1), missing: {} })
      .map(([from, text]) => `${arrow[from]} ${text}`));
  });

  test('simulates no message that the program does not know', async () => {
    await open(`browsers=${browserNames.length}`);
    const texts = await page.evaluate(async (browsers) => {
      const seen = [];
      const settings = { browsers, pause: 0, failing: false };
      const host = createSimulatedHost(settings, (direction, text) => { if (direction === 'in') seen.push(text); });
      for (const request of [
        { action: 'install', fwc: true, lw: true }, { action: 'install', fwc: true, lw: false },
        { action: 'uninstall' }, { action: 'open_webstore', index: 7 }, { action: 'open_amo' },
      ]) host.webview.postMessage(JSON.stringify(request));
      window.seenTexts = seen;
      return seen;
    }, browserNames.length).then(() => wait(1000)).then(() => page.evaluate('seenTexts'));
    const actions = new Set(texts.map((text) => JSON.parse(text).action));
    assert.deepEqual([...actions].sort(), ['amo_opened', 'browsers_detected', 'install_complete', 'pct',
      'progress', 'status', 'uninstall_done', 'uninstall_progress', 'webstore_opened']);
    for (const text of texts.filter((t) => t.startsWith('{"action":"status"') || /^\{"action":"\w+"\}$/.test(t))) {
      assert.ok(protocol.includes(`R"(${text})"`), `the program does not know ${text}`);
    }
  });
});

describe('the simulated program', () => {
  // The journeys compare the same texts with what the program says on a machine.
  const missing = { source: 'C:\\Users\\User\\Downloads', reason: 'The system cannot find the file specified.' };
  const expected = [];
  for (const failing of [false, true]) {
    for (const browsers of [0, 1, browserNames.length]) {
      for (const [fwc, lw] of [[true, true], [true, false], [false, true], [false, false]]) {
        expected.push([{ failing, browsers },
          said.installed(fwc, lw, { browsers: browserNames.slice(0, browsers), missing: failing ? missing : undefined })]);
      }
    }
    expected.push([{ failing }, said.removal(failing ? said.filesLeftForReboot : {})]);
  }
  expected.push([{ browsers: 1 }, said.storeOpened(0)], [{ browsers: 0 }, said.storeOpened(7)], [{}, said.amoOpened],
    [{}, [said.closeRequest]]);

  for (const [settings, conversation] of expected) {
    const [[, request]] = conversation;
    test(`says what the program says: ${request} ${JSON.stringify(settings)}`, async () => {
      assert.deepEqual(await simulatedAnswers([request], settings), conversation.slice(1).map(([, text]) => text));
    });
  }

  test('has no report text of its own', () => {
    const own = readFileSync(new URL('../../tools/page/simulated_host.js', import.meta.url), 'utf8');
    const texts = expected.flatMap(([, conversation]) => conversation.slice(1))
      .map(([, text]) => JSON.parse(text)).flatMap(({ step, text }) => [step, text].filter(Boolean));
    assert.ok(new Set(texts).size >= 30, `${new Set(texts).size} texts`);
    assert.deepEqual(texts.filter((text) => own.includes(text)), []);
  });
});

describe('command', () => {
  test('helps, and does nothing else', () => {
    for (const word of ['--help', '-h']) {
      const { status, stdout, stderr } = spawnSync(process.execPath, [tool, '3', word], { encoding: 'utf8' });
      assert.deepEqual([status, stderr], [0, '']);
      for (const option of ['./run page', 'BROWSERS', '--uninstall', '--no-open', '--folder=FOLDER', '--help']) {
        assert.ok(stdout.includes(option), option);
      }
      assert.ok(!stdout.includes('The preview is'));
    }
  });

  test('names what it does not understand', () => {
    for (const word of ['10', '--browsers', 'x', '--folder=']) {
      const { status, stderr } = preview(word);
      assert.equal(status, 2);
      assert.equal(stderr, `${word}: not understood; ./run page --help explains\n`);
    }
  });

  test('photographs the screens where there is no display', () => {
    const { status, stdout, stderr } = preview('1');
    assert.equal(status, 0, stderr);
    assert.match(stdout, /14 pictures in /);
    assert.equal(readdirSync(join(folder, 'screens')).length, 14);
  });
});
