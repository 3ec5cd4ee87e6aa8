// Ends a program that works on a machine as the end of its process does: at once, without a word to it.

import { statSync } from 'node:fs';
import { waitUntil } from './machine.mjs';

/** Something that changes when the file at a path of the host does. */
function signatureOf(path) {
  const status = statSync(path, { throwIfNoEntry: false });
  return status ? `${status.ino} ${status.size} ${status.ctimeMs}` : 'nothing';
}

const pause = (milliseconds) => new Promise((resolve) => { setTimeout(resolve, milliseconds); });

const commandsOf = (machine) =>
  machine.processes().filter(({ commandLine }) => /cmd\.exe|schtasks/i.test(commandLine));

/** Whether a command that the program has started still runs: it outlives the program. */
export const commandRuns = (machine) => commandsOf(machine).length > 0;

/**
 * Waits until the command is through that a killed program may have started. A process that was only half made when
 * the program was killed waits for the other half for ever: Windows does not know of it, and it is taken away.
 */
export async function commandToEnd(machine) {
  const notFound = 128;
  await waitUntil(async () => !commandRuns(machine)
    || (await machine.run('taskkill.exe', ['/IM', 'cmd.exe'])).code === notFound, 'the command to end');
  for (const { id } of commandsOf(machine)) {
    try {
      process.kill(id, 'SIGKILL');
    } catch (error) {
      if (error.code !== 'ESRCH') { // ended while we looked
        throw error;
      }
    }
  }
}

/**
 * Starts a program and kills it `milliseconds` after the file at `path`, a path from the drive's root, has changed, or
 * after the start when there is no path. Returns whether it was killed: a program may be through before.
 */
export async function startAndKill(machine, command, { path, milliseconds }) {
  const watched = path && machine.path(path.replaceAll('/', '\\'));
  const before = watched && signatureOf(watched);
  const { child, ended } = machine.start(...command);
  let hasEnded = false;
  ended.then(() => { hasEnded = true; });
  while (watched && !hasEnded && signatureOf(watched) === before) {
    await pause(1);
  }
  await Promise.race([ended, pause(milliseconds)]);
  child.kill('SIGKILL');
  const { code } = await ended;
  return code === null;
}
