// The record of one program's run, in order: everything that the program did with
// the runtime and everything that the page did.
//
// An entry is { t, from, event, ... }: t in milliseconds since the bridge started;
// from is 'program', 'page', 'runtime' (the stand-in DLL) or 'bridge'.

import { appendFileSync, writeFileSync } from 'node:fs';

/**
 * With `file`, each entry is also one line of JSON there. `now` gives the time in milliseconds.
 */
export function createTranscript({ file, now }) {
  const entries = [];
  const waiting = new Set();
  let unwritten = [];
  if (file) {
    writeFileSync(file, '');
  }

  function flush() {
    if (file && unwritten.length > 0) {
      appendFileSync(file, unwritten.join(''));
    }
    unwritten = [];
  }

  function record(from, event, details = {}) {
    const entry = { t: Math.round(now() * 100) / 100, from, event, ...details };
    entries.push(entry);
    if (file) {
      if (unwritten.length === 0) {
        setImmediate(flush); // a burst is written at once
      }
      unwritten.push(`${JSON.stringify(entry)}\n`);
    }
    for (const look of [...waiting]) {
      look(entry);
    }
    return entry;
  }

  /**
   * The first entry for which `matches` holds, whether it has come already or is still to come. Counts
   * from entry number `since`. Rejects after `timeoutMs`, saying what was waited for and what came last.
   */
  function waitFor(matches, { what = String(matches), since = 0, timeoutMs = 60000 } = {}) {
    const found = entries.slice(since).find((entry) => matches(entry));
    if (found) {
      return Promise.resolve(found);
    }
    return new Promise((resolve, reject) => {
      const look = (entry) => {
        if (matches(entry)) {
          clearTimeout(timer);
          waiting.delete(look);
          resolve(entry);
        }
      };
      const timer = setTimeout(() => {
        waiting.delete(look);
        const last = entries.slice(-8).map((entry) => JSON.stringify(entry).slice(0, 300)).join('\n  ');
        reject(new Error(`waited ${timeoutMs} ms for ${what}; the last entries are\n  ${last}`));
      }, timeoutMs);
      waiting.add(look);
    });
  }

  return { entries, record, waitFor, flush };
}
