// Opens the joined page, as the program carries it, in Debian's Chromium with a
// recording host in place of the WebView2 control.

import { readFileSync } from 'node:fs';
import { pathToFileURL } from 'node:url';

export { launchChromium } from '../../../tools/chromium.mjs';

if (!process.env.ORVANTA_PAGE_FILE) {
  throw new Error('ORVANTA_PAGE_FILE must name the joined page (build: generated/page.html)');
}

/** The joined page: where it lies and what it holds. */
export const pageFile = process.env.ORVANTA_PAGE_FILE;
export const pageText = readFileSync(pageFile, 'utf8');

export const screens = [
  's-welcome', 's-close-browsers', 's-installing', 's-browser', 's-firefox-notice',
  's-complete', 's-uninstall-confirm', 's-uninstalling', 's-uninstall-done',
];

/** The moment at which a page with a fake clock begins: a Monday morning. */
export const startTime = new Date('2026-03-02T09:00:00Z');

// Runs in the page before its own script. Keeps what the page posts, as it came.
function installHost() {
  const listeners = [];
  window.hostReceived = [];
  window.chrome = window.chrome || {};
  window.chrome.webview = {
    postMessage: (message) => window.hostReceived.push(message),
    addEventListener: (type, listener) => listeners.push({ type, listener }),
  };
  window.hostListenerTypes = () => listeners.map((entry) => entry.type);
  window.hostSends = (data) => {
    for (const { type, listener } of listeners) if (type === 'message') listener({ data });
  };
}

/**
 * Opens the page. With `clock` (the default) time stands still until `after` moves it; without, it runs.
 * Every error that escapes the page's script is kept in `errors`.
 */
export async function openInstaller(browser, { time = startTime, clock = true, ...contextOptions } = {}) {
  const context = await browser.newContext({
    viewport: { width: 920, height: 640 }, timezoneId: 'UTC', ...contextOptions,
  });
  const page = await context.newPage();
  const errors = [];
  const requests = [];
  page.on('pageerror', (error) => errors.push(error.message));
  page.on('request', (request) => requests.push(request.url()));
  if (clock) {
    // The clock runs from the moment in which it is installed: begin earlier and stop it in time.
    await page.clock.install({ time: new Date(time.getTime() - 10 * 60 * 1000) });
    await page.clock.pauseAt(time);
  }
  await page.addInitScript(installHost);
  await page.goto(pathToFileURL(pageFile).href);

  return {
    page,
    errors,
    requests,
    close: () => context.close(),
    /** Loads the page anew: as good as opening it again, in a fifth of the time. */
    async restart() {
      await page.mouse.move(0, 0);
      await page.reload();
      errors.length = 0;
      requests.length = 0;
    },
    /** Moves the fake clock. */
    after: (ms) => page.clock.runFor(ms),
    /** A message from the host: a text as it travels, or an object to be written as JSON. */
    send: (message) =>
      page.evaluate((text) => window.hostSends(text),
        typeof message === 'string' ? message : JSON.stringify(message)),
    /** What the page has posted to the host so far, as it came. */
    received: () => page.evaluate(() => window.hostReceived),
    /** A variable or expression of the page's script. */
    state: (expression) => page.evaluate(expression),
    /** Ids of the screens with the class "active". */
    active: () => page.evaluate(() => Array.from(document.querySelectorAll('.screen.active'), (e) => e.id)),
    /** Ids of the screens with the class "exit". */
    leaving: () => page.evaluate(() => Array.from(document.querySelectorAll('.screen.exit'), (e) => e.id)),
    text: (selector) => page.evaluate((s) => document.querySelector(s).textContent, selector),
    display: (selector) =>
      page.evaluate((s) => getComputedStyle(document.querySelector(s)).display, selector),
    /** Clicks with the mouse in the middle of the element, which must be the one on top there. */
    click: (selector) => clickMiddle(page, selector),
    /** Brings running transitions and finite animations to their end. */
    settle: () => settle(page),
    /** Shows one screen at once, by the page's own function. */
    async show(id) {
      if ((await page.evaluate('currentScreen')) !== id) {
        await page.evaluate((target) => goTo(target), id);
        if (clock) await page.clock.runFor(100);
        else await page.waitForFunction((target) => currentScreen === target, id);
      }
      await settle(page);
    },
  };
}

async function settle(page) {
  await page.evaluate(() => {
    for (const animation of document.getAnimations()) {
      if (animation.effect.getTiming().iterations !== Infinity) animation.finish();
    }
  });
}

async function clickMiddle(page, selector) {
  await settle(page);
  const spot = await page.evaluate((s) => {
    const element = document.querySelector(s);
    const box = element.getBoundingClientRect();
    const x = box.left + box.width / 2;
    const y = box.top + box.height / 2;
    const top = document.elementFromPoint(x, y);
    return { x, y, hit: element.contains(top), top: top?.outerHTML.slice(0, 80) };
  }, selector);
  if (!spot.hit) {
    throw new Error(`${selector} cannot be clicked: in its place lies ${spot.top}`);
  }
  await page.mouse.click(spot.x, spot.y);
}
