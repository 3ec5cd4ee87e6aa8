// What travels between the stand-in runtime and this bridge; the other half is
// runtime/wire.h (a test compares the numbers): 4 bytes length of what follows, 1 byte kind, then the fields.
// Numbers are 32-bit, least byte first; a text is its length in bytes, then
// UTF-16, so that every text of either side arrives as it was.

export const fromProgram = {
  hello: 1, createController: 2, bounds: 3, background: 4, navigate: 5, postString: 6,
  executeScript: 7, call: 8, handled: 9, trouble: 10, note: 11, mouse: 12, key: 13,
  framePainted: 14, closed: 15,
};

export const fromBridge = {
  welcome: 101, controllerReady: 102, webMessage: 103, navigationCompleted: 104,
  scriptResult: 105, frame: 106, browserGone: 107, cursor: 108,
};

/** One message as bytes. Fields are numbers, texts, or one Buffer at the end. */
export function encodeMessage(kind, ...fields) {
  const parts = [Buffer.from([kind])];
  for (const field of fields) {
    if (typeof field === 'number') {
      const number = Buffer.alloc(4);
      number.writeInt32LE(field | 0);
      parts.push(number);
    } else if (typeof field === 'string') {
      const text = Buffer.from(field, 'utf16le');
      const length = Buffer.alloc(4);
      length.writeUInt32LE(text.length);
      parts.push(length, text);
    } else {
      parts.push(field);
    }
  }
  const body = Buffer.concat(parts);
  const length = Buffer.alloc(4);
  length.writeUInt32LE(body.length);
  return Buffer.concat([length, body]);
}

/** Reads the fields of one message in their order. */
function messageReader(body) {
  let position = 1;
  return {
    kind: body[0],
    number() {
      const value = body.readInt32LE(position);
      position += 4;
      return value;
    },
    text() {
      const length = body.readUInt32LE(position);
      position += 4 + length;
      return body.toString('utf16le', position - length, position);
    },
  };
}

/** Cuts a stream of bytes into messages and hands each to `onMessage`. Returns the function to feed. */
export function messageSplitter(onMessage) {
  let chunks = [];
  let size = 0;
  let wanted = 4;
  return (chunk) => {
    chunks.push(chunk);
    size += chunk.length;
    if (size < wanted) {
      return; // a long message is joined once, not once per piece
    }
    let bytes = Buffer.concat(chunks, size);
    for (;;) {
      wanted = bytes.length < 4 ? 4 : 4 + bytes.readUInt32LE(0);
      if (bytes.length < wanted) {
        break;
      }
      onMessage(messageReader(bytes.subarray(4, wanted)));
      bytes = bytes.subarray(wanted);
    }
    chunks = [bytes];
    size = bytes.length;
  };
}
