// Double clicks and fast clicks do what one does, however slow their second half is. Scripts and the program are not
// held back.

import assert from 'node:assert/strict';
import { describe, test } from 'node:test';
import { comeTo, describeOnce, middleOf } from './support/every_button.mjs';
import { openInstaller } from './support/installer_page.mjs';
import { shareFreshInstaller } from './support/shared_page.mjs';

const installer = shareFreshInstaller();

/** Presses the mouse as often as `gaps` are long, each so many milliseconds after the one before, in one place. */
async function clickInOnePlace(selector, gaps, counts) {
  const { mouse } = installer.page;
  await mouse.move(...await middleOf(installer, selector));
  for (const [index, gap] of gaps.entries()) {
    await installer.after(gap);
    // What comes meanwhile stands where it will stay.
    await installer.settle();
    await mouse.down({ clickCount: counts[index] });
    await mouse.up({ clickCount: counts[index] });
  }
}

const gestures = [
  // The system counts the clicks in one place, as long as one follows the other within its time for a double click.
  ...[0, 130, 280, 800].map((gap) => [`a double click of ${gap} ms`, (selector) =>
    clickInOnePlace(selector, [0, gap], [1, 2])]),
  ['five fast clicks', (selector) => clickInOnePlace(selector, [0, 200, 200, 200, 200], [1, 2, 3, 3, 3])],
  ['five fast clicks that nobody counts', (selector) => clickInOnePlace(selector, [0, 200, 200, 200, 200], [1, 1, 1, 1, 1])],
];

describeOnce(installer, gestures);

describe('fingers on a screen', () => {
  for (const gap of [0, 130, 280, 450]) {
    test(`that tap twice within ${gap} ms do not press what comes up`, async () => {
      const touched = await openInstaller(installer.page.context().browser(), { hasTouch: true });
      await touched.send('{"action":"browsers_detected","browsers":[{"name":"Brave","index":0}]}');
      await touched.after(900);
      await touched.send('{"action":"webstore_opened","index":0}');
      await touched.after(1500);
      await touched.settle();
      const { x, y, width, height } = await touched.page.locator('#browser-confirm .btn-ghost').boundingBox();
      for (const wait of [0, gap]) {
        await touched.after(wait);
        await touched.settle();
        await touched.page.touchscreen.tap(x + width / 2, y + height / 2);
      }
      await touched.after(5000);
      assert.deepEqual([await touched.active(), await touched.received()], [['s-firefox-notice'], []]);
      await touched.close();
    });
  }
});

describe('who knows what to do', () => {
  test('may press the next button as soon as it is there', async () => {
    for (const [selector, wait] of [
      ['#btn-install', 100], ['#s-close-browsers .btn-ghost', 100], ['#btn-install', 100],
      ['#s-close-browsers .btn-primary', 400],
    ]) {
      await installer.click(selector);
      await installer.after(wait);
    }
    assert.deepEqual(await installer.received(), ['{"action":"install","fwc":true,"lw":true}']);
  });

  test('may press "Close Installer" at once, which comes almost where "Open Firefox Add-ons" was', async () => {
    await comeTo(installer, 's-firefox-notice');
    await installer.click('#s-firefox-notice .btn-primary');
    await installer.send('{"action":"amo_opened"}');
    await installer.after(100);
    await installer.click('#s-complete .btn-primary');
    assert.deepEqual(await installer.received(), ['{"action":"open_amo"}', '{"action":"close"}']);
  });

  test('may press the same button again when its screen has come back', async () => {
    for (let i = 0; i < 3; ++i) {
      await installer.click('#btn-install');
      await installer.after(100);
      assert.deepEqual(await installer.active(), ['s-close-browsers']);
      await installer.click('#s-close-browsers .btn-ghost');
      await installer.after(100);
      assert.deepEqual(await installer.active(), ['s-welcome']);
      await installer.after(500);
    }
  });

  test('may press the same button again when the program or a script has brought it back', async () => {
    const uninstallButton = '#s-welcome .btn-ghost';
    for (let i = 0; i < 2; ++i) {
      await installer.click(uninstallButton);
      await installer.after(100);
      assert.deepEqual(await installer.active(), ['s-uninstall-confirm']);
      await installer.state("goTo('s-welcome')");
      await installer.after(1000);
    }
    await comeTo(installer, 's-browser', { confirming: true });
    await installer.click('#browser-confirm .btn-ghost');
    await installer.after(1000);
    await installer.send('{"action":"webstore_opened","index":1}');
    await installer.after(1500);
    await installer.click('#browser-confirm .btn-ghost');
    await installer.after(100);
    assert.deepEqual(await installer.active(), ['s-firefox-notice']);
  });

  test('may skip Firefox after its page was asked for and nothing came of it', async () => {
    await comeTo(installer, 's-firefox-notice');
    await installer.click('#s-firefox-notice .btn-primary');
    await installer.click('#s-firefox-notice .btn-ghost');
    await installer.after(100);
    assert.deepEqual(await installer.active(), ['s-complete']);
    assert.deepEqual(await installer.received(), ['{"action":"open_amo"}']);
  });

  test('may press in the same place once the time of a double click is over', async () => {
    for (const [gap, messages] of [[499, []], [501, ['{"action":"open_webstore","index":1}']]]) {
      await comeTo(installer, 's-browser', { confirming: true });
      // Where the button of the next browser's store will be.
      await clickInOnePlace('#browser-confirm .btn-primary', [0, gap], [1, 1]);
      assert.deepEqual(await installer.received(), messages, `after ${gap} ms`);
    }
  });

  test('may take a card out and in with a double click', async () => {
    const card = '#card-lw .check';
    await clickInOnePlace(card, [0, 130], [1, 2]);
    assert.deepEqual(await installer.state('selected'), { fwc: true, lw: true });
    await clickInOnePlace(card, [0, 130, 130], [1, 2, 3]);
    assert.deepEqual(await installer.state('selected'), { fwc: true, lw: false });
  });
});

describe('scripts and the program are not held back', () => {
  test('each click of a script counts', async () => {
    await comeTo(installer, 's-firefox-notice');
    await installer.state("for (let i = 0; i < 3; ++i) document.querySelector('#s-firefox-notice .btn-primary').click()");
    assert.deepEqual(await installer.received(), Array(3).fill('{"action":"open_amo"}'));
  });

  test('each call of a function counts', async () => {
    await installer.state('beginInstall(); beginInstall(); startUninstall(); startUninstall()');
    await installer.after(400);
    assert.deepEqual((await installer.received()).sort(), [
      ...Array(2).fill('{"action":"install","fwc":true,"lw":true}'), ...Array(2).fill('{"action":"uninstall"}')]);
  });

  test('two calls for the next browser pass over one', async () => {
    await installer.send({ action: 'browsers_detected', browsers: ['Brave', 'Opera', 'Vivaldi'].map((name, index) => ({ name, index })) });
    await installer.after(900);
    await installer.state('browserDone(); browserDone()');
    await installer.after(1000);
    assert.equal(await installer.text('#browser-name'), 'Vivaldi');
    assert.equal(await installer.state('currentBrowserIdx'), 2);
  });

  test('answers are taken right after a person has pressed a button', async () => {
    await comeTo(installer, 's-firefox-notice');
    await installer.click('#s-firefox-notice .btn-primary');
    await installer.send('{"action":"amo_opened"}');
    await installer.after(100);
    assert.deepEqual(await installer.active(), ['s-complete']);
    await installer.send('{"action":"amo_opened"}');
    await installer.after(100);
    assert.deepEqual(await installer.active(), ['s-complete']);
  });
});
