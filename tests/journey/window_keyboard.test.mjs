// The installer's window without a mouse: whole flows by keys alone, held keys, and impatient fingers, with the real
// program behind the page.

import assert from 'node:assert/strict';
import { after, before, describe, test } from 'node:test';
import { simulatedAnswers } from '../support/simulated_program.mjs';
import { assertBothInstalled, assertNothingInstalled } from './support/assert_state.mjs';
import * as said from './support/expected_messages.mjs';
import { atScreen, conversation, makeWindowMachine, openInstaller, startSurroundings } from './support/window.mjs';

let surroundings;
before(async () => { surroundings = await startSurroundings(); });
after(() => surroundings.stop());

/** Comes to the button of the screen on show whose text begins so, by the Tab key alone. */
async function tabTo({ page }, text) {
  const reached = () => page.evaluate(() => document.activeElement.ariaLabel ?? document.activeElement.textContent.trim());
  for (let stops = 0; !(await reached()).startsWith(text); ++stops) {
    assert.ok(stops < 10, `the Tab key does not come to "${text}"`);
    await page.keyboard.press('Tab');
  }
}

async function pressByKey(program, text, key = 'Enter') {
  await tabTo(program, text);
  await program.key(key);
}

/** Holds Enter until the page has come to a screen, and for a while on it. */
async function holdEnterUntil(program, text, id) {
  await tabTo(program, text);
  const { keyboard } = program.page;
  await keyboard.down('Enter');
  let isThere = false;
  const arrived = atScreen(program, id).finally(() => { isThere = true; });
  arrived.catch(() => {}); // told below
  // As a keyboard repeats it.
  for (let more = 20; more > 0; more -= isThere ? 1 : 0) {
    await keyboard.down('Enter');
    await program.page.waitForTimeout(33);
  }
  await keyboard.up('Enter');
  await arrived;
}

async function endOf({ program, ended }) {
  const { code, stdout, stderr } = await ended;
  assert.deepEqual([code, stdout, stderr], [0, '', '']);
  assert.deepEqual(program.troubles(), []);
}

/** The preview's program, asked the same, must have said the same. */
async function assertPreviewSaysTheSame(program, settings) {
  const half = (side) => conversation(program).filter(([from]) => from === side).map(([, text]) => text);
  assert.deepEqual(await simulatedAnswers(half('page'), settings), half('program'));
}

describe('by keys alone', { concurrency: 3 }, () => {
  test('both products are installed, message for message as with the mouse', async (t) => {
    const browsers = ['Microsoft Edge', 'Google Chrome'];
    const machine = await makeWindowMachine(t, surroundings, { browsers });
    const installation = await openInstaller(t, surroundings, machine);
    const { program } = installation;
    await atScreen(program, 's-welcome');
    await pressByKey(program, 'Veyra Linkward', ' ');
    await pressByKey(program, 'Veyra Linkward', 'Enter');
    await pressByKey(program, 'Install Selected');
    await atScreen(program, 's-close-browsers');
    await pressByKey(program, 'Continue', ' ');
    await atScreen(program, 's-browser');
    for (const [index, shortName] of ['Edge', 'Chrome'].entries()) {
      await program.page.waitForFunction((name) => document.getElementById('browser-name').textContent === name, browsers[index]);
      await pressByKey(program, `Open Web Store in ${shortName}`);
      await program.page.waitForFunction(() => document.getElementById('browser-confirm').style.display === 'flex');
      await pressByKey(program, index ? 'Skip' : '\u2713 Extension Added', ' ');
    }
    await atScreen(program, 's-firefox-notice');
    await pressByKey(program, 'Open Firefox Add-ons');
    await atScreen(program, 's-complete');
    await pressByKey(program, 'Close Installer');
    await endOf(installation);
    assert.deepEqual(conversation(program), [
      ...said.bothInstalled(browsers), ...said.storeOpened(0), ...said.storeOpened(1), ...said.amoOpened, said.closeRequest,
    ]);
    await assertPreviewSaysTheSame(program, { browsers: 2 });
    assert.equal((await machine.launches(3)).length, 3);
    await assertBothInstalled(machine);
  });

  test('both products are removed, message for message as with the mouse', async (t) => {
    const machine = await makeWindowMachine(t, surroundings);
    assert.equal((await machine.install('-s')).code, 0);
    const removal = await openInstaller(t, surroundings, machine);
    const { program } = removal;
    await atScreen(program, 's-welcome');
    await pressByKey(program, 'Uninstall', ' ');
    await atScreen(program, 's-uninstall-confirm');
    await pressByKey(program, 'Uninstall Everything');
    await atScreen(program, 's-uninstall-done');
    await pressByKey(program, 'Close', ' ');
    await endOf(removal);
    assert.deepEqual(conversation(program), [...said.removal(), said.closeRequest]);
    await assertPreviewSaysTheSame(program);
    await assertNothingInstalled(machine);
  });

  test('the removal screen that the program opens is the only one there is', async (t) => {
    const machine = await makeWindowMachine(t, surroundings);
    const { program } = await openInstaller(t, surroundings, machine, { options: ['--uninstall-gui'] });
    await atScreen(program, 's-uninstall-confirm');
    const stops = [];
    for (let i = 0; i < 6; ++i) {
      stops.push(await program.page.evaluate(() => document.activeElement.id || document.activeElement.textContent.trim().slice(0, 20)));
      await program.page.keyboard.press('Tab');
    }
    assert.deepEqual(stops.slice(0, 3), ['s-uninstall-confirm', 'Uninstall Everything', 'Cancel']);
    assert.ok(stops.every((stop) => !stop.startsWith('Install') && !stop.startsWith('Continue')), stops.join());
    assert.deepEqual(conversation(program), []);
  });
});

describe('impatient fingers', { concurrency: 3 }, () => {
  test('that hold Enter from "Continue" on start one installation', async (t) => {
    const machine = await makeWindowMachine(t, surroundings);
    const installation = await openInstaller(t, surroundings, machine);
    const { program } = installation;
    await atScreen(program, 's-welcome');
    await holdEnterUntil(program, 'Install Selected', 's-close-browsers');
    await holdEnterUntil(program, 'Continue', 's-firefox-notice');
    await holdEnterUntil(program, 'Open Firefox Add-ons', 's-complete');
    await pressByKey(program, 'Close Installer');
    await endOf(installation);
    assert.deepEqual(conversation(program), [...said.bothInstalled([]), ...said.amoOpened, said.closeRequest]);
    assert.equal((await machine.launches(1)).length, 1);
    await assertBothInstalled(machine);
  });

  test('that click every button twice open each page once and pass over no browser', async (t) => {
    const browsers = ['Microsoft Edge', 'Brave'];
    const machine = await makeWindowMachine(t, surroundings, { browsers });
    const installation = await openInstaller(t, surroundings, machine);
    const { program } = installation;
    const clickTwice = async (text) => {
      const button = program.page.locator('.screen.active button', { hasText: text });
      // Where nothing moves any more, in one place, and so slowly that something else has come up.
      await button.click({ trial: true });
      const { x, y, width, height } = await button.boundingBox();
      const { mouse } = program.page;
      await mouse.move(x + width / 2, y + height / 2);
      await mouse.down({ clickCount: 1 });
      await mouse.up({ clickCount: 1 });
      await program.page.waitForTimeout(330);
      await mouse.down({ clickCount: 2 });
      await mouse.up({ clickCount: 2 });
    };
    await atScreen(program, 's-welcome');
    await clickTwice('Install Selected');
    await atScreen(program, 's-close-browsers');
    await clickTwice('Continue');
    await atScreen(program, 's-browser');
    for (const name of browsers) {
      await program.page.waitForFunction((wanted) => document.getElementById('browser-name').textContent === wanted, name);
      await clickTwice('Open Web Store');
      await program.page.waitForFunction(() => document.getElementById('browser-confirm').style.display === 'flex');
      await clickTwice('Skip');
    }
    await atScreen(program, 's-firefox-notice');
    await clickTwice('Open Firefox Add-ons');
    await atScreen(program, 's-complete');
    await program.press('Close Installer');
    await endOf(installation);
    assert.deepEqual(conversation(program), [
      ...said.bothInstalled(browsers), ...said.storeOpened(0), ...said.storeOpened(1), ...said.amoOpened, said.closeRequest,
    ]);
    assert.equal((await machine.launches(3)).length, 3);
    await assertBothInstalled(machine);
  });
});
