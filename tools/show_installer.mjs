// Runs the installer with its window on a machine that has the stand-in WebView2
// runtime, and shows its page in Chromium.
//
//   node tools/show_installer.mjs [--walk] FOLDER COMMAND [ARGUMENT ...]
//
// The command starts the installer; its exit code is passed on. Without --walk a
// person uses the window on the display. With --walk the page is clicked through
// a whole installation, with a picture of each screen; a walk that comes to a halt
// gives exit code 3. FOLDER gets the pictures and transcript.jsonl, the record of
// everything that page and program did.

import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { mkdirSync, readdirSync, rmSync } from 'node:fs';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { startBridge } from '../tests/standins/webview2_runtime/bridge/bridge.mjs';
import { launchChromium } from './chromium.mjs';

const words = process.argv.slice(2);
const walks = words[0] === '--walk';
const [folder, command, ...args] = walks ? words.slice(1) : words;
if (!command) {
  console.error('show_installer: name a folder and the command that starts the installer');
  process.exit(2);
}

let pictures = 0;

/** Waits until the page rests on a screen and takes its picture. */
async function arriveAt(program, id, name = id.replace(/^s-/, '')) {
  await program.page.waitForFunction((wanted) => {
    const moving = document.getAnimations().some(({ effect }) => effect.getComputedTiming().iterations !== Infinity);
    return document.querySelector('.screen.active')?.id === wanted && !moving;
  }, id, { timeout: 120000 });
  const file = join(folder, `${String(++pictures).padStart(2, '0')}-${name}.png`);
  await program.screenshot(file);
  console.error(`run:   ${file}`);
}

/** A whole installation, as a user clicks through it. */
async function walkInstallation(program) {
  await arriveAt(program, 's-welcome');
  await program.press('Install Selected');
  await arriveAt(program, 's-close-browsers');
  await program.press('Continue');
  await arriveAt(program, 's-installing');
  const { text } = await program.waitFor(({ from, text: sent }) => from === 'program' && sent?.includes('browsers_detected'));
  for (const { name } of JSON.parse(text).browsers) {
    await program.page.waitForFunction((wanted) => document.getElementById('browser-name').textContent === wanted, name);
    await arriveAt(program, 's-browser', name.toLowerCase().replaceAll(' ', '-'));
    await program.press('Open Web Store');
    await program.press('Extension Added');
  }
  await arriveAt(program, 's-firefox-notice');
  await program.press('Open Firefox Add-ons');
  await arriveAt(program, 's-complete');
  await program.press('Close Installer');
}

mkdirSync(folder, { recursive: true });
for (const old of readdirSync(folder).filter((name) => /^\d\d-.*\.png$/.test(name))) {
  rmSync(join(folder, old));
}
const fonts = fileURLToPath(new URL('page/fonts.conf', import.meta.url));
const browser = await launchChromium({ env: { ...process.env, FONTCONFIG_FILE: fonts } });
const bridge = await startBridge({ browser, paint: !walks, transcriptFile: join(folder, 'transcript.jsonl') });
// The installer prints nothing; what comes out there is Wine taking leave of the screen.
const installer = spawn(command, args, { env: { ...process.env, ...bridge.environment }, stdio: ['ignore', 'inherit', 'ignore'] });
/** How the installer ended: its exit code or a word. */
const ended = once(installer, 'exit').then(([code, signal]) => code ?? signal, (error) => error.message);

/** The installer's program once its page is there. It may end before, and then nothing is left to wait for. */
async function openedProgram() {
  const program = await bridge.nextProgram();
  await program.ready();
  return program;
}
const endedEarly = async () => { throw new Error(`the installer ended before its page had come (${await ended})`); };

let failed = false;
if (walks) {
  try {
    const program = await Promise.race([openedProgram(), endedEarly()]);
    await walkInstallation(program);
    await program.closed;
    console.log('What page and program said to each other:\n');
    for (const { from, text } of program.messages()) {
      console.log(`  ${from.padEnd(7)} ${text}`);
    }
    console.log();
  } catch (error) {
    failed = true;
    console.error(`run: the walk came to a halt: ${error.message}`);
    installer.kill();
  }
}
const result = await ended;
await bridge.stop();
await browser.close();
if (typeof result !== 'number' && !failed) {
  console.error(`run: the installer did not end by itself (${result})`);
}
process.exitCode = failed || typeof result !== 'number' ? 3 : result;
