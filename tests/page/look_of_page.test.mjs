// The look: style sheets, page, headings and animations.
// Fixed behaviour: sizes, colours and places are prescribed to the pixel, whatever else would look good.

import assert from 'node:assert/strict';
import { describe, test } from 'node:test';
import {
  accent, border, box, column, dim, expectStyle, round, size, text,
} from './support/computed_style.mjs';
import { pageText, screens } from './support/installer_page.mjs';
import { shareInstaller } from './support/shared_page.mjs';

const installer = shareInstaller();

describe('style sheets', () => {
  // What only some people's settings bring stands behind them; what it does: high_contrast, motion.
  const rules = (index) => installer.page.evaluate((i) =>
    Array.from(document.styleSheets[i].cssRules, (rule) => rule.selectorText
      ?? (rule.name ? `@keyframes ${rule.name}`
        : [`@media ${rule.conditionText}`, ...Array.from(rule.cssRules, ({ selectorText }) => selectorText)].join(' | '))), index);

  test('the base block holds exactly these rules', async () => {
    assert.deepEqual(await rules(0), [
      ':root', '*, ::before, ::after', 'body', 'body::before', '.screen', '.screen.active', '.screen.exit',
      'h1', 'h2', '.subtitle', '.btn', '.btn-primary', '.btn-primary:not(:disabled):hover', '.btn-ghost',
      '.btn-ghost:hover', '.btn:disabled', '.icon-circle', '.icon-cyan', '.icon-purple', '.icon-green',
      '@media (forced-colors: active) | .btn-primary | .btn:disabled',
      '@media (prefers-reduced-motion: reduce) | .screen, .screen.active, .screen.exit',
    ]);
  });

  test('the block of cards and slides holds exactly these rules', async () => {
    assert.deepEqual(await rules(1), [
      '.product-grid', '.product-card', '.product-card:hover', '.product-card.selected',
      '.product-card .check', '.product-card.selected .check', '.product-card .p-icon', '.product-card h3',
      '.product-card p', '.carousel-area', '.carousel-slide', '.carousel-slide.active',
      '@keyframes fadeSlide', '.carousel-slide .s-icon', '.carousel-slide h2', '.carousel-slide p',
      '.carousel-dots', '.carousel-dots .dot', '.carousel-dots .dot.active',
      '@media (forced-colors: active) | .product-card.selected, .product-card.selected .check | .carousel-dots .dot '
        + '| .carousel-dots .dot.active',
      '@media (prefers-reduced-motion: reduce) | .carousel-slide.active',
    ]);
  });

  test('the block of progress and completion holds exactly these rules', async () => {
    assert.deepEqual(await rules(2), [
      '.install-progress', '.progress-status', '.progress-track', '.progress-fill', '.browser-step',
      '.browser-step .instructions', '.browser-step .btn-row', '.step-counter', '.complete-icon',
      '@keyframes pop', '.footer', '.spinner', '@keyframes spin', '.warn-box', '.warn-box p',
      '.warn-box strong',
      '@media (forced-colors: active) | .progress-track | .progress-fill | .spinner',
      '@media (prefers-reduced-motion: reduce) | .browser-step | .complete-icon',
    ]);
  });

  test('the custom properties have their values', async () => {
    const values = {
      '--bg': '#080c14', '--card': 'rgba(255,255,255,0.035)', '--card-border': 'rgba(255,255,255,0.06)',
      '--accent': '#00d4ff', '--accent2': '#7c5cff', '--text': '#e2e5ea', '--text-dim': '#6b7a8d',
      '--success': '#34d399', '--danger': '#f87171', '--radius': '16px',
    };
    assert.deepEqual(await installer.state(
      "Array.from(document.styleSheets[0].cssRules[0].style).map((name) => name)"), Object.keys(values));
    await expectStyle(installer, ':root', values);
  });

  test('every element starts without margin or padding and is measured to its border', async () => {
    assert.deepEqual(await installer.state('document.styleSheets[0].cssRules[1].style.cssText'),
      'margin: 0px; padding: 0px; box-sizing: border-box;');
    const sizings = await installer.state(
      "[...new Set(Array.from(document.querySelectorAll('*'), (e) => getComputedStyle(e).boxSizing))]");
    assert.deepEqual(sizings, ['border-box']);
  });
});

describe('page', () => {
  test('body', () => expectStyle(installer, 'body', {
    'font-family': '"Segoe UI", system-ui, sans-serif', 'background-color': 'rgb(8, 12, 20)', color: text,
    height: '640px', 'overflow-x': 'hidden', 'overflow-y': 'hidden', 'user-select': 'none',
    '-webkit-user-select': 'none', '-webkit-font-smoothing': 'antialiased',
  }));

  test('body asks for no selection with and without the prefix', () => {
    // One is another name of the other in Chromium, so that the computed style cannot tell them apart.
    assert.match(pageText, /\n {2}-webkit-user-select: none;\n {2}user-select: none;\n/);
  });

  test('layer of light over the background', () => expectStyle(installer, 'body', {
    content: '""', position: 'fixed', top: '0px', right: '0px', bottom: '0px', left: '0px',
    ...size(920, 640), 'pointer-events': 'none', 'z-index': '0',
    'background-image': 'radial-gradient(600px 400px at 20% 20%, rgba(0, 212, 255, 0.06), rgba(0, 0, 0, 0)), ' +
      'radial-gradient(500px 350px at 80% 80%, rgba(124, 92, 255, 0.05), rgba(0, 0, 0, 0))',
  }, { pseudo: '::before' }));

  test('screens', async () => {
    await expectStyle(installer, '.screen', {
      position: 'absolute', top: '0px', right: '0px', bottom: '0px', left: '0px', ...size(920, 640),
      ...column, ...box('padding', '48px', '56px'), 'z-index': '1',
      'transition-property': 'opacity, transform', 'transition-duration': '0.4s, 0.4s',
      'transition-timing-function': 'ease, ease', 'transition-delay': '0s, 0s',
    }, { count: screens.length });
  });

  test('screens that wait, are on show, and leave', async () => {
    await expectStyle(installer, '.screen:not(.active)',
      { opacity: '0', transform: 'matrix(1, 0, 0, 1, 40, 0)', 'pointer-events': 'none' }, { count: 8 });
    await expectStyle(installer, '.screen.active',
      { opacity: '1', transform: 'matrix(1, 0, 0, 1, 0, 0)', 'pointer-events': 'auto' });
    await installer.state("goTo('s-complete')");
    await expectStyle(installer, '.screen.exit',
      { opacity: '0', transform: 'matrix(1, 0, 0, 1, -40, 0)', 'pointer-events': 'none' });
    await installer.after(100);
    await installer.show('s-welcome');
  });

  test('headings and subtitles', async () => {
    await expectStyle(installer, 'h1', { 'font-size': '28px', 'font-weight': '700', 'letter-spacing': '-0.5px' }, { count: 3 });
    await expectStyle(installer, 'h2:not(#s-browser *, #s-firefox-notice *)',
      { 'font-size': '22px', 'font-weight': '600' }, { count: 8 });
    await expectStyle(installer, '#s-browser h2, #s-firefox-notice h2',
      { 'font-size': '28px', 'font-weight': '600' }, { count: 2 });
    await expectStyle(installer, '.subtitle',
      { color: dim, 'font-size': '15px', 'margin-top': '8px', 'line-height': '22.5px' }, { count: 6 });
  });

  test('footer', () => expectStyle(installer, '.footer', {
    position: 'absolute', bottom: '20px', left: '0px', right: '0px', width: '920px', 'text-align': 'center',
    'font-size': '12px', color: 'rgba(255, 255, 255, 0.15)', 'z-index': '0',
  }));
});

describe('animations', () => {
  const keyframes = (name) => installer.page.evaluate((wanted) => {
    for (const sheet of document.styleSheets) {
      for (const rule of sheet.cssRules) {
        if (rule.name === wanted) return Array.from(rule.cssRules, (frame) => frame.cssText);
      }
    }
    return undefined;
  }, name);

  test('keyframes', async () => {
    assert.deepEqual(await keyframes('fadeSlide'), [
      '0% { opacity: 0; transform: translateY(12px); }', '100% { opacity: 1; transform: translateY(0px); }']);
    assert.deepEqual(await keyframes('pop'), [
      '0% { transform: scale(0.6); opacity: 0; }', '100% { transform: scale(1); opacity: 1; }']);
    assert.deepEqual(await keyframes('spin'), ['100% { transform: rotate(360deg); }']);
  });

  test('the completion icons pop in', () => expectStyle(installer, '.complete-icon', {
    'animation-name': 'pop', 'animation-duration': '0.5s', 'animation-iteration-count': '1',
    'animation-timing-function': 'cubic-bezier(0.34, 1.56, 0.64, 1)',
  }, { count: 2 }));

  test('the spinner turns for ever', async () => {
    await expectStyle(installer, '.spinner', {
      ...size(40), ...border('3px', 'solid', 'rgba(0, 212, 255, 0.2)'), 'border-top-color': accent, ...round,
      'animation-name': 'spin', 'animation-duration': '0.8s', 'animation-timing-function': 'linear',
      'animation-iteration-count': 'infinite',
    });
    assert.equal(await installer.state(
      "document.querySelector('.spinner').getAnimations()[0].playState"), 'running');
  });

  test('each slide fades in when its turn comes', async () => {
    await installer.show('s-installing');
    const running = await installer.state(`(showSlide(3),
      document.querySelector('[data-slide="3"]').getAnimations().map((a) => [a.animationName, a.playState]))`);
    assert.deepEqual(running, [['fadeSlide', 'running']]);
    await installer.state('showSlide(0)');
  });

  test('screens fade and slide between two places', async () => {
    await installer.show('s-welcome');
    // Transitions run on real time, so they are read where they begin: the first in the same turn, the second in a
    // timer that ends right behind the page's own.
    await installer.state(`(() => {
      const running = (id) => document.getElementById(id).getAnimations()
        .map((a) => [a.transitionProperty, a.effect.getTiming().duration, ...a.effect.getKeyframes()
          .map((frame) => frame[a.transitionProperty])]).sort();
      goTo('s-complete');
      window.leaving = running('s-welcome');
      setTimeout(() => { window.entering = running('s-complete'); }, 100);
    })()`);
    await installer.after(100);
    assert.deepEqual(await installer.state('window.leaving'), [
      ['opacity', 400, '1', '0'], ['transform', 400, 'translateX(0px)', 'translateX(-40px)']]);
    assert.deepEqual(await installer.state('window.entering'), [
      ['opacity', 400, '0', '1'], ['transform', 400, 'translateX(40px)', 'translateX(0px)']]);
  });
});
