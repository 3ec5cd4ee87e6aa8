// The preview: the page beside its simulated program, walked as a designer would.

import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { mkdtempSync, readdirSync, readFileSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { after, before, describe, test } from 'node:test';
import { fileURLToPath, pathToFileURL } from 'node:url';
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
    assert.deepEqual(readdirSync(folder).sort(), ['page.html', 'page.js', 'preview.html', 'simulated_host.js']);
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

  for (const count of [0, 2, 6]) {
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
        ['preview.html', 'page.js', 'simulated_host.js']);
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
    const lines = await log();
    assert.equal(lines[0], '< {"action":"install","fwc":false,"lw":true}');
    assert.ok(lines.some((line) => line.includes('"ok":false')));
    assert.ok(!lines.some((line) => line.includes('"ok":true') || line.includes('Fortwright')));
  });

  test('simulates no message that the program does not know', async () => {
    await open('browsers=6');
    const texts = await page.evaluate(async () => {
      const seen = [];
      const settings = { browsers: 6, pause: 0, failing: false };
      const host = createSimulatedHost(settings, (direction, text) => { if (direction === 'in') seen.push(text); });
      for (const request of [
        { action: 'install', fwc: true, lw: true }, { action: 'install', fwc: true, lw: false },
        { action: 'uninstall' }, { action: 'open_webstore', index: 7 }, { action: 'open_amo' },
      ]) host.webview.postMessage(JSON.stringify(request));
      window.seenTexts = seen;
      return seen;
    }).then(() => wait(1000)).then(() => page.evaluate('seenTexts'));
    const actions = new Set(texts.map((text) => JSON.parse(text).action));
    assert.deepEqual([...actions].sort(), ['amo_opened', 'browsers_detected', 'install_complete', 'pct',
      'progress', 'status', 'uninstall_done', 'uninstall_progress', 'webstore_opened']);
    for (const text of texts.filter((t) => t.startsWith('{"action":"status"') || /^\{"action":"\w+"\}$/.test(t))) {
      assert.ok(protocol.includes(`R"(${text})"`), `the program does not know ${text}`);
    }
  });
});

describe('command', () => {
  test('names what it does not understand', () => {
    for (const word of ['7', '--browsers', 'x']) {
      const { status, stderr } = preview(word);
      assert.equal(status, 2);
      assert.match(stderr, new RegExp(`^${word}: not understood`));
    }
  });

  test('photographs the screens where there is no display', () => {
    const { status, stdout, stderr } = preview('1');
    assert.equal(status, 0, stderr);
    assert.match(stdout, /14 pictures in /);
    assert.equal(readdirSync(join(folder, 'screens')).length, 14);
  });
});
