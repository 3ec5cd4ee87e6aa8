// The notices that go with the program: whose code it and its setup file hold parts of, and under which terms.

import { readFileSync } from 'node:fs';

const line = '='.repeat(100);

const listed = ({ name, licence, package: { name: packageName, version } }) =>
  `- ${name}\n  ${licence}\n  Debian package ${packageName} ${version}\n`;

const ofSetupFile = (stub) => `
The setup file that brought OrvantaInstaller.exe unpacks itself by code of others:

${listed(stub)}
The LZMA exception permits to bind what is unpacked to it under terms of one's own choice. That code was not changed; its
source is Debian's source package ${stub.package.source} ${stub.package.sourceVersion}.
`;

/**
 * One text for all: a list, then each package's own statement as its maintainers wrote it. With a stub it is the text
 * that goes into a setup file.
 */
export function thirdPartyNotices(facts, libraries, stub) {
  const all = stub ? [...libraries, stub] : libraries;
  const packages = [...new Map(all.map((library) => [library.package.name, library.package])).values()];
  const statements = packages.map(({ name, version, copyrightFile }) =>
    `${line}\n${name} ${version}\n${line}\n\n${readFileSync(copyrightFile, 'utf8').trimEnd()}\n`);
  return `Third-party notices for Orvanta Installer ${facts.version}

OrvantaInstaller.exe is under the licence in LICENSE. It was linked with parts of these libraries, which are under
licences of their own:

${libraries.map(listed).join('')}
The GCC Runtime Library Exception permits to pass the program on under terms of one's own choice. mingw-w64 consists of
parts under the Zope Public License and further permissive licences, and of parts in the public domain.
${stub ? ofSetupFile(stub) : ''}
What follows is what the packages say of themselves, files included that are no part of the program, and the text of the
GNU General Public License that they refer to.

${statements.join('\n')}
${line}
GNU General Public License, version 3
${line}

${readFileSync('/usr/share/common-licenses/GPL-3', 'utf8').trimEnd()}
`;
}
