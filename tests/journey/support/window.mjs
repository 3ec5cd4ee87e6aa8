// The installer with its window on a machine that has the stand-in WebView2
// runtime, and the page of it in a real browser.

import { execFileSync } from 'node:child_process';
import { existsSync, readFileSync } from 'node:fs';
import { launchChromium } from '../../../tools/chromium.mjs';
import { startBridge } from '../../standins/webview2_runtime/bridge/bridge.mjs';
import { browsers } from '../../support/browsers/browsers.mjs';
import { startDisplay } from '../../support/display.mjs';
import { installer, makeMachine, waitUntil } from './machine.mjs';

/** What the tests of a file share: a screen and a browser. End both with `stop`. */
export async function startSurroundings() {
  const [display, browser] = await Promise.all([startDisplay(), launchChromium()]);
  return {
    display,
    browser,
    async stop() {
      await browser.close();
      await display.stop();
    },
  };
}

/** Where each known browser's program lies when it is installed for everybody. */
export const browserPlaces = Object.fromEntries(browsers.map(({ name, installedIn, path }) => [name, `${installedIn}\\${path}`]));

/** A machine with a screen, recorder browsers at the places named, and the runtime unless told otherwise. */
export async function makeWindowMachine(t, surroundings, { browsers = [], runtime = true, dpi } = {}) {
  const machine = await makeMachine(t, { display: surroundings.display.name });
  const reg = async (...words) => {
    const { code, stdout, stderr } = await machine.run('reg', ['add', ...words, '/f']);
    if (code !== 0) {
      throw new Error(`reg add ${words.join(' ')}: ${stdout}${stderr}`);
    }
  };
  for (const name of browsers) {
    await machine.prepare('add_browser', browserPlaces[name]);
  }
  await machine.prepare('set_default_browser', 'C:\\Browsers\\default.exe');
  if (runtime) {
    await machine.prepare('add_runtime');
  }
  if (dpi) {
    await reg('HKCU\\Control Panel\\Desktop', '/v', 'LogPixels', '/t', 'REG_DWORD', '/d', String(dpi));
  }
  return Object.assign(machine, {
    reg,
    /**
     * How each recorder browser was started: its own path and its command line. They write it in their own time:
     * waits until `count` of them have.
     */
    async launches(count) {
      const log = machine.path('C:\\browsers.log');
      const written = () => (existsSync(log) ? readFileSync(log, 'utf8').split(/\r?\n/).filter(Boolean) : []);
      await waitUntil(() => written().length >= count, `${count} browsers to be started`);
      return written().map((line) => line.split('\t'));
    },
  });
}

/**
 * Opens the installer's window on a machine. `program` is the bridge's view of it (page, click, transcript
 * and so on), `ended` gives the exit code of what was started: the installer, or a `starter` that starts it.
 * Bridge options go to the bridge.
 */
export async function openInstaller(t, surroundings, machine, { starter = installer, options = [], ...bridgeOptions } = {}) {
  const bridge = await startBridge({ browser: surroundings.browser, ...bridgeOptions });
  t.after(() => bridge.stop());
  const { ended } = machine.start(starter, options, bridge.environment);
  const program = await bridge.nextProgram();
  await program.ready();
  return { program, ended, bridge };
}

/** The mouse on a display and the installer's window there, in pixels of the screen. */
export function screenOf(display) {
  const xdotool = (...words) => execFileSync('xdotool', words.map(String),
    { env: { ...process.env, DISPLAY: display.name }, encoding: 'utf8', stdio: ['ignore', 'pipe', 'ignore'] });
  return {
    /** Where the window with its caption is; nothing when there is none. */
    window() {
      try {
        const text = xdotool('search', '--onlyvisible', '--name', '^Veyra Security Suite — Setup$', 'getwindowgeometry', '--shell');
        const [x, y, width, height] = ['X', 'Y', 'WIDTH', 'HEIGHT']
          .map((name) => Number(text.match(new RegExp(`^${name}=(-?\\d+)$`, 'm'))[1]));
        return { x, y, width, height };
      } catch {
        return undefined;
      }
    },
    doubleClick: (x, y) => xdotool('mousemove', x, y, 'click', '--repeat', 2, '--delay', 20, 1),
    drag: (x, y, right, down) => xdotool('mousemove', x, y, 'mousedown', 1,
      'mousemove_relative', '--', right / 2, down / 2, 'mousemove_relative', '--', right / 2, down / 2, 'mouseup', 1),
  };
}

/** The screen that is at rest, once the page has come to `id`. */
export async function atScreen(program, id) {
  await program.page.waitForFunction((wanted) => {
    const active = [...document.querySelectorAll('.screen.active')].map((screen) => screen.id);
    return active.length === 1 && active[0] === wanted && !document.querySelector('.screen.exit');
  }, id, { timeout: 60000 });
}

/** Texts of both directions in their order, each with the side it came from. */
export const conversation = (program) => program.messages().map(({ from, text, json }) => [from, text ?? json]);

/** From the welcome screen through the warning to the start of the run. */
export async function startInstallation(program) {
  await atScreen(program, 's-welcome');
  await program.press('Install Selected');
  await atScreen(program, 's-close-browsers');
  await program.press('Continue');
  await atScreen(program, 's-installing');
}
