// Photographs the nine screens and five slides of the installer page, and for docs/page.md one screen in high contrast.
//
//   node tools/page/screenshots.mjs [folder] [--scale=1] [--font="Open Sans"]
//
// The pictures go to docs/screenshots unless a folder is named. Segoe UI comes
// with Windows only; Open Sans stands in for it unless another font is named.

import { mkdirSync, mkdtempSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join, resolve } from 'node:path';
import { fileURLToPath, pathToFileURL } from 'node:url';
import { launchChromium } from '../chromium.mjs';
import { joinPage, projectFolder } from './join.mjs';

/** Name of the picture, and what the page's script does to come to it. */
export const pictures = [
  ['01-welcome', "goTo('s-welcome')"],
  ['02-close-browsers', "goTo('s-close-browsers')"],
  ['03-installing-1', "goTo('s-installing'); report('Closing browser processes...', 5); showSlide(0)"],
  ['03-installing-2', "report('Installing Fortwright Console...', 5); showSlide(1)"],
  ['03-installing-3', "report('Installing Veyra Linkward...', 40); showSlide(2)"],
  ['03-installing-4', "report('Service installed and started', 40); showSlide(3)"],
  ['03-installing-5', "report('Detecting installed browsers...', 85); showSlide(4)"],
  ['04-browser', "browsers = [{ name: 'Microsoft Edge', index: 0 }, { name: 'Google Chrome', index: 1 }]; "
    + "showBrowserStep(); goTo('s-browser')"],
  ['04-browser-confirm', "document.getElementById('browser-actions').style.display = 'none'; "
    + "document.getElementById('browser-confirm').style.display = 'flex'"],
  ['05-firefox', "goTo('s-firefox-notice')"],
  ['06-complete', "goTo('s-complete')"],
  ['07-uninstall-confirm', "goTo('s-uninstall-confirm')"],
  ['08-uninstalling', "goTo('s-uninstalling')"],
  ['09-uninstall-done', "goTo('s-uninstall-done')"],
];

/** One more, with forced colours: what is chosen, what is not, and buttons of both kinds. */
export const highContrastPicture = ['high-contrast', "goTo('s-welcome'); toggleProduct('lw')"];

/** Style rules that let another font of this machine stand in for the fonts that Windows has. */
export function standInFont(font) {
  const faces = [[400, ''], [600, ' Semibold'], [700, ' Bold']].map(([weight, name]) =>
    `@font-face { font-family: 'Segoe UI'; src: local('${font}${name}'); font-weight: ${weight}; }`);
  // Buttons keep the browser's own font, which is Arial on Windows.
  return [...faces, `button { font-family: Arial, '${font}'; }`].join('\n');
}

/** Takes pictures of the joined page in the file `html`. The same page gives the same bytes. */
export async function takeScreenshots(html, folder, {
  scale = 1, font = 'Open Sans', wanted = pictures, forcedColors = 'none', colorScheme = 'light',
} = {}) {
  mkdirSync(folder, { recursive: true });
  const browser = await launchChromium();
  try {
    const context = await browser.newContext({
      viewport: { width: 920, height: 640 }, deviceScaleFactor: scale, timezoneId: 'UTC', forcedColors, colorScheme,
    });
    const page = await context.newPage();
    await page.clock.install({ time: new Date('2026-03-02T08:50:00Z') });
    await page.clock.pauseAt(new Date('2026-03-02T09:00:00Z'));
    await page.addInitScript(() => {
      window.chrome = { webview: { addEventListener() {}, postMessage() {} } };
      window.report = (text, percent) => {
        document.getElementById('progress-label').textContent = text;
        setProgress(percent);
      };
    });
    await page.goto(pathToFileURL(html).href);
    await page.addStyleTag({ content: standInFont(font) });
    for (const [name, script] of wanted) {
      await page.evaluate(script);
      await page.clock.runFor(100);
      await page.screenshot({ path: join(folder, `${name}.png`), animations: 'disabled' });
    }
  } finally {
    await browser.close();
  }
  console.log(`${wanted.length === 1 ? '1 picture' : `${wanted.length} pictures`} in ${folder}`);
}

if (process.argv[1] === fileURLToPath(import.meta.url)) {
  const option = (name) => process.argv.find((word) => word.startsWith(`--${name}=`))?.slice(name.length + 3);
  const folder = process.argv.slice(2).find((word) => !word.startsWith('--'));
  const scratch = mkdtempSync(join(tmpdir(), 'orvanta_page_'));
  try {
    const html = join(scratch, 'page.html');
    joinPage(html);
    const target = resolve(folder ?? join(projectFolder, 'docs', 'screenshots'));
    const options = { scale: Number(option('scale') ?? 1), font: option('font') ?? 'Open Sans' };
    await takeScreenshots(html, target, options);
    await takeScreenshots(html, target,
      { ...options, wanted: [highContrastPicture], forcedColors: 'active', colorScheme: 'dark' });
  } finally {
    rmSync(scratch, { recursive: true });
  }
}
