// The page without a mouse: what the keys come to, where the focus goes, and both flows from their beginning to
// their end.

import assert from 'node:assert/strict';
import { describe, test } from 'node:test';
import { focused, hold, pressByKey, tabStops } from './support/keys.mjs';
import { screens } from './support/installer_page.mjs';
import { shareFreshInstaller } from './support/shared_page.mjs';

const installer = shareFreshInstaller();

const welcomeStops = ['Fortwright Console', 'Veyra Linkward', 'Install Selected \u2192', 'Uninstall'];
const stopsOf = {
  's-welcome': welcomeStops,
  's-close-browsers': ['Continue \u2192', 'Back'],
  's-installing': [],
  's-browser': ['Open Web Store in Chrome \u2197'],
  's-firefox-notice': ['Open Firefox Add-ons \u2197', "Skip \u2014 I don't use Firefox"],
  's-complete': ['Close Installer'],
  's-uninstall-confirm': ['Uninstall Everything', 'Cancel'],
  's-uninstalling': [],
  's-uninstall-done': ['Close'],
};

const twoBrowsers = '{"action":"browsers_detected","browsers":[{"name":"Brave","index":0},{"name":"Opera GX","index":1}]}';

describe('the Tab key', () => {
  test('comes to the controls of the welcome screen when the page has been loaded, and to no others', async () => {
    assert.equal(await focused(installer), 'body');
    assert.deepEqual(await tabStops(installer), welcomeStops);
  });

  test('stays on the removal screen when the program has opened the page on it', async () => {
    await installer.state("goTo('s-uninstall-confirm');");
    await installer.after(100);
    assert.deepEqual(await tabStops(installer), stopsOf['s-uninstall-confirm']);
  });

  for (const id of [...screens.slice(1), screens[0]]) {
    test(`comes to the controls of ${id} alone, whatever was on show before`, async () => {
      for (const before of screens.filter((screen) => screen !== id)) {
        await installer.show(before);
        await installer.show(id);
        assert.deepEqual(await tabStops(installer), stopsOf[id], `after ${before}`);
      }
    });
  }

  test('comes to the two buttons that take the place of the one that opened the store', async () => {
    await installer.send(twoBrowsers);
    await installer.after(900);
    await pressByKey(installer, 'Open Web Store in Brave \u2197');
    assert.equal(await focused(installer), 's-browser');
    assert.deepEqual(await tabStops(installer), []);
    await installer.send('{"action":"webstore_opened","index":0}');
    await installer.after(1500);
    assert.deepEqual(await tabStops(installer), ['\u2713 Extension Added', 'Skip']);
  });

  test('leaves out a button that is disabled', async () => {
    await installer.state("toggleProduct('fwc'); toggleProduct('lw')");
    assert.deepEqual(await tabStops(installer), ['Fortwright Console', 'Veyra Linkward', 'Uninstall']);
  });

  test('comes to nothing while one screen has left and the next is not yet on show', async () => {
    await installer.state("goTo('s-complete')");
    await installer.after(99);
    assert.deepEqual(await tabStops(installer), []);
  });
});

describe('the focus', () => {
  test('leaves with its screen at once and is on the next one when that comes on show', async () => {
    for (const id of [...screens.slice(1), screens[0]]) {
      await keyboardFocus();
      // In one turn of the page: not with the next frame.
      assert.equal(await installer.state(`(goTo('${id}'), document.activeElement.localName)`), 'body', id);
      await installer.after(99);
      assert.equal(await focused(installer), 'body', id);
      await installer.after(1);
      assert.equal(await focused(installer), id);
    }
  });

  // On whatever the screen has; on the screen itself where it has nothing.
  async function keyboardFocus() {
    await installer.page.keyboard.press('Tab');
  }

  test('on a screen draws no ring around the window', async () => {
    await pressByKey(installer, 'Install Selected \u2192');
    await installer.after(100);
    await installer.settle();
    assert.deepEqual(await installer.state(`(() => {
      const screen = document.activeElement;
      return [screen.id, screen.matches(':focus-visible'), getComputedStyle(screen).outlineStyle]; })()`),
    ['s-close-browsers', true, 'none']);
  });

  test('on a control draws its ring', async () => {
    for (const stop of welcomeStops) {
      await installer.page.keyboard.press('Tab');
      assert.deepEqual([await focused(installer), await installer.state('getComputedStyle(document.activeElement).outlineStyle')],
        [stop, 'auto']);
    }
  });

  test('goes to the step anew with each browser', async () => {
    await installer.send(twoBrowsers);
    await installer.after(900);
    assert.equal(await focused(installer), 's-browser');
    await installer.send('{"action":"webstore_opened","index":0}');
    await installer.after(1500);
    await pressByKey(installer, '\u2713 Extension Added');
    assert.equal(await focused(installer), 'body');
    assert.deepEqual(await tabStops(installer), []);
    await installer.after(250);
    assert.equal(await focused(installer), 's-browser');
    assert.deepEqual(await tabStops(installer), ['Open Web Store in Opera \u2197']);
  });

  test('is not taken to a screen that is not there', async () => {
    await installer.state("goTo('s-nowhere')");
    await installer.after(100);
    assert.equal(await focused(installer), 'body');
    assert.deepEqual(await tabStops(installer), []);
  });

  test('is on the later of two screens that are both on show', async () => {
    await installer.state("goTo('s-complete'); goTo('s-uninstall-done')");
    await installer.after(100);
    assert.deepEqual(await installer.active(), ['s-complete', 's-uninstall-done']);
    assert.equal(await focused(installer), 's-uninstall-done');
    assert.equal(await installer.state("document.querySelectorAll('.screen:not([inert])').length"), 2);
  });

  test('comes back to a screen that was asked for while it was on show', async () => {
    await installer.state("goTo('s-welcome')");
    await installer.after(100);
    assert.equal(await focused(installer), 's-welcome');
    assert.deepEqual(await tabStops(installer), welcomeStops);
  });
});

describe('product cards', () => {
  const state = () => installer.state(`({ ...selected, checked: Array.from(document.querySelectorAll('[role=checkbox]'),
    (card) => card.ariaChecked).join() })`);

  for (const [key, name] of [[' ', 'Space'], ['Enter', 'Enter']]) {
    test(`are taken out and in by ${name}`, async () => {
      await installer.page.keyboard.press('Tab');
      await installer.page.keyboard.press(key);
      assert.deepEqual(await state(), { fwc: false, lw: true, checked: 'false,true' });
      await installer.page.keyboard.press(key);
      assert.deepEqual(await state(), { fwc: true, lw: true, checked: 'true,true' });
      await installer.page.keyboard.press('Tab');
      await installer.page.keyboard.press(key);
      assert.deepEqual(await state(), { fwc: true, lw: false, checked: 'true,false' });
      assert.equal(await focused(installer), 'Veyra Linkward');
    });

    test(`change once while ${name} is held`, async () => {
      await installer.page.keyboard.press('Tab');
      await hold(installer, key);
      assert.deepEqual(await state(), { fwc: false, lw: true, checked: 'false,true' });
    });
  }

  test('change with each press, however fast', async () => {
    await installer.page.keyboard.press('Tab');
    for (let presses = 1; presses <= 5; ++presses) {
      await installer.page.keyboard.press(presses % 2 ? ' ' : 'Enter');
      assert.equal(await installer.state('selected.fwc'), presses % 2 === 0);
    }
  });

  test('tell what a click and the page itself have changed', async () => {
    await installer.click('#card-lw');
    assert.deepEqual(await state(), { fwc: true, lw: false, checked: 'true,false' });
    await installer.state("toggleProduct('fwc')");
    assert.deepEqual(await state(), { fwc: false, lw: false, checked: 'false,false' });
  });

  test('leave every other key alone', async () => {
    await installer.page.keyboard.press('Tab');
    for (const key of ['a', 'Escape', 'ArrowDown', 'Backspace', 'Shift']) await installer.page.keyboard.press(key);
    assert.deepEqual(await state(), { fwc: true, lw: true, checked: 'true,true' });
    await installer.page.keyboard.press('Shift+Tab');
    assert.notEqual(await focused(installer), 'Fortwright Console');
  });
});

describe('by keys alone', () => {
  test('an installation goes from the welcome screen to its end, message for message', async () => {
    await pressByKey(installer, 'Fortwright Console', ' ');
    await pressByKey(installer, 'Fortwright Console', 'Enter');
    await pressByKey(installer, 'Install Selected \u2192');
    await installer.after(100);
    await pressByKey(installer, 'Back', ' ');
    await installer.after(100);
    await pressByKey(installer, 'Install Selected \u2192', ' ');
    await installer.after(100);
    await pressByKey(installer, 'Continue \u2192');
    await installer.after(400);
    await installer.send(twoBrowsers);
    await installer.after(900);
    for (const [index, [short, done, key]] of [['Brave', '\u2713 Extension Added', 'Enter'], ['Opera', 'Skip', ' ']].entries()) {
      await pressByKey(installer, `Open Web Store in ${short} \u2197`, key);
      await installer.send(`{"action":"webstore_opened","index":${index}}`);
      await installer.after(1500);
      await pressByKey(installer, done, key);
      await installer.after(250);
    }
    await pressByKey(installer, 'Open Firefox Add-ons \u2197');
    await installer.send('{"action":"amo_opened"}');
    await installer.after(100);
    await pressByKey(installer, 'Close Installer');
    assert.deepEqual(await installer.received(), [
      '{"action":"install","fwc":true,"lw":true}',
      '{"action":"open_webstore","index":0}',
      '{"action":"open_webstore","index":1}',
      '{"action":"open_amo"}',
      '{"action":"close"}',
    ]);
  });

  test('an installation of one product skips Firefox', async () => {
    await pressByKey(installer, 'Fortwright Console', ' ');
    await pressByKey(installer, 'Install Selected \u2192');
    await installer.after(100);
    await pressByKey(installer, 'Continue \u2192', ' ');
    await installer.after(400);
    await installer.send('{"action":"browsers_detected","browsers":[]}');
    await installer.after(900);
    await pressByKey(installer, "Skip \u2014 I don't use Firefox");
    await installer.after(100);
    await pressByKey(installer, 'Close Installer', ' ');
    assert.deepEqual(await installer.received(), ['{"action":"install","fwc":false,"lw":true}', '{"action":"close"}']);
  });

  for (const [from, begin] of [
    ['from the welcome screen', async () => {
      await pressByKey(installer, 'Uninstall');
      await installer.after(100);
      await pressByKey(installer, 'Cancel');
      await installer.after(100);
      await pressByKey(installer, 'Uninstall', ' ');
    }],
    ['from the screen that the program opens', () => installer.state("goTo('s-uninstall-confirm');")],
  ]) {
    test(`a removal goes ${from} to its end, message for message`, async () => {
      await begin();
      await installer.after(100);
      await pressByKey(installer, 'Uninstall Everything');
      await installer.after(400);
      await installer.send('{"action":"uninstall_progress","step":"No browsers running","ok":true}');
      await installer.send('{"action":"uninstall_done"}');
      await installer.after(700);
      await pressByKey(installer, 'Close');
      assert.deepEqual(await installer.received(), ['{"action":"uninstall"}', '{"action":"close"}']);
    });
  }
});
