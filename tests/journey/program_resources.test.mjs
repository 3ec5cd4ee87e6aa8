// What the finished program carries as resources, read from its file.

import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { readFileSync } from 'node:fs';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { built } from './support/machine.mjs';
import { iconImages, readResources, versionOf } from './support/resources.mjs';

const icon = 3, menu = 4, dialog = 5, texts = 6, accelerators = 9, iconGroup = 14, version = 16, manifest = 24;
const program = () => readResources(readFileSync(built('ORVANTA_PROGRAM')));
const only = (resources, type) => {
  const found = resources.filter((resource) => resource.type === type);
  assert.equal(found.length, 1);
  return found[0];
};

test('every resource has a number and none a name', () => {
  const resources = program();
  assert.deepEqual(resources.filter(({ type, name }) => typeof type !== 'number' || typeof name !== 'number'), []);
  assert.deepEqual([...new Set(resources.map(({ type }) => type))].sort((a, b) => a - b),
    [icon, menu, dialog, texts, accelerators, iconGroup, version, manifest]);
});

test('icon 107 has eleven images of 32 bits and icon 108 nine of 8 and 32 bits', () => {
  const groups = Object.fromEntries(program().filter(({ type }) => type === iconGroup)
    .map(({ name, bytes }) => [name, iconImages(bytes).map(({ width, bits }) => [width, bits])]));
  assert.deepEqual(groups, {
    107: [[16, 32], [20, 32], [24, 32], [32, 32], [40, 32], [48, 32], [64, 32], [96, 32], [128, 32], [256, 32], [256, 32]],
    108: [[16, 8], [24, 8], [32, 8], [48, 8], [16, 32], [24, 32], [32, 32], [48, 32], [256, 32]],
  });
});

test('every image is of the size and depth that its icon says', () => {
  const resources = program();
  const images = resources.filter(({ type }) => type === iconGroup).flatMap(({ bytes }) => iconImages(bytes));
  for (const { width, height, bits, id } of images) {
    const { bytes } = resources.find(({ type, name }) => type === icon && name === id);
    if (bytes.toString('latin1', 1, 4) === 'PNG') {
      // 8 bits each of red, green, blue and alpha.
      assert.deepEqual([bytes.readUInt32BE(16), bytes.readUInt32BE(20), bytes[24], bytes[25]], [width, height, 8, 6]);
      assert.equal(bits, 32);
    } else {
      assert.deepEqual([bytes.readUInt32LE(4), bytes.readUInt32LE(8), bytes.readUInt16LE(14)], [width, 2 * height, bits]);
    }
  }
});

test('the checked-in icons are what their drawings give', () => {
  const check = spawnSync(fileURLToPath(new URL('../../tools/build_icons', import.meta.url)), ['--check'],
    { encoding: 'utf8' });
  assert.deepEqual([check.status, check.stderr], [0, '']);
});

test('the version names the product, its maker and three numbers', () => {
  const number = process.env.ORVANTA_VERSION;
  assert.match(number, /^\d+\.\d+\.\d+$/);
  assert.deepEqual(versionOf(only(program(), version).bytes), {
    file: `${number}.0`,
    product: `${number}.0`,
    language: '040904b0',
    texts: {
      CompanyName: 'Brackenfold',
      FileDescription: 'Orvanta Installer',
      FileVersion: number,
      InternalName: 'OrvantaInstaller',
      LegalCopyright: 'Copyright (c) Brackenfold',
      OriginalFilename: 'OrvantaInstaller.exe',
      ProductName: 'Orvanta Installer',
      ProductVersion: number,
    },
  });
});

test('the manifest asks for no rights, knows Windows 10 and leaves DPI and long paths alone', () => {
  const { name, bytes } = only(program(), manifest);
  const text = bytes.toString('utf8').replace(/<!--.*?-->/gs, '');
  assert.equal(name, 1);
  assert.match(text, /<requestedExecutionLevel level="asInvoker" uiAccess="false"\/>/);
  assert.deepEqual([...text.matchAll(/<supportedOS Id="(.*?)"\/>/g)].map((match) => match[1]),
    ['{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}']);
  assert.match(text, /<longPathAware [^>]*>false<\/longPathAware>/);
  assert.doesNotMatch(text, /dpiAware/i);
});

test('the menu, the about dialog, the accelerators and the texts of the template are there', () => {
  const resources = program();
  assert.equal(only(resources, menu).name, 109);
  assert.equal(only(resources, accelerators).name, 109);
  assert.equal(only(resources, dialog).name, 103);
  const wide = only(resources, texts).bytes.toString('utf16le');
  for (const text of ['Orvanta Installer', 'Veyra Security Suite', 'Fortwright Console', 'Veyra Linkward']) {
    assert.ok(wide.includes(text), text);
  }
});
