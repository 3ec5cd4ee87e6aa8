// Setup files made by the release's own script, and what they do on a machine.

import assert from 'node:assert/strict';
import { cpSync, existsSync, mkdirSync, readdirSync, readFileSync, rmSync } from 'node:fs';
import { dirname, join } from 'node:path';
import { makeMachine, setupFolder } from './machine.mjs';
import { clone, done, makeSetup, products, version, work } from './release.mjs';

/** A blank in the path, as downloads have one sooner or later. */
export const setupFile = `C:\\My downloads\\OrvantaInstaller-${version}-x64-setup.exe`;

const ours = /^Orvanta Installer Setup /;
const folder = clone('of setup files');
let count = 0;

/** Makes a setup file of a program, the finished one when left out, and of product files. Gives the host's path. */
export function packSetup({ from, shipped = products } = {}) {
  const out = join(work, `setup ${++count}.exe`);
  assert.deepEqual(makeSetup(folder, out, { from, shipped }), done);
  return out;
}

/** Makes of a machine one that has a setup file and nothing else of ours. */
export async function giveSetup(machine, file) {
  rmSync(machine.path(setupFolder), { recursive: true });
  mkdirSync(dirname(machine.path(setupFile)));
  cpSync(file, machine.path(setupFile));
  return Object.assign(machine, { temporary: machine.path(await machine.temporaryFolder()) });
}
export const makeMachineWithSetup = async (t, file) => giveSetup(await makeMachine(t), file);

/** What setup files have in Program Files at this moment, locks included. */
export const unpacked = (machine) => readdirSync(machine.path('C:\\Program Files')).filter((name) => ours.test(name)).sort();

/** What NSIS has in the user's temporary folder at this moment. */
export const temporary = (machine) => readdirSync(machine.temporary).filter((name) => /^ns/i.test(name));

export function assertTidy(machine) {
  assert.deepEqual([unpacked(machine), temporary(machine)], [[], []]);
}

/** How the recorder, packed in the place of the program, was started: its path and its command line, each time. */
export function starts(machine) {
  const log = machine.path('C:\\browsers.log');
  return existsSync(log) ? readFileSync(log, 'utf8').split(/\r?\n/).filter(Boolean).map((line) => line.split('\t')) : [];
}
