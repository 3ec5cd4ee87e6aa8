// Drives the probe program: one command line in, one or more result lines out.

import { once } from 'node:events';

const folder = process.env.ORVANTA_WEBVIEW2_STANDIN_DIR;
if (!folder) {
  throw new Error('ORVANTA_WEBVIEW2_STANDIN_DIR must name the folder of the built stand-in and its probe');
}

const asWindowsPath = (path) => `Z:${path.replaceAll('/', '\\')}`;

/** Starts the probe on a machine. */
export function startProbe(machine, environment = {}) {
  const child = machine.spawn([
    asWindowsPath(`${folder}/webview2_probe.exe`), asWindowsPath(`${folder}/EmbeddedBrowserWebView.dll`),
  ], environment);
  let hasEnded = false;
  const ended = once(child, 'exit').then(([code]) => code);
  const lines = [];
  let complaints = '';
  let wake = () => {};
  let rest = '';
  child.stdout.on('data', (chunk) => {
    const pieces = (rest + chunk).split(/\r?\n/);
    rest = pieces.pop();
    lines.push(...pieces);
    wake();
  });
  child.stdout.on('close', () => {
    hasEnded = true;
    wake();
  });
  child.stderr.on('data', (chunk) => { complaints += chunk; });

  /** The next line that the probe prints. */
  async function next(timeoutMs = 60000) {
    const deadline = Date.now() + timeoutMs;
    while (lines.length === 0) {
      if (hasEnded) {
        throw new Error(`the probe has ended; ${complaints}`);
      }
      const left = deadline - Date.now();
      if (left <= 0) {
        throw new Error(`the probe printed nothing for ${timeoutMs} ms; ${complaints}`);
      }
      await new Promise((resolve) => {
        const timer = setTimeout(resolve, left);
        wake = () => {
          clearTimeout(timer);
          resolve();
        };
      });
    }
    return lines.shift();
  }

  /** Sends a command and returns the next `count` lines, as an array when there is more than one. */
  async function run(line, count = 1) {
    child.stdin.write(`${line}\n`);
    if (count === 1) {
      return next();
    }
    const results = [];
    for (let i = 0; i < count; ++i) {
      results.push(await next());
    }
    return results;
  }

  return {
    run,
    next,
    send: (line) => child.stdin.write(`${line}\n`),
    /** Ends the probe in good order; its exit code. */
    quit() {
      child.stdin.end();
      return ended;
    },
    ended,
    complaints: () => complaints,
  };
}
