// A private Windows machine (a copy of the Wine template) for a whole file of
// tests: starting one for every program would take longer than the tests.

import { execFileSync, spawn } from 'node:child_process';
import { mkdirSync, mkdtempSync, rmdirSync, rmSync } from 'node:fs';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';

const root = fileURLToPath(new URL('../../../..', import.meta.url));
const wineEnvironment = join(root, 'tools', 'wine_environment');

/** Makes a machine. Its programs see the screen `display`. */
export function startMachine({ display }) {
  const parent = join(root, 'build', 'machines');
  mkdirSync(parent, { recursive: true });
  const prefix = mkdtempSync(join(parent, 'standin-'));
  rmdirSync(prefix); // the name is ours; the copy makes the folder
  const env = { ...process.env, DISPLAY: display, WINEPREFIX: prefix };
  const shell = (script, ...words) => ['-euc', `. "$0"; ${script}`, wineEnvironment, ...words];
  execFileSync('bash', shell('copy_machine "$1"', prefix), { env });
  const switchOff = () => execFileSync('bash', shell('stop_machine "$1"', prefix), { env });
  return {
    prefix,
    /** Starts a Windows program; its streams are pipes. */
    spawn: (words, environment = {}) => spawn('bash', shell('exec wine64 "$@"', ...words), {
      env: { ...env, ...environment }, stdio: ['pipe', 'pipe', 'pipe'],
    }),
    /** Runs a Windows program to its end. */
    run: (...words) => execFileSync('bash', shell('exec wine64 "$@"', ...words), { env, stdio: ['ignore', 'pipe', 'pipe'] }),
    /** Ends every program; the next one starts Windows anew. */
    switchOff,
    stop() {
      switchOff();
      rmSync(prefix, { recursive: true });
    },
  };
}
