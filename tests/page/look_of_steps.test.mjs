// The look of the steps of an installation: slide show, progress, browser steps, warning box.
// Fixed behaviour: sizes, colours and places are prescribed to the pixel, whatever else would look good.

import assert from 'node:assert/strict';
import { beforeEach, describe, test } from 'node:test';
import {
  accent, border, box, column, dim, expectStyle, round, size,
} from './support/computed_style.mjs';
import { shareInstaller } from './support/shared_page.mjs';

const installer = shareInstaller();

describe('slide show', () => {
  beforeEach(() => installer.show('s-installing'));

  test('area', () => expectStyle(installer, '.carousel-area', {
    'flex-grow': '1', width: '700px', 'max-width': '700px', ...column,
  }));

  test('one slide is on show, the others are not laid out', async () => {
    for (let index = 0; index < 5; ++index) {
      await installer.state(`showSlide(${index})`);
      await expectStyle(installer, `[data-slide="${index}"]`, {
        display: 'flex', 'flex-direction': 'column', 'align-items': 'center', 'text-align': 'center',
        ...box('padding', '40px'), position: 'static',
        'animation-name': 'fadeSlide', 'animation-duration': '0.5s', 'animation-timing-function': 'ease',
        'animation-iteration-count': '1',
      });
      await expectStyle(installer, '.carousel-slide:not(.active)', { display: 'none', position: 'static' }, { count: 4 });
    }
    await installer.state('showSlide(0)');
  });

  test('texts', async () => {
    await expectStyle(installer, '.carousel-slide h2', { 'margin-bottom': '12px' }, { count: 5 });
    await expectStyle(installer, '.carousel-slide p',
      { color: dim, 'font-size': '15px', 'line-height': '24px', 'max-width': '500px' }, { count: 5 });
  });

  test('dots', async () => {
    await expectStyle(installer, '.carousel-dots', { display: 'flex', 'column-gap': '8px', 'margin-top': '20px' });
    const shared = {
      height: '8px', 'transition-property': 'all', 'transition-duration': '0.3s', cursor: 'pointer',
    };
    await expectStyle(installer, '.carousel-dots > :not(.active)',
      { ...shared, ...round, width: '8px', 'background-color': 'rgba(255, 255, 255, 0.15)' }, { count: 4 });
    await expectStyle(installer, '.carousel-dots > .active', {
      ...shared, width: '24px', 'background-color': accent,
      'border-top-left-radius': '4px', 'border-bottom-right-radius': '4px',
    });
  });
});

describe('progress', () => {
  beforeEach(() => installer.show('s-installing'));

  test('block, line and track', async () => {
    await expectStyle(installer, '.install-progress', { width: '500px', 'max-width': '500px', 'margin-top': '20px' });
    await expectStyle(installer, '.progress-status', {
      'font-size': '13px', color: dim, 'margin-bottom': '10px', display: 'flex', 'justify-content': 'space-between',
    });
    await expectStyle(installer, '.progress-track', {
      ...size(500, 4), 'border-top-left-radius': '2px', 'background-color': 'rgba(255, 255, 255, 0.06)',
      'overflow-x': 'hidden', 'overflow-y': 'hidden',
    });
  });

  test('bar', async () => {
    await expectStyle(installer, '.progress-fill', {
      ...size(0, 4), 'border-top-left-radius': '2px', 'border-bottom-right-radius': '2px',
      'background-image': 'linear-gradient(90deg, rgb(0, 212, 255), rgb(124, 92, 255))',
      'transition-property': 'width', 'transition-duration': '0.4s', 'transition-timing-function': 'ease',
    });
    for (const [percent, pixels] of [[5, 25], [40, 200], [100, 500], [0, 0]]) {
      await installer.state(`setProgress(${percent})`);
      await expectStyle(installer, '.progress-fill', { width: `${pixels}px` });
    }
  });

  test('label at the left, number at the right', async () => {
    const places = await installer.state(`['progress-label', 'progress-pct'].map((id) => {
      const box = document.getElementById(id).getBoundingClientRect(); return [box.left, box.right]; })`);
    assert.equal(places[0][0], 210);
    assert.equal(places[1][1], 710);
  });
});

describe('browser steps', () => {
  beforeEach(() => installer.show('s-browser'));

  test('step and counter', async () => {
    await expectStyle(installer, '.browser-step', { 'text-align': 'center', 'max-width': '500px' });
    await expectStyle(installer, '.step-counter', {
      color: dim, 'font-size': '13px', 'margin-bottom': '20px', 'letter-spacing': '0.5px', 'text-transform': 'uppercase',
    });
  });

  test('instructions', () => expectStyle(installer, '#browser-instructions', {
    color: dim, 'font-size': '14px', 'line-height': '22.4px', ...box('margin', '12px', '0px', '28px'),
    ...box('padding', '16px', '24px'), 'background-color': 'rgba(0, 212, 255, 0.04)',
    ...border('1px', 'solid', 'rgba(0, 212, 255, 0.08)'), 'border-top-left-radius': '12px',
  }));

  test('rows of buttons', async () => {
    await expectStyle(installer, '#browser-actions', { display: 'flex', 'column-gap': '12px', 'justify-content': 'center' });
    await expectStyle(installer, '#browser-confirm', { display: 'none', 'column-gap': '12px', 'justify-content': 'center' });
  });

  test('numbered badges, here and on the Firefox step', async () => {
    for (const screen of ['s-browser', 's-firefox-notice']) {
      await installer.show(screen);
      const badges = await installer.page.evaluate((id) =>
        Array.from(document.querySelectorAll(`#${id} span`)).filter((e) => /^\d$/.test(e.textContent)).map((badge) => {
          const style = getComputedStyle(badge);
          const line = getComputedStyle(badge.parentElement);
          return {
            number: badge.textContent, background: style.backgroundColor, colour: style.color,
            size: [style.width, style.height], radius: style.borderTopLeftRadius, declared: badge.style.display,
            centred: [style.alignItems, style.justifyContent], letters: [style.fontSize, style.fontWeight],
            shrink: style.flexShrink,
            gap: badge.nextElementSibling.getBoundingClientRect().left - badge.getBoundingClientRect().right,
            lineGap: line.columnGap,
          };
        }), screen);
      assert.deepEqual(badges, ['1', '2', '3'].map((number) => ({
        number, background: accent, colour: 'rgb(0, 0, 0)', size: ['22px', '22px'], radius: '50%',
        declared: 'inline-flex', centred: ['center', 'center'], letters: ['12px', '700'], shrink: '0',
        gap: 10, lineGap: '10px',
      })), screen);
    }
  });

  test('the blanks between the words of the instructions and of the button are kept', async () => {
    assert.deepEqual(
      await installer.state("document.getElementById('browser-instructions').innerText.split(/\\n+/)"), [
        '1', 'Click Open Web Store below \u2014 the page will open in Chrome',
        '2', 'Click \u201cAdd to Chrome\u201d on the store page',
        '3', 'Confirm by clicking \u201cAdd extension\u201d in the popup']);
    assert.equal(await installer.state("document.getElementById('btn-open-store').innerText"),
      'Open Web Store in Chrome \u2197');
  });
});

describe('warning box', () => {
  test('box and texts', async () => {
    await expectStyle(installer, '.warn-box', {
      'background-color': 'rgba(251, 146, 60, 0.06)', ...border('1px', 'solid', 'rgba(251, 146, 60, 0.15)'),
      'border-top-left-radius': '12px', ...box('padding', '20px', '28px'), ...box('margin', '24px', '0px', '32px'),
      'max-width': '520px', 'text-align': 'left',
    });
    await expectStyle(installer, '.warn-box p', { color: dim, 'font-size': '14px', 'line-height': '22.4px' }, { count: 2 });
    await expectStyle(installer, '.warn-box strong', { color: 'rgb(251, 146, 60)' });
  });
});
