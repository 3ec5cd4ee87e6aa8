// Judges what a machine holds by its report. Each function returns the report, for
// what a test wants to see besides.

import assert from 'node:assert/strict';
import * as expected from './expected_state.mjs';

const filesOf = (report, product) =>
  expected.filesBelow(report, expected.programFiles).filter((path) => path.startsWith(`${product}\\`));
const entryOf = (report, name) => expected.shortKeys(report.uninstall).find(({ key }) => key.endsWith(`\\${name}`));

const consoleShortcut = ({ user }) => ({
  path: `C:\\users\\${user}\\Desktop\\Fortwright Console.lnk`,
  target: `${expected.consoleFolder}\\Fortwright.exe`,
  arguments: '',
  description: 'Fortwright Console',
  icon: `${expected.consoleFolder}\\Fortwright.exe`,
  icon_index: 0,
  working_folder: expected.consoleFolder,
});

function assertConsoleRegistered(machine, report) {
  const entry = entryOf(report, 'FortwrightConsole');
  const date = entry.values.find(([name]) => name === 'InstallDate')[2];
  assert.match(date, /^20\d{6}$/);
  assert.deepEqual(entry, expected.consoleEntry(date));
  assert.equal(report.task.command, expected.createTaskCommand);
  assert.deepEqual(report.shortcut, consoleShortcut(machine));
}

function assertLinkwardRegistered(report) {
  assert.deepEqual(entryOf(report, 'VeyraLinkward'), expected.linkwardEntry);
  assert.deepEqual(expected.shortKeys(report.hosts), expected.hosts);
  assert.equal(report.service.program, `${expected.linkwardFolder}\\VeyraLinkward.exe`);
}

function assertConsole(machine, report, files = expected.consoleFiles) {
  assert.deepEqual(filesOf(report, 'FWC'), files);
  assertConsoleRegistered(machine, report);
}

function assertLinkward(report, files = expected.linkwardFiles) {
  assert.deepEqual(filesOf(report, 'Veyra Linkward'), files);
  assert.deepEqual(expected.filesBelow(report, expected.programData), expected.dataFiles);
  assertLinkwardRegistered(report);
  assert.equal(report.service.state, 'running');
}

function assertNothingElse(report, products) {
  assert.equal(report.uninstall.length, products);
  assert.deepEqual([report.policies, report.pending], [[], []]);
}

/** `consoleFiles` for an installation from a source that lacks one, `linkwardFiles` for one that has more. */
export async function assertBothInstalled(machine, { consoleFiles, linkwardFiles } = {}) {
  const report = await machine.report();
  assertConsole(machine, report, consoleFiles);
  assertLinkward(report, linkwardFiles);
  assertNothingElse(report, 2);
  return report;
}

export async function assertConsoleAloneInstalled(machine) {
  const report = await machine.report();
  assertConsole(machine, report);
  assert.deepEqual(expected.filesBelow(report, expected.programFiles), expected.consoleFiles);
  assert.deepEqual(expected.filesBelow(report, expected.programData), []);
  assert.deepEqual([report.hosts, report.service], [[], null]);
  assertNothingElse(report, 1);
  return report;
}

export async function assertLinkwardAloneInstalled(machine) {
  const report = await machine.report();
  assertLinkward(report);
  assert.deepEqual(expected.filesBelow(report, expected.programFiles), expected.linkwardFiles);
  assert.deepEqual([report.task, report.shortcut], [null, null]);
  assertNothingElse(report, 1);
  return report;
}

/** Nothing of either product; the folders and keys that a removal leaves empty do not count. */
export async function assertNothingInstalled(machine) {
  const report = await machine.report();
  assert.equal(report.empty, true, JSON.stringify(report));
  return report;
}

/**
 * All that an installation leaves besides its files. `hasConsole` when the console is one of the products; undefined
 * when that is not asked.
 */
export async function assertRegistered(machine, { hasConsole, serviceRuns }) {
  const report = await machine.report();
  assertLinkwardRegistered(report);
  assert.equal(report.service.state, serviceRuns ? 'running' : 'stopped');
  if (hasConsole) {
    assertConsoleRegistered(machine, report);
  } else if (hasConsole === false) {
    assert.deepEqual([report.task, report.shortcut], [null, null]);
  }
  assertNothingElse(report, hasConsole === undefined ? report.uninstall.length : Number(hasConsole) + 1);
}

/** Nothing of what an installation leaves besides its files, and nothing that waits for a restart. */
export async function assertNothingRegistered(machine) {
  const { uninstall, hosts, policies, service, task, shortcut, pending } = await machine.report();
  assert.deepEqual({ uninstall, hosts, policies, service, task, shortcut, pending },
    { uninstall: [], hosts: [], policies: [], service: null, task: null, shortcut: null, pending: [] });
}
