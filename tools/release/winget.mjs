// The three manifests of a version in the Windows package manager's repository.

const schemaVersion = '1.6.0';

const head = (kind) => `# yaml-language-server: $schema=https://aka.ms/winget-manifest.${kind}.${schemaVersion}.schema.json\n\n`;

/**
 * File names and texts of the manifests for a setup file: { name, sha256 }. It is told what to do; it is no MSI, so what
 * it leaves in Add/Remove Programs is named here.
 */
export function wingetManifests(facts, { name, sha256 }) {
  const id = `${facts.publisher}.OrvantaInstaller`;
  const tail = (type) => `ManifestType: ${type}\nManifestVersion: ${schemaVersion}\n`;
  const common = `PackageIdentifier: ${id}\nPackageVersion: ${facts.version}\n`;
  const entries = facts.entries.map(({ displayName, publisher, productCode }) =>
    `- DisplayName: ${displayName}
  Publisher: ${publisher}
  DisplayVersion: ${facts.version}
  ProductCode: ${productCode}
`).join('');
  return {
    [`${id}.yaml`]: `${head('version')}${common}DefaultLocale: en-US\n${tail('version')}`,
    [`${id}.installer.yaml`]: `${head('installer')}${common}Platform:
- Windows.Desktop
MinimumOSVersion: 10.0.15063.0
InstallerType: exe
Scope: machine
InstallModes:
- interactive
- silent
- silentWithProgress
InstallerSwitches:
  Silent: --silent
  SilentWithProgress: --silent
ExpectedReturnCodes:
- InstallerReturnCode: 1
  ReturnResponse: contactSupport
- InstallerReturnCode: 2
  ReturnResponse: contactSupport
- InstallerReturnCode: 3
  ReturnResponse: contactSupport
UpgradeBehavior: install
ElevationRequirement: elevatesSelf
ReleaseDate: ${facts.time.toISOString().slice(0, 10)}
AppsAndFeaturesEntries:
${entries}Installers:
- Architecture: x64
  InstallerUrl: ${facts.publisherUrl}download/${facts.version}/${name}
  InstallerSha256: ${sha256.toUpperCase()}
${tail('installer')}`,
    [`${id}.locale.en-US.yaml`]: `${head('defaultLocale')}${common}PackageLocale: en-US
Publisher: ${facts.publisher}
PublisherUrl: ${facts.publisherUrl}
PackageName: Orvanta Installer
License: MIT
Copyright: ${facts.copyright}
ShortDescription: Installs ${facts.entries.map(({ displayName }) => displayName).join(' and ')}.
${tail('defaultLocale')}`,
  };
}
