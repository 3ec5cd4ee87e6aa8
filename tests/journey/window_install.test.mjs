// Installations in the installer's window, with real clicks in a real browser.

import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { after, before, describe, test } from 'node:test';
import * as said from './support/expected_messages.mjs';
import * as expected from './support/expected_state.mjs';
import { built } from './support/machine.mjs';
import {
  atScreen, browserPlaces, conversation, makeWindowMachine, openInstaller, press, startSurroundings,
} from './support/window.mjs';

let surroundings;
before(async () => { surroundings = await startSurroundings(); });
after(() => surroundings.stop());

/** From the welcome screen through the warning to the start of the run. */
async function startInstallation(program) {
  await atScreen(program, 's-welcome');
  await press(program, 'Install Selected');
  await atScreen(program, 's-close-browsers');
  await press(program, 'Continue');
  await atScreen(program, 's-installing');
}

/** Through one browser's step: the store page, then the button with this text. */
async function walkBrowserStep(program, { name, shortName, counter }, button) {
  await atScreen(program, 's-browser');
  await program.page.waitForFunction((text) => document.getElementById('browser-counter').textContent === text, counter);
  assert.equal(await program.page.textContent('#browser-name'), name);
  await press(program, `Open Web Store in ${shortName}`);
  await press(program, button);
}

/** From the end of the installation to the end of the program. */
async function closeInstaller({ program, ended }) {
  await atScreen(program, 's-complete');
  await press(program, 'Close Installer');
  const { code, stdout, stderr } = await ended;
  assert.deepEqual([code, stdout, stderr], [0, '', '']);
  assert.deepEqual(program.troubles(), []);
}

const shortNames = {
  'Microsoft Edge': 'Edge', 'Google Chrome': 'Chrome', Brave: 'Brave', Vivaldi: 'Vivaldi', Opera: 'Opera', 'Opera GX': 'Opera',
};

describe('in the window', { concurrency: 3 }, () => {
  for (const browsers of [[], ['Brave'], ['Microsoft Edge', 'Vivaldi', 'Opera GX'], Object.keys(browserPlaces)]) {
    test(`both products are installed and ${browsers.length} browsers are walked through`, async (t) => {
      const machine = await makeWindowMachine(t, surroundings, { browsers });
      const installation = await openInstaller(t, surroundings, machine);
      const { program } = installation;
      await startInstallation(program);
      for (const [index, name] of browsers.entries()) {
        await walkBrowserStep(program, {
          name, shortName: shortNames[name], counter: `Browser ${index + 1} of ${browsers.length}`,
        }, index % 2 === 0 ? 'Extension Added' : 'Skip');
      }
      await atScreen(program, 's-firefox-notice');
      await press(program, 'Skip');
      await closeInstaller(installation);

      assert.deepEqual(conversation(program), [
        said.installRequest(true, true),
        ...said.browsersClosed(),
        ...said.consoleInstalled(40),
        ...said.linkwardInstalled,
        said.browsersDetected(browsers),
        ...browsers.flatMap((_, index) => said.storeOpened(index)),
        said.closeRequest,
      ]);
      // Each browser was started with the store page as its one argument.
      assert.deepEqual(machine.launches().map(([path]) => path), browsers.map((name) => browserPlaces[name]));
      for (const [path, commandLine] of machine.launches()) {
        assert.equal(commandLine, `"${path}" ${said.storePage}`);
      }
      const report = await machine.report();
      assert.deepEqual(expected.filesBelow(report, expected.programFiles),
        [...expected.consoleFiles, ...expected.linkwardFiles]);
      assert.deepEqual(expected.filesBelow(report, expected.programData), expected.dataFiles);
      assert.equal(report.service.state, 'running');
      assert.deepEqual(expected.shortKeys(report.hosts), expected.hosts);
      assert.equal(report.uninstall.length, 2);
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
      said.installRequest(true, false),
      ...said.browsersClosed(),
      ...said.consoleInstalled(90),
      ...said.completeWithoutLinkward,
      said.closeRequest,
    ]);
    const report = await machine.report();
    assert.deepEqual(expected.filesBelow(report, expected.programFiles), expected.consoleFiles);
    assert.equal(report.service, null);
  });

  test('the web protection alone goes on to Firefox and opens its add-on page in the default browser', async (t) => {
    const machine = await makeWindowMachine(t, surroundings);
    const installation = await openInstaller(t, surroundings, machine);
    const { program } = installation;
    await program.click('#card-fwc');
    await startInstallation(program);
    await atScreen(program, 's-firefox-notice');
    await press(program, 'Open Firefox Add-ons');
    await closeInstaller(installation);
    assert.deepEqual(conversation(program), [
      said.installRequest(false, true),
      ...said.browsersClosed(),
      ...said.linkwardInstalled,
      said.browsersDetected([]),
      ...said.amoOpened,
      said.closeRequest,
    ]);
    assert.deepEqual(machine.launches(), [['C:\\Browsers\\default.exe', `"C:\\Browsers\\default.exe" "${said.addonPage}"`]]);
    const report = await machine.report();
    assert.deepEqual(expected.filesBelow(report, expected.programFiles), expected.linkwardFiles);
  });

  test('Opera GX shares the App Paths entry of Opera and is listed with the program of Opera', async (t) => {
    const machine = await makeWindowMachine(t, surroundings, { browsers: ['Opera'] });
    await machine.reg('HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Paths\\opera.exe', '/ve', '/d',
      browserPlaces.Opera, '/reg:64');
    const { program } = await openInstaller(t, surroundings, machine);
    await startInstallation(program);
    await walkBrowserStep(program, { name: 'Opera', shortName: 'Opera', counter: 'Browser 1 of 2' }, 'Skip');
    await walkBrowserStep(program, { name: 'Opera GX', shortName: 'Opera', counter: 'Browser 2 of 2' }, 'Skip');
    await atScreen(program, 's-firefox-notice');
    assert.deepEqual(conversation(program).slice(-5),
      [said.browsersDetected(['Opera', 'Opera GX']), ...said.storeOpened(0), ...said.storeOpened(1)]);
    assert.deepEqual(machine.launches().map(([path]) => path), [browserPlaces.Opera, browserPlaces.Opera]);
  });

  test('going back and cancelling send nothing', async (t) => {
    const machine = await makeWindowMachine(t, surroundings);
    const { program } = await openInstaller(t, surroundings, machine);
    await atScreen(program, 's-welcome');
    await press(program, 'Install Selected');
    await atScreen(program, 's-close-browsers');
    await press(program, 'Back');
    await atScreen(program, 's-welcome');
    await press(program, 'Uninstall');
    await atScreen(program, 's-uninstall-confirm');
    await press(program, 'Cancel');
    await atScreen(program, 's-welcome');
    assert.deepEqual(conversation(program), []);
    assert.equal((await machine.report()).empty, true);
  });

  test('a missing console program is told on the status line and the rest is installed', async (t) => {
    const machine = await makeWindowMachine(t, surroundings);
    const { program } = await openInstaller(t, surroundings, machine, { options: ['--source', 'C:\\Browsers'] });
    await startInstallation(program);
    await atScreen(program, 's-firefox-notice');
    const texts = conversation(program).map(([, text]) => text);
    assert.match(texts[5], /^\{"action":"progress","step":"Failed to copy Fortwright\.exe: .*copy_file.*C:\\\\Browsers\\\\Fortwright\.exe.*","ok":false\}$/);
    assert.equal(texts[6], '{"action":"pct","v":40}');
    assert.ok(texts.some((text) => /"step":"Service installed but start failed \(error 2\)","ok":true/.test(text)), texts.join('\n'));
    assert.equal(texts.at(-1), '{"action":"browsers_detected","browsers":[]}');
  });

  test('the control is set up step by step before the page is loaded', async (t) => {
    const machine = await makeWindowMachine(t, surroundings);
    const { program } = await openInstaller(t, surroundings, machine);
    const pageFile = readFileSync(built('ORVANTA_PAGE_FILE'), 'utf8');
    const steps = program.transcript.filter(({ from }) => from === 'program').map(({ event, method, ...details }) => [
      method ?? event, details.arguments ?? details.html ?? details.dpi
        ?? [details.a, details.r, details.g, details.b].filter((value) => value !== undefined).join()]);
    const names = steps.map(([name]) => name);
    const from = names.indexOf('create controller');
    assert.deepEqual(steps.slice(0, from).filter(([name]) => name.startsWith('CreateWebView')), [
      ['CreateWebViewEnvironmentWithOptionsInternal',
        `true, 0, C:\\users\\${process.env.USER ?? 'root'}\\Temp\\VeyraInstaller_WebView2, null`]]);
    assert.deepEqual(names.slice(from).filter((name) => !/handled|Release/.test(name)), [
      'create controller',
      'ICoreWebView2Controller::get_CoreWebView2',
      'bounds',
      'ICoreWebView2::get_Settings',
      'ICoreWebView2Settings::put_IsZoomControlEnabled',
      'ICoreWebView2Settings::put_IsStatusBarEnabled',
      'ICoreWebView2Settings::put_AreDevToolsEnabled',
      'background',
      'ICoreWebView2::add_WebMessageReceived',
      'navigate',
    ]);
    for (const name of names.filter((candidate) => candidate.startsWith('ICoreWebView2Settings::put'))) {
      assert.equal(steps.find(([candidate]) => candidate === name)[1], 'FALSE');
    }
    assert.deepEqual(steps.find(([name]) => name === 'background')[1], '255,8,12,20');
    assert.equal(steps.find(([name]) => name === 'navigate')[1], pageFile);
    const bounds = program.transcript.find(({ event }) => event === 'bounds');
    assert.deepEqual([bounds.left, bounds.top, bounds.right, bounds.bottom, bounds.dpi], [0, 0, 920, 640, 96]);
  });

  test('at 144 DPI the page keeps its size on a finer screen', async (t) => {
    const machine = await makeWindowMachine(t, surroundings, { dpi: 144 });
    await machine.restart();
    const { program } = await openInstaller(t, surroundings, machine);
    const bounds = program.transcript.find(({ event }) => event === 'bounds');
    assert.deepEqual([bounds.left, bounds.top, bounds.right, bounds.bottom, bounds.dpi], [0, 0, 1380, 960, 144]);
    assert.deepEqual(await program.page.evaluate(() => [innerWidth, innerHeight, devicePixelRatio]), [920, 640, 1.5]);
  });

  test('closing in the middle of a run ends the program at once with 0', async (t) => {
    const machine = await makeWindowMachine(t, surroundings, { browsers: ['Google Chrome'] });
    // A browser to close: the run then pauses for a second and a half.
    const chrome = await machine.startAndWait(browserPlaces['Google Chrome'], ['--stay']);
    const { program, ended } = await openInstaller(t, surroundings, machine);
    await startInstallation(program);
    await program.waitFor(({ event, text }) => event === 'message' && text?.includes('Closed 1 browser process(es)'));
    await program.post('{"action":"close"}');
    assert.equal((await ended).code, 0);
    await chrome.ended;
    assert.deepEqual(conversation(program), [
      said.installRequest(true, true), ...said.browsersClosed('Closed 1 browser process(es)').slice(0, 2), said.closeRequest,
    ]);
    assert.equal((await machine.report()).empty, true);
  });
});
