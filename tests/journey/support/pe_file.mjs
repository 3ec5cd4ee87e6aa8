// Reads the headers of a 64-bit Windows program straight from its file.

/** Machine, flags, time stamp, sections and imported DLLs of the program. */
export function readProgram(file) {
  const signature = file.readUInt32LE(0x3c);
  const coff = signature + 4;
  const optional = coff + 20;
  const firstSection = optional + file.readUInt16LE(coff + 16);
  const sections = Array.from({ length: file.readUInt16LE(coff + 2) }, (_, i) => {
    const at = firstSection + i * 40;
    return {
      name: file.toString('latin1', at, at + 8).replace(/\0+$/, ''),
      address: file.readUInt32LE(at + 12),
      size: file.readUInt32LE(at + 16),
      offset: file.readUInt32LE(at + 20),
      isWritable: (file.readUInt32LE(at + 36) & 0x80000000) !== 0,
      isExecutable: (file.readUInt32LE(at + 36) & 0x20000000) !== 0,
    };
  });
  const directory = (index) => ({
    address: file.readUInt32LE(optional + 112 + index * 8), size: file.readUInt32LE(optional + 116 + index * 8),
  });
  const offsetOf = (address) => {
    const section = sections.find((each) => address >= each.address && address < each.address + each.size);
    return section.offset + address - section.address;
  };
  const textAt = (offset) => file.toString('latin1', offset, file.indexOf(0, offset));

  const imports = [];
  for (let at = offsetOf(directory(1).address); file.readUInt32LE(at + 12) !== 0; at += 20) {
    imports.push(textAt(offsetOf(file.readUInt32LE(at + 12))));
  }
  return {
    signature: file.toString('latin1', signature, signature + 4),
    machine: file.readUInt16LE(coff),
    timeStamp: file.readUInt32LE(coff + 4),
    symbols: file.readUInt32LE(coff + 12),
    characteristics: file.readUInt16LE(coff + 18),
    magic: file.readUInt16LE(optional),
    subsystem: file.readUInt16LE(optional + 68),
    dllCharacteristics: file.readUInt16LE(optional + 70),
    imageBase: file.readBigUInt64LE(optional + 24),
    exports: directory(0),
    relocations: directory(5),
    debug: directory(6),
    sections,
    imports,
  };
}
