// Delays to the millisecond, on a clock that only moves when it is told to.

import assert from 'node:assert/strict';

/** Nothing of `changed` may be true one millisecond before `delay`, all of it must be at `delay`. */
export async function expectExactly(installer, delay, changed) {
  assert.equal(await changed(), false, 'before any time has passed');
  await installer.after(delay - 1);
  assert.equal(await changed(), false, `after ${delay - 1} ms`);
  await installer.after(1);
  assert.equal(await changed(), true, `after ${delay} ms`);
}
