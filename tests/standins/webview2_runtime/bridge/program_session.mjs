// One program that has connected: carries out what its runtime asks for, tells it
// what the page did, and keeps the transcript of both.

import { writeFileSync } from 'node:fs';
import { keyParameters, mouseParameters } from './input.mjs';
import { createPageActs } from './page_acts.mjs';
import { openPageSession } from './page_session.mjs';
import { createTranscript } from './transcript.mjs';
import { encodeMessage, fromBridge, fromProgram, messageSplitter } from './wire.mjs';

const E_FAIL = 0x80004005 | 0;
const quiet = () => {}; // an answer to a page or a program that has gone needs no taker

/**
 * Serves one connection. Options: outcomes (see the runtime's outcomes.h), controllerResult (an HRESULT),
 * paint (send pictures), timezoneId, preparePage(page), transcriptFile.
 */
export function serveProgram(socket, browser, now, options) {
  const transcript = createTranscript({ file: options.transcriptFile, now });
  const { record } = transcript;
  let session; // promise of the page
  let open; // the page once it is there
  let navigation = Promise.resolve();
  let framePainted = quiet;
  let hasPainted = false;
  let isAskingForCursor = false;
  let lastCursor = 0;
  const { finished: actsFinished, ...acts } = createPageActs(() => open.page);
  let resolveClosed;
  const closed = new Promise((resolve) => { resolveClosed = resolve; });

  const send = (...message) => {
    if (!socket.destroyed) {
      socket.write(encodeMessage(...message));
    }
  };

  const pageEvents = {
    onMessage(isString, text) {
      record('page', 'message', isString ? { text } : { json: text });
      send(fromBridge.webMessage, isString ? 1 : 0, text);
    },
    onReload() {
      record('page', 'loaded');
      send(fromBridge.navigationCompleted);
    },
    async onFrame(png) {
      const painted = new Promise((resolve) => { framePainted = resolve; });
      send(fromBridge.frame, png);
      await painted;
      if (!hasPainted) {
        hasPainted = true;
        record('runtime', 'first frame');
      }
    },
    onConsole: (type, text) => record('page', 'console', { type, text }),
    onError: (text) => record('page', 'error', { text }),
    onDialog: (type, text) => record('page', 'dialog', { type, text }),
    onCrash: () => record('page', 'crash'),
  };

  async function openPage() {
    const made = await openPageSession(browser, pageEvents, options);
    await options.preparePage?.(made.page);
    open = made;
    return made;
  }

  async function createController(dpi) {
    record('program', 'create controller', { dpi });
    let result = options.controllerResult ?? 0;
    try {
      const made = await session;
      await made.resize(0, 0, dpi); // only the scale; the size comes with the bounds
    } catch (error) {
      record('bridge', 'error', { text: error.message });
      result = E_FAIL;
    }
    record('runtime', 'controller', { result: result >>> 0 });
    send(fromBridge.controllerReady, result);
  }

  async function navigate(html) {
    await open.navigateToString(html);
    record('page', 'loaded');
    send(fromBridge.navigationCompleted);
    if (options.paint) {
      await open.startCast();
    }
  }

  async function executeScript(id, script) {
    record('program', 'script', { text: script });
    const json = await open.executeScript(script);
    record('page', 'script result', { json });
    send(fromBridge.scriptResult, id, 0, json);
  }

  async function post(text) {
    record('program', 'message', { text });
    if (!open || !(await open.deliver(text))) {
      record('bridge', 'lost', { text });
    }
  }

  function resize(message) {
    const [left, top, right, bottom, dpi] = Array.from({ length: 5 }, () => message.number());
    record('program', 'bounds', { left, top, right, bottom, dpi });
    return open.resize(right - left, bottom - top, dpi);
  }

  function setBackground(message) {
    const [a, r, g, b] = Array.from({ length: 4 }, () => message.number());
    record('program', 'background', { a, r, g, b });
    return open.setBackground(a, r, g, b);
  }

  async function moveMouse(message) {
    const parameters = mouseParameters(message, open.scale());
    const moved = open.cdp.send('Input.dispatchMouseEvent', parameters);
    // One question at a time: a mouse moves faster than a page can be asked.
    if (parameters.type === 'mouseMoved' && !isAskingForCursor) {
      isAskingForCursor = true;
      const name = await open.cursorAt(parameters.x, parameters.y).catch(quiet);
      isAskingForCursor = false;
      const cursor = name === 'pointer' ? 1 : name === 'text' ? 2 : 0;
      if (cursor !== lastCursor) {
        lastCursor = cursor;
        send(fromBridge.cursor, cursor);
      }
    }
    await moved;
  }

  const actions = {
    [fromProgram.hello]: (message) => {
      record('program', 'hello', { processId: message.number(), program: message.text() });
      session = openPage();
      session.catch(quiet); // reported when the controller is asked for
      send(fromBridge.welcome, options.outcomes ?? '');
    },
    [fromProgram.createController]: (message) => createController(message.number()),
    [fromProgram.bounds]: resize,
    [fromProgram.background]: setBackground,
    [fromProgram.navigate]: (message) => {
      const html = message.text();
      record('program', 'navigate', { html }); // when it is asked for, not when its turn comes
      navigation = navigation.then(() => navigate(html));
      return navigation;
    },
    [fromProgram.postString]: (message) => post(message.text()),
    [fromProgram.executeScript]: (message) => executeScript(message.number(), message.text()),
    [fromProgram.call]: (message) => {
      record('program', 'call', { method: message.text(), arguments: message.text() });
    },
    [fromProgram.handled]: (message) => {
      record('program', 'handled', { handler: message.text(), result: message.number() >>> 0 });
    },
    [fromProgram.trouble]: (message) => record('runtime', 'trouble', { text: message.text() }),
    [fromProgram.note]: (message) => record('runtime', 'note', { text: message.text() }),
    [fromProgram.mouse]: moveMouse,
    [fromProgram.key]: (message) => open.cdp.send('Input.dispatchKeyEvent', keyParameters(message)),
    [fromProgram.framePainted]: () => framePainted(),
    [fromProgram.closed]: () => record('program', 'closed'),
  };

  function onMessage(message) {
    Promise.resolve(actions[message.kind](message)).catch((error) => {
      record('bridge', 'error', { text: error.message });
    });
  }

  async function closePage() {
    const made = await session;
    await actsFinished();
    await made?.close();
  }

  function onEnd() {
    record('program', 'disconnected');
    transcript.end();
    framePainted();
    resolveClosed();
    closePage().catch(quiet); // it could not be opened
  }

  socket.setNoDelay(true);
  socket.on('data', messageSplitter((message) => {
    try {
      onMessage(message);
    } catch (error) {
      record('bridge', 'error', { text: error.message });
    }
  }));
  socket.on('error', quiet); // 'close' follows
  socket.on('close', onEnd);

  return {
    ...acts,
    closed,
    transcript: transcript.entries,
    waitFor: transcript.waitFor,
    get page() { return open?.page; },
    messages: () => transcript.entries
      .filter(({ event }) => event === 'message')
      .map(({ from, text, json }) => (text === undefined ? { from, json } : { from, text })),
    troubles: () => transcript.entries
      .filter(({ from, event }) => event === 'trouble' || event === 'lost' || (from !== 'program' && event === 'error'))
      .map(({ event, text }) => `${event}: ${text}`),
    /** The page has loaded and can be used. */
    ready: (waiting) => transcript.waitFor(({ event }) => event === 'loaded', { what: 'the page', ...waiting }),
    /** Writes the page as a PNG file, in pixels of the screen, when `path` is given; returns the bytes. */
    async screenshot(path) {
      const png = await open.picture();
      if (path) {
        writeFileSync(path, png);
      }
      return png;
    },
    /** Loads the page's document anew, by itself: it comes back empty. */
    reload: () => open.page.reload(),
    /** Ends the page's process as a crash would. The program is not told: it has no handler for it. */
    async crashPage() {
      open.cdp.send('Page.crash').catch(quiet); // never answered
      await transcript.waitFor(({ event }) => event === 'crash', { what: 'the crash of the page' });
    },
    /** The browser process has died: from now on the view's methods fail. */
    async loseBrowser() {
      record('bridge', 'browser gone');
      await open.close();
      send(fromBridge.browserGone);
    },
    disconnect: () => socket.destroy(),
  };
}
