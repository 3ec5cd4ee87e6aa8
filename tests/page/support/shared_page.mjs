// One opened page for all the tests of a file. To be called while the file is loaded.

import assert from 'node:assert/strict';
import { after, afterEach, before, beforeEach } from 'node:test';
import { launchChromium, openInstaller } from './installer_page.mjs';

/** The page, open from before the first test until after the last. */
export function shareInstaller() {
  const installer = {};
  let browser;
  before(async () => {
    browser = await launchChromium();
    Object.assign(installer, await openInstaller(browser));
  });
  after(() => browser.close());
  return installer;
}

/** The same, loaded anew for each test; none may leave an error in the page. */
export function shareFreshInstaller() {
  const installer = shareInstaller();
  beforeEach(() => installer.restart());
  afterEach(() => assert.deepEqual(installer.errors, []));
  return installer;
}
