// One step for each browser that was found, between the installation and Firefox.

import assert from 'node:assert/strict';
import { describe, test } from 'node:test';
import { browserNames, storeNames } from '../support/browsers/browsers.mjs';
import { detect, startInstalling } from './support/install_flow.mjs';
import { shareFreshInstaller } from './support/shared_page.mjs';

const installer = shareFreshInstaller();

const confirmButton = '#browser-confirm .btn-primary';
const skipButton = '#browser-confirm .btn-ghost';

describe('browser steps', () => {
  async function expectStep(name, position, count) {
    const short = storeNames[name] ?? name;
    assert.equal(await installer.text('#browser-counter'), `Browser ${position} of ${count}`);
    assert.equal(await installer.text('#browser-name'), name);
    for (const id of ['browser-name2', 'browser-name3', 'browser-name4']) {
      assert.equal(await installer.text(`#${id}`), short, id);
    }
    assert.equal(await installer.text('#btn-open-store'), `Open Web Store in ${short} \u2197`);
    assert.equal(await installer.text('#browser-instructions > :nth-child(1)').then((t) => t.trim().replace(/\s+/g, ' ')),
      `1 Click Open Web Store below \u2014 the page will open in ${short}`);
    assert.equal(await installer.display('#browser-actions'), 'flex');
    assert.equal(await installer.display('#browser-confirm'), 'none');
    assert.equal(await installer.state("document.getElementById('btn-open-store').disabled"), false);
  }

  for (const names of [['Brave'], ['Microsoft Edge', 'Google Chrome', 'Opera GX'], browserNames]) {
    test(`lead through ${names.length} of ${names.length} browsers and then to Firefox`, async () => {
      await startInstalling(installer);
      await detect(installer, names);
      assert.deepEqual(await installer.active(), ['s-browser']);
      for (const [index, name] of names.entries()) {
        await expectStep(name, index + 1, names.length);
        await installer.click('#btn-open-store');
        assert.equal((await installer.received()).at(-1), `{"action":"open_webstore","index":${index}}`);
        await installer.send({ action: 'webstore_opened', index });
        await installer.after(1500);
        assert.equal(await installer.display('#browser-actions'), 'none');
        assert.equal(await installer.display('#browser-confirm'), 'flex');
        // By turns, as both lead on in the same way.
        await installer.click(index % 2 === 0 ? confirmButton : skipButton);
        await installer.after(1000);
      }
      assert.deepEqual(await installer.active(), ['s-firefox-notice']);
      assert.deepEqual((await installer.received()).slice(1),
        names.map((name, index) => `{"action":"open_webstore","index":${index}}`));
    });
  }

  test('send the index that the host gave, not the position', async () => {
    await startInstalling(installer);
    await installer.send('{"action":"browsers_detected","browsers":[{"name":"Brave","index":4}]}');
    await installer.after(900);
    await installer.click('#btn-open-store');
    assert.equal((await installer.received()).at(-1), '{"action":"open_webstore","index":4}');
  });

  test('call a browser that they do not know by its own name', async () => {
    await startInstalling(installer);
    await detect(installer, ['Nightjar']);
    await expectStep('Nightjar', 1, 1);
  });

  test('open the store once: the button is disabled until the next browser', async () => {
    await startInstalling(installer);
    await detect(installer, ['Brave', 'Vivaldi']);
    await installer.click('#btn-open-store');
    assert.equal(await installer.state("document.getElementById('btn-open-store').disabled"), true);
    await installer.click('#btn-open-store');
    assert.equal((await installer.received()).length, 2);
    await installer.send('{"action":"webstore_opened","index":0}');
    await installer.after(1500);
    await installer.click(skipButton);
    await installer.after(1000);
    assert.equal(await installer.state("document.getElementById('btn-open-store').disabled"), false);
  });

  test('stay where they are when the program never answers', async () => {
    await startInstalling(installer);
    await detect(installer, ['Brave']);
    await installer.click('#btn-open-store');
    await installer.after(10 * 60 * 1000);
    assert.deepEqual(await installer.active(), ['s-browser']);
    assert.equal(await installer.state("document.getElementById('btn-open-store').disabled"), true);
    assert.equal(await installer.display('#browser-confirm'), 'none');
  });
});
