// Everything fits into the window of 920 by 640 pixels, at 100, 150 and 200 percent scale, also in fonts
// wider than the one that Windows has; and nothing scrolls.

import assert from 'node:assert/strict';
import { after, before, describe, test } from 'node:test';
import { pictures, standInFont } from '../../tools/page/screenshots.mjs';
import { browserNames } from '../support/browsers/browsers.mjs';
import { launchChromium, openInstaller, screens } from './support/installer_page.mjs';

let browser;
before(async () => { browser = await launchChromium(); });
after(() => browser.close());

const longReport = 'Could not copy the extension package: cannot copy file: Access is denied. '
  + '[C:\\Users\\Administrator\\Downloads\\Setup\\extensions\\linkward.crx] '
  + '[C:\\ProgramData\\Brackenfold\\Veyra Linkward\\extensions\\linkward.crx]';
const longWord = `C:\\${'x'.repeat(200)}`;

/** Name of a state of the page, and what its script does to come to it. */
const states = [
  ...pictures,
  ...browserNames.map((name) => [
    `browser step of ${name}`,
    `browsers = [{ name: '${name}', index: 0 }]; showBrowserStep(); goTo('s-browser')`]),
  ['installing, long report', `goTo('s-installing'); report(${JSON.stringify(longReport)}, 100)`],
  ['installing, long word', `report(${JSON.stringify(longWord)}, 100)`],
  ['removing, long report', "goTo('s-uninstalling'); "
    + `document.getElementById('uninstall-status').textContent = ${JSON.stringify(longReport)}`],
  ['removing, long word',
    `document.getElementById('uninstall-status').textContent = ${JSON.stringify(longWord)}`],
];

// Runs in the page: everything about the screen on show that does not fit, in words.
function misfits() {
  const found = [];
  const screen = document.querySelector('.screen.active');
  const footer = document.querySelector('.footer');
  const name = (element) => element.id || `${element.localName}.${element.className} "${element.textContent.trim().slice(0, 30)}"`;
  const inside = (inner, outer) => inner.left >= outer.left - 0.5 && inner.right <= outer.right + 0.5
    && inner.top >= outer.top - 0.5 && inner.bottom <= outer.bottom + 0.5;

  // What the padding of the screen leaves.
  const room = { left: 56, top: 48, right: innerWidth - 56, bottom: innerHeight - 48 };
  const shown = Array.from(screen.querySelectorAll('*')).filter((e) => e.getClientRects().length > 0);
  for (const element of shown) {
    if (!inside(element.getBoundingClientRect(), room)) found.push(`${name(element)} leaves the screen`);
    if (element.scrollWidth > element.clientWidth + 1 && element.clientWidth > 0 && !element.closest('svg')) {
      found.push(`${name(element)} is too narrow for its content`);
    }
    if (element.scrollHeight > element.clientHeight + 1 && element.clientHeight > 0
        && getComputedStyle(element).overflowY === 'hidden') {
      found.push(`${name(element)} cuts off its content`);
    }
  }

  const walker = document.createTreeWalker(screen, NodeFilter.SHOW_TEXT);
  while (walker.nextNode()) {
    const range = document.createRange();
    range.selectNodeContents(walker.currentNode);
    const owner = walker.currentNode.parentElement;
    if (owner.getClientRects().length === 0) continue;
    const box = owner.closest('button, .product-card, .instructions, .warn-box, .screen').getBoundingClientRect();
    for (const rect of range.getClientRects()) {
      if (!inside(rect, box)) found.push(`a line of ${name(owner)} leaves its box`);
    }
  }

  for (const button of shown.filter((e) => e.localName === 'button')) {
    if (button.getBoundingClientRect().height > 50) found.push(`${name(button)} breaks into two lines`);
  }
  const children = Array.from(screen.children, (e) => e.getBoundingClientRect());
  children.slice(1).forEach((rect, index) => {
    if (rect.top < children[index].bottom - 0.5) found.push(`${name(screen.children[index + 1])} lies over its neighbour`);
  });
  if (children.at(-1).bottom > footer.getBoundingClientRect().top) found.push('the screen lies over the footer');
  if (!inside(footer.getBoundingClientRect(), { left: 0, top: 0, right: innerWidth, bottom: innerHeight })) {
    found.push('the footer leaves the window');
  }
  return found;
}

async function openWith(font, options) {
  const installer = await openInstaller(browser, options);
  await installer.page.addStyleTag({ content: standInFont(font) });
  await installer.page.evaluate(() => {
    window.report = (text, percent) => {
      document.getElementById('progress-label').textContent = text;
      setProgress(percent);
    };
  });
  return installer;
}

for (const font of ['Open Sans', 'DejaVu Sans']) {
  describe(`in ${font}`, () => {
    for (const [scale, forcedColors] of [[1, 'none'], [1.5, 'none'], [2, 'none'], [1, 'active']]) {
      test(`every screen fits at ${scale * 100} %, forced colours: ${forcedColors}`, async () => {
        const installer = await openWith(font, { deviceScaleFactor: scale, forcedColors });
        assert.equal(await installer.state('devicePixelRatio'), scale);
        const wrong = {};
        for (const [name, script] of states) {
          await installer.state(script);
          await installer.after(100);
          await installer.settle();
          const found = await installer.page.evaluate(misfits);
          if (found.length > 0) wrong[name] = found;
        }
        assert.deepEqual(wrong, {});
        await installer.close();
      });
    }
  });
}

describe('stand-in font', () => {
  test('is the one that is measured', async () => {
    const installer = await openInstaller(browser);
    const width = () => installer.state(`(() => {
      const range = document.createRange();
      range.selectNodeContents(document.querySelector('#s-welcome .subtitle').lastChild);
      return range.getBoundingClientRect().width; })()`);
    const own = await width();
    await installer.page.addStyleTag({ content: standInFont('Open Sans') });
    await installer.state('document.fonts.ready.then(() => 1)');
    assert.notEqual(await width(), own);
    await installer.close();
  });
});

describe('scrolling', () => {
  const positions = () => Array.from(document.querySelectorAll('*'), (e) => [e.scrollLeft, e.scrollTop])
    .filter(([left, top]) => left !== 0 || top !== 0);

  for (const [what, height] of [['window of the installer', 640], ['lower window', 400]]) {
    test(`does not happen in the ${what}, by wheel or keyboard`, async () => {
      const installer = await openInstaller(browser, { viewport: { width: 920, height } });
      const { page } = installer;
      await page.mouse.move(460, 200);
      for (const [x, y] of [[0, 400], [400, 0], [0, -800], [-800, 0]]) await page.mouse.wheel(x, y);
      for (const key of ['PageDown', 'End', 'ArrowDown', 'ArrowRight', 'Space']) await page.keyboard.press(key);
      // Scrolling would have happened by the second frame after it was asked for.
      await page.screenshot();
      assert.deepEqual(await page.evaluate(positions), []);
      await installer.close();
    });
  }

  test('does not happen when the focus walks through the controls of all screens', async () => {
    const installer = await openInstaller(browser);
    const focused = new Set();
    for (const id of screens) {
      await installer.show(id);
      for (let i = 0; i < 5; ++i) {
        await installer.page.keyboard.press('Tab');
        focused.add(await installer.state('document.activeElement.outerHTML'));
        assert.deepEqual(await installer.page.evaluate(positions), []);
      }
    }
    // Two cards, eleven buttons that are laid out, the nine screens themselves and the page.
    assert.ok(focused.size >= 13, `${focused.size} elements had the focus`);
    await installer.close();
  });

  test('does not happen in a lower window: content is cut off where it stands', async () => {
    const installer = await openInstaller(browser, { viewport: { width: 920, height: 400 } });
    const box = await installer.state(`(() => {
      const top = document.getElementById('welcome-icon').getBoundingClientRect().top;
      const bottom = document.getElementById('btn-install').getBoundingClientRect().bottom;
      return { top, bottom }; })()`);
    assert.ok(box.top < 0 && box.bottom > 400, JSON.stringify(box));
    await installer.close();
  });
});

test('text cannot be selected with the mouse', async () => {
  const installer = await openInstaller(browser);
  const { page } = installer;
  await page.mouse.move(300, 170);
  await page.mouse.down();
  await page.mouse.move(650, 480);
  await page.mouse.up();
  assert.equal(await installer.state('getSelection().toString()'), '');
  await installer.close();
});
