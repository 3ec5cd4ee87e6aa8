// What page and program say to each other, text for text.

const said = (from) => (text) => [from, text];
export const page = said('page');
export const program = said('program');

const status = (text) => program(`{"action":"status","text":"${text}"}`);
const percent = (number) => program(`{"action":"pct","v":${number}}`);
export const step = (text, ok = true) => program(`{"action":"progress","step":"${text}","ok":${ok}}`);
export const removalStep = (text) => program(`{"action":"uninstall_progress","step":"${text}","ok":true}`);

export const installRequest = (console, linkward) => page(`{"action":"install","fwc":${console},"lw":${linkward}}`);

export const browsersClosed = (report = 'No browsers running') => [
  status('Closing browser processes...'), step(report), percent(5),
];

export const consoleInstalled = (end) => [
  status('Installing Fortwright Console...'),
  step('Deployed Fortwright.exe'),
  step('Deployed WebView2Loader.dll'),
  step('Created desktop shortcut'),
  step('Scheduled weekly update'),
  step('Registered in Add/Remove Programs'),
  step('FWC installation complete'),
  percent(end),
];

/** The console's program is not where the installer looks; `reason` is the text of the failure. */
export const consoleMissing = (end, reason) => [status('Installing Fortwright Console...'), step(reason, false), percent(end)];

const linkwardRun = (...deployment) => [
  status('Installing Veyra Linkward...'),
  ...deployment.map((text) => step(text)),
  step('Native messaging hosts registered'),
  step('Registered in Add/Remove Programs'),
  percent(85),
  status('Detecting installed browsers...'),
  percent(100),
];
export const linkwardInstalled = linkwardRun('Deployed bloom filter to ProgramData', 'Deployed bloom filter to ProgramData',
  'Deployed 4 files', 'Service installed and started');
/** From a folder with one file that belongs to nothing. */
export const linkwardInstalledFromNothing = linkwardRun('Deployed 1 files', 'Service installed but start failed (error 2)');

export const completeWithoutLinkward = [percent(100), program('{"action":"install_complete"}')];

export const browsersDetected = (names) => program(
  `{"action":"browsers_detected","browsers":[${names.map((name, i) => `{"name":"${name}","index":${i}}`).join()}]}`);

/** From the request to the list of browsers, when both products are chosen and all goes well. */
export const bothInstalled = (browsers) => [
  installRequest(true, true), ...browsersClosed(), ...consoleInstalled(40), ...linkwardInstalled, browsersDetected(browsers),
];

export const storeOpened = (index) => [
  page(`{"action":"open_webstore","index":${index}}`), program(`{"action":"webstore_opened","index":${index}}`),
];
export const amoOpened = [page('{"action":"open_amo"}'), program('{"action":"amo_opened"}')];
export const closeRequest = page('{"action":"close"}');

/** A removal: what became of running browsers and of each product's files. */
export const removal = ({
  browsers = 'No browsers running', console = 'FWC files removed', linkward = 'Files removed',
} = {}) => [
  page('{"action":"uninstall"}'),
  ...[browsers, 'Removed scheduled task', 'Removed desktop shortcut', 'Removed registry entries',
    console, 'FWC uninstall complete', 'Service removed', 'Native messaging removed',
    'Extension policies cleaned', linkward, 'Uninstall complete'].map(removalStep),
  program('{"action":"uninstall_done"}'),
];

const host = 'https://chromewebstore.brackenfold.example';
export const storePage = `${host}/detail/veyra-linkward/dgldcbgpnkooljhfhcjpkojcdnfkepnb`;
export const addonPage = 'https://addons.brackenfold.example/en-GB/firefox/addon/veyra-linkward/';
