// Messages that the page does not know or cannot read change nothing.

import assert from 'node:assert/strict';
import { describe, test } from 'node:test';
import { shareInstaller } from './support/shared_page.mjs';

const installer = shareInstaller();

/** Everything that a message could change. */
const everything = () => installer.page.evaluate(() => ({
  markup: document.body.innerHTML,
  state: JSON.stringify([selected, browsers, currentBrowserIdx, currentScreen, carouselTimer, carouselIdx]),
  received: window.hostReceived,
}));

describe('messages that the page does not know', () => {
  for (const [what, data] of [
    ['an empty text', ''],
    ['a text that is no JSON', 'install_complete'],
    ['a message cut short', '{"action":"pct","v":5'],
    ['a trailing comma', '{"action":"pct","v":5,}'],
    ['two messages in one', '{"action":"pct","v":5}{"action":"pct","v":6}'],
    ['a line break inside a report', '{"action":"progress","step":"first\nsecond","ok":false}'],
    ['a tab inside a report', '{"action":"progress","step":"a\tb","ok":true}'],
    ['an unescaped quote in a name', '{"action":"browsers_detected","browsers":[{"name":"a"b","index":0}]}'],
    ['an unknown action', '{"action":"reboot"}'],
    ['an action in other letters', '{"action":"PCT","v":5}'],
    ['a request of its own', '{"action":"close"}'],
    ['no action', '{"v":5}'],
    ['an action that is no text', '{"action":5}'],
    ['an empty object', '{}'],
    ['null', 'null'],
    ['a number', '5'],
    ['a bare text', '"pct"'],
    ['a list', '["pct",5]'],
    ['true', 'true'],
  ]) {
    test(`are ignored: ${what}`, async () => {
      const untouched = await everything();
      await installer.send(data);
      await installer.after(5000);
      assert.deepEqual(await everything(), untouched);
      assert.deepEqual(installer.errors, []);
    });
  }
});

test('after all of them the page still listens', async () => {
  await installer.send('{"action":"pct","v":5}');
  assert.equal(await installer.text('#progress-pct'), '5%');
});
