// Colours of the opened page as they are painted. Computed colours are not enough: with forced colours Chromium paints
// others than it computes.

import { inflateSync } from 'node:zlib';

/** What PNG adds to a byte, from the bytes to its left, above it, and above that to the left, by the kind of a line. */
const predictors = [
  () => 0,
  (left) => left,
  (left, above) => above,
  (left, above) => (left + above) >> 1,
  (left, above, corner) => {
    const [toLeft, toAbove, toCorner] = [left, above, corner].map((byte) => Math.abs(left + above - corner - byte));
    if (toLeft <= toAbove && toLeft <= toCorner) return left;
    return toAbove <= toCorner ? above : corner;
  },
];

/** The bytes of a PNG file as Chromium writes them: 8 bits a channel, with or without transparency, not interlaced. */
function decodePng(file) {
  const parts = [];
  let header;
  for (let at = 8; at < file.length; at += 12 + file.readUInt32BE(at)) {
    const data = file.subarray(at + 8, at + 8 + file.readUInt32BE(at));
    const kind = file.toString('latin1', at + 4, at + 8);
    if (kind === 'IHDR') header = data;
    if (kind === 'IDAT') parts.push(data);
  }
  const [width, height] = [header.readUInt32BE(0), header.readUInt32BE(4)];
  const channels = { 2: 3, 6: 4 }[header[9]];
  if (header[8] !== 8 || !channels || header[12] !== 0) throw new Error('not the kind of PNG that Chromium writes');
  const packed = inflateSync(Buffer.concat(parts));
  const stride = width * channels;
  const bytes = Buffer.alloc(stride * height);
  for (let y = 0; y < height; ++y) {
    const predict = predictors[packed[y * (stride + 1)]];
    for (let x = 0; x < stride; ++x) {
      const at = y * stride + x;
      const left = x < channels ? 0 : bytes[at - channels];
      const above = y === 0 ? 0 : bytes[at - stride];
      const corner = x < channels || y === 0 ? 0 : bytes[at - stride - channels];
      bytes[at] = packed[y * (stride + 1) + 1 + x] + predict(left, above, corner);
    }
  }
  return { width, channels, bytes };
}

/** The page as it is painted now. `along` gives the colours, as [red, green, blue], of a line or a box of pixels. */
export async function paintedPage(installer) {
  await installer.settle();
  const { width, channels, bytes } = decodePng(await installer.page.screenshot());
  return {
    along([x1, y1], [x2, y2]) {
      const colours = [];
      for (let y = Math.round(y1); y <= Math.round(y2); ++y) {
        for (let x = Math.round(x1); x <= Math.round(x2); ++x) {
          const at = (y * width + x) * channels;
          colours.push([bytes[at], bytes[at + 1], bytes[at + 2]]);
        }
      }
      return colours;
    },
  };
}

function luminance(colour) {
  const [red, green, blue] = colour.map((value) => {
    const share = value / 255;
    return share <= 0.03928 ? share / 12.92 : ((share + 0.055) / 1.055) ** 2.4;
  });
  return 0.2126 * red + 0.7152 * green + 0.0722 * blue;
}

/** The contrast of two colours as the Web Content Accessibility Guidelines count it: 1 to 21. */
export function contrast(one, other) {
  const [light, dark] = [luminance(one), luminance(other)].sort((a, b) => b - a);
  return (light + 0.05) / (dark + 0.05);
}

/** The highest contrast of any of the colours with the first of them. */
export const contrastWithFirst = (colours) => Math.max(...colours.map((colour) => contrast(colours[0], colour)));
