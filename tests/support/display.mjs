// A screen of our own (Xvfb): Wine cannot make windows without one.

import { spawn } from 'node:child_process';
import { once } from 'node:events';

/** Starts a screen and returns its name, such as ":7", and the function that ends it. */
export async function startDisplay({ width = 1600, height = 1200 } = {}) {
  // When its last client leaves, it would start afresh and turn away who comes in that moment: -noreset.
  const server = spawn('Xvfb',
    ['-displayfd', '3', '-screen', '0', `${width}x${height}x24`, '-nolisten', 'tcp', '-noreset'],
    { stdio: ['ignore', 'ignore', 'ignore', 'pipe'] });
  // The number comes once the screen can be used.
  const [number] = await Promise.race([
    once(server.stdio[3], 'data'),
    once(server, 'exit').then(() => { throw new Error('Xvfb ended before it was ready'); }),
  ]);
  return {
    name: `:${String(number).trim()}`,
    async stop() {
      server.kill();
      await once(server, 'exit');
    },
  };
}
