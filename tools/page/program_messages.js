// What the program says to the page, text for text. The simulated program of the preview plays it, and the journeys
// hold the real program to it: a text that only one of the two knows fails a test.

const programMessages = (() => {
  const status = (text) => ({ action: 'status', text });
  const percent = (v) => ({ action: 'pct', v });
  const step = (text, ok = true) => ({ action: 'progress', step: text, ok });
  const removalStep = (text) => ({ action: 'uninstall_progress', step: text, ok: true });

  const nothingRunning = 'No browsers running';

  const browsersClosed = (report = nothingRunning) => [
    status('Closing browser processes...'), step(report), percent(5),
  ];

  const consoleInstalled = (end) => [
    status('Installing Fortwright Console...'),
    step('Deployed Fortwright.exe'),
    step('Deployed WebView2Loader.dll'),
    step('Created desktop shortcut'),
    step('Scheduled weekly update'),
    step('Registered in Add/Remove Programs'),
    step('FWC installation complete'),
    percent(end),
  ];

  /** The console's program is not in the folder `source`; `reason` is what the system says about it. */
  const consoleMissing = (end, { source, reason }) => [
    status('Installing Fortwright Console...'),
    step(`Failed to copy Fortwright.exe: filesystem error: copy_file: ${reason} [${source}\\Fortwright.exe] `
      + '[C:\\Program Files\\Brackenfold\\FWC\\Fortwright.exe]', false),
    percent(end),
  ];

  const linkwardRun = (...deployment) => [
    status('Installing Veyra Linkward...'),
    ...deployment.map((text) => step(text)),
    step('Native messaging hosts registered'),
    step('Registered in Add/Remove Programs'),
    percent(85),
    status('Detecting installed browsers...'),
    percent(100),
  ];
  const linkwardInstalled = linkwardRun('Deployed bloom filter to ProgramData', 'Deployed bloom filter to ProgramData',
    'Deployed 4 files', 'Service installed and started');
  /** From a folder with one file that belongs to nothing. */
  const linkwardInstalledFromNothing = linkwardRun('Deployed 1 files', 'Service installed but start failed (error 2)');

  const browsersDetected = (names) => ({
    action: 'browsers_detected', browsers: names.map((name, index) => ({ name, index })),
  });

  /**
   * All that answers the request for an installation. `browsers` names those that are found. With `missing` (see
   * consoleMissing) the products' files are not where they should be.
   */
  const installation = ({ fwc, lw }, { browsers = [], missing } = {}) => {
    const end = lw ? 40 : 90;
    return [
      ...browsersClosed(),
      ...(fwc ? (missing ? consoleMissing(end, missing) : consoleInstalled(end)) : []),
      ...(lw
        ? [...(missing ? linkwardInstalledFromNothing : linkwardInstalled), browsersDetected(browsers)]
        : [percent(100), { action: 'install_complete' }]),
    ];
  };

  /** All that answers the request for a removal: what became of running browsers and of each product's files. */
  const removal = ({ browsers = nothingRunning, console = 'FWC files removed', linkward = 'Files removed' } = {}) => [
    ...[browsers, 'Removed scheduled task', 'Removed desktop shortcut', 'Removed registry entries',
      console, 'FWC uninstall complete', 'Service removed', 'Native messaging removed',
      'Extension policies cleaned', linkward, 'Uninstall complete'].map(removalStep),
    { action: 'uninstall_done' },
  ];
  /** The removal while the products' programs run. */
  const filesLeftForReboot = {
    console: 'FWC files marked for removal on reboot', linkward: 'Files marked for removal on reboot',
  };

  return {
    browsersClosed,
    consoleInstalled,
    installation,
    removal,
    filesLeftForReboot,
    storeOpened: (index) => ({ action: 'webstore_opened', index }),
    amoOpened: { action: 'amo_opened' },
  };
})();
