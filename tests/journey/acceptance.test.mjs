// The acceptance kit as it goes to other machines: that it finds everything as expected when everything is, that it
// judges when it is not, and what it refuses.

import assert from 'node:assert/strict';
import { createHash } from 'node:crypto';
import { cpSync, existsSync, mkdirSync, readFileSync, readdirSync, rmSync, writeFileSync } from 'node:fs';
import { after, before, describe, test } from 'node:test';
import { startBridge } from '../standins/webview2_runtime/bridge/bridge.mjs';
import { browserNames } from '../support/browsers/browsers.mjs';
import { assertBothInstalled, assertNothingInstalled } from './support/assert_state.mjs';
import * as expected from './support/expected_state.mjs';
import { built, installer, makeMachine } from './support/machine.mjs';
import { makeWindowMachine, startSurroundings } from './support/window.mjs';

const kit = 'C:\\Kit';
const agreed = '--this-machine-may-be-thrown-away';

const ends = [];
let surroundings;
before(async () => { surroundings = await startSurroundings(); });
after(async () => {
  await Promise.all(ends.map((end) => end()));
  await surroundings.stop();
});

const putKit = (machine) => {
  cpSync(built('ORVANTA_KIT'), machine.path(kit), { recursive: true });
  return machine;
};
const makeKitMachine = async (t) => putKit(await makeMachine(t, { display: surroundings.display.name }));

const acceptance = (machine, options, environment) => machine.run(`${kit}\\acceptance.exe`, options, environment);
const reportOf = (machine, file = `${kit}\\acceptance.json`) => JSON.parse(readFileSync(machine.path(file), 'utf8'));

/** The rows of an outcome as [step, area, what]. */
const rowsOf = ({ steps }, outcome) => steps.flatMap(({ name, rows }) => rows
  .filter((row) => row.outcome === outcome).map(({ area, what }) => [name, area, what]));
const rowOf = ({ steps }, step, area, what) => steps.find(({ name }) => name === step).rows
  .find((row) => row.area === area && row.what === what);

/** The kit as it was made, run once for all who ask, on a machine with a runtime. */
let madeRun;
async function runAsMade() {
  const until = { after: (end) => ends.push(end) };
  const machine = putKit(await makeWindowMachine(until, surroundings));
  const bridge = await startBridge({ browser: surroundings.browser });
  until.after(() => bridge.stop());
  const result = await acceptance(machine, [agreed], bridge.environment);
  return { machine, ...result, report: reportOf(machine) };
}
const asMade = () => (madeRun ??= runAsMade());

/** Every step with what it leads to: the products that are installed then. */
const steps = {
  installation: 2,
  'installation over a damaged one': 2,
  removal: 0,
  "installation without the console's program": 1,
  'installation of a service that fails': 2,
  'removal of a stopped service': 0,
  'installation once more': 2,
  'removal by the installed copy': 0,
  'installation before the next start': 2,
  window: 2,
  'window of the removal': 2,
  'last removal': 0,
};
const notOnWine = Object.entries(steps).flatMap(([step, products]) => [
  ...products > 0 ? [[step, 'service', 'after a failure'], [step, 'service', 'reset period']] : [],
  [step, 'update task', 'in Task Scheduler'],
]);
const shortcutFields = ['arguments', 'description', 'file', 'icon', 'target', 'working folder'];
const whatOf = (report, step, area) => report.steps.find(({ name }) => name === step).rows
  .filter((row) => row.area === area).map(({ what }) => what);

describe('the acceptance kit', { concurrency: 3 }, () => {
  test('finds everything as expected, names what Wine cannot give, and leaves the machine empty', async () => {
    const { machine, code, stdout, stderr, report } = await asMade();
    assert.deepEqual(rowsOf(report, 'different'), [], stdout);
    assert.deepEqual([code, stderr], [0, '']);
    assert.deepEqual(rowsOf(report, 'not on Wine'), notOnWine);

    assert.deepEqual(Object.keys(report), ['outcome', 'program', 'program_sha256', 'windows', 'wine', 'counts', 'steps']);
    assert.deepEqual([report.outcome, report.program], ['as expected', `${kit}\\OrvantaInstaller.exe`]);
    assert.equal(report.program_sha256, createHash('sha256').update(readFileSync(built('ORVANTA_PROGRAM'))).digest('hex'));
    assert.match(report.windows, /^10\.0\.\d+$/);
    assert.match(report.wine, /^\d+\./);
    assert.deepEqual(report.steps.map(({ name }) => name), Object.keys(steps));
    assert.deepEqual(report.counts,
      { as_expected: rowsOf(report, 'as expected').length, different: 0, not_on_wine: notOnWine.length });

    assert.match(stdout, /^Judging C:\\Kit\\OrvantaInstaller\.exe\non Windows \S+, which is Wine \S+\n\ninstallation \.\.\.\n/);
    assert.match(stdout, /\ninstallation {32}at the next start {3}1 as expected\n {44}browser policies {4}1 as expected\n/);
    assert.match(stdout, /\n {44}service {13}11 as expected, 2 not on Wine\n/);
    assert.match(stdout, /\nNot on Wine, and therefore neither as expected nor different:\n  service, after a failure: /);
    assert.ok(stdout.endsWith('\nAll as expected. Report: C:\\Kit\\acceptance.json\n'));

    await assertNothingInstalled(machine);
    const temporary = readdirSync(machine.path(await machine.temporaryFolder()));
    assert.deepEqual(temporary.filter((name) => name.startsWith('acceptance')), []);
  });

  test('looks at every file, value and name that an installation leaves', async () => {
    const { report } = await asMade();
    const files = [...[...expected.consoleFiles, ...expected.linkwardFiles].map((path) => `${expected.programFiles}\\${path}`),
      ...expected.dataFiles.map((path) => `${expected.programData}\\${path}`)];
    const isFile = ({ area, found }) => area === 'files' && found !== 'folder';
    for (const step of ['installation', 'window']) {
      assert.deepEqual(report.steps.find(({ name }) => name === step).rows.filter(isFile).map(({ what }) => what).sort(),
        files.sort());
      const values = (entries) => entries.flatMap(({ key, values: list }) =>
        list.map(([name]) => `HKLM\\${key}: ${name || '(default)'}`)).sort();
      assert.deepEqual(whatOf(report, step, 'uninstall entries').sort(),
        values([expected.consoleEntry('20260101'), expected.linkwardEntry]));
      assert.deepEqual(whatOf(report, step, 'native messaging').sort(), values(expected.hosts));
      assert.deepEqual(whatOf(report, step, 'service'), ['account', 'after a failure', 'dependencies', 'description',
        'display name', 'error control', 'load order group', 'name', 'program', 'reset period', 'start type', 'state', 'type']);
      assert.deepEqual(whatOf(report, step, 'update task'),
        ['account', 'in Task Scheduler', 'name', 'recorded command', 'run level', 'runs', 'schedule']);
      assert.deepEqual(whatOf(report, step, 'shortcut'), shortcutFields);
    }
    assert.equal(rowOf(report, 'installation', 'update task', 'recorded command').expected, expected.createTaskCommand);
    assert.equal(rowOf(report, 'installation of a service that fails', 'service', 'state').expected, 'stopped');
    assert.equal(rowOf(report, "installation without the console's program", 'program', 'exit code').found, '1');
    assert.equal(report.steps.find(({ name }) => name === 'removal by the installed copy').command,
      `${expected.linkwardFolder}\\VeyraLinkwardInstaller.exe --uninstall`);
    // Wine never deletes a program that runs: the copy waits for the next start.
    assert.deepEqual(whatOf(report, 'removal by the installed copy', 'at the next start'),
      [`${expected.linkwardFolder}\\VeyraLinkwardInstaller.exe`, 'entries of others']);
    assert.deepEqual(whatOf(report, 'window', 'window'), ['asked to close', 'caption', 'shown']);
  });

  test('names whatever is different, and nothing else', async (t) => {
    const machine = await makeKitMachine(t);
    const linkwardEntry = `HKLM\\${expected.linkwardEntry.key}`;
    const consoleEntry = `HKLM\\${expected.consoleEntry('any').key}`;
    const chromeHost = 'HKLM\\SOFTWARE\\Google\\Chrome\\NativeMessagingHosts\\com.veyra.linkward';
    const chromePolicy = 'HKLM\\SOFTWARE\\Policies\\Google\\Chrome\\ExtensionInstallForcelist';
    const session = 'HKLM\\SYSTEM\\CurrentControlSet\\Control\\Session Manager';
    const chromiumManifest = `${expected.linkwardFolder}\\com.veyra.linkward.chromium.json`;
    const rules = `${expected.linkwardFolder}\\rules\\exceptions.txt`;
    const copy = `${expected.linkwardFolder}\\VeyraLinkwardInstaller.exe`;
    const updater = `${expected.consoleFolder}\\updater.exe`;
    const shortcut = `C:\\users\\${machine.user}\\Desktop\\Fortwright Console.lnk`;
    const distribution = 'C:\\Program Files\\Mozilla Firefox\\distribution';

    // A move that somebody else has asked for.
    const moved = ['add', session, '/v', 'PendingFileRenameOperations', '/t', 'REG_MULTI_SZ', '/d', '\\??\\C:\\a\\0!\\??\\C:\\b'];
    assert.equal((await machine.run('reg.exe', [...moved, '/f'])).code, 0);
    const lostMove = ['at the next start', 'entries of others'];

    // What is done after a step, and what must then be named; most of it is mended by the next.
    const faults = [
      ['installation', `echo more>>"${chromiumManifest}"`, [['files', chromiumManifest]]],
      ['installation over a damaged one',
        `reg add "${linkwardEntry}" /v Foreign /d x /f & reg add "${linkwardEntry}" /v Wrong /d x /f /reg:32`,
        [['uninstall entries', `${linkwardEntry}: Foreign`], ['uninstall entries', `${linkwardEntry}: Wrong (32-bit view)`]]],
      ['removal', `reg delete "${linkwardEntry}" /f /reg:32 & reg add "${chromeHost}" /ve /d C:\\foreign.json /f`,
        [['native messaging', `${chromeHost}: (default)`]]],
      ["installation without the console's program", `del "${rules}"`, [['files', rules]]],
      ['installation of a service that fails',
        `del "${shortcut}" & reg add "${linkwardEntry}" /v DisplayVersion /t REG_DWORD /d 1 /f`,
        [...shortcutFields.map((what) => ['shortcut', what]),
          ['uninstall entries', `${linkwardEntry}: DisplayVersion`]]],
      ['removal of a stopped service', 'schtasks /Create /F /TN Other /TR other.exe /SC DAILY /D X /ST 1 /RL Y /RU Z',
        ['account', 'name', 'recorded command', 'run level', 'runs', 'schedule'].map((what) => ['update task', what])],
      ['installation once more', `net stop VeyraLinkward & reg add "${consoleEntry}" /v InstallDate /d 20000101 /f`,
        [['service', 'state'], ['uninstall entries', `${consoleEntry}: InstallDate`]]],
      ['removal by the installed copy', `reg delete "${session}" /v PendingFileRenameOperations /f`,
        [['at the next start', copy], lostMove]],
      // The windows mend nothing: what is done from here on stays.
      ['installation before the next start', 'rem', [lostMove]],
      ['window', `reg add "${chromePolicy}" /v 1 /d foreign /f & echo more>>"${updater}" & md "${expected.consoleFolder}\\new"`,
        [lostMove, ['browser policies', `${chromePolicy}: 1`], ['files', `${expected.consoleFolder}\\new`], ['files', updater]]],
      ['window of the removal', 'rem', [lostMove, ['browser policies', `${chromePolicy}: 1`],
        ['files', `${expected.consoleFolder}\\new`], ['files', updater]]],
      ['last removal', `md "${distribution}"`, [lostMove, ['browser policies', `${chromePolicy}: 1`],
        ['empty places', `${distribution}\\`]]],
    ];
    writeFileSync(machine.path('C:\\spoil.bat'), faults
      .map(([step, command]) => `if "%ACCEPTANCE_STEP%"=="${step}" (${command})\r\n`).join(''));
    const { code, stdout } = await acceptance(machine, [agreed, '--after-step', 'C:\\spoil.bat >nul']);
    const report = reportOf(machine);
    assert.deepEqual(rowsOf(report, 'different'), faults.flatMap(([step, , rows]) => rows.map((row) => [step, ...row])), stdout);
    assert.deepEqual([code, report.outcome], [1, 'different']);
    assert.deepEqual(rowsOf(report, 'not on Wine'), notOnWine);

    const values = (step, area, what) => {
      const { expected: wanted, found } = rowOf(report, step, area, what);
      return [wanted, found];
    };
    const size = readFileSync(machine.path(`${kit}\\products\\rules\\exceptions.txt`)).length;
    const [rulesWanted, rulesFound] = values("installation without the console's program", 'files', rules);
    assert.ok(rulesWanted.startsWith(`${size} bytes, SHA-256 `));
    assert.equal(rulesFound, null);
    assert.deepEqual(values('installation over a damaged one', 'uninstall entries', `${linkwardEntry}: Foreign`), [null, 'REG_SZ x']);
    assert.deepEqual(values('installation of a service that fails', 'uninstall entries', `${linkwardEntry}: DisplayVersion`),
      [`REG_SZ ${process.env.ORVANTA_VERSION}`, 'REG_DWORD 1']);
    assert.deepEqual(values('installation once more', 'service', 'state'), ['running', 'stopped']);
    assert.deepEqual(values('removal by the installed copy', 'at the next start', copy), ['deleted', null]);
    assert.deepEqual(values('last removal', ...lostMove), ['as it was', 'lost: C:\\a']);
    assert.ok(stdout.includes(`\n    DIFFERENT  state\n      expected running\n      found    stopped\n`));
    assert.ok(stdout.endsWith('\nNOT AS EXPECTED. Report: C:\\Kit\\acceptance.json\n'));
  });

  test('is not content with a program that does nothing', async (t) => {
    const machine = await makeKitMachine(t);
    // The sample of the console ends at once with 0, whatever it is told.
    const idle = `${kit}\\products\\Fortwright.exe`;
    const { code } = await acceptance(machine, [agreed, '--program', idle]);
    const report = reportOf(machine);
    assert.deepEqual([code, report.program], [1, idle]);
    const areas = ['files', 'uninstall entries', 'native messaging', 'service', 'update task', 'shortcut'];
    for (const { name, rows } of report.steps) {
      const different = new Set(rows.filter(({ outcome }) => outcome === 'different').map(({ area }) => area));
      const wanted = steps[name] === 0 ? []
        : steps[name] === 1 ? ['files', 'native messaging', 'program', 'service', 'uninstall entries']
          : name.startsWith('window') ? [...areas, 'window'] : areas;
      assert.deepEqual([...different].sort(), name === 'removal by the installed copy' ? ['program'] : wanted.sort(), name);
    }
    assert.deepEqual(rowOf(report, 'removal by the installed copy', 'program', 'exit code').found, 'none: it could not be started');
    await assertNothingInstalled(machine);
  });

  test('sees that an installation has not mended what was damaged before it', async (t) => {
    const machine = await makeKitMachine(t);
    // From the second step on, the medium's installer is a program that does nothing.
    writeFileSync(machine.path('C:\\idle.bat'), `cd /d "%TEMP%"\r\nfor /d %%d in (acceptance*) do `
      + `copy /y ${kit}\\products\\Fortwright.exe "%%d\\medium\\OrvantaInstaller.exe"\r\n`);
    assert.equal((await acceptance(machine, [agreed, '--after-step', 'C:\\idle.bat >nul'])).code, 1);
    const different = reportOf(machine).steps[1].rows.filter(({ outcome }) => outcome === 'different')
      .map(({ area, what, found }) => [area, what.split('\\').at(-1), found === null]);
    const all = (area, isMissing, names) => names.map((name) => [area, name, isMissing]);
    assert.deepEqual(different, [
      ...all('files', false, ['Fortwright.exe', 'Read me first.txt', 'com.veyra.linkward.chromium.json']),
      ...all('files', true, ['veyra-linkward.crx']),
      ...all('files', false, ['malware-sites.vybf']),
      ...all('native messaging', true, browserNames.map(() => 'com.veyra.linkward: (default)')),
      ...all('shortcut', true, shortcutFields),
      ...all('uninstall entries', true, ['FortwrightConsole: DisplayVersion', 'VeyraLinkward: DisplayVersion']),
    ]);
  });

  test('ends a program that hangs, goes on and leaves the machine empty', async (t) => {
    const machine = await makeKitMachine(t);
    // Holds the command that makes the task, and with it the installer, which waits for 15 s.
    writeFileSync(machine.path('C:\\schtasks.hold'), '');
    const { code } = await acceptance(machine, [agreed, '--limit', '10', '--after-step', 'del C:\\schtasks.hold']);
    const report = reportOf(machine);
    assert.equal(code, 1);
    assert.equal(rowOf(report, 'installation', 'program', 'exit code').found, 'none: ended after the limit of 10 s');
    // What the installer would have done next: it was ended indeed.
    const next = rowOf(report, 'installation', 'uninstall entries', `HKLM\\${expected.consoleEntry('any').key}: DisplayName`);
    assert.deepEqual([next.expected, next.found], ['REG_SZ Fortwright Console', null]);
    assert.equal(rowOf(report, 'last removal', 'program', 'exit code').found, '0');
    await assertNothingInstalled(machine);
  });

  test('refuses what it must not do, in words, with an exit code and without a trace', async (t) => {
    const machine = await makeKitMachine(t);
    const refuses = async (options, code, ...lines) => assert.deepEqual(await acceptance(machine, options),
      { code, stdout: '', stderr: lines.map((line) => `acceptance: ${line}\n`).join('') });
    const unsaid = ["this ends browsers, installs a service and changes the machine's registry; on a machine that",
      'may be thrown away, say so: --this-machine-may-be-thrown-away (--help explains)'];
    await refuses([], 2, ...unsaid);
    await refuses(['--remove-first'], 2, ...unsaid);
    await refuses([agreed, '--fast'], 2, "unknown argument '--fast'; --help explains");
    await refuses([agreed, '--program', 'C:\\nowhere.exe'], 2, 'the kit lacks C:\\nowhere.exe');
    await refuses([agreed, '--report', 'C:\\nowhere\\a.json'], 2, 'the report cannot be written: C:\\nowhere\\a.json');
    for (const name of ['phishing-sites.vybf', 'VeyraLinkward.exe']) {
      const part = machine.path(`${kit}\\products\\${name}`);
      const bytes = readFileSync(part);
      rmSync(part);
      await refuses([agreed], 2, `the kit lacks ${kit}\\products\\${name}`);
      writeFileSync(part, bytes);
    }
    await assertNothingInstalled(machine);
    assert.equal(existsSync(machine.path(`${kit}\\acceptance.json`)), false);

    mkdirSync(machine.path('C:\\Program Files\\Brackenfold\\FWC'), { recursive: true });
    writeFileSync(machine.path('C:\\Program Files\\Brackenfold\\FWC\\own.txt'), 'kept');
    await refuses([agreed], 3, 'this machine has the products already, and --remove-first is not given:',
      'files below C:\\Program Files\\Brackenfold');
    assert.equal(existsSync(machine.path(`${kit}\\acceptance.json`)), false);
    assert.equal(readFileSync(machine.path('C:\\Program Files\\Brackenfold\\FWC\\own.txt'), 'utf8'), 'kept');
  });

  test('removes what is installed first when told so', async (t) => {
    const machine = await makeKitMachine(t);
    assert.equal((await machine.install('--silent')).code, 0);
    await assertBothInstalled(machine);
    const { code, stderr } = await acceptance(machine, [agreed]);
    assert.equal(code, 3);
    for (const trace of ['files below C:\\Program Files\\Brackenfold', `HKLM\\${expected.linkwardEntry.key}`,
      'the service VeyraLinkward', 'the task Brackenfold\\FWC Updater', 'Desktop\\Fortwright Console.lnk']) {
      assert.ok(stderr.includes(trace), `${trace}: ${stderr}`);
    }
    await assertBothInstalled(machine);

    // This machine has no runtime: the windows stay empty.
    assert.equal((await acceptance(machine, [agreed, '--remove-first', '--report', 'C:\\first.json'])).code, 0);
    assert.equal(existsSync(machine.path(`${kit}\\acceptance.json`)), false);
    const report = reportOf(machine, 'C:\\first.json');
    assert.deepEqual(report.steps.map(({ name }) => name), ['removal of what was there', ...Object.keys(steps)]);
    await assertNothingInstalled(machine);
    assert.ok(existsSync(machine.path(installer)));
  });

  test('help tells options and exit codes and does nothing', async (t) => {
    const machine = await makeKitMachine(t);
    const { code, stdout, stderr } = await acceptance(machine, [agreed, '--help']);
    assert.deepEqual([code, stderr], [0, '']);
    for (const word of [agreed, '--program', '--report', '--remove-first', '--limit', '--after-step', 'Exit code: 0']) {
      assert.ok(stdout.includes(word), word);
    }
    await assertNothingInstalled(machine);
  });
});
