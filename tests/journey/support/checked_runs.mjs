// Installations and removals on a machine of the pool and in the model, compared: files, exit code and all that is
// registered.

import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { join } from 'node:path';
import { assertNothingRegistered, assertRegistered } from './assert_state.mjs';
import { built } from './machine.mjs';
import { install, linkwardPlace, uninstall } from './product_model.mjs';
import { at, copyOf, differences, grow, put } from './tree.mjs';

// A state is { root, hasConsole, serviceRuns }: what is on the drive, whether the console is registered (undefined
// when nobody knows), and whether the service runs.

/** The state of a machine that holds the files of `root` and nothing else. */
export const untouched = (root) => ({ root, hasConsole: false, serviceRuns: false });

const windowsPath = (path) => `C:\\${path.replaceAll('/', '\\')}`;

export const installCommand = (start) => [windowsPath(start.programPath), [...start.options, '--silent']];
export const removeCommand = (start) => [windowsPath(start.programPath), ['--uninstall']];

const servicePath = `${linkwardPlace}/VeyraLinkward.exe`;

/** Whether the file that the service is registered with is the sample program, whatever follows it. */
function canServiceRun(root) {
  const sample = readFileSync(join(built('ORVANTA_SAMPLE_PRODUCTS'), 'VeyraLinkward.exe'));
  const program = at(root, servicePath);
  return program?.kind === 'file' && program.bytes.subarray(0, sample.length).equals(sample);
}

/** What an installation makes of a state, and its exit code. */
export function installedOnPaper(before, start) {
  const root = copyOf(before.root);
  const installed = install(root, { ...start, running: before.serviceRuns ? [servicePath] : [] });
  return {
    root,
    hasConsole: installed.console || before.hasConsole,
    serviceRuns: canServiceRun(root),
    code: installed.console && installed.linkward ? 0 : 1,
  };
}

/** Judges a finished installation by the first of the states whose files the machine holds, and returns that state. */
export async function assertInstalled(machine, code, states, compare = differences) {
  const there = machine.read();
  const state = states.find(({ root }) => compare(there, root).length === 0);
  assert.ok(state, `files:\n${compare(there, states[0].root).join('\n')}`);
  assert.equal(code, state.code);
  await assertRegistered(machine, state);
  return state;
}

/** Judges a finished removal; `root` is what the drive held before, installed or not. */
export async function assertRemoved(machine, code, root) {
  const expected = copyOf(root);
  uninstall(expected);
  const there = machine.read();
  const keptLink = at(there, `${linkwardPlace}/somebody`);
  if (keptLink) {
    // Wine cannot take a link to a folder away; what it leads to stays in any case.
    put(grow(expected, linkwardPlace), 'somebody', keptLink);
  }
  const wrong = differences(there, expected);
  assert.ok(wrong.length === 0, `files:\n${wrong.join('\n')}`);
  assert.equal(code, 0);
  await assertNothingRegistered(machine);
}

/** Installs and compares. Returns the new state. */
export async function checkInstallation(machine, before, start) {
  const { code } = await machine.run(...installCommand(start));
  return assertInstalled(machine, code, [installedOnPaper(before, start)]);
}

/** Removes and compares. */
export async function checkRemoval(machine, before, start) {
  const { code } = await machine.run(...removeCommand(start));
  await assertRemoved(machine, code, before.root);
}
