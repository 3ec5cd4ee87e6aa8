// What the page holds: its order, its ids and every text that it can show at load.

import assert from 'node:assert/strict';
import { describe, test } from 'node:test';
import { storeNames } from '../support/browsers/browsers.mjs';
import { pageText, screens } from './support/installer_page.mjs';
import { shareInstaller } from './support/shared_page.mjs';

const installer = shareInstaller();

/** Runs in the page: the visible texts below an element in document order, one entry per element or run. */
const textsOf = (selector) => installer.page.evaluate((s) => {
  const walker = document.createTreeWalker(document.querySelector(s), NodeFilter.SHOW_TEXT);
  const texts = [];
  while (walker.nextNode()) {
    if (walker.currentNode.data.trim() !== '') texts.push(walker.currentNode.data);
  }
  return texts;
}, selector);

const attributes = (selector, name) => installer.page.evaluate(
  ([s, n]) => Array.from(document.querySelectorAll(s), (e) => e.getAttribute(n)), [selector, name]);

describe('document', () => {
  test('is a standards-mode HTML document in English and UTF-8', async () => {
    assert.ok(pageText.startsWith('<!DOCTYPE html>\n<html lang="en">\n<head>\n<meta charset="UTF-8">\n'));
    assert.equal(await installer.state('document.compatMode'), 'CSS1Compat');
    assert.equal(await installer.state('document.documentElement.lang'), 'en');
    assert.equal(await installer.state('document.characterSet'), 'UTF-8');
  });

  test('has a head with the charset and three style sheets', async () => {
    assert.deepEqual(
      await installer.state('Array.from(document.head.children, (e) => e.localName)'),
      ['meta', 'style', 'style', 'style']);
  });

  test('has a body with nine screens, a footer and one script, in this order', async () => {
    assert.deepEqual(
      await installer.state('Array.from(document.body.children, (e) => e.id || e.localName)'),
      [...screens, 'footer', 'script']);
    assert.deepEqual(
      await installer.state("Array.from(document.querySelectorAll('.screen'), (e) => e.id)"), screens);
  });

  test('is plain ASCII without variation selectors or no-break spaces', () => {
    assert.match(pageText, /^[\n\x20-\x7e]*$/);
    assert.doesNotMatch(pageText, /&nbsp;|&#xfe0|&#xa0|&#160/i);
  });

  test('stays below 32,000 characters', () => {
    assert.ok(pageText.length < 32000, `${pageText.length} characters`);
  });

  test('writes its symbols as these character references and no others', () => {
    const found = new Map();
    for (const [reference] of pageText.matchAll(/&[#\w]+;/g)) {
      found.set(reference, (found.get(reference) ?? 0) + 1);
    }
    assert.deepEqual(Object.fromEntries([...found].sort()), {
      '&#8594;': 2,     // right arrow: install, continue
      '&#x1f310;': 1,   // globe
      '&#x1f50d;': 1,   // magnifier
      '&#x1f512;': 1,   // lock
      '&#x1f525;': 1,   // fire
      '&#x1f5d1;': 1,   // waste basket
      '&#x1f6e1;': 2,   // shield: card, slide
      '&#x1f9e0;': 1,   // brain
      '&#x2197;': 2,    // north-east arrow: store, add-ons
      '&#x26a0;': 1,    // warning sign
      '&#x2713;': 4,    // check mark: two cards, the script, "Extension Added"
      '&#x2714;': 2,    // heavy check mark: completion, removal
      '&ldquo;': 4,
      '&mdash;': 3,
      '&rdquo;': 4,
    });
  });

  test('gives each id once, and has no id that is not known', async () => {
    const ids = await attributes('[id]', 'id');
    assert.deepEqual([...ids].sort(), [
      ...screens,
      'welcome-icon', 'icon-moon', 'icon-sun', 'greeting', 'card-fwc', 'card-lw', 'btn-install',
      'progress-label', 'progress-pct', 'progress-fill',
      'browser-counter', 'browser-name', 'browser-instructions', 'browser-name2', 'browser-name3',
      'browser-name4', 'browser-actions', 'browser-confirm', 'btn-open-store',
      'uninstall-status',
    ].sort());
  });

  test('shows the welcome screen first, and it alone', async () => {
    assert.deepEqual(await installer.active(), ['s-welcome']);
    assert.deepEqual(await installer.leaving(), []);
  });

  test('starts with the initial state', async () => {
    assert.deepEqual(await installer.state(`({ selected, browsers, currentBrowserIdx, currentScreen,
      carouselTimer, carouselIdx, browserAddLabel })`), {
      selected: { fwc: true, lw: true },
      browsers: [],
      currentBrowserIdx: 0,
      currentScreen: 's-welcome',
      carouselTimer: null,
      carouselIdx: 0,
      browserAddLabel: storeNames,
    });
  });

  test('listens to messages of the host, and to nothing else of it', async () => {
    assert.deepEqual(await installer.state('hostListenerTypes()'), ['message']);
  });

  test('posts nothing by itself', async () => {
    assert.deepEqual(await installer.received(), []);
  });
});

describe('texts at load', () => {
  const expected = {
    's-welcome': [
      'Good morning',
      'Thank you for choosing Brackenfold products.',
      "You're on your way to protecting your device and personal information.",
      '\u2713', '\u{1f6e1}', 'Fortwright Console',
      "Harden Windows Defender, manage firewall rules with AI, and lock down your system's attack surface.",
      '\u2713', '\u{1f310}', 'Veyra Linkward',
      'Real-time browser protection with AI threat classification across one million+ known domains.',
      'Install Selected \u2192', 'Uninstall',
    ],
    's-close-browsers': [
      '\u26a0', 'Close Your Browsers',
      'Please save your work', ' and close all browser windows before continuing.',
      'The installer needs to close browser processes to deploy extensions and register components. ' +
        'Any unsaved tabs will be lost.',
      'Continue \u2192', 'Back',
    ],
    's-installing': [
      '\u{1f50d}', 'Real-Time Threat Scanning',
      'Every website you visit is checked against our threat intelligence database before your browser ' +
        'loads it.',
      '\u{1f9e0}', 'AI-Powered Classification',
      'Our private machine learning model analyses unknown websites in real time, catching zero-day ' +
        'phishing and malware.',
      '\u{1f6e1}', 'Windows Defender Hardened',
      'Applies over 35 security policies to lock down Windows Defender, closing gaps that attackers exploit.',
      '\u{1f525}', 'Deep Firewall Control',
      'AI analyses every program requesting network access and creates intelligent firewall rules ' +
        'automatically.',
      '\u{1f512}', 'Silent Protection',
      'Everything runs invisibly in the background. You only see a notification when a genuine threat is ' +
        'blocked.',
      'Preparing installation...', '0%',
    ],
    's-browser': [
      'Browser 1 of 3', 'Google Chrome',
      '1', 'Click ', 'Open Web Store', ' below \u2014 the page will open in ', 'Chrome',
      '2', 'Click ', '\u201cAdd to ', 'Chrome', '\u201d', ' on the store page',
      '3', 'Confirm by clicking ', '\u201cAdd extension\u201d', ' in the popup',
      'Open Web Store in ', 'Chrome', ' \u2197',
      '\u2713 Extension Added', 'Skip',
    ],
    's-firefox-notice': [
      'Mozilla Firefox', 'If you use Firefox, add the extension from the Firefox Add-ons store.',
      '1', 'Click ', 'Open Firefox Add-ons', ' below',
      '2', 'Click ', '\u201cAdd to Firefox\u201d', ' on the page',
      '3', 'Confirm by clicking ', '\u201cAdd\u201d', ' in the popup',
      'Open Firefox Add-ons \u2197', "Skip \u2014 I don't use Firefox",
    ],
    's-complete': [
      '\u2714', "You're Protected", 'Your security suite is now installed and active.', 'Close Installer',
    ],
    's-uninstall-confirm': [
      '\u{1f5d1}', 'Uninstall Veyra Security Suite?',
      'This will remove both Fortwright Console and Linkward,',
      'including all extensions, services, and program files.',
      'Uninstall Everything', 'Cancel',
    ],
    's-uninstalling': ['Removing Veyra Security Suite', 'Cleaning up all components...'],
    's-uninstall-done': [
      '\u2714', 'Uninstall Complete',
      'All Veyra components have been removed.', 'You may need to restart your browsers.', 'Close',
    ],
  };
  for (const id of screens) {
    test(`of ${id} are exactly these`, async () => {
      assert.deepEqual(await textsOf(`#${id}`), expected[id]);
    });
  }

  test('of the footer are exactly these', async () => {
    assert.deepEqual(await textsOf('body > .footer'), [`Brackenfold \u2014 Veyra Security Suite v${process.env.ORVANTA_VERSION}`]);
  });

  test('of the greeting in the document, before the script sets it', () => {
    assert.match(pageText, /<h1 id="greeting">Good evening<\/h1>/);
  });

  test('break their subtitles into two lines where they should', async () => {
    assert.equal(await installer.state("document.querySelectorAll('br').length"), 3);
    for (const id of ['s-welcome', 's-uninstall-confirm', 's-uninstall-done']) {
      assert.equal(await installer.state(`document.querySelectorAll('#${id} .subtitle > br').length`), 1, id);
    }
  });
});
