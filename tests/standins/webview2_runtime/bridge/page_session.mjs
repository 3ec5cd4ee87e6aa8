// One page in Chromium that behaves as a WebView2 view: navigation to a text,
// messages of both directions in order, scripts, size, background, pictures.

import { deliveryExpression, hostScript, postBinding } from './page_host.mjs';

/**
 * Opens an empty page in `browser`. `events` is told what happens in it: onMessage(isString, text),
 * onReload(), onFrame(png), onConsole(type, text), onError(text), onDialog(type, text), onCrash(). The page lives in
 * this machine's time zone unless another is named.
 */
export async function openPageSession(browser, events, { timezoneId } = {}) {
  // The size is not playwright's business: it follows the program's window.
  const context = await browser.newContext({ viewport: null, timezoneId });
  const page = await context.newPage();
  const cdp = await context.newCDPSession(page);
  let onLoad; // who waits for a load that this side began
  let scale = 1;
  let isCastRunning = false;
  let hasCrashed = false;
  const unanswered = new Set();

  /** Sends a command. What a crashed page is asked is never answered by Chromium: it fails. */
  function ask(method, parameters) {
    if (hasCrashed) {
      return Promise.reject(new Error('the page has crashed'));
    }
    return new Promise((resolve, reject) => {
      unanswered.add(reject);
      cdp.send(method, parameters).then(resolve, reject).finally(() => unanswered.delete(reject));
    });
  }

  cdp.on('Runtime.bindingCalled', ({ name, payload }) => {
    if (name === postBinding) {
      events.onMessage(...JSON.parse(payload));
    }
  });
  cdp.on('Page.loadEventFired', () => {
    const taker = onLoad ?? events.onReload;
    onLoad = undefined;
    taker();
  });
  page.on('console', (message) => events.onConsole(message.type(), message.text()));
  page.on('pageerror', (error) => events.onError(error.message));
  page.on('crash', () => {
    events.onCrash();
    hasCrashed = true;
    for (const reject of unanswered) {
      reject(new Error('the page has crashed'));
    }
  });
  page.on('dialog', (dialog) => {
    events.onDialog(dialog.type(), dialog.message());
    dialog.dismiss().catch(() => {}); // the page may be gone already
  });

  await Promise.all([
    cdp.send('Page.enable'),
    cdp.send('Runtime.enable'),
    cdp.send('Runtime.addBinding', { name: postBinding }),
    cdp.send('Page.addScriptToEvaluateOnNewDocument', { source: hostScript }),
    cdp.send('Emulation.setFocusEmulationEnabled', { enabled: true }),
  ]);

  /** Runs `start` and waits for the load event that follows. */
  function loadAfter(start) {
    return new Promise((resolve, reject) => {
      onLoad = resolve;
      start().catch(reject);
    });
  }

  /** Shows `html` in a new document whose address is about:blank. Returns when it has loaded. */
  async function navigateToString(html) {
    await loadAfter(() => ask('Page.navigate', { url: 'about:blank' }));
    await loadAfter(() => ask('Runtime.evaluate', {
      expression: `document.open(); document.write(${JSON.stringify(html)}); document.close();`,
    }));
  }

  /** Hands a text to the page. False when there was nobody to take it. */
  async function deliver(text) {
    try {
      const { result } = await ask('Runtime.evaluate', { expression: deliveryExpression(text) });
      return result.value === true;
    } catch {
      return false; // the page is gone or going
    }
  }

  /** Runs a script; its result as JSON, "null" when it threw or gave nothing that JSON knows. */
  async function executeScript(script) {
    const { result, exceptionDetails } = await ask('Runtime.evaluate', {
      expression: script, returnByValue: true,
    });
    if (exceptionDetails) {
      events.onError(exceptionDetails.exception?.description ?? exceptionDetails.text);
      return 'null';
    }
    return JSON.stringify(result.value) ?? 'null';
  }

  /** The page's size in pixels of the screen and the screen's DPI. */
  async function resize(width, height, dpi) {
    scale = dpi / 96;
    if (width > 0 && height > 0) { // a minimised window has no size, and Chromium takes 0 for "as before"
      await ask('Emulation.setDeviceMetricsOverride', {
        width: Math.round(width / scale), height: Math.round(height / scale),
        deviceScaleFactor: scale, mobile: false,
      });
    }
  }

  function setBackground(a, r, g, b) {
    return ask('Emulation.setDefaultBackgroundColorOverride', { color: { r, g, b, a: a / 255 } });
  }

  /** The CSS name of the mouse pointer at a place of the page, in CSS pixels. */
  async function cursorAt(x, y) {
    const { result } = await ask('Runtime.evaluate', {
      expression: `getComputedStyle(document.elementFromPoint(${x}, ${y}) ?? document.documentElement).cursor`,
    });
    return result.value;
  }

  /** The page as a PNG file in pixels of the screen. */
  async function picture() {
    const { data } = await ask('Page.captureScreenshot', { format: 'png' });
    return Buffer.from(data, 'base64');
  }

  /** Sends every change of the page to events.onFrame; the next one after onFrame's promise is done. */
  async function startCast() {
    if (isCastRunning) {
      return;
    }
    isCastRunning = true;
    cdp.on('Page.screencastFrame', async ({ data, sessionId }) => {
      try {
        // A cast comes in CSS pixels, which is too coarse on a finer screen.
        await events.onFrame(scale === 1 ? Buffer.from(data, 'base64') : await picture());
        await ask('Page.screencastFrameAck', { sessionId });
      } catch {
        // The page has been closed.
      }
    });
    // A page that has loaded need not have been drawn yet; nobody wants to see it white.
    await ask('Runtime.evaluate', {
      expression: 'new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(() => done())))',
      awaitPromise: true,
    });
    await ask('Page.startScreencast', { format: 'png' });
  }

  return {
    page, cdp, navigateToString, deliver, executeScript, resize, setBackground, cursorAt, picture, startCast,
    scale: () => scale,
    close: () => context.close().catch(() => {}), // closed twice, or the browser went first
  };
}
