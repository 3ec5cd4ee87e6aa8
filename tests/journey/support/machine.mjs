// A private Windows machine, worked on from outside.

import { spawn } from 'node:child_process';
import { once } from 'node:events';
import {
  closeSync, cpSync, existsSync, mkdirSync, mkdtempSync, openSync, readFileSync, readdirSync, rmSync,
} from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';

const machineScript = fileURLToPath(new URL('../../support/machine', import.meta.url));
const machines = fileURLToPath(new URL('../../../build/machines/', import.meta.url));

/** Where the build has put a thing that journeys need; CMake names the place. */
export function built(variable) {
  const path = process.env[variable];
  if (!path) {
    throw new Error(`${variable} is not set: run journeys through ./test or ctest`);
  }
  return path;
}

/**
 * Starts a command of the host whose output goes to files: processes of the machine that it started may keep a pipe open
 * long after it has ended. `ended` gives its exit code and what it printed.
 */
export function startCommand(command, args, environment) {
  const folder = mkdtempSync(join(tmpdir(), 'journey-output-'));
  const [stdout, stderr] = ['stdout', 'stderr'].map((name) => join(folder, name));
  const files = [openSync(stdout, 'w'), openSync(stderr, 'w')];
  const child = spawn(command, args, { env: environment, stdio: ['ignore', ...files] });
  files.forEach((file) => closeSync(file));
  const ended = once(child, 'exit').then(([code]) => {
    const result = { code, stdout: readFileSync(stdout, 'utf8'), stderr: readFileSync(stderr, 'utf8') };
    rmSync(folder, { recursive: true });
    return result;
  });
  return { child, ended };
}

/** Asks again and again, for a minute at most, until `condition` holds; `what` is for the complaint. */
export async function waitUntil(condition, what) {
  const deadline = performance.now() + 60000;
  while (!await condition()) {
    if (performance.now() > deadline) {
      throw new Error(`waited a minute for ${what}`);
    }
    await new Promise((resolve) => { setTimeout(resolve, 50); });
  }
}

/** The host's processes of the machine in `folder`: their ids and command lines, the words of which end in NUL. */
function processesOf(folder) {
  return readdirSync('/proc').filter((name) => /^\d+$/.test(name)).flatMap((id) => {
    try {
      return readFileSync(`/proc/${id}/environ`, 'latin1').includes(`WINEPREFIX=${folder}\0`)
        ? [{ id, commandLine: readFileSync(`/proc/${id}/cmdline`, 'latin1') }] : [];
    } catch {
      return []; // ended while we looked
    }
  });
}

/**
 * The exit code of a recorder browser that stayed until its time was over. One that was ended gives no exit code to
 * rely on here: a busy Wine kills what does not go at once. Tests on the machine itself see the code of Windows.
 */
export const nobodyEndedIt = 98;

/** The folder that the program and the sample products lie in. */
export const setupFolder = 'C:\\Setup';
export const installer = `${setupFolder}\\OrvantaInstaller.exe`;

/** Makes a machine that goes with the test `t`, processes included. It has no display unless one is given. */
export async function makeMachine(t, { display } = {}) {
  mkdirSync(machines, { recursive: true });
  const folder = mkdtempSync(join(machines, 'journey-'));
  rmSync(folder, { recursive: true });

  const environment = { ...process.env };
  delete environment.DISPLAY;
  delete environment.WAYLAND_DISPLAY;
  if (display) {
    environment.DISPLAY = display;
  }

  const script = (verb, args = [], extra = {}) =>
    startCommand(machineScript, [verb, folder, ...args], { ...environment, ...extra });
  const finish = async (verb, ...args) => {
    const { code, stderr } = await script(verb, args).ended;
    if (code !== 0) {
      throw new Error(`machine ${verb} failed: ${stderr}`);
    }
  };
  t.after(() => finish('remove'));
  await finish('make');
  const drive = join(folder, 'drive_c');

  const machine = {
    /** The machine's drive C as a folder of the host. */
    drive,

    /** The host's path of a file on drive C. */
    path: (windowsPath) => join(drive, ...windowsPath.replace(/^C:\\/, '').split('\\')),

    /** The Windows user's name: the machine knows nobody else. */
    get user() {
      const [name, ...others] = readdirSync(join(drive, 'users')).filter((folder) => folder !== 'Public');
      if (!name || others.length > 0) {
        throw new Error(`the machine should have one user, besides Public: ${[name, ...others]}`);
      }
      return name;
    },

    /** The Windows user's folder for temporary files: `Temp` in the user's own under Wine 8, in AppData\Local under 10. */
    async temporaryFolder() {
      const { code, stdout } = await machine.run('cmd.exe', ['/c', 'echo %TEMP%']);
      if (code !== 0) {
        throw new Error(`the machine does not say where its temporary files are (${code})`);
      }
      return stdout.trimEnd();
    },

    /** Gives the machine something; the verbs and what they need are those of tests/support/machine. */
    prepare: finish,

    /** The words that start a program there from outside, and their environment. */
    outside: (program) => ({ words: [machineScript, 'run', folder, program], environment }),

    /** Starts a program; `ended` gives its exit code and output. */
    start: (program, args = [], extraEnvironment = {}) => script('run', [program, ...args], extraEnvironment),

    /** The host's processes of the machine. */
    processes: () => processesOf(folder),

    /** Starts a program that stays, and returns when it runs. */
    async startAndWait(program, args) {
      const started = machine.start(program, args);
      await waitUntil(() => machine.processes().some(({ commandLine }) => commandLine.startsWith(program)), `${program} to run`);
      return started;
    },

    /** Runs a program to its end. */
    run: (program, args, extraEnvironment) => machine.start(program, args, extraEnvironment).ended,

    /** Runs the installer with the options given, to its end. */
    install: (...options) => machine.run(installer, options),

    /** What the machine holds, as machine_report sees it. */
    async report() {
      const { code, stdout, stderr } = await machine.run(built('ORVANTA_MACHINE_REPORT'), ['--json']);
      if (code !== 0) {
        throw new Error(`machine_report ended with ${code}: ${stderr}`);
      }
      return JSON.parse(stdout);
    },

    /** Switches the machine off and on again, which carries out what was left for a restart. */
    async restart() {
      await finish('switch_off');
      await finish('switch_on');
    },
  };

  cpSync(built('ORVANTA_SAMPLE_PRODUCTS'), join(drive, 'Setup'), { recursive: true });
  cpSync(built('ORVANTA_PROGRAM'), join(drive, 'Setup', 'OrvantaInstaller.exe'));
  await finish('switch_on');
  return machine;
}
