// Clones of the tree as it is now, and the scripts of a release at work in them.

import { execFileSync, spawnSync } from 'node:child_process';
import { createHash } from 'node:crypto';
import { cpSync, existsSync, mkdirSync, mkdtempSync, readdirSync, readFileSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { after } from 'node:test';
import { fileURLToPath } from 'node:url';
import { built } from './machine.mjs';

export const tree = fileURLToPath(new URL('../../../', import.meta.url));
export const program = built('ORVANTA_PROGRAM');
export const map = program.replace(/\.exe$/, '.map');

/** A folder that goes with the test file. */
export const work = mkdtempSync(join(tmpdir(), 'orvanta-release-test-'));
after(() => rmSync(work, { recursive: true }));

/** The sample products, without the keys among them, which are there to be left out by an installation. */
export const products = join(work, 'products');
cpSync(built('ORVANTA_SAMPLE_PRODUCTS'), products, { recursive: true, filter: (file) => !file.endsWith('.pem') });

const identity = {
  GIT_AUTHOR_NAME: 'A', GIT_AUTHOR_EMAIL: 'a@brackenfold.example', GIT_AUTHOR_DATE: '2026-05-04T03:02:02Z',
  GIT_COMMITTER_NAME: 'A', GIT_COMMITTER_EMAIL: 'a@brackenfold.example', GIT_COMMITTER_DATE: '2026-05-04T03:02:02Z',
  GIT_CONFIG_GLOBAL: '/dev/null',
};
export const git = (folder, ...args) => execFileSync('git', ['-C', folder, ...args], {
  encoding: 'utf8', env: { ...process.env, ...identity }, stdio: ['ignore', 'pipe', 'pipe'],
}).trim();

/** A repository of the tree, changes that are not committed included. */
const origin = join(work, 'origin');
mkdirSync(origin);
for (const file of git(tree, 'ls-files', '-co', '--exclude-standard').split('\n')) {
  if (existsSync(join(tree, file))) {
    cpSync(join(tree, file), join(origin, file));
  }
}
git(origin, 'init', '-q');
git(origin, 'add', '-A');
git(origin, 'commit', '-q', '-m', 'All of it');
export const version = /project\(OrvantaInstaller VERSION (\S+)/.exec(readFileSync(join(origin, 'CMakeLists.txt'), 'utf8'))[1];

let clones = 0;
export function clone(name = `clone ${++clones}`) {
  git(work, 'clone', '-q', origin, name);
  return join(work, name);
}

/** An environment in which nobody's own password stands. */
export const withoutPassword = { ...process.env };
delete withoutPassword.ORVANTA_SIGN_PASSWORD;

/** Runs a script of a clone to its end. */
export function run(folder, command, args, environment = {}) {
  const { status, stdout, stderr } = spawnSync(join(folder, command), args,
    { cwd: folder, encoding: 'utf8', env: { ...withoutPassword, ...identity, ...environment } });
  return { status, stdout, stderr };
}
export const release = (folder, ...args) => run(folder, 'release', args);
export const done = { status: 0, stdout: '', stderr: '' };

export const sha256 = (bytes) => createHash('sha256').update(bytes).digest('hex');
export const filesBelow = (folder) => readdirSync(folder, { recursive: true, withFileTypes: true })
  .filter((entry) => entry.isFile()).map((entry) => join(entry.path, entry.name).slice(folder.length + 1)).sort();

const runNode = (folder, script, options, environment) => {
  const { status, stdout, stderr } = spawnSync('node', [join(folder, 'tools/release', script), ...options],
    { cwd: work, encoding: 'utf8', env: { ...process.env, ...environment } });
  return { status, stdout, stderr };
};

/** Makes a setup file of a program and a folder of products. */
export function makeSetup(folder, out, { from = program, shipped = products, mapFile = map, environment } = {}) {
  return runNode(folder, 'make_setup.mjs',
    ['--program', from, '--map', mapFile, '--products', shipped, '--out', out], environment);
}

/** Makes the files of a release; with a setup file, when there is one. */
export function makeDist(folder, out, { from = program, mapFile = map, setup, builtSetup = setup, environment } = {}) {
  return runNode(folder, 'make_dist.mjs', ['--program', from, '--built', program, '--map', mapFile, '--out', out,
    ...setup ? ['--setup', setup, '--setup-built', builtSetup] : []], environment);
}
