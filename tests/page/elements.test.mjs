// The elements of the page: levels of headings, classes, bold texts, and the two drawn pictures.

import assert from 'node:assert/strict';
import { describe, test } from 'node:test';
import { shareInstaller } from './support/shared_page.mjs';

const installer = shareInstaller();

const attributes = (selector, name) => installer.page.evaluate(
  ([s, n]) => Array.from(document.querySelectorAll(s), (e) => e.getAttribute(n)), [selector, name]);

describe('elements', () => {
  const elementsAt = (selector) => installer.page.evaluate(
    (s) => Array.from(document.querySelectorAll(s), (e) => `${e.localName}: ${e.textContent}`), selector);

  test('headings have their levels', async () => {
    assert.deepEqual(await elementsAt('h1'), [
      'h1: Good morning', "h1: You're Protected", 'h1: Uninstall Complete']);
    assert.deepEqual(await elementsAt('h2'), [
      'h2: Close Your Browsers', 'h2: Real-Time Threat Scanning', 'h2: AI-Powered Classification',
      'h2: Windows Defender Hardened', 'h2: Deep Firewall Control', 'h2: Silent Protection',
      'h2: Google Chrome', 'h2: Mozilla Firefox', 'h2: Uninstall Veyra Security Suite?',
      'h2: Removing Veyra Security Suite']);
    assert.deepEqual(await elementsAt('h3'), ['h3: Fortwright Console', 'h3: Veyra Linkward']);
  });

  test('both product cards are selected and carry their icons', async () => {
    assert.deepEqual(await attributes('.product-card', 'class'),
      ['product-card selected', 'product-card selected']);
    assert.deepEqual(await attributes('.p-icon', 'class'), ['p-icon icon-purple', 'p-icon icon-cyan']);
    assert.deepEqual(await attributes('.product-grid > *', 'id'), ['card-fwc', 'card-lw']);
  });

  test('buttons carry their classes', async () => {
    const buttons = await installer.page.evaluate(() => Array.from(document.querySelectorAll('button'),
      (e) => `${e.textContent} | ${e.className}`));
    assert.deepEqual(buttons, [
      'Install Selected \u2192 | btn btn-primary',
      'Uninstall | btn btn-ghost',
      'Continue \u2192 | btn btn-primary',
      'Back | btn btn-ghost',
      'Open Web Store in Chrome \u2197 | btn btn-primary',
      '\u2713 Extension Added | btn btn-primary',
      'Skip | btn btn-ghost',
      'Open Firefox Add-ons \u2197 | btn btn-primary',
      "Skip \u2014 I don't use Firefox | btn btn-ghost",
      'Close Installer | btn btn-primary',
      'Uninstall Everything | btn btn-primary',
      'Cancel | btn btn-ghost',
      'Close | btn btn-primary',
    ]);
    assert.equal(await installer.state("document.querySelectorAll('button:disabled').length"), 0);
  });

  test('slides are numbered, the first is active, and so is the first of five dots', async () => {
    assert.deepEqual(await attributes('.carousel-slide', 'data-slide'), ['0', '1', '2', '3', '4']);
    assert.deepEqual(await attributes('.carousel-slide.active', 'data-slide'), ['0']);
    assert.deepEqual(
      await installer.state(
        "Array.from(document.querySelectorAll('.carousel-dots > *'), (e) => e.classList.contains('active'))"),
      [true, false, false, false, false]);
  });

  test('slide icons carry their colour classes', async () => {
    assert.deepEqual(await attributes('.s-icon', 'class'),
      ['s-icon icon-cyan', 's-icon icon-purple', 's-icon', 's-icon', 's-icon icon-green']);
  });

  test('bold texts are bold', async () => {
    assert.deepEqual(await installer.page.evaluate(() => {
      const bold = Array.from(document.querySelectorAll('p, .screen span, .screen strong'))
        .filter((e) => e.localName === 'strong' && getComputedStyle(e).fontWeight === '700');
      return bold.map((e) => e.textContent);
    }), [
      'Please save your work', 'Open Web Store', 'Chrome', '\u201cAdd to Chrome\u201d',
      '\u201cAdd extension\u201d', 'Open Firefox Add-ons', '\u201cAdd to Firefox\u201d', '\u201cAdd\u201d',
    ]);
  });

  test('the sun and the moon are drawn as they should be', async () => {
    const picture = (id) => installer.page.evaluate((i) => {
      const svg = document.getElementById(i);
      return {
        size: [svg.getAttribute('width'), svg.getAttribute('height'), svg.getAttribute('viewBox')],
        shapes: Array.from(svg.querySelectorAll('path, circle, line'), (shape) => {
          const style = getComputedStyle(shape);
          return {
            path: shape.getAttribute('d') ?? undefined,
            radius: shape.getAttribute('r') ?? undefined,
            centre: shape.localName === 'circle' ? [shape.cx.baseVal.value, shape.cy.baseVal.value] : undefined,
            colour: shape.localName === 'line'
              ? [style.stroke, style.strokeWidth, style.strokeLinecap] : style.fill,
            opacity: style.opacity,
          };
        }),
      };
    }, id);
    assert.deepEqual(await picture('icon-moon'), {
      size: ['40', '40', '0 0 24 24'],
      shapes: [{
        path: 'M21 12.79A9 9 0 1 1 11.21 3 7 7 0 0 0 21 12.79z', radius: undefined, centre: undefined,
        colour: 'rgb(0, 212, 255)', opacity: '0.85',
      }],
    });
    const ray = {
      path: undefined, radius: undefined, centre: undefined,
      colour: ['rgb(251, 191, 36)', '2px', 'round'], opacity: '1',
    };
    assert.deepEqual(await picture('icon-sun'), {
      size: ['40', '40', '0 0 24 24'],
      shapes: [
        { path: undefined, radius: '5', centre: [12, 12], colour: 'rgb(251, 191, 36)', opacity: '1' },
        ...Array(8).fill(ray),
      ],
    });
  });

  test('the eight rays stand around the disc at equal angles and do not touch it', async () => {
    const rays = await installer.page.evaluate(() => Array.from(document.querySelectorAll('#icon-sun line'),
      (line) => ['x1', 'y1', 'x2', 'y2'].map((name) => line[name].baseVal.value - 12)));
    const angles = rays.map(([x1, y1]) => (Math.round(Math.atan2(y1, x1) * 180 / Math.PI) + 360) % 360);
    assert.deepEqual(angles.sort((a, b) => a - b), [0, 45, 90, 135, 180, 225, 270, 315]);
    for (const [x1, y1, x2, y2] of rays) {
      assert.ok(Math.min(Math.hypot(x1, y1), Math.hypot(x2, y2)) > 7, 'a ray reaches into the disc');
      assert.ok(Math.max(Math.hypot(x1, y1), Math.hypot(x2, y2)) <= 11.1, 'a ray leaves the view box');
    }
  });
});
