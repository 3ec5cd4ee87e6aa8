// Installations in the installer's window, with real clicks in a real browser.

import assert from 'node:assert/strict';
import { existsSync, readFileSync, writeFileSync } from 'node:fs';
import { after, before, describe, test } from 'node:test';
import { startDisplay } from '../support/display.mjs';
import {
  assertBothInstalled, assertConsoleAloneInstalled, assertLinkwardAloneInstalled, assertNothingInstalled,
} from './support/assert_state.mjs';
import * as said from './support/expected_messages.mjs';
import * as expected from './support/expected_state.mjs';
import { built, waitUntil } from './support/machine.mjs';
import {
  atScreen, browserPlaces, conversation, makeWindowMachine, openInstaller, press, screenOf, startSurroundings,
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
      said.installRequest(true, false),
      ...said.browsersClosed(),
      ...said.consoleInstalled(90),
      ...said.completeWithoutLinkward,
      said.closeRequest,
    ]);
    assert.deepEqual(machine.launches(), []);
    await assertConsoleAloneInstalled(machine);
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
    await atScreen(program, 's-firefox-notice');
    await press(program, 'Skip');
    await closeInstaller(installation);
    assert.deepEqual(conversation(program), [
      said.installRequest(true, true),
      ...said.browsersClosed(),
      ...said.consoleInstalled(40),
      ...said.linkwardInstalled,
      said.browsersDetected(['Opera', 'Opera GX']),
      ...said.storeOpened(0),
      ...said.storeOpened(1),
      said.closeRequest,
    ]);
    const launch = [browserPlaces.Opera, `"${browserPlaces.Opera}" ${said.storePage}`];
    assert.deepEqual(machine.launches(), [launch, launch]);
    await assertBothInstalled(machine);
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
    await assertNothingInstalled(machine);
  });

  test('a missing console program is told on the status line and the rest is installed', async (t) => {
    const machine = await makeWindowMachine(t, surroundings);
    const installation = await openInstaller(t, surroundings, machine, { options: ['--source', 'C:\\Browsers'] });
    const { program } = installation;
    await startInstallation(program);
    await atScreen(program, 's-firefox-notice');
    await press(program, 'Skip');
    await closeInstaller(installation);
    const texts = conversation(program);
    // Only the reason is in the system's own words.
    const failure = texts[5][1].replace(/(copy_file: ).*?( \[)/, '$1$2');
    assert.deepEqual([...texts.slice(0, 5), said.program(failure), ...texts.slice(6)], [
      said.installRequest(true, true),
      ...said.browsersClosed(),
      ...said.consoleMissing(40, 'Failed to copy Fortwright.exe: filesystem error: copy_file:  '
        + '[C:\\\\Browsers\\\\Fortwright.exe] [C:\\\\Program Files\\\\Brackenfold\\\\FWC\\\\Fortwright.exe]'),
      ...said.linkwardInstalledFromNothing,
      said.browsersDetected([]),
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
        `true, 0, C:\\users\\${machine.user}\\Temp\\VeyraInstaller_WebView2, null`]]);
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

  test('at 144 DPI the page keeps its size on a finer screen, and the window its own whatever the mouse does', async (t) => {
    const display = await startDisplay({ width: 1600, height: 1200 });
    t.after(() => display.stop());
    const machine = await makeWindowMachine(t, { display }, { dpi: 144 });
    await machine.restart();
    const { program } = await openInstaller(t, surroundings, machine);
    const sizes = () => program.transcript.filter(({ event }) => event === 'bounds')
      .map(({ left, top, right, bottom, dpi }) => [left, top, right, bottom, dpi]);
    assert.deepEqual(sizes(), [[0, 0, 1380, 960, 144]]);
    assert.deepEqual(await program.page.evaluate(() => [innerWidth, innerHeight, devicePixelRatio]), [920, 640, 1.5]);

    const screen = screenOf(display);
    const before = screen.window();
    const [right, bottom] = [before.x + before.width, before.y + before.height];
    const caption = [before.x + before.width / 2, before.y + (before.height - 960) / 2].map(Math.trunc);
    screen.doubleClick(...caption); // maximises a window that can be
    screen.drag(right - 1, bottom - 1, 60, 40); // by the corner
    screen.drag(right - 1, before.y + 500, 60, 0); // by the edge
    // It can be moved: what was done before has been dealt with when it arrives.
    screen.drag(...caption, -40, 20);
    const moved = { ...before, x: before.x - 40, y: before.y + 20 };
    await waitUntil(() => screen.window().x === moved.x && screen.window().y === moved.y, 'the window to be moved');
    assert.deepEqual(screen.window(), moved);
    assert.ok(sizes().every(([, , width, height]) => width === 1380 && height === 960), JSON.stringify(sizes()));
  });

  test('closing in the middle of a run ends the program at once with 0', async (t) => {
    const machine = await makeWindowMachine(t, surroundings);
    // Holds the run, which waits fifteen seconds at most, in the middle of the console's installation.
    writeFileSync(machine.path('C:\\schtasks.hold'), '');
    const { program, ended } = await openInstaller(t, surroundings, machine);
    await startInstallation(program);
    await program.waitFor(({ event, text }) => event === 'message' && text?.includes('Created desktop shortcut'));
    await waitUntil(() => existsSync(machine.path('C:\\schtasks.log')), 'the task to be scheduled');
    await program.post('{"action":"close"}');
    const { code, stdout, stderr } = await ended;
    assert.deepEqual([code, stdout, stderr], [0, '', '']);
    const throughShortcut = said.consoleInstalled(40).slice(0, 4);
    assert.deepEqual(conversation(program),
      [said.installRequest(true, true), ...said.browsersClosed(), ...throughShortcut, said.closeRequest]);
    // What was done stays; what would have followed is not there.
    const report = await machine.report();
    assert.deepEqual(expected.filesBelow(report, expected.programFiles), expected.consoleFiles);
    assert.deepEqual(report.task_calls, [expected.createTaskCommand]);
    assert.equal(report.shortcut.target, `${expected.consoleFolder}\\Fortwright.exe`);
    assert.deepEqual([report.uninstall, report.hosts, report.service, report.pending], [[], [], null, []]);
  });
});
