// What an installation and a removal make of a drive, written from what the products promise and not from the
// program's code. Trees are those of tree.mjs; `root` is the root of drive C and is changed in place.
//
// It stays within what Wine gives: whoever may write to a file can replace it there, and under Wine 8 it keeps its
// attributes. Root may write to a read-only one; for anybody else the program makes it replaceable, as it has to on
// Windows (where then what takes its place has the attributes of the source).

import { copyTakesAttributes } from '../../support/bases.mjs';
import { at, child, entry, file, folder, followed, inOrder, put, remove } from './tree.mjs';

const makers = 'Program Files/Brackenfold';
const consolePlace = `${makers}/FWC`;
const linkwardPlace = `${makers}/Veyra Linkward`;
const dataPlace = 'ProgramData/Brackenfold/Veyra Linkward';
const firefoxAddons = 'Program Files/Mozilla Firefox/distribution/extensions';
const firefoxAddonId = 'veyra-linkward@apps.brackenfold.example';
const installerCopy = 'VeyraLinkwardInstaller.exe';

const isRoot = process.getuid() === 0;

/** Something that is refused, by Windows or by the products' own rules. */
class Refusal extends Error {}

/** Makes a path's folders; a file in the way refuses. */
function makeFolders(root, path) {
  return path.split('/').reduce((place, name) => {
    const there = followed(root, child(place, name)) ?? put(place, name, folder());
    if (there.kind !== 'folder') {
      throw new Refusal(`${name} is no folder`);
    }
    return there;
  }, root);
}

/** Copies one file to a name in a folder. `locked` holds the nodes of programs that run. */
function copyFile(source, place, name, locked) {
  const target = child(place, name);
  if (source?.kind !== 'file' || target?.kind === 'folder' || locked.has(target)) {
    throw new Refusal(`no copy to ${name}`);
  }
  const readOnly = !target || copyTakesAttributes ? source.readOnly : isRoot && target.readOnly;
  put(place, name, file(source.bytes, { readOnly }));
}

/** Adds everything in a folder to another one and ends where something is refused. */
function copyFolder(root, source, target, locked) {
  for (const { name, node } of inOrder(source)) {
    const wanted = followed(root, node);
    if (wanted?.kind === 'folder') {
      const place = followed(root, child(target, name)) ?? put(target, name, folder());
      if (place.kind !== 'folder') {
        throw new Refusal(`${name} is no folder`);
      }
      copyFolder(root, wanted, place, locked);
    } else if (wanted) {
      copyFile(wanted, target, name, locked);
    }
  }
}

/** Does it, and says whether it was not refused. */
function unlessRefused(act) {
  try {
    act();
    return true;
  } catch (error) {
    if (!(error instanceof Refusal)) {
      throw error;
    }
    return false;
  }
}

/** The last dot's part of a name in small letters; a first dot does not count. */
function extensionOf(name) {
  const dot = name.lastIndexOf('.');
  return dot > 0 ? name.slice(dot).toLowerCase() : '';
}

function deployConsole(root, sourcePath, program, locked) {
  return unlessRefused(() => {
    const place = makeFolders(root, consolePlace);
    const source = at(root, sourcePath);
    const copy = (name) => copyFile(source && followed(root, child(source, name)), place, name, locked);
    copy('Fortwright.exe');
    unlessRefused(() => copy('WebView2Loader.dll'));
    unlessRefused(() => copyFile(program.node, place, 'updater.exe', locked));
  });
}

/** Whether the web protection leaves a top-level entry of the source where it is. */
const isLeftOut = (name, programName) => name === programName
  || ['fortwright.exe', 'webview2loader.dll'].includes(name.toLowerCase())
  || ['.pem', '.vybf'].includes(extensionOf(name));

function deployFilters(root, source, locked) {
  const data = makeFolders(root, dataPlace);
  for (const { name, node } of inOrder(source)) {
    if (extensionOf(name) === '.vybf' && followed(root, node)?.kind === 'file') {
      unlessRefused(() => copyFile(followed(root, node), data, name, locked));
    }
  }
}

function deployEntry(root, place, name, node, locked) {
  if (node.kind === 'folder') {
    copyFolder(root, node, makeFolders(root, `${linkwardPlace}/${name}`), locked);
    return;
  }
  const target = extensionOf(name) === '.crx' ? child(place, 'extensions') : place;
  copyFile(node, target, name, locked);
}

function deployLinkward(root, sourcePath, program, locked) {
  return unlessRefused(() => {
    const place = makeFolders(root, linkwardPlace);
    makeFolders(root, `${dataPlace}/logs`);
    const source = at(root, sourcePath);
    if (source?.kind !== 'folder') {
      throw new Refusal('no source');
    }
    if (source === place) {
      deployFilters(root, source, locked);
      return;
    }
    makeFolders(root, `${linkwardPlace}/extensions`);
    for (const { name, node } of inOrder(source)) {
      const wanted = followed(root, node);
      if (wanted && !isLeftOut(name, program.name)) {
        unlessRefused(() => deployEntry(root, place, name, wanted, locked));
      }
    }
    deployFilters(root, source, locked);
    unlessRefused(() => copyFile(program.node, place, installerCopy, locked));
  });
}

const manifest = (members) => ['{',
  '  "name": "com.veyra.linkward",',
  '  "description": "Veyra Linkward - Website Threat Classification",',
  '  "path": "C:\\\\Program Files\\\\Brackenfold\\\\Veyra Linkward\\\\VeyraLinkwardCommunicator.exe",',
  '  "type": "stdio",', ...members, '}', ''].join('\r\n');

const manifests = {
  'com.veyra.linkward.chromium.json': manifest(['  "allowed_origins": [',
    '    "chrome-extension://dgldcbgpnkooljhfhcjpkojcdnfkepnb/",',
    '    "chrome-extension://kembcdlbgbcnnchcnbdhbmbhbejnedjf/"', '  ]']),
  'com.veyra.linkward.firefox.json': manifest([`  "allowed_extensions": ["${firefoxAddonId}"]`]),
};

function writeManifests(root) {
  const place = at(root, linkwardPlace);
  for (const [name, text] of Object.entries(place?.kind === 'folder' ? manifests : {})) {
    if (child(place, name)?.kind !== 'folder') {
      put(place, name, file(text, { readOnly: child(place, name)?.readOnly }));
    }
  }
}

/**
 * Installs both products. `sourcePath` is the folder of the product files and `programPath` the installer that runs;
 * `running` names the programs that were started from their places before. Returns which product was installed.
 */
export function install(root, { sourcePath, programPath, running = [] }) {
  const locked = new Set([programPath, ...running].map((path) => at(root, path)).filter(Boolean));
  const parent = at(root, programPath.slice(0, programPath.lastIndexOf('/')));
  const program = entry(parent, programPath.slice(programPath.lastIndexOf('/') + 1));
  const outcome = {
    console: deployConsole(root, sourcePath, program, locked),
    linkward: deployLinkward(root, sourcePath, program, locked),
  };
  writeManifests(root);
  return outcome;
}

/** Removes both products; folders that they share with others stay. */
export function uninstall(root) {
  for (const [parent, name] of [[makers, 'FWC'], [makers, 'Veyra Linkward'], [firefoxAddons, firefoxAddonId],
    ['ProgramData/Brackenfold', 'Veyra Linkward']]) {
    const place = at(root, parent);
    if (place?.kind === 'folder') {
      remove(place, name);
    }
  }
}

export { consolePlace, dataPlace, firefoxAddonId, firefoxAddons, linkwardPlace, makers };
