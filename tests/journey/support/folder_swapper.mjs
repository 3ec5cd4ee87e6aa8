// Puts links in the place of folders and the folders back again, as fast as it can, until it is told to stop: what
// somebody who may write to a folder could do while it is being removed. Runs as a worker of its own.

import { renameSync, symlinkSync, unlinkSync } from 'node:fs';
import { basename, join } from 'node:path';
import { isMainThread, Worker, workerData } from 'node:worker_threads';

/** Starts swapping `folders` for links to `victim`; `stop()` gives the number of links that stood there for a moment. */
export function startSwapping(folders, victim, away) {
  const shared = new Int32Array(new SharedArrayBuffer(8));
  const worker = new Worker(new URL(import.meta.url), { workerData: { folders, victim, away, shared } });
  const ended = new Promise((resolve, reject) => {
    worker.once('exit', resolve);
    worker.once('error', reject);
  });
  return {
    async stop() {
      Atomics.store(shared, 0, 1);
      await ended;
      return Atomics.load(shared, 1);
    },
  };
}

/** Whether it could be done: folders go while we work. */
function attempt(work) {
  try {
    work();
    return true;
  } catch (error) {
    if (!['ENOENT', 'ENOTEMPTY', 'EEXIST', 'ENOTDIR', 'EISDIR', 'EPERM'].includes(error.code)) {
      throw error;
    }
    return false;
  }
}

function swapUntilStopped({ folders, victim, away, shared }) {
  while (Atomics.load(shared, 0) === 0) {
    for (const folder of folders) {
      const hidden = join(away, basename(folder));
      if (attempt(() => renameSync(folder, hidden))) {
        if (attempt(() => symlinkSync(victim, folder))) {
          Atomics.add(shared, 1, 1);
          attempt(() => unlinkSync(folder));
        }
        attempt(() => renameSync(hidden, folder));
      }
    }
  }
}

if (!isMainThread) {
  swapUntilStopped(workerData);
}
