// Signing a release, with a key made for the test.

import assert from 'node:assert/strict';
import { execFileSync, spawnSync } from 'node:child_process';
import { existsSync, mkdirSync, readFileSync, writeFileSync } from 'node:fs';
import { createServer } from 'node:http';
import { join } from 'node:path';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { startCommand } from './support/machine.mjs';
import {
  clone, done, makeDist, makeSetup, program, release, sha256, tree, version, withoutPassword, work,
} from './support/release.mjs';
import { byFile, inWork, openssl, password, roots, sign } from './support/signing.mjs';

const plain = clone('plain');
writeFileSync(inWork('wrong password'), 'wrong\n');
writeFileSync(inWork('empty'), '');

test('a signed program is the built one with a signature, and still passes every test of the program file', () => {
  const signed = inWork('signed.exe');
  assert.deepEqual(sign([program, signed, inWork('store.p12'), ...byFile, ...roots]), done);
  const bytes = readFileSync(signed);
  const original = readFileSync(program);
  const headers = original.readUInt32LE(0x3c) + 24;
  // Apart from the checksum and the place of the signature, nothing may differ.
  for (const copy of [bytes, original]) {
    copy.fill(0, headers + 64, headers + 68);
    copy.fill(0, headers + 112 + 4 * 8, headers + 112 + 5 * 8);
  }
  assert.ok(bytes.length > original.length);
  assert.ok(bytes.subarray(0, original.length).equals(original));
  const tests = fileURLToPath(new URL('program_file.test.mjs', import.meta.url));
  const again = spawnSync(process.execPath, ['--test', tests],
    { encoding: 'utf8', env: { ...process.env, ORVANTA_PROGRAM: signed, NODE_TEST_CONTEXT: undefined } });
  assert.equal(again.status, 0, again.stdout);
  const count = readFileSync(tests, 'utf8').match(/^test\(/gm).length;
  assert.match(again.stdout, new RegExp(`^[#ℹ] pass ${count}$`, 'm'));
});

test('signed program and setup file are packed as such', () => {
  const byEnvironment = (file, signed) =>
    assert.deepEqual(sign([file, signed, inWork('store.p12'), ...roots], { ORVANTA_SIGN_PASSWORD: password }), done);
  const signed = inWork('signed to pack.exe');
  byEnvironment(program, signed);
  const [builtSetup, setup] = [inWork('setup.exe'), inWork('signed setup.exe')];
  assert.deepEqual(makeSetup(plain, builtSetup, { from: signed }), done);
  byEnvironment(builtSetup, setup);
  const out = join(plain, 'signed');
  assert.deepEqual(makeDist(plain, out, { from: signed, setup, builtSetup }), done);
  const record = JSON.parse(readFileSync(join(out, `OrvantaInstaller-${version}.build.json`), 'utf8'));
  for (const [{ is_signed: isSigned, sha256: after, sha256_before_signing: before }, file, unsigned] of [
    [record.program, signed, program], [record.setup_file, setup, builtSetup]]) {
    assert.deepEqual([isSigned, after, before], [true, sha256(readFileSync(file)), sha256(readFileSync(unsigned))]);
  }
  const shipped = join(out, `OrvantaInstaller-${version}-x64-setup.exe`);
  const verified = spawnSync('osslsigncode', ['verify', '-in', shipped, '-CAfile', inWork('certificate.pem'), '-ignore-cdp'],
    { encoding: 'utf8' });
  assert.equal(verified.status, 0, verified.stdout);
});

test('a signature that does not verify leaves no signed program', () => {
  const signed = inWork('distrusted.exe');
  // Without our certificate among the roots.
  const { status, stderr } = sign([program, signed, inWork('store.p12'), ...byFile]);
  assert.equal(status, 1);
  assert.match(stderr, /\nsign: the signature of OrvantaInstaller\.exe does not stand up to verification\n$/);
  assert.equal(existsSync(signed), false);
});

test('a wrong password signs nothing and is not repeated', () => {
  const signed = inWork('unsigned.exe');
  const { status, stderr } = sign([program, signed, inWork('store.p12'), '--password-file', inWork('wrong password'), ...roots]);
  assert.equal(status, 1);
  assert.match(stderr, /\nsign: OrvantaInstaller\.exe could not be signed\n$/);
  assert.equal(stderr.includes('wrong\n'), false);
  assert.equal(existsSync(signed), false);
});

for (const [what, args, because] of [
  ['no password', [inWork('store.p12')], "needs the key's password: --password-file, or ORVANTA_SIGN_PASSWORD in the environment"],
  ['an empty password file', [inWork('store.p12'), '--password-file', inWork('empty')], `'${inWork('empty')}' is empty`],
  ['a missing password file', [inWork('store.p12'), '--password-file', '/no/file'], "there is no file '/no/file' that can be read"],
  ['a missing key store', ['/no/store', ...byFile], "there is no key store '/no/store' that can be read"],
  ['a token without its library', ['pkcs11:object=k', ...byFile], 'a key in a token needs --pkcs11-module'],
  ['a token without a certificate', ['pkcs11:object=k', '--pkcs11-module', inWork('password'), ...byFile], 'a key in a token needs --certificate'],
  ['a PIN in the address', ['pkcs11:object=k?pin-value=1234', ...byFile], 'the PIN does not belong into the address of the key'],
  ['a token\'s library for a file', [inWork('store.p12'), '--pkcs11-module', inWork('password'), ...byFile], '--pkcs11-module and --certificate are for a key in a token'],
]) {
  test(`${what} is refused before anything is built`, () => {
    assert.deepEqual(release(plain, '--sign', ...args), { status: 2, stdout: '', stderr: `sign: ${because}\n` });
  });
}

test('a key in a token signs as well', () => {
  const tokens = inWork('tokens');
  mkdirSync(tokens);
  writeFileSync(inWork('softhsm2.conf'), `directories.tokendir = ${tokens}\nobjectstore.backend = file\n`);
  const environment = { SOFTHSM2_CONF: inWork('softhsm2.conf') };
  const softhsm = (...args) => execFileSync('softhsm2-util', args, { cwd: work, stdio: 'pipe', env: { ...process.env, ...environment } });
  openssl('pkcs8', '-topk8', '-nocrypt', '-in', 'key.pem', '-out', 'key.p8');
  softhsm('--init-token', '--free', '--label', 'release', '--pin', '1234', '--so-pin', '12345678');
  softhsm('--import', 'key.p8', '--token', 'release', '--label', 'signer', '--id', 'a1', '--pin', '1234');
  const signed = inWork('by token.exe');
  assert.deepEqual(sign([program, signed, 'pkcs11:token=release;object=signer;type=private', ...roots,
    '--pkcs11-module', '/usr/lib/softhsm/libsofthsm2.so', '--certificate', inWork('certificate.pem')],
  { ...environment, ORVANTA_SIGN_PASSWORD: '1234' }), done);
  assert.ok(readFileSync(signed).length > readFileSync(program).length);
});

test('a time stamp server is asked, and what it answers is verified', async () => {
  openssl('req', '-x509', '-newkey', 'rsa:2048', '-nodes', '-keyout', 'tsa.key', '-out', 'tsa.pem', '-days', '2',
    '-subj', '/CN=Time', '-addext', 'keyUsage=critical,digitalSignature', '-addext', 'extendedKeyUsage=critical,timeStamping');
  writeFileSync(inWork('tsa.conf'), `[tsa]\ndefault_tsa = it\n[it]\nserial = ${inWork('serial')}\nsigner_cert = ${inWork('tsa.pem')}
signer_key = ${inWork('tsa.key')}\nsigner_digest = sha256\ndefault_policy = 1.2.3.4\ndigests = sha256, sha384, sha512\n`);
  writeFileSync(inWork('serial'), '01\n');
  writeFileSync(inWork('both.pem'), readFileSync(inWork('certificate.pem'), 'utf8') + readFileSync(inWork('tsa.pem'), 'utf8'));
  let isBroken = false;
  const server = createServer(async (request, response) => {
    const parts = [];
    for await (const part of request) {
      parts.push(part);
    }
    writeFileSync(inWork('query'), Buffer.concat(parts));
    openssl('ts', '-reply', '-config', 'tsa.conf', '-queryfile', 'query', '-out', 'reply');
    response.writeHead(isBroken ? 500 : 200, { 'Content-Type': 'application/timestamp-reply' });
    response.end(isBroken ? '' : readFileSync(inWork('reply')));
  });
  await new Promise((resolve) => { server.listen(0, '127.0.0.1', resolve); });
  const stamp = (signed) => startCommand(join(tree, 'tools/release/sign'), [program, signed, inWork('store.p12'), ...byFile,
    '--roots', inWork('both.pem'), '--timestamp', `http://127.0.0.1:${server.address().port}/`], withoutPassword).ended;
  try {
    assert.deepEqual(await stamp(inWork('stamped.exe')), { code: 0, stdout: '', stderr: '' });
    const shown = execFileSync('osslsigncode', ['verify', '-in', inWork('stamped.exe'), '-CAfile', inWork('both.pem'),
      '-TSA-CAfile', inWork('both.pem')], { encoding: 'utf8' });
    assert.match(shown, /CN=Time/);
    isBroken = true;
    const { code, stderr } = await stamp(inWork('unstamped.exe'));
    assert.equal(code, 1);
    assert.match(stderr, /\nsign: OrvantaInstaller\.exe could not be signed\n$/);
    assert.equal(existsSync(inWork('unstamped.exe')), false);
  } finally {
    server.close();
  }
});
