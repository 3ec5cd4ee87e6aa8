// The installer, ended while the command runs that makes or deletes its task: the command is a process of its own and
// goes on, and a second run makes the rest good.

import assert from 'node:assert/strict';
import { rmSync, writeFileSync } from 'node:fs';
import { describe, test } from 'node:test';
import { assertBothInstalled, assertNothingInstalled } from './support/assert_state.mjs';
import { createTaskCommand, deleteTaskCommand } from './support/expected_state.mjs';
import { commandRuns, commandToEnd, startAndKill } from './support/kill.mjs';
import { installer, makeMachine } from './support/machine.mjs';

/** Kills the installer while its command runs. Returns what the machine holds when the command has ended. */
async function killWhileCommandRuns(machine, option) {
  const hold = machine.path('C:\\schtasks.hold');
  writeFileSync(hold, '');
  assert.ok(await startAndKill(machine, [installer, [option]], { path: 'schtasks.log', milliseconds: 0 }));
  assert.ok(commandRuns(machine));
  rmSync(hold);
  await commandToEnd(machine);
  return machine.report();
}

describe('a program that is ended leaves its command to itself', { concurrency: 2 }, () => {
  test('in an installation: the task is made, and installing again adds what comes after it', async (t) => {
    const machine = await makeMachine(t);
    const report = await killWhileCommandRuns(machine, '--silent');
    assert.deepEqual([report.task.command, report.uninstall, report.service], [createTaskCommand, [], null]);
    assert.equal((await machine.install('--silent')).code, 0);
    const { task_calls: calls } = await assertBothInstalled(machine);
    assert.deepEqual(calls, [createTaskCommand, createTaskCommand]);
  });

  test('in a removal: the task goes, and removing again takes what comes after it', async (t) => {
    const machine = await makeMachine(t);
    assert.equal((await machine.install('--silent')).code, 0);
    const report = await killWhileCommandRuns(machine, '--uninstall');
    assert.deepEqual([report.task, report.uninstall.length, report.service.state], [null, 2, 'running']);
    assert.notEqual(report.shortcut, null);
    assert.equal((await machine.install('--uninstall')).code, 0);
    const { task_calls: calls } = await assertNothingInstalled(machine);
    assert.deepEqual(calls, [createTaskCommand, deleteTaskCommand, deleteTaskCommand]);
  });
});
