// Keys that are held or pressed again and again do what one press does.

import assert from 'node:assert/strict';
import { describe, test } from 'node:test';
import { comeTo, describeOnce, middleOf } from './support/every_button.mjs';
import { focused, hold } from './support/keys.mjs';
import { shareFreshInstaller } from './support/shared_page.mjs';

const installer = shareFreshInstaller();

const gestures = [
  ...['Enter', 'Space'].flatMap((key) => [
    [`${key} held`, async (selector) => {
      await installer.page.focus(selector);
      await hold(installer, key, 8);
    }],
    [`eight fast presses of ${key}`, async (selector) => {
      await installer.page.focus(selector);
      for (let i = 0; i < 8; ++i) {
        await installer.page.keyboard.press(key);
        await installer.after(20);
      }
    }],
  ]),
];

describeOnce(installer, gestures);

describe('who knows what to do', () => {
  test('may go back and forth with the keys', async () => {
    for (let i = 0; i < 3; ++i) {
      for (const id of ['#s-welcome .btn-ghost', '#s-uninstall-confirm .btn-ghost']) {
        await installer.page.focus(id);
        await installer.page.keyboard.press('Enter');
        await installer.after(100);
      }
    }
    assert.deepEqual(await installer.active(), ['s-welcome']);
  });
});

describe('a screen that leaves', () => {
  test('does not hand a held Enter on to the next', async () => {
    await installer.page.focus('#btn-install');
    for (let i = 0; i < 60; ++i) {
      await installer.page.keyboard.down('Enter');
      await installer.after(33);
      // Even where somebody has moved the focus on.
      if (i === 30) await installer.page.focus('#s-close-browsers .btn-primary');
    }
    await installer.page.keyboard.up('Enter');
    await installer.after(1000);
    assert.deepEqual(await installer.active(), ['s-close-browsers']);
    assert.deepEqual(await installer.received(), []);
    assert.equal(await focused(installer), 'Continue \u2192');
  });

  test('takes neither keys nor the mouse from the same turn on', async () => {
    await comeTo(installer, 's-close-browsers');
    const place = await middleOf(installer, '#s-close-browsers .btn-primary');
    assert.deepEqual(await installer.page.evaluate(([x, y]) => {
      const button = document.querySelector('#s-close-browsers .btn-primary');
      button.focus();
      const seen = [document.activeElement === button, document.elementFromPoint(x, y) === button];
      beginInstall();
      return [...seen, document.activeElement.localName, document.elementFromPoint(x, y).localName];
    }, place), [true, true, 'body', 'body']);
  });

  test('has given the browser step back when the change to the next browser went wrong', async () => {
    await comeTo(installer, 's-browser', { browser: 0 });
    // Two calls of a script pass over the last browser, which leaves the first one's timer without a browser.
    await installer.state('browserDone(); browserDone()');
    await assert.rejects(installer.after(250));
    installer.errors.length = 0;
    assert.equal(await installer.state("document.querySelector('.browser-step').inert"), false);
  });
});
