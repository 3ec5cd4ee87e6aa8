// What a release says about the program, read from the one place where each fact stands.

import { execFileSync } from 'node:child_process';
import { createHash } from 'node:crypto';
import { readFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';

const root = fileURLToPath(new URL('../../', import.meta.url));

/** What a tool prints, without the line's end. */
export function output(tool, ...args) {
  return execFileSync(tool, args, { cwd: root, encoding: 'utf8', env: { ...process.env, LC_ALL: 'C' } }).trim();
}

/** The SHA-256 of a file, in hexadecimal. */
export function sha256(file) {
  return createHash('sha256').update(readFileSync(file)).digest('hex');
}

function find(file, pattern) {
  const found = pattern.exec(readFileSync(root + file, 'utf8'));
  if (!found) {
    throw new Error(`${file} no longer says what ${pattern} looks for`);
  }
  return found[1];
}

/** What Add/Remove Programs knows of a product; the key's name is the product code of a deployment system. */
function uninstallEntry(folder, prefix) {
  const product = `src/${folder}/product.h`;
  return {
    displayName: find(product, new RegExp(`${prefix}_display_name\\[\\] = L"([^"]+)"`)),
    publisher: find(`src/${folder}/uninstall_entry.cpp`, /L"Publisher", L"([^"]+)"/),
    productCode: find(product, new RegExp(`${prefix}_uninstall_key\\[\\] =\\s*L"[^"]*\\\\([^"\\\\]+)"`)),
  };
}

/** Name, version, commit and the rest of what identifies a release of this tree. */
export function releaseFacts() {
  const seconds = Number(output('git', 'log', '-1', '--format=%ct'));
  return {
    version: find('CMakeLists.txt', /project\(OrvantaInstaller VERSION (\d+\.\d+\.\d+)/),
    commit: output('git', 'rev-parse', 'HEAD'),
    time: new Date(seconds * 1000),
    publisherUrl: find('cmake/product_options.cmake', /ORVANTA_PUBLISHER_URL "([^"]+)"/),
    publisher: find('resources/OrvantaInstaller.rc', /"CompanyName", "([^"]+)"/),
    productName: find('resources/OrvantaInstaller.rc', /"ProductName", "([^"]+)"/),
    fileCopyright: find('resources/OrvantaInstaller.rc', /"LegalCopyright", "([^"]+)"/),
    copyright: find('LICENSE', /^(Copyright .+)$/m),
    entries: [uninstallEntry('console', 'fwc'), uninstallEntry('linkward', 'linkward')],
    requiredFiles: [
      find('src/common/installation_medium.h', /fwc_program_name\[\] = L"([^"]+)"/),
      find('src/linkward/locations.cpp', /linkward_service_program\(\) \{\s*return [^;]*L"([^"]+)"/),
    ],
  };
}
