// Plays the program behind the installer page: answers the page's requests with
// the messages of an installation or removal, and touches nothing.

const catalogue = ['Microsoft Edge', 'Google Chrome', 'Brave', 'Vivaldi', 'Opera', 'Opera GX'];

const consoleReports = [
  'Created install folder', 'Copied Fortwright.exe', 'Copied WebView2Loader.dll',
  'Created desktop shortcut', 'Created weekly update task', 'Registered uninstall entry',
];
const linkwardReports = [
  'Copied service files', 'Copied extension packages', 'Copied bloom filters',
  'Service installed and started', 'Registered native messaging host', 'Registered uninstall entry',
];
const removalReports = [
  'No browsers running', 'Removed Fortwright Console', 'Stopped the protection service',
  'Removed native messaging registrations', 'Removed browser policies', 'Removed program files',
];

/**
 * The two ends of the page's host object. `settings` is read anew at every request: `browsers` (how many of
 * the catalogue are found), `pause` (milliseconds between two messages) and `failing` (reports carry ok
 * false). `watch(direction, text)` sees every message, "in" to the page and "out" of it.
 */
function createSimulatedHost(settings, watch) {
  const listeners = [];
  const timers = new Set();

  function deliver(message) {
    const text = JSON.stringify(message);
    watch('in', text);
    for (const listener of listeners) listener({ data: text });
  }

  function playInTurn(messages) {
    messages.forEach((message, index) => {
      const timer = setTimeout(() => {
        timers.delete(timer);
        deliver(message);
      }, settings.pause * (index + 1));
      timers.add(timer);
    });
  }

  const report = (action) => (step) => ({ action, step, ok: !settings.failing });

  function installation({ fwc, lw }) {
    const messages = [
      { action: 'status', text: 'Closing browser processes...' },
      report('progress')('No browsers running'),
      { action: 'pct', v: 5 },
    ];
    if (fwc) {
      messages.push({ action: 'status', text: 'Installing Fortwright Console...' });
      messages.push(...consoleReports.map(report('progress')));
      messages.push({ action: 'pct', v: lw ? 40 : 90 });
    }
    if (!lw) {
      return [...messages, { action: 'pct', v: 100 }, { action: 'install_complete' }];
    }
    const browsers = catalogue.slice(0, settings.browsers).map((name, index) => ({ name, index }));
    return [
      ...messages,
      { action: 'status', text: 'Installing Veyra Linkward...' },
      ...linkwardReports.map(report('progress')),
      { action: 'pct', v: 85 },
      { action: 'status', text: 'Detecting installed browsers...' },
      { action: 'pct', v: 100 },
      { action: 'browsers_detected', browsers },
    ];
  }

  const answers = {
    install: (request) => playInTurn(installation(request)),
    uninstall: () => playInTurn([...removalReports.map(report('uninstall_progress')), { action: 'uninstall_done' }]),
    open_webstore: ({ index }) => playInTurn([{ action: 'webstore_opened', index }]),
    open_amo: () => playInTurn([{ action: 'amo_opened' }]),
    close: () => watch('end', 'The program would close its window now.'),
  };

  return {
    webview: {
      addEventListener: (type, listener) => {
        if (type === 'message') listeners.push(listener);
      },
      postMessage: (text) => {
        watch('out', text);
        const request = JSON.parse(text);
        answers[request.action]?.(request);
      },
    },
    /** Forgets every message that is still to come. */
    stop: () => {
      for (const timer of timers) clearTimeout(timer);
      timers.clear();
    },
  };
}
