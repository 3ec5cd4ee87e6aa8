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
  let hasEnded = false;
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
    if (hasEnded) {
      return; // what the page still does is no part of the program's run
    }
    const entry = { t: Math.round(now() * 100) / 100, from, event, ...details };
    entries.push(entry);
    if (file) {
      if (unwritten.length === 0) {
        setImmediate(flush); // a burst is written at once
      }
      unwritten.push(`${JSON.stringify(entry)}\n`);
    }
    for (const { look } of [...waiting]) {
      look(entry);
    }
  }

  /** Says that the program has gone: whoever waits for more waits in vain. */
  function end() {
    flush();
    hasEnded = true;
    for (const { giveUp } of [...waiting]) {
      giveUp();
    }
  }

  /**
   * The first entry for which `matches` holds, whether it has come already or is still to come. Counts
   * from entry number `since`. Rejects after `timeoutMs`, and at once when the program has gone, saying what
   * was waited for and what came last.
   */
  function waitFor(matches, { what = String(matches), since = 0, timeoutMs = 60000 } = {}) {
    const found = entries.slice(since).find((entry) => matches(entry));
    if (found) {
      return Promise.resolve(found);
    }
    const complaint = (how) => {
      const last = entries.slice(-8).map((entry) => JSON.stringify(entry).slice(0, 300)).join('\n  ');
      return new Error(`${how} for ${what}; the last entries are\n  ${last}`);
    };
    const gone = 'the program has gone while somebody waited';
    if (hasEnded) {
      return Promise.reject(complaint(gone));
    }
    return new Promise((resolve, reject) => {
      const waiter = {
        look(entry) {
          if (matches(entry)) {
            settle(resolve, entry);
          }
        },
        giveUp: () => settle(reject, complaint(gone)),
      };
      const timer = setTimeout(() => settle(reject, complaint(`waited ${timeoutMs} ms`)), timeoutMs);
      const settle = (how, value) => {
        clearTimeout(timer);
        waiting.delete(waiter);
        how(value);
      };
      waiting.add(waiter);
    });
  }

  return { entries, record, waitFor, end };
}
