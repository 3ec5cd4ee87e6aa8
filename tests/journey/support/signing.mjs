// A key made for a test. Its certificate stands for a root that everybody knows.

import { execFileSync } from 'node:child_process';
import { writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { run, tree, work } from './release.mjs';

export const inWork = (name) => join(work, name);
export const password = 'open sesame; $(true) "quoted"';
export const openssl = (...args) =>
  execFileSync('openssl', args, { cwd: work, stdio: 'pipe', env: { ...process.env, PASSWORD: password } });

openssl('req', '-x509', '-newkey', 'rsa:2048', '-nodes', '-keyout', 'key.pem', '-out', 'certificate.pem', '-days', '2',
  '-subj', '/CN=Signer', '-addext', 'keyUsage=critical,digitalSignature,keyCertSign', '-addext', 'extendedKeyUsage=codeSigning');
openssl('pkcs12', '-export', '-inkey', 'key.pem', '-in', 'certificate.pem', '-out', 'store.p12', '-passout', 'env:PASSWORD');
writeFileSync(inWork('password'), `${password}\n`);

/** Options of tools/release/sign: the password of the key, and what to verify the signature with. */
export const byFile = ['--password-file', inWork('password')];
export const roots = ['--roots', inWork('certificate.pem')];

export const sign = (args, environment) => run(tree, 'tools/release/sign', args, environment);
