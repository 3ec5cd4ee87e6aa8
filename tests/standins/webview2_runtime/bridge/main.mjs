// A bridge as a program of its own: prints the port on one line and serves until
// its standard input ends.
//
//   node main.mjs [--paint] [--transcript FILE]

import { parseArgs } from 'node:util';
import { startBridge } from './bridge.mjs';

const { values } = parseArgs({
  options: { paint: { type: 'boolean' }, transcript: { type: 'string' } },
});
const bridge = await startBridge({ paint: values.paint, transcriptFile: values.transcript });
console.log(bridge.port);
process.stdin.resume();
process.stdin.once('end', () => bridge.stop());
