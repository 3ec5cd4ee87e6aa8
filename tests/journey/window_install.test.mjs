// Installations in the installer's window, with real clicks in a real browser.

import assert from 'node:assert/strict';
import { after, before, describe, test } from 'node:test';
import { browserNames, storeNames } from '../support/browsers/browsers.mjs';
import { assertBothInstalled, assertConsoleAloneInstalled, assertLinkwardAloneInstalled } from './support/assert_state.mjs';
import * as said from './support/expected_messages.mjs';
import * as expected from './support/expected_state.mjs';
import {
  atScreen, browserPlaces, conversation, makeWindowMachine, openInstaller, startInstallation, startSurroundings,
} from './support/window.mjs';

let surroundings;
before(async () => { surroundings = await startSurroundings(); });
after(() => surroundings.stop());

/** Through one browser's step: the store page, then the button with this text. */
async function walkBrowserStep(program, { name, shortName, counter }, button) {
  await atScreen(program, 's-browser');
  await program.page.waitForFunction((text) => document.getElementById('browser-counter').textContent === text, counter);
  assert.equal(await program.page.textContent('#browser-name'), name);
  await program.press(`Open Web Store in ${shortName}`);
  await program.press(button);
}

/** Firefox's step, which is skipped, and what follows. */
async function skipFirefox(installation) {
  await atScreen(installation.program, 's-firefox-notice');
  await installation.program.press('Skip');
  await closeInstaller(installation);
}

/** From the end of the installation to the end of the program. */
async function closeInstaller({ program, ended }) {
  await atScreen(program, 's-complete');
  await program.press('Close Installer');
  const { code, stdout, stderr } = await ended;
  assert.deepEqual([code, stdout, stderr], [0, '', '']);
  assert.deepEqual(program.troubles(), []);
}

describe('in the window', { concurrency: 3 }, () => {
  for (const browsers of [[], ['Brave'], ['Microsoft Edge', 'Vivaldi', 'Opera GX'], browserNames]) {
    test(`both products are installed and ${browsers.length} browsers are walked through`, async (t) => {
      const machine = await makeWindowMachine(t, surroundings, { browsers });
      const installation = await openInstaller(t, surroundings, machine);
      const { program } = installation;
      await startInstallation(program);
      for (const [index, name] of browsers.entries()) {
        await walkBrowserStep(program, {
          name, shortName: storeNames[name], counter: `Browser ${index + 1} of ${browsers.length}`,
        }, index % 2 === 0 ? 'Extension Added' : 'Skip');
      }
      await skipFirefox(installation);

      assert.deepEqual(conversation(program), [
        ...said.bothInstalled(browsers),
        ...browsers.flatMap((_, index) => said.storeOpened(index)),
        said.closeRequest,
      ]);
      // Each browser was started with the store page as its one argument.
      assert.deepEqual(await machine.launches(browsers.length),
        browsers.map((name) => [browserPlaces[name], `"${browserPlaces[name]}" ${said.storePage}`]));
      await assertBothInstalled(machine);
    });
  }

  test('the console alone ends in completion without any browser step', async (t) => {
    const machine = await makeWindowMachine(t, surroundings, { browsers: ['Google Chrome'] });
    const installation = await openInstaller(t, surroundings, machine);
    const { program } = installation;
    await program.click('#card-lw');
    await startInstallation(program);
    await closeInstaller(installation);
    assert.deepEqual(conversation(program), [
      ...said.installed(true, false),
      said.closeRequest,
    ]);
    assert.deepEqual(await machine.launches(0), []);
    await assertConsoleAloneInstalled(machine);
  });

  test('the web protection alone goes on to Firefox and opens its add-on page in the default browser', async (t) => {
    const machine = await makeWindowMachine(t, surroundings);
    const installation = await openInstaller(t, surroundings, machine);
    const { program } = installation;
    await program.click('#card-fwc');
    await startInstallation(program);
    await atScreen(program, 's-firefox-notice');
    await program.press('Open Firefox Add-ons');
    await closeInstaller(installation);
    assert.deepEqual(conversation(program), [
      ...said.installed(false, true),
      ...said.amoOpened,
      said.closeRequest,
    ]);
    assert.deepEqual(await machine.launches(1), [['C:\\Browsers\\default.exe', `"C:\\Browsers\\default.exe" "${said.addonPage}"`]]);
    await assertLinkwardAloneInstalled(machine);
  });

  test('Opera GX shares the App Paths entry of Opera and is listed with the program of Opera', async (t) => {
    const machine = await makeWindowMachine(t, surroundings, { browsers: ['Opera'] });
    await machine.reg('HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\opera.exe', '/ve', '/d',
      browserPlaces.Opera, '/reg:64');
    const installation = await openInstaller(t, surroundings, machine);
    const { program } = installation;
    await startInstallation(program);
    await walkBrowserStep(program, { name: 'Opera', shortName: 'Opera', counter: 'Browser 1 of 2' }, 'Skip');
    await walkBrowserStep(program, { name: 'Opera GX', shortName: 'Opera', counter: 'Browser 2 of 2' }, 'Skip');
    await skipFirefox(installation);
    assert.deepEqual(conversation(program), [
      ...said.bothInstalled(['Opera', 'Opera GX']),
      ...said.storeOpened(0),
      ...said.storeOpened(1),
      said.closeRequest,
    ]);
    const launch = [browserPlaces.Opera, `"${browserPlaces.Opera}" ${said.storePage}`];
    assert.deepEqual(await machine.launches(2), [launch, launch]);
    await assertBothInstalled(machine);
  });

  test('a missing console program is told on the status line and the rest is installed', async (t) => {
    const machine = await makeWindowMachine(t, surroundings);
    const installation = await openInstaller(t, surroundings, machine, { options: ['--source', 'C:\\Browsers'] });
    const { program } = installation;
    await startInstallation(program);
    await skipFirefox(installation);
    const texts = conversation(program);
    // Only the reason is in the system's own words.
    const failure = texts[5][1].replace(/(copy_file: ).*?( \[)/, '$1$2');
    assert.deepEqual([...texts.slice(0, 5), said.program(failure), ...texts.slice(6)], [
      ...said.installed(true, true, { missing: { source: 'C:\\Browsers', reason: '' } }),
      said.closeRequest,
    ]);
    const report = await machine.report();
    // The folder's one file goes along.
    assert.deepEqual(expected.filesBelow(report, expected.programFiles), ['com.veyra.linkward.chromium.json',
      'com.veyra.linkward.firefox.json', 'default.exe', 'VeyraLinkwardInstaller.exe'].map((name) => `Veyra Linkward\\${name}`));
    assert.deepEqual(expected.filesBelow(report, expected.programData), []);
    assert.deepEqual(expected.shortKeys(report.uninstall), [expected.linkwardEntry]);
    assert.deepEqual(expected.shortKeys(report.hosts), expected.hosts);
    assert.equal(report.service.state, 'stopped');
    assert.deepEqual([report.task, report.shortcut, report.policies, report.pending], [null, null, [], []]);
  });
});
