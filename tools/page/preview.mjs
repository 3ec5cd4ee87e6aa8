// Shows the installer page without Windows: joins its pieces, puts a simulated
// program beside it and opens both in the browser.
//
//   node tools/page/preview.mjs [browsers] [option ...]
//
// as ./run page does; preview_help.txt says what can be given. Everything is written
// to a folder; nothing is served over the network.

import { spawn } from 'node:child_process';
import { copyFileSync, mkdirSync, readFileSync, writeFileSync } from 'node:fs';
import { join, resolve } from 'node:path';
import { pathToFileURL } from 'node:url';
import { joinPage, projectFolder } from './join.mjs';

const help = readFileSync(new URL('preview_help.txt', import.meta.url), 'utf8');

function readOptions(words) {
  const options = { browsers: 3, mode: 'install', open: true, folder: join(projectFolder, 'build', 'page') };
  for (const word of words) {
    if (/^[0-9]$/.test(word)) options.browsers = Number(word);
    else if (word === '--help' || word === '-h') {
      console.log(help.trimEnd());
      process.exit(0);
    } else if (word === '--uninstall') options.mode = 'uninstall';
    else if (word === '--no-open') options.open = false;
    else if (/^--folder=./.test(word)) options.folder = resolve(word.slice('--folder='.length));
    else {
      console.error(`${word}: not understood; ./run page --help explains`);
      process.exit(2);
    }
  }
  return options;
}

/** Writes page.html (the joined page) and, beside it, the preview with its simulated program. */
function writePreview(folder) {
  mkdirSync(folder, { recursive: true });
  const html = join(folder, 'page.html');
  joinPage(html);
  // A file may not read its neighbours, but may load them as scripts.
  writeFileSync(join(folder, 'page.js'), `const installerPage = ${JSON.stringify(readFileSync(html, 'utf8'))};\n`);
  for (const name of ['preview.html', 'program_messages.js', 'simulated_host.js']) {
    copyFileSync(new URL(name, import.meta.url), join(folder, name));
  }
}

const options = readOptions(process.argv.slice(2));
const { folder } = options;
writePreview(folder);
const address = new URL(pathToFileURL(join(folder, 'preview.html')));
address.searchParams.set('browsers', options.browsers);
address.searchParams.set('mode', options.mode);
console.log(`The preview is ${join(folder, 'preview.html')}`);

if (options.open && (process.env.DISPLAY || process.env.WAYLAND_DISPLAY)) {
  console.log('Opening it in the browser.');
  spawn('xdg-open', [address.href], { detached: true, stdio: 'ignore' })
    .on('error', () => console.error(`xdg-open is missing; open ${address.href} yourself.`))
    .unref();
} else if (options.open) {
  const { takeScreenshots } = await import('./screenshots.mjs');
  await takeScreenshots(join(folder, 'page.html'), join(folder, 'screens'));
}
