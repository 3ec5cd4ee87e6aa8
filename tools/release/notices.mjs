// The notices that go with the program: whose libraries it holds parts of, and under which terms.

import { readFileSync } from 'node:fs';

const line = '='.repeat(100);

/** One text for all libraries: a list, then each package's own statement as its maintainers wrote it. */
export function thirdPartyNotices(facts, libraries) {
  const packages = [...new Map(libraries.map((library) => [library.package.name, library.package])).values()];
  const list = libraries.map(({ name, licence, package: { name: packageName, version } }) =>
    `- ${name}\n  ${licence}\n  Debian package ${packageName} ${version}\n`);
  const statements = packages.map(({ name, version, copyrightFile }) =>
    `${line}\n${name} ${version}\n${line}\n\n${readFileSync(copyrightFile, 'utf8').trimEnd()}\n`);
  return `Third-party notices for Orvanta Installer ${facts.version}

OrvantaInstaller.exe is under the licence in LICENSE. It was linked with parts of these libraries, which are under
licences of their own:

${list.join('')}
The GCC Runtime Library Exception permits to pass the program on under terms of one's own choice. mingw-w64 consists of
parts under the Zope Public License and further permissive licences, and of parts in the public domain. What follows is
what the packages say of themselves, files included that are no part of the program, and the text of the GNU General
Public License that they refer to.

${statements.join('\n')}
${line}
GNU General Public License, version 3
${line}

${readFileSync('/usr/share/common-licenses/GPL-3', 'utf8').trimEnd()}
`;
}
