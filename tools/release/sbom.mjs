// The release's list of components, in the form of SPDX 2.3.

/** Time in the form that SPDX wants: whole seconds, UTC. */
const spdxTime = (time) => time.toISOString().replace(/\.\d+Z$/, 'Z');

const idOf = (text) => `SPDXRef-${text.replace(/[^A-Za-z0-9.-]/g, '-')}`;

function libraryPackage({ id, name, licence, package: { name: packageName, version, source, sourceVersion } }) {
  const purl = (type) => `pkg:deb/debian/${encodeURIComponent(type.name)}@${encodeURIComponent(type.version)}`;
  return {
    SPDXID: idOf(id),
    name,
    versionInfo: version,
    supplier: 'Organization: Debian',
    downloadLocation: 'NOASSERTION',
    filesAnalyzed: false,
    licenseConcluded: licence,
    licenseDeclared: licence,
    licenseComments: 'Parts are under further licences; the copyright statement of the package lists them.',
    copyrightText: 'NOASSERTION',
    comment: `Linked statically, from Debian's package ${packageName}.`,
    primaryPackagePurpose: 'LIBRARY',
    externalRefs: [
      {
        referenceCategory: 'PACKAGE-MANAGER', referenceType: 'purl',
        referenceLocator: purl({ name: packageName, version }),
      },
      {
        referenceCategory: 'PACKAGE-MANAGER', referenceType: 'purl',
        referenceLocator: `${purl({ name: source, version: sourceVersion })}?arch=source`,
      },
    ],
  };
}

/** The document for a program with this SHA-256 that holds parts of these libraries. */
export function spdxDocument(facts, libraries, programSha256) {
  const program = idOf('OrvantaInstaller');
  return {
    spdxVersion: 'SPDX-2.3',
    dataLicense: 'CC0-1.0',
    SPDXID: 'SPDXRef-DOCUMENT',
    name: `OrvantaInstaller-${facts.version}`,
    documentNamespace: `${facts.publisherUrl}spdx/OrvantaInstaller-${facts.version}-${programSha256}`,
    creationInfo: {
      created: spdxTime(facts.time),
      creators: [`Organization: ${facts.publisher}`, `Tool: OrvantaInstaller-release-${facts.version}`],
    },
    documentDescribes: [program],
    packages: [
      {
        SPDXID: program,
        name: 'OrvantaInstaller',
        versionInfo: facts.version,
        packageFileName: 'OrvantaInstaller.exe',
        supplier: `Organization: ${facts.publisher}`,
        downloadLocation: 'NOASSERTION',
        filesAnalyzed: false,
        checksums: [{ algorithm: 'SHA256', checksumValue: programSha256 }],
        homepage: facts.publisherUrl,
        sourceInfo: `Built from commit ${facts.commit}.`,
        licenseConcluded: 'MIT',
        licenseDeclared: 'MIT',
        copyrightText: facts.copyright,
        primaryPackagePurpose: 'INSTALL',
      },
      ...libraries.map(libraryPackage),
    ],
    relationships: [
      { spdxElementId: 'SPDXRef-DOCUMENT', relationshipType: 'DESCRIBES', relatedSpdxElement: program },
      ...libraries.map(({ id }) => ({
        spdxElementId: program, relationshipType: 'STATIC_LINK', relatedSpdxElement: idOf(id),
      })),
    ],
  };
}
