// The step that joins the pieces: what it makes, and what it refuses.

import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { existsSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { after, before, beforeEach, describe, test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { pageText } from './support/installer_page.mjs';

const pageFolder = fileURLToPath(new URL('../../src/ui/page', import.meta.url));
const step = join(pageFolder, 'join_pieces.cmake');

let folder;
before(() => { folder = mkdtempSync(join(tmpdir(), 'orvanta_join_')); });
after(() => rmSync(folder, { recursive: true }));
beforeEach(() => {
  for (const name of ['page.html', 'page_pieces.h']) rmSync(join(folder, name), { force: true });
});

/** Joins pieces with these contents, in this order. */
function joinPieces(pieces) {
  const names = pieces.map((content, index) => {
    const name = `${String(index + 1).padStart(2, '0')}_piece.html`;
    writeFileSync(join(folder, name), content);
    return name;
  });
  writeFileSync(join(folder, 'pieces.cmake'), `set(page_pieces ${names.join(' ')})\n`);
  return run(['-D', `FOLDER=${folder}`]);
}

function run(definitions) {
  const html = join(folder, 'page.html');
  const header = join(folder, 'page_pieces.h');
  const { status, stderr } = spawnSync('cmake',
    [...definitions, '-D', `HTML=${html}`, '-D', `HEADER=${header}`, '-P', step], { encoding: 'utf8' });
  const read = (file) => (existsSync(file) ? readFileSync(file, 'latin1') : undefined);
  return { status, complaint: stderr.replace(/\s+/g, ' '), html: read(html), header: read(header) };
}

/** The texts of the literals in the generated header, one string per piece. */
function literalsOf(header) {
  return header.split(/\n {4}\/\/ .*, \d+ characters\n/).slice(1).map((constant) =>
    Array.from(constant.matchAll(/LR"page\(([^]*?)\)page"/g), ([, text]) => text));
}

const printable = (length) => 'abcdefghijklmnopqrstuvwxyz;[]${}@\\"#\n'.repeat(Math.ceil(length / 37)).slice(0, length);

describe('the page of the program', () => {
  test('is what the step makes of the eleven pieces in their order', () => {
    const made = run([]);
    assert.equal(made.status, 0, made.complaint);
    assert.equal(made.html, pageText);
    const names = readFileSync(join(pageFolder, 'pieces.cmake'), 'utf8').match(/\d\d_\w+\.(html|js)/g);
    assert.equal(names.length, 11);
    assert.deepEqual(names, [...names].sort());
    assert.equal(made.html, names.map((name) => readFileSync(join(pageFolder, name), 'utf8')).join('')
      .replace('@PROJECT_VERSION@', process.env.ORVANTA_VERSION));
  });

  test('is in the C++ constants without a difference', () => {
    const made = run([]);
    const pieces = literalsOf(made.header);
    assert.equal(pieces.length, 11);
    assert.equal(pieces.flat().join(''), pageText);
    assert.match(made.header, /page_capacity = 32000;/);
  });
});

describe('the step accepts', () => {
  test('any printable ASCII, special characters of CMake included, unchanged', () => {
    const text = ` ${Array.from({ length: 95 }, (_, i) => String.fromCharCode(32 + i)).join('')}\n\${HOME} @VAR@ a;b;;c [[x]] \\n \\; "\n\n`;
    const made = joinPieces([text, 'end']);
    assert.equal(made.status, 0, made.complaint);
    assert.equal(made.html, `${text}end`);
    assert.deepEqual(literalsOf(made.header), [[text], ['end']]);
  });

  test('the line ends of Windows, and writes those of the page', () => {
    const made = joinPieces(['one\r\ntwo\r\n', 'three\r\n']);
    assert.equal(made.status, 0, made.complaint);
    assert.equal(made.html, 'one\ntwo\nthree\n');
  });

  test('a place for the version of the project, and counts what it puts there', () => {
    const made = joinPieces(['v@PROJECT_VERSION@, @PROJECT_NAME@']);
    assert.equal(made.html, `v${process.env.ORVANTA_VERSION}, @PROJECT_NAME@`);
    assert.ok(made.header.includes(`// 01_piece.html, ${made.html.length} characters`));
  });

  test('a total of 31,999 characters and a piece of 16,000 bytes', () => {
    const made = joinPieces([printable(16000), printable(15999)]);
    assert.equal(made.status, 0, made.complaint);
    assert.equal(made.html.length, 31999);
    // No literal comes near what Visual C++ takes, in bytes of wide text.
    for (const literal of literalsOf(made.header).flat()) assert.ok(literal.length * 2 <= 16000);
    assert.equal(literalsOf(made.header).flat().join(''), made.html);
  });
});

describe('the step refuses, and writes nothing', () => {
  for (const [what, pieces, complaint] of [
    ['a byte that is not ASCII', ['fine', Buffer.from('caf\u00e9', 'latin1')], /02_piece\.html holds the byte 0xe9/],
    ['UTF-8', ['don\u2019t'], /01_piece\.html holds the byte 0xe2/],
    ['a byte order mark', ['\ufefftext'], /holds the byte 0xef/],
    ['the byte 0xff at the end', [Buffer.from([0x61, 0xff])], /holds the byte 0xff/],
    ['a zero byte', ['a\0b'], /holds the byte 0x00/],
    ['a tab', ['a\tb'], /holds the byte 0x09/],
    ['a lone carriage return', ['a\rb'], /holds the byte 0x0d/],
    ['other control characters', ['a\x1ab'], /holds the byte 0x1a/],
    ['a total of 32,000 characters', [printable(16000), printable(16000)], /has 32000 characters; it must stay below 32000/],
    ['a piece of 16,001 bytes', [printable(16001)], /01_piece\.html has 16001 bytes, more than the 16000/],
    ['the end of the C++ literal', ['a)page"b'], /holds the characters \)page"/],
  ]) {
    test(what, () => {
      const made = joinPieces(pieces);
      assert.notEqual(made.status, 0);
      assert.match(made.complaint, complaint);
      assert.equal(made.html, undefined);
      assert.equal(made.header, undefined);
    });
  }

  test('a piece that is missing', () => {
    writeFileSync(join(folder, 'pieces.cmake'), 'set(page_pieces nowhere.html)\n');
    const made = run(['-D', `FOLDER=${folder}`]);
    assert.notEqual(made.status, 0);
    assert.match(made.complaint, /nowhere\.html/);
    assert.equal(made.html, undefined);
  });
});
