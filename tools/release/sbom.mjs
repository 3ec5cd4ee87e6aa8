// The release's list of components, in the form of SPDX 2.3.

/** Time in the form that SPDX wants: whole seconds, UTC. */
const spdxTime = (time) => time.toISOString().replace(/\.\d+Z$/, 'Z');

const idOf = (text) => `SPDXRef-${text.replace(/[^A-Za-z0-9.-]/g, '-')}`;

/** A part that comes from a Debian package; `manner` says how it got into ours. */
function debianPackage({ id, name, licence, package: { name: packageName, version, source, sourceVersion } },
  manner, purpose = 'LIBRARY') {
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
    comment: `${manner}, from Debian's package ${packageName}.`,
    primaryPackagePurpose: purpose,
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

const relation = (from, relationshipType, to) => ({ spdxElementId: from, relationshipType, relatedSpdxElement: to });

/** What we made: the program, or the setup file around it. */
function ownPackage(facts, { id, fileName, fileSha256, licence, ...more }) {
  return {
    SPDXID: id,
    name: id.slice('SPDXRef-'.length),
    versionInfo: facts.version,
    packageFileName: fileName,
    supplier: `Organization: ${facts.publisher}`,
    downloadLocation: 'NOASSERTION',
    filesAnalyzed: false,
    checksums: [{ algorithm: 'SHA256', checksumValue: fileSha256 }],
    homepage: facts.publisherUrl,
    sourceInfo: `Built from commit ${facts.commit}.`,
    licenseConcluded: licence,
    licenseDeclared: licence,
    copyrightText: facts.copyright,
    primaryPackagePurpose: 'INSTALL',
    ...more,
  };
}

/**
 * The document for a program with this SHA-256 that holds parts of these libraries, and, where there is one, for the
 * setup file around it: { name, sha256, stub }.
 */
export function spdxDocument(facts, { libraries, programSha256, setupFile }) {
  const program = idOf('OrvantaInstaller');
  const setup = idOf('OrvantaInstaller-setup');
  return {
    spdxVersion: 'SPDX-2.3',
    dataLicense: 'CC0-1.0',
    SPDXID: 'SPDXRef-DOCUMENT',
    name: `OrvantaInstaller-${facts.version}`,
    documentNamespace: `${facts.publisherUrl}spdx/OrvantaInstaller-${facts.version}-${(setupFile ?? { sha256: programSha256 }).sha256}`,
    creationInfo: {
      created: spdxTime(facts.time),
      creators: [`Organization: ${facts.publisher}`, `Tool: OrvantaInstaller-release-${facts.version}`],
    },
    documentDescribes: setupFile ? [program, setup] : [program],
    packages: [
      ownPackage(facts, { id: program, fileName: 'OrvantaInstaller.exe', fileSha256: programSha256, licence: 'MIT' }),
      ...libraries.map((library) => debianPackage(library, 'Linked statically')),
      ...setupFile ? [
        ownPackage(facts, {
          id: setup, fileName: setupFile.name, fileSha256: setupFile.sha256, licence: 'NOASSERTION',
          comment: "Holds the product files as well, which are their makers' and not listed here.",
        }),
        debianPackage(setupFile.stub, 'The code that unpacks the setup file', 'OTHER'),
      ] : [],
    ],
    relationships: [
      relation('SPDXRef-DOCUMENT', 'DESCRIBES', program),
      ...libraries.map(({ id }) => relation(program, 'STATIC_LINK', idOf(id))),
      ...setupFile ? [
        relation('SPDXRef-DOCUMENT', 'DESCRIBES', setup),
        relation(setup, 'CONTAINS', program),
        relation(setup, 'CONTAINS', idOf(setupFile.stub.id)),
      ] : [],
    ],
  };
}
