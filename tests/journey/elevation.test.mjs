// A start without administrator rights, through the second instance that has them to a whole installation. It takes a
// machine whose "runas" gives rights; what shows without is in tests/machine/relaunch_test.cpp.

import assert from 'node:assert/strict';
import { cpSync, mkdirSync, renameSync, rmSync } from 'node:fs';
import { after, before, describe, test } from 'node:test';
import { notOnThisBase, wineVersion } from '../support/bases.mjs';
import { assertBothInstalled, assertLinkwardAloneInstalled, assertNothingInstalled } from './support/assert_state.mjs';
import * as said from './support/expected_messages.mjs';
import { built, installer, makeMachine, setupFolder } from './support/machine.mjs';
import {
  atScreen, conversation, makeWindowMachine, openInstaller, startInstallation, startSurroundings,
} from './support/window.mjs';

const withoutRights = built('ORVANTA_WITHOUT_RIGHTS');
const ended = { code: 0, stdout: '', stderr: '' };

/** Whether a program that "runas" starts has administrator rights. */
async function runasGivesRights() {
  const ends = [];
  const machine = await makeMachine({ after: (end) => ends.push(end) });
  const { code } = await machine.run(withoutRights, ['--what-runas-gives']);
  await ends[0]();
  assert.ok(code === 0 || code === 1, `"runas" could not be tried: ${code}`);
  // A fault of the question must not pass for a reason to ask nothing else.
  assert.ok(code === 1 || wineVersion < 10, `"runas" gives rights under Wine ${wineVersion}`);
  return code === 1;
}

const skip = await runasGivesRights() ? false : notOnThisBase(`"runas" of Wine ${wineVersion} gives no rights`);

describe('without rights', { concurrency: 2 }, () => {
  test('a silent installation and a removal are done by the second instance before the first one ends', { skip }, async (t) => {
    const machine = await makeMachine(t);
    assert.deepEqual(await machine.run(withoutRights, [installer, '--silent']), ended);
    await assertBothInstalled(machine);
    assert.deepEqual(await machine.run(withoutRights, [installer, '-u']), ended);
    await assertNothingInstalled(machine);
  });

  test('the second instance gets the options as they were', { skip }, async (t) => {
    const machine = await makeMachine(t);
    renameSync(machine.path(setupFolder), machine.path('C:\\My media'));
    mkdirSync(machine.path(setupFolder));
    cpSync(machine.path('C:\\My media\\OrvantaInstaller.exe'), machine.path(installer));
    assert.deepEqual(await machine.run(withoutRights, [installer, '--source', 'C:\\My media', '-s']), ended);
    await assertBothInstalled(machine);
  });

  test('an installation that fails ends the first instance with 0 all the same', { skip }, async (t) => {
    const machine = await makeMachine(t);
    rmSync(machine.path(`${setupFolder}\\Fortwright.exe`));
    assert.deepEqual(await machine.run(withoutRights, [installer, '-s']), ended);
    await assertLinkwardAloneInstalled(machine);
  });

  describe('with the window', () => {
    let surroundings;
    before(async () => { surroundings = skip ? undefined : await startSurroundings(); });
    after(() => surroundings?.stop());

    test('both products are installed in the window of the second instance', { skip }, async (t) => {
      const machine = await makeWindowMachine(t, surroundings);
      const installation = await openInstaller(t, surroundings, machine, { starter: withoutRights, options: [installer] });
      const { program } = installation;
      await startInstallation(program);
      await atScreen(program, 's-firefox-notice');
      await program.press('Skip');
      await atScreen(program, 's-complete');
      await program.press('Close Installer');
      assert.deepEqual(await installation.ended, ended);
      assert.deepEqual(conversation(program), [...said.bothInstalled([]), said.closeRequest]);
      assert.deepEqual(program.troubles(), []);
      await assertBothInstalled(machine);
    });
  });
});
