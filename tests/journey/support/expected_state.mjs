// What the machine holds after a full installation of the sample products, as
// the machine report gives it. Written out, not computed from the program.

import { browsers } from '../../support/browsers/browsers.mjs';

export const consoleFolder = 'C:\\Program Files\\Brackenfold\\FWC';
export const linkwardFolder = 'C:\\Program Files\\Brackenfold\\Veyra Linkward';
export const dataFolder = 'C:\\ProgramData\\Brackenfold\\Veyra Linkward';

export const consoleFiles = ['FWC\\Fortwright.exe', 'FWC\\updater.exe', 'FWC\\WebView2Loader.dll'];

export const linkwardFiles = [
  'Veyra Linkward\\com.veyra.linkward.chromium.json',
  'Veyra Linkward\\com.veyra.linkward.firefox.json',
  'Veyra Linkward\\extensions\\veyra-linkward.crx',
  'Veyra Linkward\\licences\\Third party notices.txt',
  'Veyra Linkward\\Read me first.txt',
  'Veyra Linkward\\rules\\categories\\Default categories.json',
  'Veyra Linkward\\rules\\exceptions.txt',
  'Veyra Linkward\\VeyraLinkward.exe',
  'Veyra Linkward\\VeyraLinkwardCommunicator.exe',
  'Veyra Linkward\\VeyraLinkwardInstaller.exe',
];

/** The setup file adds licence and notices to the products. */
export const linkwardFilesOfSetup = linkwardFiles.flatMap((path) => (path.endsWith('\\Read me first.txt')
  ? ['Veyra Linkward\\OrvantaInstaller-LICENSE.txt', 'Veyra Linkward\\OrvantaInstaller-NOTICES.txt', path] : [path]));

export const dataFiles = ['Veyra Linkward\\malware-sites.vybf', 'Veyra Linkward\\phishing-sites.vybf'];

const uninstallRoot = 'SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\';

/** The console's Add/Remove Programs values, sorted by name; `date` is the day of the installation. */
export const consoleEntry = (date) => ({
  key: `${uninstallRoot}FortwrightConsole`,
  values: [
    ['DisplayIcon', 'REG_SZ', `${consoleFolder}\\Fortwright.exe,0`],
    ['DisplayName', 'REG_SZ', 'Fortwright Console'],
    ['DisplayVersion', 'REG_SZ', process.env.ORVANTA_VERSION],
    ['EstimatedSize', 'REG_DWORD', '50000'],
    ['InstallDate', 'REG_SZ', date],
    ['InstallLocation', 'REG_SZ', consoleFolder],
    ['NoModify', 'REG_DWORD', '1'],
    ['NoRepair', 'REG_DWORD', '1'],
    ['Publisher', 'REG_SZ', 'Brackenfold LTD'],
    ['UninstallString', 'REG_SZ', `"${consoleFolder}\\updater.exe" /uninstall`],
    ['URLInfoAbout', 'REG_SZ', 'https://www.brackenfold.example/'],
  ],
});

export const linkwardEntry = {
  key: `${uninstallRoot}VeyraLinkward`,
  values: [
    ['DisplayName', 'REG_SZ', 'Veyra Linkward'],
    ['DisplayVersion', 'REG_SZ', process.env.ORVANTA_VERSION],
    ['ExtensionId', 'REG_SZ', 'dgldcbgpnkooljhfhcjpkojcdnfkepnb'],
    ['InstallLocation', 'REG_SZ', linkwardFolder],
    ['Publisher', 'REG_SZ', 'Brackenfold'],
    ['QuietUninstallString', 'REG_SZ', `${linkwardFolder}\\VeyraLinkwardInstaller.exe --uninstall`],
    ['UninstallString', 'REG_SZ', `${linkwardFolder}\\VeyraLinkwardInstaller.exe --uninstall-gui`],
  ],
};

const chromiumHost = (vendorKey) => ({
  key: `SOFTWARE\\${vendorKey}\\NativeMessagingHosts\\com.veyra.linkward`,
  values: [['', 'REG_SZ', `${linkwardFolder}\\com.veyra.linkward.chromium.json`]],
});

export const hosts = [
  ...browsers.map(({ settings }) => chromiumHost(settings)),
  {
    key: 'SOFTWARE\\Mozilla\\NativeMessagingHosts\\com.veyra.linkward',
    values: [['', 'REG_SZ', `${linkwardFolder}\\com.veyra.linkward.firefox.json`]],
  },
];

export const createTaskCommand = 'schtasks /Create /F /TN "Brackenfold\\FWC Updater" '
  + `/TR "\\"${consoleFolder}\\updater.exe\\"" /SC WEEKLY /D SUN /ST 03:00 /RL HIGHEST /RU SYSTEM`;
export const deleteTaskCommand = 'schtasks /Delete /F /TN "Brackenfold\\FWC Updater"';

/** Keys of a report in the short form used above. */
export const shortKeys = (keys) => keys.map(({ key, values }) => ({
  key, values: values.map(({ name, type, data }) => [name, type, data]),
}));

/** The paths of a report's files below one root, folders left out. */
export function filesBelow(report, root) {
  const tree = report.trees.find((candidate) => candidate.root === root);
  return tree ? tree.entries.filter(({ folder }) => !folder).map(({ path }) => path) : [];
}
export const programFiles = 'C:\\Program Files\\Brackenfold';
export const programData = 'C:\\ProgramData\\Brackenfold';
