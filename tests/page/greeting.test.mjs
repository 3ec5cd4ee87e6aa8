// The greeting and the picture above it, at every hour of the local clock.

import assert from 'node:assert/strict';
import { after, before, describe, test } from 'node:test';
import { launchChromium, openInstaller } from './support/installer_page.mjs';

let browser;
let installer;
before(async () => {
  browser = await launchChromium();
  installer = await openInstaller(browser);
});
after(() => browser.close());

/** Loads the page anew at the given moment and tells what it shows. */
async function welcomeAt(time, opened = installer) {
  await opened.page.clock.setFixedTime(new Date(time));
  await opened.page.reload();
  return {
    greeting: await opened.text('#greeting'),
    sun: await opened.display('#icon-sun'),
    moon: await opened.display('#icon-moon'),
  };
}

const sun = { sun: 'block', moon: 'none' };
const moon = { sun: 'none', moon: 'block' };

describe('greeting', () => {
  for (let hour = 0; hour < 24; ++hour) {
    const greeting = hour < 12 ? 'Good morning' : hour < 17 ? 'Good afternoon' : 'Good evening';
    const picture = hour >= 6 && hour < 17 ? sun : moon;
    const label = String(hour).padStart(2, '0');
    test(`from ${label}:00:00 to ${label}:59:59 is "${greeting}" with the ${picture.sun === 'block' ? 'sun' : 'moon'}`, async () => {
      assert.deepEqual(await welcomeAt(`2026-03-02T${label}:00:00Z`), { greeting, ...picture });
      assert.deepEqual(await welcomeAt(`2026-03-02T${label}:59:59.999Z`), { greeting, ...picture });
    });
  }

  test('goes by the local hour, not by universal time', async () => {
    for (const [timezoneId, expected] of [
      ['Asia/Tokyo', { greeting: 'Good morning', ...sun }],
      ['America/New_York', { greeting: 'Good afternoon', ...sun }],
    ]) {
      const elsewhere = await openInstaller(browser, { timezoneId });
      assert.deepEqual(await welcomeAt('2026-03-02T21:30:00Z', elsewhere), expected, timezoneId);
      await elsewhere.close();
    }
  });

  test('is set once: hours later the open page still shows the same', async () => {
    const opened = await openInstaller(browser, { time: new Date('2026-03-02T11:59:00Z') });
    await opened.after(6 * 60 * 60 * 1000);
    assert.equal(await opened.text('#greeting'), 'Good morning');
    assert.equal(await opened.display('#icon-sun'), 'block');
    await opened.close();
  });
});
