// What a screen reader is told: one screen at a time, by its name, with controls that say what they are, and lines
// of progress that say each thing once.

import assert from 'node:assert/strict';
import { describe, test } from 'node:test';
import { accessibilityNodes, accessibilityTree, property } from './support/accessibility_tree.mjs';
import { screens } from './support/installer_page.mjs';
import { shareFreshInstaller } from './support/shared_page.mjs';

const installer = shareFreshInstaller();

const footer = ['contentinfo: ', 'Brackenfold \u2014 Veyra Security Suite v1.0.0'];
const button = (text) => [`button: ${text}`, text];
const heading = (text) => [`heading: ${text}`, text];

const trees = {
  's-welcome': [
    'region: Good morning', ...heading('Good morning'),
    'Thank you for choosing Brackenfold products.',
    "You're on your way to protecting your device and personal information.",
    'checkbox: Fortwright Console', 'checkbox: Veyra Linkward',
    ...button('Install Selected \u2192'), ...button('Uninstall'),
  ],
  's-close-browsers': [
    'region: Close Your Browsers', ...heading('Close Your Browsers'),
    'Please save your work', ' and close all browser windows before continuing.',
    'The installer needs to close browser processes to deploy extensions and register components. Any unsaved tabs will be lost.',
    ...button('Continue \u2192'), ...button('Back'),
  ],
  's-installing': [
    'region: Installing', ...heading('Real-Time Threat Scanning'),
    'Every website you visit is checked against our threat intelligence database before your browser loads it.',
    'Preparing installation...', '0%', 'progressbar: Installation',
  ],
  's-browser': [
    'region: Google Chrome', 'BROWSER 1 OF 3', ...heading('Google Chrome'),
    '1', 'Click ', 'Open Web Store', ' below \u2014 the page will open in ', 'Chrome',
    '2', 'Click ', '\u201cAdd to ', 'Chrome', '\u201d', ' on the store page',
    '3', 'Confirm by clicking ', '\u201cAdd extension\u201d', ' in the popup',
    'button: Open Web Store in Chrome \u2197', 'Open Web Store in ', 'Chrome', ' \u2197',
  ],
  's-firefox-notice': [
    'region: Mozilla Firefox', ...heading('Mozilla Firefox'),
    'If you use Firefox, add the extension from the Firefox Add-ons store.',
    '1', 'Click ', 'Open Firefox Add-ons', ' below',
    '2', 'Click ', '\u201cAdd to Firefox\u201d', ' on the page',
    '3', 'Confirm by clicking ', '\u201cAdd\u201d', ' in the popup',
    ...button('Open Firefox Add-ons \u2197'), ...button("Skip \u2014 I don't use Firefox"),
  ],
  's-complete': [
    "region: You're Protected", ...heading("You're Protected"), 'Your security suite is now installed and active.',
    ...button('Close Installer'),
  ],
  's-uninstall-confirm': [
    'region: Uninstall Veyra Security Suite?', ...heading('Uninstall Veyra Security Suite?'),
    'This will remove both Fortwright Console and Linkward,', 'including all extensions, services, and program files.',
    ...button('Uninstall Everything'), ...button('Cancel'),
  ],
  's-uninstalling': [
    'region: Removing Veyra Security Suite', ...heading('Removing Veyra Security Suite'), 'Cleaning up all components...',
  ],
  's-uninstall-done': [
    'region: Uninstall Complete', ...heading('Uninstall Complete'),
    'All Veyra components have been removed.', 'You may need to restart your browsers.', ...button('Close'),
  ],
};

describe('the tree', () => {
  test('holds the welcome screen and nothing else when the page has been loaded', async () => {
    assert.deepEqual(await accessibilityTree(installer), ['RootWebArea: ', ...trees['s-welcome'], ...footer]);
  });

  test('holds the removal screen and nothing else when the program has opened the page on it', async () => {
    await installer.state("goTo('s-uninstall-confirm');");
    await installer.after(100);
    assert.deepEqual(await accessibilityTree(installer), ['RootWebArea: ', ...trees['s-uninstall-confirm'], ...footer]);
  });

  for (const id of screens) {
    test(`holds ${id} and nothing else when it is on show`, async () => {
      for (const before of ['s-complete', 's-browser', 's-welcome'].filter((screen) => screen !== id)) {
        await installer.show(before);
        await installer.show(id);
        assert.deepEqual(await accessibilityTree(installer), ['RootWebArea: ', ...trees[id], ...footer], `after ${before}`);
      }
    });
  }

  test('holds no screen while one has left and the next is not yet on show', async () => {
    await installer.state("goTo('s-complete')");
    await installer.after(99);
    assert.deepEqual(await accessibilityTree(installer), ['RootWebArea: ', ...footer]);
  });
});

describe('a screen that comes on show', () => {
  const names = [
    ['s-close-browsers', 'Close Your Browsers'], ['s-installing', 'Installing'], ['s-browser', 'Google Chrome'],
    ['s-firefox-notice', 'Mozilla Firefox'], ['s-complete', "You're Protected"],
    ['s-uninstall-confirm', 'Uninstall Veyra Security Suite?'], ['s-uninstalling', 'Removing Veyra Security Suite'],
    ['s-uninstall-done', 'Uninstall Complete'], ['s-welcome', 'Good morning'],
  ];
  for (const [id, name] of names) {
    test(`has the focus, so that it is read by its name: ${name}`, async () => {
      if (id === 's-welcome') await installer.show('s-complete');
      await installer.show(id);
      const inFocus = (await accessibilityNodes(installer)).filter((node) => property(node, 'focused'))
        .map((node) => `${node.role.value}: ${node.name.value}`);
      assert.deepEqual(inFocus, ['RootWebArea: ', `region: ${name}`]);
    });
  }

  test('is called by the browser of each step', async () => {
    await installer.send('{"action":"browsers_detected","browsers":[{"name":"Brave","index":0},{"name":"Opera GX","index":1}]}');
    await installer.after(900);
    const region = async () => (await accessibilityNodes(installer)).find((node) => node.role.value === 'region');
    assert.equal((await region()).name.value, 'Brave');
    await installer.send('{"action":"webstore_opened","index":0}');
    await installer.after(1500);
    await installer.click('#browser-confirm .btn-primary');
    await installer.after(250);
    assert.deepEqual([(await region()).name.value, property(await region(), 'focused')], ['Opera GX', true]);
  });
});

describe('a product card', () => {
  const card = async (index) => (await accessibilityNodes(installer)).filter((node) => node.role.value === 'checkbox')[index];

  test('is a check box with the name of its product, what it is for, and whether it is chosen', async () => {
    for (const [index, name, description] of [
      [0, 'Fortwright Console',
        "Harden Windows Defender, manage firewall rules with AI, and lock down your system's attack surface."],
      [1, 'Veyra Linkward',
        'Real-time browser protection with AI threat classification across one million+ known domains.'],
    ]) {
      const node = await card(index);
      assert.deepEqual([node.name.value, node.description.value, property(node, 'checked'), property(node, 'focusable')],
        [name, description, 'true', true]);
    }
    await installer.click('#card-lw');
    assert.deepEqual([property(await card(0), 'checked'), property(await card(1), 'checked')], ['true', 'false']);
    await installer.state("toggleProduct('fwc'); toggleProduct('lw')");
    assert.deepEqual([property(await card(0), 'checked'), property(await card(1), 'checked')], ['false', 'true']);
  });
});

describe('the progress', () => {
  test('has a value that follows it', async () => {
    await installer.show('s-installing');
    for (const percent of [5, 40, 85, 100, 0]) {
      await installer.send(`{"action":"pct","v":${percent}}`);
      const bar = (await accessibilityNodes(installer)).find((node) => node.role.value === 'progressbar');
      assert.deepEqual([bar.value.value, property(bar, 'valuemin'), property(bar, 'valuemax')], [percent, 0, 100]);
      assert.equal(await installer.state("document.querySelector('[role=progressbar]').ariaValueText"), `${percent}%`);
      assert.equal(await installer.text('#progress-pct'), `${percent}%`);
    }
  });

  test('is complete at the end', async () => {
    await installer.show('s-installing');
    await installer.send('{"action":"install_complete"}');
    const bar = (await accessibilityNodes(installer)).find((node) => node.role.value === 'progressbar');
    assert.equal(bar.value.value, 100);
  });
});

describe('the lines of progress', () => {
  /** How often each line has changed, in the eyes of a screen reader. */
  async function watch(id) {
    await installer.page.evaluate((line) => {
      window.changes = [];
      new MutationObserver((records) => {
        if (records.some(({ addedNodes }) => addedNodes.length > 0)) window.changes.push(document.getElementById(line).textContent);
      }).observe(document.getElementById(line), { childList: true, characterData: true, subtree: true });
    }, id);
    return () => installer.state('changes');
  }

  for (const [screen, id, message] of [
    ['s-installing', 'progress-label', (text) => ({ action: 'progress', step: text, ok: true })],
    ['s-installing', 'progress-label', (text) => ({ action: 'status', text })],
    ['s-uninstalling', 'uninstall-status', (text) => ({ action: 'uninstall_progress', step: text, ok: true })],
  ]) {
    test(`say a text once that "${message().action}" brings again and again`, async () => {
      await installer.show(screen);
      const changes = await watch(id);
      for (const text of ['one', 'one', 'one', 'two', 'two', 'one']) await installer.send(message(text));
      assert.deepEqual(await changes(), ['one', 'two', 'one']);
    });
  }

  test('are polite, and the only ones that speak by themselves', async () => {
    const spoken = {};
    for (const id of screens) {
      await installer.show(id);
      const live = (await accessibilityNodes(installer)).filter((node) => property(node, 'live') !== undefined);
      spoken[id] = live.map((node) => property(node, 'live'));
    }
    assert.deepEqual(spoken, {
      ...Object.fromEntries(screens.map((id) => [id, []])), 's-installing': ['polite'], 's-uninstalling': ['polite'],
    });
  });

  test('do not change the name of the screen that has the focus', async () => {
    for (const [id, message] of [['s-installing', { action: 'status', text: 'new' }],
      ['s-uninstalling', { action: 'uninstall_progress', step: 'new' }]]) {
      await installer.show(id);
      const name = async () => (await accessibilityNodes(installer)).find((node) => node.role.value === 'region').name.value;
      const before = await name();
      await installer.send(message);
      assert.equal(await name(), before);
    }
  });
});
