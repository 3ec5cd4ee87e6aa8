// axe-core over every screen. What the fixed design rules out is accepted, with its reason here and in
// docs/page.md; an entry that is no longer found must go.

import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { after, before, describe, test } from 'node:test';
import { pictures } from '../../tools/page/screenshots.mjs';
import { launchChromium, openInstaller, screens } from './support/installer_page.mjs';

const axeSource = readFileSync(createRequire(import.meta.url).resolve('axe-core/axe.min.js'), 'utf8');
const notes = readFileSync(new URL('../../docs/page.md', import.meta.url), 'utf8');

const accepted = {
  'color-contrast': 'the dim text is quieter on purpose: 4.1 to 4.5 to 1',
  'document-title': 'the window that shows the page has its own title',
  'heading-order': 'cards have h3 below h1',
};

let browser;
let installer;
const found = new Set();
before(async () => {
  browser = await launchChromium();
  // axe measures with real time.
  installer = await openInstaller(browser, { clock: false });
  await installer.page.evaluate(axeSource);
  await installer.page.evaluate(() => {
    window.report = (text, percent) => {
      document.getElementById('progress-label').textContent = text;
      setProgress(percent);
    };
  });
});
after(() => browser.close());

async function violations() {
  await installer.settle();
  const results = await installer.page.evaluate(() => axe.run(document, { resultTypes: ['violations'] }));
  return results.violations.flatMap(({ id, nodes }) => nodes.map((node) => ({ id, target: node.target.join(' '), why: node.failureSummary })));
}

describe('axe', () => {
  test('sees all nine screens in the states that are examined', () => {
    const examined = pictures.map(([, script]) => script.match(/goTo\('([\w-]+)'\)/)?.[1]).filter(Boolean);
    assert.deepEqual([...new Set(examined)], screens);
  });

  for (const [name, script] of pictures) {
    test(`finds only what is accepted: ${name}`, async () => {
      const target = script.match(/goTo\('([\w-]+)'\)/)?.[1];
      if (target === undefined || target === (await installer.state('currentScreen'))) {
        await installer.state(script.replace(/goTo\('[\w-]+'\);?/, ''));
      } else {
        await installer.state(script);
        await installer.page.waitForFunction((id) => currentScreen === id, target);
      }
      const list = await violations();
      for (const { id } of list) found.add(id);
      assert.deepEqual(list.filter(({ id }) => !(id in accepted)), []);
    });
  }

  test('still finds everything that is accepted, and docs/page.md gives the reasons', () => {
    assert.deepEqual([...found].sort(), Object.keys(accepted).sort());
    for (const id of Object.keys(accepted)) {
      assert.ok(notes.includes(`\`${id}\``), `docs/page.md does not give the reason for ${id}`);
    }
  });
});

describe('names', () => {
  test('every screen has the name of its heading, or says what happens on it', async () => {
    const names = await installer.page.evaluate(() => Array.from(document.querySelectorAll('.screen'), (screen) => {
      const by = screen.getAttribute('aria-labelledby');
      return [screen.id, by ? `#${by}` : screen.getAttribute('aria-label')];
    }));
    assert.deepEqual(names, [
      ['s-welcome', '#greeting'],
      ['s-close-browsers', 'Close Your Browsers'],
      // Its headings are the slides', and the line that changes speaks for itself.
      ['s-installing', 'Installing'],
      ['s-browser', '#browser-name'],
      ['s-firefox-notice', 'Mozilla Firefox'],
      ['s-complete', "You're Protected"],
      ['s-uninstall-confirm', 'Uninstall Veyra Security Suite?'],
      ['s-uninstalling', 'Removing Veyra Security Suite'],
      ['s-uninstall-done', 'Uninstall Complete'],
    ]);
    for (const [id, name] of names.filter(([id, n]) => !n.startsWith('#') && id !== 's-installing')) {
      assert.equal(await installer.text(`#${id} :is(h1, h2)`), name);
    }
  });

  test('the lines that report progress are live, and the icons are silent', async () => {
    assert.deepEqual(await installer.state(
      "Array.from(document.querySelectorAll('[aria-live=polite]'), (e) => e.id)"),
      ['progress-label', 'uninstall-status']);
    assert.equal(await installer.state(
      "document.querySelectorAll(':is(svg, .p-icon, .s-icon, .complete-icon, .icon-circle:not(#welcome-icon)):not([aria-hidden=true])').length"), 0);
  });
});
