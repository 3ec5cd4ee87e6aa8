// Every message from the program and what the page makes of it, with fields missing or not.

import assert from 'node:assert/strict';
import { describe, test } from 'node:test';
import { screens } from './support/installer_page.mjs';
import { shareFreshInstaller } from './support/shared_page.mjs';

const installer = shareFreshInstaller();

const label = () => installer.text('#progress-label');
const status = () => installer.text('#uninstall-status');
const pct = () => installer.text('#progress-pct');
const width = () => installer.state("document.getElementById('progress-fill').style.width");

describe('"status"', () => {
  test('shows its text', async () => {
    for (const text of ['Closing browser processes...', 'Installing Fortwright Console...',
      'Installing Veyra Linkward...', 'Detecting installed browsers...']) {
      await installer.send(`{"action":"status","text":"${text}"}`);
      assert.equal(await label(), text);
    }
  });

  test('shows markup as the text that it is', async () => {
    await installer.send({ action: 'status', text: '<img src=x onerror=goTo()> & more' });
    assert.equal(await label(), '<img src=x onerror=goTo()> & more');
    assert.equal(await installer.state("document.querySelectorAll('img').length"), 0);
  });

  test('without a text clears the line', async () => {
    await installer.send('{"action":"status"}');
    assert.equal(await label(), '');
  });
});

describe('"pct"', () => {
  test('sets the bar and the number', async () => {
    for (const value of [0, 5, 40, 85, 90, 100]) {
      await installer.send(`{"action":"pct","v":${value}}`);
      assert.deepEqual([await pct(), await width()], [`${value}%`, `${value}%`]);
    }
  });

  test('leaves the line above the bar alone', async () => {
    await installer.send('{"action":"pct","v":85}');
    assert.equal(await label(), 'Preparing installation...');
  });
});

describe('"progress"', () => {
  test('shows its step, whether it went well or not', async () => {
    await installer.send('{"action":"progress","step":"Service installed and started","ok":true}');
    assert.equal(await label(), 'Service installed and started');
    await installer.send('{"action":"progress","step":"Service could not be started","ok":false}');
    assert.equal(await label(), 'Service could not be started');
  });

  test('shows quotes, backslashes and other scripts as they were reported', async () => {
    await installer.send('{"action":"progress","step":"\\"C:\\\\Program Files\\\\\u00c4\u65e5\u{1f6e1}\\"","ok":true}');
    assert.equal(await label(), '"C:\\Program Files\\\u00c4\u65e5\u{1f6e1}"');
  });

  for (const [what, data] of [
    ['without a step', '{"action":"progress","ok":true}'],
    ['with an empty step', '{"action":"progress","step":"","ok":false}'],
  ]) {
    test(`${what} clears the line`, async () => {
      await installer.send('{"action":"progress","step":"something","ok":true}');
      await installer.send(data);
      assert.equal(await label(), '');
    });
  }
});

describe('"browsers_detected"', () => {
  test('stores the list and completes the bar at once', async () => {
    await installer.send('{"action":"browsers_detected","browsers":[{"name":"Brave","index":0},{"name":"Opera","index":1}]}');
    assert.deepEqual(await installer.state('browsers'),
      [{ name: 'Brave', index: 0 }, { name: 'Opera', index: 1 }]);
    assert.deepEqual([await label(), await pct(), await width()], ['Installation complete!', '100%', '100%']);
    assert.deepEqual(await installer.active(), ['s-welcome']);
  });

  test('begins with the first browser, also the second time', async () => {
    const list = '{"action":"browsers_detected","browsers":[{"name":"Brave","index":0},{"name":"Opera","index":1}]}';
    await installer.send(list);
    await installer.after(900);
    await installer.state('browserDone()');
    await installer.after(1000);
    assert.equal(await installer.state('currentBrowserIdx'), 1);
    await installer.send(list);
    await installer.after(900);
    assert.equal(await installer.state('currentBrowserIdx'), 0);
    assert.equal(await installer.text('#browser-counter'), 'Browser 1 of 2');
    assert.equal(await installer.text('#browser-name'), 'Brave');
  });

  for (const [what, data] of [
    ['with an empty list', '{"action":"browsers_detected","browsers":[]}'],
    ['without a list', '{"action":"browsers_detected"}'],
  ]) {
    test(`${what} leads to the Firefox step`, async () => {
      await installer.state("browsers = [{ name: 'Brave', index: 0 }]");
      await installer.send(data);
      assert.deepEqual(await installer.state('browsers'), []);
      assert.deepEqual([await label(), await pct()], ['Installation complete!', '100%']);
      await installer.after(900);
      assert.deepEqual(await installer.active(), ['s-firefox-notice']);
    });
  }

  test('stops the slide show and leaves its variable as it was', async () => {
    await installer.state('startCarousel()');
    const timer = await installer.state('carouselTimer');
    await installer.send('{"action":"browsers_detected","browsers":[]}');
    // Two changes and a half, had it gone on.
    await installer.after(10000);
    assert.equal(await installer.state('carouselIdx'), 0);
    assert.equal(await installer.state('carouselTimer'), timer);
  });
});

describe('"install_complete"', () => {
  test('completes the bar at once and then shows the completion screen', async () => {
    await installer.send('{"action":"install_complete"}');
    assert.deepEqual([await label(), await pct(), await width()], ['Installation complete!', '100%', '100%']);
    await installer.after(900);
    assert.deepEqual(await installer.active(), ['s-complete']);
  });

  test('stops the slide show and leaves its variable as it was', async () => {
    await installer.state('startCarousel()');
    const timer = await installer.state('carouselTimer');
    await installer.send('{"action":"install_complete"}');
    // Two changes and a half, had it gone on.
    await installer.after(10000);
    assert.equal(await installer.state('carouselIdx'), 0);
    assert.equal(await installer.state('carouselTimer'), timer);
  });
});

describe('"webstore_opened"', () => {
  for (const data of [
    '{"action":"webstore_opened","index":0}', '{"action":"webstore_opened","index":7}',
    '{"action":"webstore_opened","index":-1}', '{"action":"webstore_opened"}',
  ]) {
    test(`brings the confirm buttons, whatever its index: ${data}`, async () => {
      await installer.send(data);
      await installer.after(1500);
      assert.equal(await installer.display('#browser-actions'), 'none');
      assert.equal(await installer.display('#browser-confirm'), 'flex');
    });
  }
});

describe('"amo_opened"', () => {
  test('shows the completion screen', async () => {
    await installer.send('{"action":"amo_opened"}');
    assert.deepEqual(await installer.leaving(), ['s-welcome']);
    await installer.after(100);
    assert.deepEqual(await installer.active(), ['s-complete']);
  });
});

describe('"uninstall_progress"', () => {
  test('shows its step, whether it went well or not', async () => {
    await installer.send('{"action":"uninstall_progress","step":"No browsers running","ok":true}');
    assert.equal(await status(), 'No browsers running');
    await installer.send('{"action":"uninstall_progress","step":"Some files remain","ok":false}');
    assert.equal(await status(), 'Some files remain');
    assert.equal(await label(), 'Preparing installation...');
  });

  for (const [what, data] of [
    ['without a step', '{"action":"uninstall_progress","ok":true}'],
    ['with an empty step', '{"action":"uninstall_progress","step":"","ok":true}'],
  ]) {
    test(`${what} shows "Cleaning up..."`, async () => {
      await installer.send(data);
      assert.equal(await status(), 'Cleaning up...');
    });
  }
});

describe('"uninstall_done"', () => {
  test('shows the removal-done screen', async () => {
    await installer.send('{"action":"uninstall_done"}');
    await installer.after(700);
    assert.deepEqual(await installer.active(), ['s-uninstall-done']);
  });
});

describe('script call', () => {
  test("goTo('s-uninstall-confirm'); opens the confirmation and posts nothing", async () => {
    await installer.state("goTo('s-uninstall-confirm');");
    await installer.after(100);
    assert.deepEqual(await installer.active(), ['s-uninstall-confirm']);
    assert.equal(await installer.state('currentScreen'), 's-uninstall-confirm');
    assert.deepEqual(await installer.received(), []);
  });

  test('reaches every screen', async () => {
    for (const id of [...screens.slice(1), screens[0]]) {
      await installer.state(`goTo('${id}');`);
      await installer.after(100);
      assert.deepEqual(await installer.active(), [id]);
    }
  });
});
