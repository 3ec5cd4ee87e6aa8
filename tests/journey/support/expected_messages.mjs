// What page and program say to each other, text for text. The program's half stands where the preview's simulated
// program has it from, so that what a journey finds true of the one is true of the other.

import { programMessages } from '../../support/simulated_program.mjs';

const said = (from) => (text) => [from, text];
export const page = said('page');
export const program = said('program');
const programSays = (messages) => messages.map((message) => program(JSON.stringify(message)));

export const installRequest = (console, linkward) => page(`{"action":"install","fwc":${console},"lw":${linkward}}`);
export const browsersClosed = (report) => programSays(programMessages.browsersClosed(report));
export const consoleInstalled = (end) => programSays(programMessages.consoleInstalled(end));

/** From the request to the end of the installation. What was found and what was missing: see programMessages. */
export const installed = (console, linkward, found) => [
  installRequest(console, linkward),
  ...programSays(programMessages.installation({ fwc: console, lw: linkward }, found)),
];
export const bothInstalled = (browsers) => installed(true, true, { browsers });

export const storeOpened = (index) => [
  page(`{"action":"open_webstore","index":${index}}`), ...programSays([programMessages.storeOpened(index)]),
];
export const amoOpened = [page('{"action":"open_amo"}'), ...programSays([programMessages.amoOpened])];
export const closeRequest = page('{"action":"close"}');

/** From the request to the end of the removal. What became of browsers and files: see programMessages. */
export const removal = (outcome) => [page('{"action":"uninstall"}'), ...programSays(programMessages.removal(outcome))];
/** What becomes of the files of each product whose program runs. */
export const { filesLeftForReboot } = programMessages;

const host = 'https://chromewebstore.brackenfold.example';
export const storePage = `${host}/detail/veyra-linkward/dgldcbgpnkooljhfhcjpkojcdnfkepnb`;
export const addonPage = 'https://addons.brackenfold.example/en-GB/firefox/addon/veyra-linkward/';
