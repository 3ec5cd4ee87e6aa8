// Debian's Chromium without the browser around it, driven by playwright-core, which must not fetch one of its own.

import { chromium } from 'playwright-core';

/** Starts a headless browser that contacts nobody. The caller closes it. */
export function launchChromium(options = {}) {
  return chromium.launch({
    executablePath: '/usr/bin/chromium-headless-shell',
    args: [
      // Chromium refuses to start as root with its sandbox on.
      '--no-sandbox', '--disable-gpu', '--no-first-run', '--disable-background-networking',
      '--disable-component-update', '--disable-sync', '--hide-scrollbars',
    ],
    ...options,
  });
}
