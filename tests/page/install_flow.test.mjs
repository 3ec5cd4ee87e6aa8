// An installation as the user walks it, with real mouse clicks, through every branch.

import assert from 'node:assert/strict';
import { beforeEach, describe, test } from 'node:test';
import { detect, startInstalling } from './support/install_flow.mjs';
import { shareFreshInstaller } from './support/shared_page.mjs';

const installer = shareFreshInstaller();

const backButton = '#s-close-browsers .btn-ghost';
const addonsButton = '#s-firefox-notice .btn-primary';
const skipFirefoxButton = '#s-firefox-notice .btn-ghost';
const closeButton = '#s-complete .btn-primary';

const selectedCards = () => installer.page.evaluate(() =>
  Array.from(document.querySelectorAll('.product-card.selected'), (card) => card.id));

describe('choosing products', () => {
  test('a click on a card takes it out and a second click takes it in again', async () => {
    await installer.click('#card-fwc');
    assert.deepEqual(await selectedCards(), ['card-lw']);
    assert.deepEqual(await installer.state('selected'), { fwc: false, lw: true });
    assert.equal(await installer.state("document.querySelector('#card-fwc .check').innerHTML"), '');
    await installer.click('#card-fwc');
    assert.deepEqual(await selectedCards(), ['card-fwc', 'card-lw']);
    assert.deepEqual(await installer.state('selected'), { fwc: true, lw: true });
    assert.equal(await installer.state("document.querySelector('#card-fwc .check').innerHTML"), '\u2713');

    await installer.click('#card-lw');
    assert.deepEqual(await selectedCards(), ['card-fwc']);
    assert.equal(await installer.state("document.querySelector('#card-lw .check').innerHTML"), '');
  });

  test('the check box itself can be clicked as well', async () => {
    await installer.click('#card-lw .check');
    assert.deepEqual(await selectedCards(), ['card-fwc']);
  });

  test('with both cards taken out nothing can be installed, but the removal can be reached', async () => {
    const disabled = () => installer.state("document.getElementById('btn-install').disabled");
    await installer.click('#card-fwc');
    assert.equal(await disabled(), false);
    await installer.click('#card-lw');
    assert.equal(await disabled(), true);
    await installer.click('#btn-install');
    await installer.after(1000);
    assert.deepEqual(await installer.active(), ['s-welcome']);
    await installer.click('#card-lw');
    assert.equal(await disabled(), false);
    await installer.click('#card-lw');
    assert.equal(await disabled(), true);
    await installer.click('#card-fwc');
    assert.equal(await disabled(), false);
    await installer.click('#card-fwc');

    assert.equal(
      await installer.state("document.querySelector('#s-welcome .btn-ghost').disabled"), false);
    await installer.click('#s-welcome .btn-ghost');
    await installer.after(100);
    assert.deepEqual(await installer.active(), ['s-uninstall-confirm']);
  });

  for (const [clicks, request] of [
    [[], '{"action":"install","fwc":true,"lw":true}'],
    [['#card-lw'], '{"action":"install","fwc":true,"lw":false}'],
    [['#card-fwc'], '{"action":"install","fwc":false,"lw":true}'],
  ]) {
    test(`asks for ${request}, and for nothing else`, async () => {
      for (const card of clicks) await installer.click(card);
      await startInstalling(installer);
      await installer.after(60000);
      assert.deepEqual(await installer.received(), [request]);
    });
  }

  test('asks with both flags false if the run is started with nothing chosen', async () => {
    await installer.state("toggleProduct('fwc'); toggleProduct('lw'); beginInstall()");
    await installer.after(400);
    assert.deepEqual(await installer.received(), ['{"action":"install","fwc":false,"lw":false}']);
  });
});

describe('warning about open browsers', () => {
  test('leads back to the welcome screen with the choice kept', async () => {
    await installer.click('#card-fwc');
    await installer.click('#btn-install');
    await installer.after(100);
    await installer.click(backButton);
    await installer.after(100);
    assert.deepEqual(await installer.active(), ['s-welcome']);
    assert.deepEqual(await selectedCards(), ['card-lw']);
    assert.deepEqual(await installer.received(), []);
    await startInstalling(installer);
    assert.deepEqual(await installer.received(), ['{"action":"install","fwc":false,"lw":true}']);
  });
});

describe('installing', () => {
  test('shows what the program reports and how far it is', async () => {
    await startInstalling(installer);
    const label = () => installer.text('#progress-label');
    const pct = () => installer.text('#progress-pct');
    assert.deepEqual([await label(), await pct()], ['Preparing installation...', '0%']);
    await installer.send('{"action":"status","text":"Closing browser processes..."}');
    assert.deepEqual([await label(), await pct()], ['Closing browser processes...', '0%']);
    await installer.send('{"action":"progress","step":"No browsers running","ok":true}');
    assert.deepEqual([await label(), await pct()], ['No browsers running', '0%']);
    await installer.send('{"action":"pct","v":5}');
    assert.deepEqual([await label(), await pct()], ['No browsers running', '5%']);
    await installer.send('{"action":"status","text":"Installing Fortwright Console..."}');
    await installer.send('{"action":"progress","step":"Could not copy \\"C:\\\\a\\"","ok":false}');
    assert.equal(await label(), 'Could not copy "C:\\a"');
    await installer.send('{"action":"pct","v":40}');
    assert.equal(await installer.state("document.getElementById('progress-fill').style.width"), '40%');
  });

  test('without the web protection it ends on the completion screen, which closes the window', async () => {
    await installer.click('#card-lw');
    await startInstalling(installer);
    await installer.send('{"action":"pct","v":100}');
    await installer.send('{"action":"install_complete"}');
    assert.equal(await installer.text('#progress-label'), 'Installation complete!');
    assert.equal(await installer.text('#progress-pct'), '100%');
    await installer.after(900);
    assert.deepEqual(await installer.active(), ['s-complete']);
    await installer.click(closeButton);
    assert.deepEqual(await installer.received(),
      ['{"action":"install","fwc":true,"lw":false}', '{"action":"close"}']);
  });

  test('with no browser found it goes straight to the Firefox step', async () => {
    await startInstalling(installer);
    await installer.send('{"action":"browsers_detected","browsers":[]}');
    assert.equal(await installer.text('#progress-label'), 'Installation complete!');
    assert.equal(await installer.text('#progress-pct'), '100%');
    await installer.after(900);
    assert.deepEqual(await installer.active(), ['s-firefox-notice']);
  });
});

describe('Firefox step', () => {
  beforeEach(async () => {
    await startInstalling(installer);
    await detect(installer, []);
  });

  test('asks for the add-on page and goes on when it was opened', async () => {
    await installer.click(addonsButton);
    assert.equal((await installer.received()).at(-1), '{"action":"open_amo"}');
    await installer.after(60000);
    assert.deepEqual(await installer.active(), ['s-firefox-notice']);
    await installer.send('{"action":"amo_opened"}');
    await installer.after(100);
    assert.deepEqual(await installer.active(), ['s-complete']);
  });

  test('can be skipped without asking the program', async () => {
    await installer.click(skipFirefoxButton);
    await installer.after(100);
    assert.deepEqual(await installer.active(), ['s-complete']);
    await installer.click(closeButton);
    assert.deepEqual(await installer.received(),
      ['{"action":"install","fwc":true,"lw":true}', '{"action":"close"}']);
  });
});
