// Checks a list of components: its form against the schema beside this file, its licences against the published list
// of SPDX, and that every id that it refers to stands in it once.
//
//   node tools/release/check_sbom.mjs FILE

import { readFileSync } from 'node:fs';
import Ajv from 'ajv';
import parseLicence from 'spdx-expression-parse';

function isLicence(text) {
  try {
    return text === 'NOASSERTION' || text === 'NONE' || Boolean(parseLicence(text));
  } catch {
    return false;
  }
}

/** What is wrong with the document, a line each; empty when nothing is. */
export function faultsOf(document) {
  const schema = JSON.parse(readFileSync(new URL('spdx_2_3.schema.json', import.meta.url), 'utf8'));
  const ajv = new Ajv({ allErrors: true, formats: { licence: isLicence } });
  if (!ajv.validate(schema, document)) {
    return ajv.errors.map(({ instancePath, message }) => `${instancePath || '/'} ${message}`);
  }
  const ids = ['SPDXRef-DOCUMENT', ...document.packages.map(({ SPDXID }) => SPDXID)];
  const used = [...document.documentDescribes ?? [],
    ...document.relationships.flatMap((each) => [each.spdxElementId, each.relatedSpdxElement])];
  return [
    ...ids.filter((id, i) => ids.indexOf(id) !== i).map((id) => `${id} stands in it twice`),
    ...used.filter((id) => !ids.includes(id)).map((id) => `${id} is referred to and not in it`),
  ];
}

if (process.argv[1] === new URL(import.meta.url).pathname) {
  const faults = faultsOf(JSON.parse(readFileSync(process.argv[2], 'utf8')));
  for (const fault of faults) {
    console.error(`${process.argv[2]}: ${fault}`);
  }
  process.exitCode = faults.length === 0 ? 0 : 1;
}
