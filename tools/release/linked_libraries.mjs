// Which code of others is in what we release: parts of libraries in the program, as its linker's map tells, and what
// unpacks the setup file.

import { readFileSync } from 'node:fs';
import { output } from './facts.mjs';

const target = 'x86_64-w64-mingw32';

const libraries = [
  {
    id: 'GCC-runtime',
    name: 'GCC run-time libraries (libstdc++, libgcc)',
    licence: 'GPL-3.0-or-later WITH GCC-exception-3.1',
    archives: ['libstdc++.a', 'libgcc.a', 'libgcc_eh.a'],
  },
  {
    id: 'mingw-w64-runtime',
    name: 'mingw-w64 run-time library and headers',
    licence: 'ZPL-2.1',
    archives: ['libmingw32.a', 'libmingwex.a', 'libmsvcrt.a', 'libuuid.a'],
  },
];

// mingw-w64's as well: start files, which the map names with their folder, and what its import libraries give for a
// call of Windows.
const startFileOrImport = /^\/usr\/[\w-]+\/lib\/crt\w+\.o$|^lib\w+(s\d{5}|h|t)\.o$/;

// GCC's own, which clang of Debian 13 links with as well.
const compilersStartFile = /^\/usr\/lib\/gcc\/x86_64-w64-mingw32\/[\w.-]+\/crt(begin|end)\.o$/;

/** Where the compiler finds one of its libraries. */
function compilersFile(name) {
  const path = output(`${target}-g++-win32`, `-print-file-name=${name}`);
  if (path === name) {
    throw new Error(`the compiler knows no ${name}`);
  }
  return output('realpath', path);
}

/** The Debian package that a file belongs to. */
function packageOf(file) {
  const name = output('dpkg-query', '-S', file).split(':')[0];
  const [version, source, sourceVersion] = output('dpkg-query', '-W',
    '-f=${Version}\n${source:Package}\n${source:Version}', name).split('\n');
  return { name, version, source, sourceVersion, copyrightFile: `/usr/share/doc/${name}/copyright` };
}

/** The code that a setup file begins with, which is NSIS's, as linkedLibraries gives a library. */
export function setupStub() {
  return {
    id: 'NSIS-exehead',
    name: 'NSIS exehead with its LZMA decompressor',
    licence: 'Zlib AND (CPL-1.0 WITH LZMA-exception)',
    package: packageOf('/usr/share/nsis/Stubs/lzma-amd64-unicode'),
  };
}

/** The object files that the map names, apart from the program's own. */
export function foreignObjects(map) {
  const objects = new Set();
  for (const [, object] of map.matchAll(/^[0-9a-f]{8} [0-9a-f]{8} +\d+ +(\S+\.o):\(/gm)) {
    objects.add(object);
  }
  return [...objects].sort();
}

/** The libraries that the map names parts of, with their packages. Throws when a part belongs to none of them. */
export function linkedLibraries(mapFile) {
  const objects = foreignObjects(readFileSync(mapFile, 'utf8'));
  if (objects.length === 0) {
    throw new Error(`${mapFile} names no object file of a library`);
  }
  const ownerOf = new Map();
  for (const library of libraries) {
    for (const archive of library.archives) {
      for (const member of output(`${target}-ar`, 't', compilersFile(archive)).split('\n')) {
        // The first that holds a member is the one that the linker took it from.
        ownerOf.set(member, ownerOf.get(member) ?? library);
      }
    }
  }
  const linked = new Set();
  for (const object of objects) {
    const owner = ownerOf.get(object) ?? (startFileOrImport.test(object) ? libraries[1]
      : compilersStartFile.test(object) ? libraries[0] : undefined);
    if (!owner) {
      throw new Error(`the program holds ${object}, which is of no library that the notices know`);
    }
    linked.add(owner);
  }
  // The headers of the system and of the standard library are in every object of ours.
  linked.add(libraries[0]).add(libraries[1]);
  return libraries.filter((library) => linked.has(library)).map((library) => ({
    ...library, package: packageOf(compilersFile(library.archives[0])),
  }));
}
