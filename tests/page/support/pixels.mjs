// Colours of the opened page as they are painted. Computed colours are not enough: with forced colours Chromium paints
// others than it computes.

/** The painted colours, as [red, green, blue], from one place to another in steps of a pixel; on a level or upright line. */
export async function coloursAlong(installer, [x1, y1], [x2, y2]) {
  const clip = { x: Math.round(x1), y: Math.round(y1), width: Math.round(x2 - x1) + 1, height: Math.round(y2 - y1) + 1 };
  const picture = await installer.page.screenshot({ clip });
  const page = await installer.page.context().newPage();
  try {
    return await page.evaluate(async ([data, width, height]) => {
      const image = new Image();
      image.src = `data:image/png;base64,${data}`;
      await image.decode();
      const canvas = new OffscreenCanvas(width, height).getContext('2d');
      canvas.drawImage(image, 0, 0);
      const bytes = canvas.getImageData(0, 0, width, height).data;
      return Array.from({ length: width * height }, (_, i) => Array.from(bytes.slice(4 * i, 4 * i + 3)));
    }, [picture.toString('base64'), clip.width, clip.height]);
  } finally {
    await page.close();
  }
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
