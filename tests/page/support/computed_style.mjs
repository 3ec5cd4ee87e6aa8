// Computed styles of the opened page, and values that occur again and again.

import assert from 'node:assert/strict';

/** The computed values of the named properties, for the first element or each element that matches. */
export async function styles(installer, selector, names, pseudo) {
  await installer.settle();
  return installer.page.evaluate(([s, n, p]) => Array.from(document.querySelectorAll(s), (element) => {
    const style = getComputedStyle(element, p);
    return Object.fromEntries(n.map((name) => [name, style.getPropertyValue(name)]));
  }), [selector, names, pseudo]);
}

/** Every element that matches must have these computed values, and there must be `count` of them. */
export async function expectStyle(installer, selector, expected, { pseudo, count = 1 } = {}) {
  const found = await styles(installer, selector, Object.keys(expected), pseudo);
  assert.equal(found.length, count, `number of elements that match ${selector}`);
  for (const style of found) assert.deepEqual(style, expected, selector + (pseudo ?? ''));
}

export const accent = 'rgb(0, 212, 255)';
export const dim = 'rgb(107, 122, 141)';
export const text = 'rgb(226, 229, 234)';
export const card = 'rgba(255, 255, 255, 0.035)';
export const cardBorder = 'rgba(255, 255, 255, 0.06)';
export const centred = { display: 'flex', 'align-items': 'center', 'justify-content': 'center' };
export const column = { ...centred, 'flex-direction': 'column' };
export const round = { 'border-top-left-radius': '50%', 'border-bottom-right-radius': '50%' };
export const size = (width, height = width) => ({ width: `${width}px`, height: `${height}px` });
export const border = (width, style, colour) => ({
  'border-top-width': width, 'border-right-width': width, 'border-bottom-width': width,
  'border-left-width': width,
  'border-top-style': style, 'border-left-style': style,
  'border-top-color': colour, 'border-right-color': colour, 'border-bottom-color': colour,
  'border-left-color': colour,
});
export const box = (what, top, right = top, bottom = top, left = right) => ({
  [`${what}-top`]: top, [`${what}-right`]: right, [`${what}-bottom`]: bottom, [`${what}-left`]: left,
});
