// The machine report: a test that reads it is worth no more than it is. What it
// is to find is planted by Windows' own reg.exe and by hand.

import assert from 'node:assert/strict';
import { mkdirSync, writeFileSync } from 'node:fs';
import { test } from 'node:test';
import { built, makeMachine } from './support/machine.mjs';

const uninstall = 'SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\VeyraLinkward';
const chromeHost = 'SOFTWARE\\Google\\Chrome\\NativeMessagingHosts\\com.veyra.linkward';
const chromePolicies = 'SOFTWARE\\Policies\\Google\\Chrome';

const addValue = async (machine, key, ...rest) =>
  assert.equal((await machine.run('reg.exe', ['add', `HKLM\\${key}`, ...rest, '/f'])).code, 0);
const text = async (machine, ...args) => machine.run(built('ORVANTA_MACHINE_REPORT'), args);

test('an untouched machine is empty, down to the last list', async (t) => {
  const machine = await makeMachine(t);
  assert.deepEqual(await machine.report(), {
    empty: true, trees: [], uninstall: [], hosts: [], manifests: [], policies: [], service: null, task: null,
    task_calls: [], shortcut: null, pending: [], left_behind: [],
  });
  const { code, stdout } = await text(machine);
  assert.equal(code, 0);
  assert.match(stdout, /\nNothing: no files, no registry values, /);
});

test('registry values come with name, type and data, each bit view apart', async (t) => {
  const machine = await makeMachine(t);
  await addValue(machine, uninstall, '/v', 'Text', '/d', 'Grüße "quoted" \\');
  await addValue(machine, uninstall, '/v', 'Number', '/t', 'REG_DWORD', '/d', '50000');
  await addValue(machine, uninstall, '/v', 'Expand', '/t', 'REG_EXPAND_SZ', '/d', '%TEMP%');
  await addValue(machine, uninstall, '/v', 'Bytes', '/t', 'REG_BINARY', '/d', '00ff7f');
  await addValue(machine, uninstall, '/v', 'Text', '/d', 'wrong view', '/reg:32');
  await addValue(machine, chromeHost, '/ve', '/d', 'C:\\nowhere.json');
  await addValue(machine, `${chromePolicies}\\ExtensionSettings\\abc`, '/v', 'mode', '/d', 'forced');

  const report = await machine.report();
  assert.equal(report.empty, false);
  const label = 'Veyra Linkward';
  assert.deepEqual(report.uninstall, [
    { label, key: uninstall, view: 64, values: [
      { name: 'Bytes', type: 'REG_BINARY', data: '00 ff 7f' },
      { name: 'Expand', type: 'REG_EXPAND_SZ', data: '%TEMP%' },
      { name: 'Number', type: 'REG_DWORD', data: '50000' },
      { name: 'Text', type: 'REG_SZ', data: 'Grüße "quoted" \\' },
    ] },
    { label, key: uninstall, view: 32, values: [{ name: 'Text', type: 'REG_SZ', data: 'wrong view' }] },
  ]);
  assert.deepEqual(report.hosts, [{ label: 'Google Chrome', key: chromeHost, view: 64,
    values: [{ name: '', type: 'REG_SZ', data: 'C:\\nowhere.json' }] }]);
  assert.deepEqual(report.manifests, []);
  assert.deepEqual(report.policies, [{ label: 'Google Chrome', key: `${chromePolicies}\\ExtensionSettings\\abc`,
    view: 64, values: [{ name: 'mode', type: 'REG_SZ', data: 'forced' }] }]);

  const { stdout } = await text(machine);
  assert.ok(stdout.includes(`    HKLM\\${uninstall}\n      Bytes   REG_BINARY  00 ff 7f\n`));
  assert.ok(stdout.includes('  Veyra Linkward   (32-bit view)\n'));
});

test('files come with their sizes, manifests with their bytes, empty places apart', async (t) => {
  const machine = await makeMachine(t);
  const manifest = 'C:\\Program Files\\Brackenfold\\Veyra Linkward\\host.json';
  mkdirSync(machine.path('C:\\Program Files\\Brackenfold\\Veyra Linkward\\deep\\er'), { recursive: true });
  mkdirSync(machine.path('C:\\ProgramData\\Brackenfold\\Veyra Linkward'), { recursive: true });
  writeFileSync(machine.path(manifest), '{\r\n\t"ü": "\\\\"\r\n}');
  writeFileSync(machine.path('C:\\Program Files\\Brackenfold\\Veyra Linkward\\deep\\big.bin'), Buffer.alloc(1234567));
  await addValue(machine, chromeHost, '/ve', '/d', manifest);
  const list = `${chromePolicies}\\ExtensionInstallForcelist`;
  await addValue(machine, list, '/v', '1', '/d', 'gone again');
  assert.equal((await machine.run('reg.exe', ['delete', `HKLM\\${list}`, '/v', '1', '/f'])).code, 0);

  const report = await machine.report();
  const entry = (path, size) => ({ path, folder: size === undefined, link: false, size: size ?? 0 });
  assert.deepEqual(report.trees, [{ root: 'C:\\Program Files\\Brackenfold', entries: [
    entry('Veyra Linkward'), entry('Veyra Linkward\\deep'), entry('Veyra Linkward\\deep\\big.bin', 1234567),
    entry('Veyra Linkward\\deep\\er'), entry('Veyra Linkward\\host.json', 17),
  ] }]);
  assert.deepEqual(report.manifests, [{ path: manifest, text: '{\r\n\t"ü": "\\\\"\r\n}' }]);
  assert.deepEqual(report.left_behind, ['C:\\ProgramData\\Brackenfold\\', 'C:\\ProgramData\\Brackenfold\\Veyra Linkward\\',
    `HKLM\\${list}`]);
  const { stdout } = await text(machine);
  assert.ok(stdout.includes('  C:\\Program Files\\Brackenfold   (2 files, 1,234,584 bytes)\n'));
  assert.ok(stdout.includes('        big.bin        1,234,567\n'));
});

test('the task is the last one created and not deleted since', async (t) => {
  const machine = await makeMachine(t);
  const create = ['/Create', '/F', '/TN', 'Maker\\Job', '/TR', '"C:\\a b.exe"', '/SC', 'WEEKLY', '/D', 'SUN',
    '/ST', '03:00', '/RL', 'HIGHEST', '/RU', 'SYSTEM'];
  await machine.run('schtasks.exe', create);
  await machine.run('schtasks.exe', ['/Delete', '/F', '/TN', 'Other']);
  const { task, task_calls: calls } = await machine.report();
  assert.equal(calls.length, 2);
  assert.deepEqual(task, { name: 'Maker\\Job', runs: '"C:\\a b.exe"', schedule: 'WEEKLY SUN 03:00', account: 'SYSTEM',
    run_level: 'HIGHEST', command: calls[0] });
  await machine.run('schtasks.exe', ['/Delete', '/F', '/TN', 'maker\\job']);
  assert.equal((await machine.report()).task, null);
});

test('what waits for the next start comes from both lists, in whichever form Windows noted it', async (t) => {
  const machine = await makeMachine(t);
  const session = 'SYSTEM\\CurrentControlSet\\Control\\Session Manager';
  // The form in which Windows keeps them is no list of texts to reg.exe: an empty text stands for a deletion.
  const stored = (...texts) => Buffer.from([...texts, ''].map((text) => `${text}\0`).join(''), 'utf16le').toString('hex');
  await addValue(machine, session, '/v', 'PendingFileRenameOperations', '/t', 'REG_BINARY', '/d',
    stored('\\??\\C:\\gone.txt', '', '*1\\??\\C:\\new.txt', '!\\??\\C:\\old.txt'));
  await addValue(machine, session, '/v', 'PendingFileRenameOperations2', '/t', 'REG_BINARY', '/d',
    stored('*12\\??\\C:\\second.txt', ''));
  assert.deepEqual((await machine.report()).pending, [{ from: 'C:\\gone.txt', to: '' },
    { from: 'C:\\new.txt', to: '!\\??\\C:\\old.txt' }, { from: 'C:\\second.txt', to: '' }]);
});

test('an argument that it does not know gives one line and exit code 2', async (t) => {
  const machine = await makeMachine(t);
  const { code, stdout, stderr } = await text(machine, '--xml');
  assert.deepEqual([code, stdout, stderr.trimEnd()], [2, '', 'machine_report: the only argument is --json']);
});
