// Every delay but the slide show's to the millisecond, on a clock that only moves when it is told to.

import assert from 'node:assert/strict';
import { beforeEach, describe, test } from 'node:test';
import { expectExactly } from './support/expect_exactly.mjs';
import { shareFreshInstaller } from './support/shared_page.mjs';

const installer = shareFreshInstaller();

const isActive = (id) => async () => (await installer.active()).includes(id);

describe('goTo', () => {
  test('takes the old screen away at once and brings the new one after 100 ms', async () => {
    await installer.state("goTo('s-close-browsers')");
    assert.deepEqual(await installer.active(), []);
    assert.deepEqual(await installer.leaving(), ['s-welcome']);
    assert.equal(await installer.state('currentScreen'), 's-welcome');
    await expectExactly(installer, 100, isActive('s-close-browsers'));
    assert.deepEqual(await installer.leaving(), []);
    assert.equal(await installer.state('currentScreen'), 's-close-browsers');
  });

  test('called twice within 100 ms leaves both screens active', async () => {
    await installer.state("goTo('s-complete')");
    await installer.after(99);
    await installer.state("goTo('s-uninstall-done')");
    await installer.after(1);
    assert.deepEqual(await installer.active(), ['s-complete']);
    assert.equal(await installer.state('currentScreen'), 's-complete');
    await installer.after(99);
    assert.deepEqual(await installer.active(), ['s-complete', 's-uninstall-done']);
    assert.equal(await installer.state('currentScreen'), 's-uninstall-done');
    assert.deepEqual(await installer.leaving(), []);
  });

  test('called twice at once ends in the same way', async () => {
    await installer.state("goTo('s-complete'); goTo('s-uninstall-done')");
    await installer.after(100);
    assert.deepEqual(await installer.active(), ['s-complete', 's-uninstall-done']);
    assert.equal(await installer.state('currentScreen'), 's-uninstall-done');
  });

  test('a double click on a button counts as two calls for one screen', async () => {
    await installer.state(
      "const b = document.getElementById('btn-install'); b.click(); b.click();");
    await installer.after(100);
    assert.deepEqual(await installer.active(), ['s-close-browsers']);
  });

  test('to the screen on show brings it back', async () => {
    await installer.state("goTo('s-welcome')");
    assert.deepEqual(await installer.active(), []);
    await installer.after(100);
    assert.deepEqual(await installer.active(), ['s-welcome']);
    assert.deepEqual(await installer.leaving(), []);
  });

  test('skips elements that do not exist', async () => {
    await installer.state("goTo('s-nowhere')");
    await installer.after(100);
    assert.deepEqual(await installer.active(), []);
    assert.equal(await installer.state('currentScreen'), 's-nowhere');
    await installer.state("goTo('s-welcome')");
    await installer.after(100);
    assert.deepEqual(await installer.active(), ['s-welcome']);
    assert.equal(await installer.state('currentScreen'), 's-welcome');
  });
});

describe('requests', () => {
  test('"install" leaves 400 ms after the warning was confirmed', async () => {
    await installer.state('beginInstall()');
    await expectExactly(installer, 400, async () => (await installer.received()).length > 0);
    assert.deepEqual(await installer.received(), ['{"action":"install","fwc":true,"lw":true}']);
  });

  test('"install" carries the choice of the moment in which it leaves', async () => {
    await installer.state('beginInstall()');
    await installer.after(399);
    await installer.state("toggleProduct('lw')");
    await installer.after(1);
    assert.deepEqual(await installer.received(), ['{"action":"install","fwc":true,"lw":false}']);
  });

  test('"uninstall" leaves 400 ms after the removal was confirmed', async () => {
    await installer.state('startUninstall()');
    await expectExactly(installer, 400, async () => (await installer.received()).length > 0);
    assert.deepEqual(await installer.received(), ['{"action":"uninstall"}']);
  });

  test('the other requests leave at once', async () => {
    await installer.state(`browsers = [{ name: 'Brave', index: 0 }]; openStore();
      document.querySelector('#s-firefox-notice .btn-primary').click();
      document.querySelector('#s-complete .btn-primary').click();
      document.querySelector('#s-uninstall-done .btn-primary').click();`);
    assert.deepEqual(await installer.received(), [
      '{"action":"open_webstore","index":0}', '{"action":"open_amo"}', '{"action":"close"}',
      '{"action":"close"}']);
  });
});

describe('answers of the program', () => {
  test('"install_complete" leads on after 800 ms and the change of screen', async () => {
    await installer.send('{"action":"install_complete"}');
    await expectExactly(installer, 800, async () => (await installer.leaving()).length > 0);
    await expectExactly(installer, 100, isActive('s-complete'));
  });

  test('"browsers_detected" leads to the first browser after 800 ms and the change of screen', async () => {
    await installer.send('{"action":"browsers_detected","browsers":[{"name":"Opera GX","index":0}]}');
    await expectExactly(installer, 800, async () => (await installer.text('#browser-name')) === 'Opera GX');
    assert.deepEqual(await installer.leaving(), ['s-welcome']);
    await expectExactly(installer, 100, isActive('s-browser'));
  });

  test('"browsers_detected" without browsers leads to Firefox after 800 ms and the change of screen', async () => {
    await installer.send('{"action":"browsers_detected","browsers":[]}');
    await expectExactly(installer, 800, async () => (await installer.leaving()).length > 0);
    await expectExactly(installer, 100, isActive('s-firefox-notice'));
  });

  test('"webstore_opened" swaps the buttons after 1500 ms', async () => {
    await installer.send('{"action":"webstore_opened","index":0}');
    await expectExactly(installer, 1500, async () =>
      (await installer.display('#browser-actions')) === 'none'
      || (await installer.display('#browser-confirm')) !== 'none');
    assert.equal(await installer.display('#browser-actions'), 'none');
    assert.equal(await installer.display('#browser-confirm'), 'flex');
  });

  test('"amo_opened" leads on at once, with the change of screen', async () => {
    await installer.send('{"action":"amo_opened"}');
    await expectExactly(installer, 100, isActive('s-complete'));
  });

  test('"uninstall_done" leads on after 600 ms and the change of screen', async () => {
    await installer.send('{"action":"uninstall_done"}');
    await expectExactly(installer, 600, async () => (await installer.leaving()).length > 0);
    await expectExactly(installer, 100, isActive('s-uninstall-done'));
  });
});

describe('change from one browser to the next', () => {
  const style = () => installer.page.evaluate(() => {
    const { opacity, transform, transitionProperty, transitionDuration, transitionTimingFunction } =
      document.querySelector('.browser-step').style;
    const transition = [transitionProperty, transitionDuration, transitionTimingFunction].join(' ').trim();
    return { opacity, transform, transition };
  });

  beforeEach(async () => {
    await installer.send(
      '{"action":"browsers_detected","browsers":[{"name":"Brave","index":0},{"name":"Vivaldi","index":1}]}');
    await installer.after(900);
  });

  test('jumps out, changes after 250 ms, slides in from the next frame on for 300 ms', async () => {
    assert.deepEqual(await style(), { opacity: '', transform: '', transition: '' });
    await installer.state('browserDone()');
    assert.equal(await installer.state('currentBrowserIdx'), 1);
    assert.deepEqual(await style(), { opacity: '0', transform: 'translateX(30px)', transition: '' });
    assert.equal(await installer.text('#browser-name'), 'Brave');

    await expectExactly(installer, 250, async () => (await installer.text('#browser-name')) === 'Vivaldi');
    assert.deepEqual(await style(), { opacity: '0', transform: 'translateX(-30px)', transition: '' });

    let frame = 0;
    while ((await style()).transition === '' && frame < 17) {
      await installer.after(1);
      ++frame;
    }
    assert.ok(frame >= 1 && frame <= 16, `slid in after ${frame} ms, not in the next frame`);
    const sliding = { opacity: '1', transform: 'translateX(0px)' };
    assert.deepEqual(await style(), { ...sliding, transition: 'all 0.3s ease' });

    await expectExactly(installer, 300, async () => (await style()).transition === '');
    assert.deepEqual(await style(), { ...sliding, transition: '' });
  });

  test('does not happen after the last browser: the next screen comes instead', async () => {
    await installer.state('currentBrowserIdx = 1');
    await installer.state('browserDone()');
    assert.deepEqual(await style(), { opacity: '', transform: '', transition: '' });
    await expectExactly(installer, 100, isActive('s-firefox-notice'));
    assert.equal(await installer.state('currentBrowserIdx'), 2);
    assert.equal(await installer.text('#browser-name'), 'Brave');
  });

  test('is asked for as "all 0.3s ease"', async () => {
    const assigned = await installer.page.evaluate(() => {
      const texts = [];
      const step = document.querySelector('.browser-step');
      const fake = new Proxy({}, { set: (_, name, value) => { texts.push(`${name}: ${value}`); return true; } });
      Object.defineProperty(step, 'style', { value: fake });
      browserDone();
      return new Promise((resolve) => { window.assignedTexts = texts; resolve(); });
    }).then(async () => {
      await installer.after(1000);
      return installer.state('assignedTexts');
    });
    assert.deepEqual(assigned, [
      'opacity: 0', 'transform: translateX(30px)', 'transform: translateX(-30px)',
      'transition: all 0.3s ease', 'opacity: 1', 'transform: translateX(0)', 'transition: ',
    ]);
  });
});
