// Plays the program behind the installer page: answers the page's requests with
// the messages of an installation or removal (program_messages.js), and touches nothing.

// The browsers that the page knows, by the names in its list of labels.
const [, labels] = installerPage.match(/const browserAddLabel = \{([^}]*)\}/);
const catalogue = Array.from(labels.matchAll(/'([^']+)':/g), ([, name]) => name);

/** Where the product files are not when something goes wrong, and what Windows says about it. */
const missingProducts = {
  source: 'C:\\Users\\User\\Downloads', reason: 'The system cannot find the file specified.',
};

/**
 * The two ends of the page's host object. `settings` is read anew at every request: `browsers` (how many of
 * the catalogue are found), `pause` (milliseconds between two messages) and `failing` (an installation does
 * not find the product files, a removal meets running programs). `watch(direction, text)` sees every message,
 * "in" to the page and "out" of it.
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

  const outcome = () => ({
    browsers: catalogue.slice(0, settings.browsers), missing: settings.failing ? missingProducts : undefined,
  });
  const answers = {
    install: (request) => playInTurn(programMessages.installation(request, outcome())),
    uninstall: () => playInTurn(programMessages.removal(settings.failing ? programMessages.filesLeftForReboot : {})),
    open_webstore: ({ index }) => playInTurn([programMessages.storeOpened(index)]),
    open_amo: () => playInTurn([programMessages.amoOpened]),
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
