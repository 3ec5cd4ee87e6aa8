// The look of what is pressed and of what stands beside it: buttons, round icons, product cards.
// Fixed behaviour: sizes, colours and places are prescribed to the pixel, whatever else would look good.

import assert from 'node:assert/strict';
import { beforeEach, describe, test } from 'node:test';
import {
  accent, border, box, card, cardBorder, centred, dim, expectStyle, round, size, styles, text,
} from './support/computed_style.mjs';
import { shareInstaller } from './support/shared_page.mjs';

const installer = shareInstaller();

describe('buttons', () => {
  const disable = (value) => installer.state(`document.getElementById('btn-install').disabled = ${value}`);
  const hover = async (selector) => {
    const middle = await installer.page.evaluate((s) => {
      const b = document.querySelector(s).getBoundingClientRect();
      return [b.left + b.width / 2, b.top + b.height / 2];
    }, selector);
    await installer.page.mouse.move(...middle);
    assert.equal(await installer.state(`document.querySelector('${selector}').matches(':hover')`), true);
  };
  beforeEach(async () => {
    await installer.show('s-welcome');
    await installer.page.mouse.move(1, 1);
  });

  test('shape', () => expectStyle(installer, '.btn', {
    'align-items': 'center', 'column-gap': '8px', 'row-gap': '8px', ...box('padding', '12px', '32px'),
    'border-top-left-radius': '10px', 'border-bottom-right-radius': '10px', 'font-weight': '600',
    cursor: 'pointer', 'transition-property': 'all', 'transition-duration': '0.2s',
    'transition-timing-function': 'ease', position: 'relative', 'overflow-x': 'hidden', 'overflow-y': 'hidden',
  }, { count: 13 }));

  test('are lines of their own content', async () => {
    // An item of a row or column computes to "flex"; in the row that is not laid out nothing is an item.
    await expectStyle(installer, '#browser-confirm .btn', { display: 'inline-flex' }, { count: 2 });
    await expectStyle(installer, '.btn:not(#browser-confirm .btn)', { display: 'flex' }, { count: 11 });
  });

  test('letters are 15 pixels high, 13 on the button that leads to the removal', async () => {
    await expectStyle(installer, '.btn:not(#s-welcome .btn-ghost)', { 'font-size': '15px' }, { count: 12 });
    await expectStyle(installer, '#s-welcome .btn-ghost', { 'font-size': '13px' });
  });

  test('primary', async () => {
    await expectStyle(installer, '.btn-primary:not(#s-uninstall-confirm *)', {
      'background-image': 'linear-gradient(135deg, rgb(0, 212, 255), rgb(0, 144, 179))',
    }, { count: 7 });
    await expectStyle(installer, '.btn-primary', {
      color: 'rgb(255, 255, 255)', 'box-shadow': 'rgba(0, 212, 255, 0.25) 0px 4px 24px 0px',
      'border-top-style': 'none', 'border-top-width': '0px', transform: 'none', opacity: '1',
    }, { count: 8 });
  });

  test('primary under the mouse', async () => {
    await hover('#btn-install');
    await expectStyle(installer, '#btn-install', {
      'box-shadow': 'rgba(0, 212, 255, 0.35) 0px 6px 32px 0px', transform: 'matrix(1, 0, 0, 1, 0, -1)',
    });
    await installer.page.mouse.move(1, 1);
    await expectStyle(installer, '#btn-install', {
      'box-shadow': 'rgba(0, 212, 255, 0.25) 0px 4px 24px 0px', transform: 'none',
    });
  });

  test('disabled, with and without the mouse', async () => {
    const look = {
      opacity: '0.4', cursor: 'default', transform: 'none',
      'box-shadow': 'rgba(0, 212, 255, 0.25) 0px 4px 24px 0px',
    };
    await disable(true);
    await expectStyle(installer, '#btn-install', look);
    await hover('#btn-install');
    await expectStyle(installer, '#btn-install', look);
    // Nothing lifts it, an inline style included.
    await installer.state("document.getElementById('btn-install').style.transform = 'translateY(-9px)'");
    await expectStyle(installer, '#btn-install', look);
    await installer.state("document.getElementById('btn-install').style.transform = ''");
    await disable(false);
  });

  test('ghost', () => expectStyle(installer, '.btn-ghost', {
    'background-color': card, 'background-image': 'none', color: dim, ...border('1px', 'solid', cardBorder),
    'box-shadow': 'none',
  }, { count: 5 }));

  test('ghost under the mouse', async () => {
    await hover('#s-welcome .btn-ghost');
    await expectStyle(installer, '#s-welcome .btn-ghost', { 'background-color': 'rgba(255, 255, 255, 0.06)', color: text });
  });

  test('the one that removes everything is red', () => expectStyle(installer, '#s-uninstall-confirm .btn-primary', {
    'background-image': 'linear-gradient(135deg, rgb(248, 113, 113), rgb(185, 28, 28))',
  }));

  test('the one that opens the Firefox add-ons is up to 360 pixels wide', async () => {
    await expectStyle(installer, '#s-firefox-notice .btn-primary', { width: '360px', 'max-width': '360px' });
    assert.equal(await installer.state(
      "document.querySelector('#s-firefox-notice .btn-primary').style.width"), '100%');
  });
});

describe('round icons', () => {
  const cyan = { 'background-color': 'rgba(0, 212, 255, 0.1)', color: accent };
  const purple = { 'background-color': 'rgba(124, 92, 255, 0.1)', color: 'rgb(124, 92, 255)' };
  const green = { 'background-color': 'rgba(52, 211, 153, 0.1)', color: 'rgb(52, 211, 153)' };
  const orange = { 'background-color': 'rgba(251, 146, 60, 0.1)', color: 'rgb(251, 146, 60)' };
  const violet = { 'background-color': 'rgba(124, 92, 255, 0.1)', color: 'rgb(167, 139, 250)' };

  test('circle of 64 pixels', async () => {
    await installer.state(`document.body.insertAdjacentHTML('beforeend',
      '<div class="icon-circle icon-green" id="probe"></div>')`);
    await expectStyle(installer, '#probe',
      { ...size(64), ...round, ...centred, 'font-size': '28px', 'flex-shrink': '0', ...green });
    await installer.state("document.getElementById('probe').remove()");
  });

  test('welcome, 80 pixels', () => expectStyle(installer, '#welcome-icon.icon-circle.icon-cyan',
    { ...size(80), ...round, ...centred, ...cyan, 'flex-shrink': '0' }));
  test('warning, 80 pixels', () => expectStyle(installer, '#s-close-browsers .icon-circle',
    { ...size(80), ...round, ...centred, ...orange, 'font-size': '36px' }));
  test('removal, 80 pixels', () => expectStyle(installer, '#s-uninstall-confirm .icon-circle.icon-cyan',
    { ...size(80), ...round, ...centred, ...cyan, 'font-size': '36px' }));

  test('of the cards', async () => {
    await expectStyle(installer, '.p-icon', { ...size(64), ...round, ...centred, 'font-size': '28px', 'margin-top': '0px', 'margin-bottom': '16px' }, { count: 2 });
    const sides = await styles(installer, '.p-icon', ['margin-left', 'margin-right']);
    for (const side of sides) assert.equal(side['margin-left'], side['margin-right']);
    await expectStyle(installer, '#card-fwc .p-icon', purple);
    await expectStyle(installer, '#card-lw .p-icon', cyan);
  });

  test('of the slides', async () => {
    // Widths of a slide that is not on show are as they were declared.
    await expectStyle(installer, '.s-icon', {
      ...size(80), ...round, ...centred, 'font-size': '36px', 'margin-bottom': '24px',
      'box-shadow': 'rgba(0, 0, 0, 0.3) 0px 8px 40px 0px',
    }, { count: 5 });
    for (const [slide, colours] of [cyan, purple, violet, orange, green].entries()) {
      await expectStyle(installer, `[data-slide="${slide}"] .s-icon`, colours);
    }
  });

  test('of completion', async () => {
    const shape = { ...size(96), ...round, ...centred, 'font-size': '44px', 'margin-bottom': '24px' };
    await expectStyle(installer, '#s-complete .complete-icon', {
      ...shape, ...border('2px', 'solid', 'rgba(52, 211, 153, 0.3)'),
      'background-image': 'linear-gradient(135deg, rgba(52, 211, 153, 0.15), rgba(52, 211, 153, 0.05))',
    });
    await expectStyle(installer, '#s-uninstall-done .complete-icon', {
      ...shape, ...border('2px', 'solid', 'rgba(248, 113, 113, 0.3)'),
      'background-image': 'linear-gradient(135deg, rgba(248, 113, 113, 0.15), rgba(248, 113, 113, 0.05))',
    });
  });
});

describe('product cards', () => {
  beforeEach(async () => {
    await installer.show('s-welcome');
    await installer.page.mouse.move(1, 1);
  });

  test('grid', () => expectStyle(installer, '.product-grid', {
    display: 'flex', 'column-gap': '20px', ...box('margin', '32px', '0px', '36px'), width: '680px', 'max-width': '680px',
  }));

  test('card', () => expectStyle(installer, '.product-card', {
    width: '330px', 'flex-grow': '1', 'flex-shrink': '1', 'flex-basis': '0%', ...box('padding', '28px', '24px'),
    'text-align': 'center', 'border-top-left-radius': '16px', 'border-bottom-right-radius': '16px',
    cursor: 'pointer', 'transition-property': 'all', 'transition-duration': '0.3s',
    'transition-timing-function': 'ease', position: 'relative',
  }, { count: 2 }));

  test('texts', async () => {
    await expectStyle(installer, '.product-card h3', { 'margin-bottom': '8px', color: text }, { count: 2 });
    await expectStyle(installer, '.product-card p', { color: dim, 'font-size': '13px', 'line-height': '19.5px' }, { count: 2 });
  });

  test('chosen and not chosen', async () => {
    const chosen = { ...border('2px', 'solid', accent), 'background-color': 'rgba(0, 212, 255, 0.06)' };
    await expectStyle(installer, '.product-card', chosen, { count: 2 });
    await installer.state("toggleProduct('lw')");
    await expectStyle(installer, '#card-lw', { ...border('2px', 'solid', cardBorder), 'background-color': card });
    await expectStyle(installer, '#card-fwc', chosen);
    await installer.state("toggleProduct('lw')");
  });

  test('under the mouse', async () => {
    await installer.state("toggleProduct('lw')");
    const middle = await installer.state(`(() => {
      const b = document.getElementById('card-lw').getBoundingClientRect();
      return [b.left + b.width / 2, b.top + b.height / 2]; })()`);
    await installer.page.mouse.move(...middle);
    await expectStyle(installer, '#card-lw', border('2px', 'solid', 'rgba(0, 212, 255, 0.2)'));
    await installer.state("toggleProduct('lw')");
    await expectStyle(installer, '#card-lw', border('2px', 'solid', accent));
  });

  test('check box', async () => {
    const place = {
      position: 'absolute', top: '14px', right: '14px', ...size(24), 'border-top-left-radius': '6px',
      ...centred, 'font-size': '14px', 'transition-property': 'all', 'transition-duration': '0.2s',
    };
    const filled = { ...border('2px', 'solid', accent), 'background-color': accent, color: 'rgb(0, 0, 0)' };
    await expectStyle(installer, '.check', { ...place, ...filled }, { count: 2 });
    await installer.state("toggleProduct('lw')");
    await expectStyle(installer, '#card-lw .check',
      { ...place, ...border('2px', 'solid', 'rgba(255, 255, 255, 0.15)'), 'background-color': 'rgba(0, 0, 0, 0)' });
    await installer.state("toggleProduct('lw')");
  });
});
