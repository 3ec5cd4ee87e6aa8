// The stand-in runtime from both of its ends: the page in the program's window.

import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { readFileSync } from 'node:fs';
import { join } from 'node:path';
import { test } from 'node:test';
import { display, folder, setDpi, startLoadedPair } from './pairs.mjs';

test('a colour that is neither opaque nor clear is refused', async (t) => {
  const { probe } = await startLoadedPair(t);
  assert.equal(await probe.run('background 128 8 12 20'), 'background 0x80070057');
  assert.equal(await probe.run('background 0 8 12 20'), 'background 0x00000000');
});

test('clicks in the page are real ones', async (t) => {
  const { probe, program } = await startLoadedPair(t);
  await program.click('#send', { position: { x: 10, y: 20 } });
  assert.equal(await probe.next(), 'message {"trusted":true,"x":110,"y":70}');
});

test('with a screen the page is seen in the program\'s window, and the mouse and the keyboard reach it', async (t) => {
  const { probe, program } = await startLoadedPair(t, { paint: true });
  await program.waitFor(({ event }) => event === 'first frame');
  assert.equal(await probe.run('pixel 500 500'), 'pixel 255 0 0');
  const useScreen = (...words) => execFileSync('xdotool', words, { env: { ...process.env, DISPLAY: display.name } });
  useScreen('mousemove', '150', '90', 'click', '1');
  assert.equal(await probe.next(), 'message {"trusted":true,"x":150,"y":90}');
  // The button has the focus now: a space presses it, as its key and its character.
  useScreen('key', 'space');
  assert.equal(await probe.next(), 'message key  ');
  assert.equal(await probe.next(), 'message {"trusted":true,"x":0,"y":0}');
  for (const [key, name] of [['Tab', 'Tab'], ['Escape', 'Escape'], ['a', 'a'], ['Left', 'ArrowLeft']]) {
    useScreen('key', key);
    assert.equal(await probe.next(), `message key ${name}`);
  }
});

// Comes last: the machine keeps its DPI.
test('the page follows the bounds and the DPI', async (t) => {
  setDpi(144);
  const { probe, program } = await startLoadedPair(t);
  const size = () => program.page.evaluate(() => [innerWidth, innerHeight, devicePixelRatio]);
  assert.match(await probe.run('bounds 0 0 1380 960'), /child 0 0 1380 960$/);
  await probe.run('script 1');
  assert.equal(program.transcript.findLast(({ event }) => event === 'bounds').dpi, 144);
  assert.deepEqual(await size(), [920, 640, 1.5]);
  await probe.run('bounds 0 0 0 0'); // minimised
  await probe.run('script 1');
  assert.deepEqual(await size(), [920, 640, 1.5]);
  const png = await program.screenshot(join(folder, 'shot.png'));
  assert.deepEqual([png.readUInt32BE(16), png.readUInt32BE(20)], [1380, 960]);
  assert.deepEqual(readFileSync(join(folder, 'shot.png')), png);
});
