// Reads the resources of a 64-bit Windows program straight from its file.

/** Every resource as { type, name, language, bytes }; type and name are numbers, or texts where they are texts. */
export function readResources(file) {
  const header = file.readUInt32LE(0x3c);
  const optional = header + 24;
  const sectionCount = file.readUInt16LE(header + 6);
  const firstSection = optional + file.readUInt16LE(header + 20);
  const root = file.readUInt32LE(optional + 112 + 2 * 8);

  const offsetOf = (address) => {
    for (let at = firstSection; at < firstSection + sectionCount * 40; at += 40) {
      const start = file.readUInt32LE(at + 12);
      if (address >= start && address < start + file.readUInt32LE(at + 16)) {
        return file.readUInt32LE(at + 20) + address - start;
      }
    }
    throw new Error(`no section holds the address ${address.toString(16)}`);
  };
  const base = offsetOf(root);

  const entries = (folder) => {
    const count = file.readUInt16LE(base + folder + 12) + file.readUInt16LE(base + folder + 14);
    return Array.from({ length: count }, (_, index) => {
      const at = base + folder + 16 + index * 8;
      const id = file.readUInt32LE(at);
      const text = base + (id & 0x7fffffff);
      return {
        id: id < 0x80000000 ? id : file.toString('utf16le', text + 2, text + 2 + 2 * file.readUInt16LE(text)),
        below: file.readUInt32LE(at + 4) & 0x7fffffff,
      };
    });
  };
  return entries(0).flatMap((type) => entries(type.below).flatMap((name) => entries(name.below).map((language) => {
    const start = offsetOf(file.readUInt32LE(base + language.below));
    const size = file.readUInt32LE(base + language.below + 4);
    return { type: type.id, name: name.id, language: language.id, bytes: file.subarray(start, start + size) };
  })));
}

/** The images of an icon group as { width, height, bits, id }, in their order. */
export function iconImages(group) {
  return Array.from({ length: group.readUInt16LE(4) }, (_, index) => {
    const at = 6 + index * 14;
    return {
      width: group[at] || 256, height: group[at + 1] || 256, bits: group.readUInt16LE(at + 6), id: group.readUInt16LE(at + 12),
    };
  });
}

const aligned = (offset) => (offset + 3) & ~3;

/** A block of a version resource: its key, its value as text, its children. */
function versionBlock(bytes, start) {
  const end = start + bytes.readUInt16LE(start);
  const valueLength = bytes.readUInt16LE(start + 2);
  const isText = bytes.readUInt16LE(start + 4) === 1;
  let at = start + 6;
  while (bytes.readUInt16LE(at) !== 0) {
    at += 2;
  }
  const key = bytes.toString('utf16le', start + 6, at);
  at = aligned(at + 2);
  const valueEnd = at + valueLength * (isText ? 2 : 1);
  const value = bytes.subarray(at, valueEnd);
  const children = [];
  for (at = aligned(valueEnd); at < end; at = aligned(at + bytes.readUInt16LE(at))) {
    children.push(versionBlock(bytes, at));
  }
  return { key, value, text: value.toString('utf16le').replace(/\0$/, ''), children };
}

/** The fixed numbers and the texts of a version resource. */
export function versionOf(bytes) {
  const root = versionBlock(bytes, 0);
  const number = (at) => [2, 0, 6, 4].map((part) => root.value.readUInt16LE(at + part)).join('.');
  const [table] = root.children.find(({ key }) => key === 'StringFileInfo').children;
  return {
    file: number(8),
    product: number(16),
    language: table.key,
    texts: Object.fromEntries(table.children.map(({ key, text }) => [key, text])),
  };
}
