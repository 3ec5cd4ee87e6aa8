// The programs that stand in for what a test machine cannot have: a test that
// relies on them is worth no more than they are.

import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { cpSync, existsSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { test } from 'node:test';
import { built, makeMachine, nobodyEndedIt, setupFolder, waitUntil } from './support/machine.mjs';

const log = (machine, name) => readFileSync(machine.path(`C:\\${name}`), 'utf8');

test('the recorder in place of schtasks writes its command line and ends as it was told', async (t) => {
  const machine = await makeMachine(t);
  assert.deepEqual(await machine.run('schtasks.exe', ['/Query', 'a b']), { code: 0, stdout: '', stderr: '' });
  writeFileSync(machine.path('C:\\schtasks.exit'), '7\r\n');
  assert.equal((await machine.run('schtasks.exe', ['/TN', 'Grüße'])).code, 7);
  const path = '"C:\\windows\\system32\\schtasks.exe"';
  assert.equal(log(machine, 'schtasks.log'), `${path} /Query "a b"\r\n${path} /TN Grüße\r\n`);
});

test('the recorder in place of schtasks ends only when nothing holds it any more', async (t) => {
  const machine = await makeMachine(t);
  writeFileSync(machine.path('C:\\schtasks.hold'), '');
  const held = machine.start('schtasks.exe', ['/Query']);
  let ended = false;
  held.ended.then(() => { ended = true; });
  await waitUntil(() => existsSync(machine.path('C:\\schtasks.log')), 'the call to be recorded');
  // Time enough for a recorder that does not wait.
  await machine.run('cmd.exe', ['/C', 'exit']);
  assert.equal(ended, false);
  rmSync(machine.path('C:\\schtasks.hold'));
  assert.equal((await held.ended).code, 0);
});

test('a recorder browser writes its path and command line, and stays when it is asked to', async (t) => {
  const machine = await makeMachine(t);
  const browser = 'C:\\chrome.exe';
  cpSync(built('ORVANTA_BROWSER'), machine.path(browser));
  assert.equal((await machine.run(browser, ['https://store.example/a?b=c&d'])).code, 0);
  assert.equal(log(machine, 'browsers.log'), `${browser}\t"${browser}" https://store.example/a?b=c&d\r\n`);

  const staying = machine.start(browser, ['--stay']);
  let ended = false;
  staying.ended.then(() => { ended = true; });
  await waitUntil(() => log(machine, 'browsers.log').split('\r\n').length === 3, 'the second call to be recorded');
  assert.equal(ended, false);
  assert.equal((await machine.run('taskkill.exe', ['/F', '/IM', 'chrome.exe'])).code, 0);
  assert.notEqual((await staying.ended).code, nobodyEndedIt);
  assert.equal((await machine.run(browser, ['--stay=1'])).code, nobodyEndedIt);
});

test('a machine has the same code page and user whatever the locale and the environment of its host', async (t) => {
  const machine = await makeMachine(t);
  const { user } = machine;
  const query = ['query', 'HKLM\\System\\CurrentControlSet\\Control\\Nls\\CodePage', '/v', 'ACP'];
  const { stdout } = await machine.run('reg.exe', query, { LC_ALL: 'ja_JP.UTF-8', USER: 'somebody' });
  assert.match(stdout, / ACP +REG_SZ +1252\r?\n/);
  assert.equal(machine.user, user);
});

test('no program of a machine has its memory at random places, where the host allows that', async (t) => {
  const machine = await makeMachine(t);
  cpSync(built('ORVANTA_BROWSER'), machine.path('C:\\chrome.exe'));
  await machine.startAndWait('C:\\chrome.exe', ['--stay']);
  const isFixed = (program) => {
    const { id } = machine.processes().find(({ commandLine }) => commandLine.split('\0')[0].endsWith(program));
    return (Number.parseInt(readFileSync(`/proc/${id}/personality`, 'latin1'), 16) & 0x0040000) !== 0;
  };
  const isAllowed = spawnSync('setarch', ['-R', 'true']).status === 0;
  // What was started from outside, and what Windows started for it.
  assert.deepEqual(['chrome.exe', 'services.exe'].map(isFixed), [isAllowed, isAllowed]);
});

test('a machine that is switched off leaves no program behind, not even one that its server has lost', async (t) => {
  const machine = await makeMachine(t);
  cpSync(built('ORVANTA_BROWSER'), machine.path('C:\\chrome.exe'));
  const { ended } = await machine.startAndWait('C:\\chrome.exe', ['--stay']);
  const signal = (part, name) => machine.processes().filter(({ commandLine }) => commandLine.includes(part))
    .forEach(({ id }) => process.kill(Number(id), name));
  t.after(() => signal('chrome.exe', 'SIGKILL')); // nobody else would, if it were left behind
  signal('chrome.exe', 'SIGSTOP'); // does not notice that its server goes
  signal('wineserver', 'SIGKILL');
  await machine.prepare('switch_off');
  await waitUntil(() => machine.processes().length === 0, 'every process to go');
  await ended;
});

test('the sample messaging host sends every message back and ends with the pipe', async (t) => {
  const machine = await makeMachine(t);
  const message = (text) => {
    const length = Buffer.alloc(4);
    length.writeUInt32LE(Buffer.byteLength(text));
    return Buffer.concat([length, Buffer.from(text)]);
  };
  // The second one is longer than a pipe and full of what text mode would spoil.
  const sent = Buffer.concat([message('{"a":"ü"}'), message(`"${'\r\n\x1a'.repeat(40000)}"`), message('')]);
  const echo = (bytes) => {
    writeFileSync(machine.path('C:\\in.bin'), bytes);
    return machine.run('C:\\windows\\system32\\cmd.exe',
      ['/C', `${setupFolder}\\VeyraLinkwardCommunicator.exe < C:\\in.bin > C:\\out.bin`]);
  };
  assert.equal((await echo(sent)).code, 0);
  assert.ok(readFileSync(machine.path('C:\\out.bin')).equals(sent));
  // A length without its text, and one that no browser accepts.
  assert.equal((await echo(Buffer.from([5, 0, 0, 0, 0x7b]))).code, 1);
  assert.equal((await echo(Buffer.from([0, 0, 0, 2, 0x7b]))).code, 1);
});

const createService = async (machine, behaviour) => {
  if (behaviour) {
    writeFileSync(machine.path(`${setupFolder}\\VeyraLinkward.behaviour`), `${behaviour}\n`);
  }
  const created = await machine.run('sc.exe',
    ['create', 'VeyraLinkward', 'binPath=', `${setupFolder}\\VeyraLinkward.exe`]);
  assert.equal(created.code, 0);
};
const control = async (machine, verb) => {
  const { code, stdout, stderr } = await machine.run('sc.exe', [verb, 'VeyraLinkward']);
  assert.equal(code, 0, `sc ${verb} said: ${stdout}${stderr}`);
};
const serviceState = async (machine) => (await machine.report()).service.state;
const serviceIs = (machine, state) =>
  waitUntil(async () => await serviceState(machine) === state, `the service to be ${state}`);

test('the sample service starts, answers and stops', async (t) => {
  const machine = await makeMachine(t);
  await createService(machine);
  assert.equal(await serviceState(machine), 'stopped');
  await control(machine, 'start');
  await serviceIs(machine, 'running');
  await control(machine, 'stop');
  await serviceIs(machine, 'stopped');
});

test('the sample service refuses to start when it is told to', async (t) => {
  const machine = await makeMachine(t);
  await createService(machine, 'exit_at_start');
  await machine.run('sc.exe', ['start', 'VeyraLinkward']);
  assert.equal(await serviceState(machine), 'stopped');
  writeFileSync(machine.path(`${setupFolder}\\VeyraLinkward.behaviour`), 'start_error 5\n');
  await machine.run('sc.exe', ['start', 'VeyraLinkward']);
  await waitUntil(async () =>
    (await machine.run('sc.exe', ['query', 'VeyraLinkward'])).stdout.includes('WIN32_EXIT_CODE    : 5 '), 'its reason');
  assert.equal(await serviceState(machine), 'stopped');
});

test('the sample service outlives a stop as long as it is told to', async (t) => {
  const machine = await makeMachine(t);
  // Long enough for a busy computer to look in the meantime.
  await createService(machine, 'ignore_stop_ms 10000');
  await control(machine, 'start');
  await serviceIs(machine, 'running');
  const asked = performance.now();
  await control(machine, 'stop');
  assert.equal(await serviceState(machine), 'running');
  await serviceIs(machine, 'stopped');
  assert.ok(performance.now() - asked >= 10000);
});
