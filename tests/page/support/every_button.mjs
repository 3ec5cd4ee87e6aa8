// Every button of the page, and what one press of it does.

import assert from 'node:assert/strict';
import { describe, test } from 'node:test';

/** Comes to a screen as the program leads there, with two browsers found. */
export async function comeTo(installer, id, { browser = 0, confirming = false } = {}) {
  await installer.send('{"action":"browsers_detected","browsers":[{"name":"Brave","index":0},{"name":"Vivaldi","index":1}]}');
  await installer.after(900);
  await installer.state(`currentBrowserIdx = ${browser}; showBrowserStep()`);
  await installer.show(id);
  if (confirming) {
    await installer.send(`{"action":"webstore_opened","index":${browser}}`);
    await installer.after(1500);
  }
  // Far from the last thing that a person did.
  await installer.after(10000);
}

/** Name, the screen that it is on, its place there, the screen that follows, messages, and the browser that it leads to. */
const buttons = [
  ['Install Selected', ['s-welcome'], '#btn-install', 's-close-browsers', []],
  ['Uninstall', ['s-welcome'], '.btn-ghost', 's-uninstall-confirm', []],
  ['Continue', ['s-close-browsers'], '.btn-primary', 's-installing', ['{"action":"install","fwc":true,"lw":true}']],
  ['Back', ['s-close-browsers'], '.btn-ghost', 's-welcome', []],
  ['Open Web Store', ['s-browser'], '#btn-open-store', 's-browser', ['{"action":"open_webstore","index":0}']],
  ['Extension Added for the first browser', ['s-browser', { confirming: true }], '#browser-confirm .btn-primary', 's-browser', [], 1],
  ['Skip for the first browser', ['s-browser', { confirming: true }], '#browser-confirm .btn-ghost', 's-browser', [], 1],
  ['Extension Added for the last browser', ['s-browser', { browser: 1, confirming: true }], '#browser-confirm .btn-primary',
    's-firefox-notice', [], 2],
  ['Skip for the last browser', ['s-browser', { browser: 1, confirming: true }], '#browser-confirm .btn-ghost', 's-firefox-notice', [], 2],
  ['Open Firefox Add-ons', ['s-firefox-notice'], '.btn-primary', 's-firefox-notice', ['{"action":"open_amo"}']],
  ['Skip Firefox', ['s-firefox-notice'], '.btn-ghost', 's-complete', []],
  ['Close Installer', ['s-complete'], '.btn-primary', 's-complete', ['{"action":"close"}']],
  ['Uninstall Everything', ['s-uninstall-confirm'], '.btn-primary', 's-uninstalling', ['{"action":"uninstall"}']],
  ['Cancel', ['s-uninstall-confirm'], '.btn-ghost', 's-welcome', []],
  ['Close', ['s-uninstall-done'], '.btn-primary', 's-uninstall-done', ['{"action":"close"}']],
];

/** The middle of an element, for the mouse. */
export async function middleOf(installer, selector) {
  await installer.settle();
  const { x, y, width, height } = await installer.page.locator(selector).boundingBox();
  return [x + width / 2, y + height / 2];
}

/** For each button: one press is what comes of every one of the gestures, which are names with functions of a selector. */
export function describeOnce(installer, gestures) {
  for (const [name, come, selector, goal, messages, browser = 0] of buttons) {
    describe(`"${name}" is done once`, () => {
      for (const [gesture, act] of gestures) {
        test(`by ${gesture}`, async () => {
          await comeTo(installer, ...come);
          await act(`#${come[0]} ${selector}`);
          await installer.after(5000);
          assert.deepEqual(await installer.received(), messages);
          assert.deepEqual(await installer.active(), [goal]);
          assert.deepEqual(await installer.state('selected'), { fwc: true, lw: true });
          if (messages.length === 0) assert.equal(await installer.state('currentBrowserIdx'), browser);
        });
      }
    });
  }
}
