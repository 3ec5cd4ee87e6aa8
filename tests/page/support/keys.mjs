// What a person does with the keyboard, and where it leads.

/** Holds a key as a keyboard does: pressed once, then repeated every 33 ms. */
export async function hold(installer, key, times = 16) {
  for (let i = 0; i < times; ++i) {
    await installer.page.keyboard.down(key);
    await installer.after(33);
  }
  await installer.page.keyboard.up(key);
}

/** What has the focus: the text of a button, the name of a card, the id of a screen, or "body". */
export const focused = (installer) => installer.page.evaluate(() => {
  const element = document.activeElement;
  return element.ariaLabel && !element.id.startsWith('s-') ? element.ariaLabel
    : element.localName === 'button' ? element.textContent : element.id || element.localName;
});

/** All that the Tab key comes to, until it leaves the page. */
export async function tabStops(installer) {
  const stops = [];
  for (;;) {
    await installer.page.keyboard.press('Tab');
    const stop = await focused(installer);
    // Behind the last one it leaves the page.
    if (stop === 'body' || stops.includes(stop) || stops.length > 30) return stops;
    stops.push(stop);
  }
}

/** Comes to the button with this text by Tab alone, and presses it with `key`. */
export async function pressByKey(installer, text, key = 'Enter') {
  for (let stops = 0; (await focused(installer)) !== text; ++stops) {
    if (stops > 10) throw new Error(`the Tab key does not come to "${text}"`);
    await installer.page.keyboard.press('Tab');
  }
  await installer.page.keyboard.press(key);
}
