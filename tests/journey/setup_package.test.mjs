// What can be seen of a setup file from the file alone.

import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { homedir } from 'node:os';
import { test } from 'node:test';
import { readProgram } from './support/pe_file.mjs';
import { program, tree, version, work } from './support/release.mjs';
import { iconImages, readResources, versionOf } from './support/resources.mjs';
import { packSetup } from './support/setup_file.mjs';

const icon = 3, iconGroup = 14, versionType = 16, manifestType = 24;
const file = readFileSync(packSetup());
const headers = readProgram(file);
const resources = readResources(file);
const only = (type) => {
  const found = resources.filter((resource) => resource.type === type);
  assert.equal(found.length, 1);
  return found[0].bytes;
};

test('it is a 64-bit program with a window of its own and no console, whose data cannot be executed', () => {
  assert.deepEqual([headers.signature, headers.machine, headers.magic, headers.subsystem], ['PE\0\0', 0x8664, 0x20b, 2]);
  const nxCompatible = 0x100, terminalServerAware = 0x8000;
  assert.equal(headers.dllCharacteristics & (nxCompatible | terminalServerAware), nxCompatible | terminalServerAware);
  assert.deepEqual(headers.sections.filter(({ isWritable, isExecutable }) => isWritable && isExecutable), []);
});

test('it imports known DLLs of Windows, and the common controls, which its manifest has taken from Windows', () => {
  assert.deepEqual(headers.imports.map((name) => name.toLowerCase()).sort(), ['advapi32.dll', 'comctl32.dll', 'gdi32.dll',
    'kernel32.dll', 'ole32.dll', 'shell32.dll', 'user32.dll']);
  assert.match(only(manifestType).toString(),
    /<dependentAssembly><assemblyIdentity type="win32" name="Microsoft\.Windows\.Common-Controls" version="6\.0\.0\.0"/);
});

test('the manifest asks for administrator rights, knows Windows 10 and is aware of the DPI', () => {
  const text = only(manifestType).toString();
  assert.match(text, /<requestedExecutionLevel level="requireAdministrator" uiAccess="false"\/>/);
  assert.deepEqual([...text.matchAll(/<supportedOS Id="(.*?)"\/>/g)].map((match) => match[1]),
    ['{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}']);
  assert.match(text, /<dpiAware [^>]*>true<\/dpiAware>/);
});

test('the version says the same as the program\'s, apart from what it is', () => {
  const ofProgram = versionOf(readResources(readFileSync(program)).find(({ type }) => type === versionType).bytes);
  assert.deepEqual(versionOf(only(versionType)), {
    ...ofProgram,
    texts: {
      ...ofProgram.texts,
      FileDescription: 'Orvanta Installer Setup',
      InternalName: 'OrvantaInstaller-setup',
      OriginalFilename: `OrvantaInstaller-${version}-x64-setup.exe`,
    },
  });
});

test('the icon is the program\'s, image by image', () => {
  const imagesOf = (list, group) => iconImages(group).map(({ width, bits, id }) =>
    [width, bits, list.find(({ type, name }) => type === icon && name === id).bytes]).sort(([a], [b]) => a - b);
  const programs = readResources(readFileSync(program));
  const group = programs.find(({ type, name }) => type === iconGroup && name === 107);
  assert.deepEqual(imagesOf(resources, only(iconGroup)), imagesOf(programs, group.bytes));
});

test('nothing in it tells when or where it was made, and it is not larger than what it holds', () => {
  for (const place of [tree.replace(/\/$/, ''), work, homedir() === '/' ? '/root/' : homedir(), '/tmp/']) {
    assert.equal(file.indexOf(place), -1, place);
    assert.equal(file.indexOf(Buffer.from(place, 'utf16le')), -1, place);
  }
  assert.ok(file.length < 600000, `${file.length} bytes`);
});
