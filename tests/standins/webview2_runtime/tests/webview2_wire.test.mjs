// The two lists of the messages between the stand-in runtime and its bridge say the same.

import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { test } from 'node:test';
import { fromBridge, fromProgram } from '../bridge/wire.mjs';

const header = readFileSync(new URL('../runtime/wire.h', import.meta.url), 'utf8');

/** The enumerators of one enum of the header with their numbers, named as in JavaScript. */
function enumerators(name) {
  const [, body] = new RegExp(`enum class ${name} : std::uint8_t \\{([^}]*)\\}`).exec(header);
  const lines = body.split('\n').filter((line) => line.trim() !== '');
  return Object.fromEntries(lines.map((line) => {
    const [, snake, number] = /^\s*([a-z_]+) = (\d+),/.exec(line);
    return [snake.replace(/_([a-z])/g, (_, letter) => letter.toUpperCase()), Number(number)];
  }));
}

test('every message has the same number on both sides', () => {
  assert.deepEqual(fromProgram, enumerators('FromProgram'));
  assert.deepEqual(fromBridge, enumerators('FromBridge'));
  const numbers = [...Object.values(fromProgram), ...Object.values(fromBridge)];
  assert.equal(new Set(numbers).size, numbers.length);
});
