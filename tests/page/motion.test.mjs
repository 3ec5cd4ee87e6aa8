// What moves, and what does not for people who have asked Windows for less motion. (Which movements the style sheets
// declare: look_of_page.)

import assert from 'node:assert/strict';
import { after, beforeEach, describe, test } from 'node:test';
import { openInstaller, screens } from './support/installer_page.mjs';
import { shareFreshInstaller } from './support/shared_page.mjs';

const installer = shareFreshInstaller();

const threeBrowsers = JSON.stringify({
  action: 'browsers_detected', browsers: ['Brave', 'Opera', 'Vivaldi'].map((name, index) => ({ name, index })),
});

/** In the page: every transition and animation that runs on an element, with the values that it leads from and to. */
const runningOn = (selector) => installer.page.evaluate((s) =>
  Array.from(document.querySelectorAll(s)).flatMap((element) => element.getAnimations().map((animation) => {
    const name = animation.transitionProperty ?? animation.animationName;
    return [name, ...animation.effect.getKeyframes().map((frame) => frame[name] ?? frame.transform)];
  })).sort(), selector);

describe('the step of the next browser', () => {
  test('comes in from the left, each time', async () => {
    // With real frames, and looked at by nobody before it moves: to ask where it is would put it there.
    const live = await openInstaller(installer.page.context().browser(), { clock: false });
    await live.send(threeBrowsers);
    await live.page.waitForFunction(() => currentScreen === 's-browser');
    for (const name of ['Opera', 'Vivaldi']) {
      const movement = await live.page.evaluate(() => new Promise((resolve) => {
        const step = document.querySelector('.browser-step');
        step.addEventListener('transitionrun', () => resolve(step.getAnimations().map((animation) => [
          animation.transitionProperty, animation.effect.getTiming().duration,
          ...animation.effect.getKeyframes().map((frame) => frame[animation.transitionProperty]),
        ]).sort()), { once: true });
        browserDone();
      }));
      assert.deepEqual(movement, [['opacity', 300, '0', '1'], ['transform', 300, 'translateX(-30px)', 'translateX(0px)']]);
      assert.equal(await live.text('#browser-name'), name);
      // The next one begins when this one has come to rest.
      await live.page.waitForFunction(() => document.querySelector('.browser-step').style.transition === '');
    }
    await live.close();
  });
});

describe('a completion icon', () => {
  const icons = '.complete-icon';

  for (const id of ['s-complete', 's-uninstall-done']) {
    test(`pops in each time that ${id} comes on show, and only then`, async () => {
      await installer.settle();
      assert.deepEqual(await runningOn(icons), []);
      for (let times = 0; times < 3; ++times) {
        await installer.state(`goTo('${id}')`);
        await installer.after(99);
        assert.deepEqual(await runningOn(icons), [], 'while nobody could see it');
        await installer.after(1);
        const [pop, ...others] = await installer.state(`Array.from(document.querySelectorAll('${icons}'),
          (icon) => icon.getAnimations().map((a) => [icon.closest('.screen').id, a.animationName, a.playState,
            a.currentTime < a.effect.getTiming().duration])).flat()`);
        assert.deepEqual([pop, others], [[id, 'pop', 'running', true], []]);
        await installer.settle();
        await installer.show('s-welcome');
      }
    });
  }

  test('keeps no trace of it in its look', async () => {
    const look = () => installer.state(`Array.from(document.querySelectorAll('${icons}'), (icon) => {
      const style = getComputedStyle(icon);
      return Array.from(style, (name) => name + style.getPropertyValue(name)).join();
    })`);
    await installer.show('s-close-browsers');
    const before = await look();
    await installer.show('s-complete');
    await installer.show('s-uninstall-done');
    await installer.show('s-close-browsers');
    assert.deepEqual(await look(), before);
  });
});

describe('with less motion', () => {
  beforeEach(async () => {
    await installer.page.emulateMedia({ reducedMotion: 'reduce' });
    await installer.settle();
  });
  after(() => installer.page.emulateMedia({ reducedMotion: null }));

  test('screens change without moving', async () => {
    const places = () => installer.state(`Array.from(document.querySelectorAll('.screen'),
      (screen) => screen.getBoundingClientRect().left)`);
    for (const id of [...screens.slice(1), screens[0]]) {
      await installer.state(`goTo('${id}')`);
      const leaving = await runningOn('.screen');
      assert.deepEqual(await places(), Array(9).fill(0), `${id}, before`);
      await installer.after(100);
      const entering = await runningOn('.screen');
      assert.deepEqual(await places(), Array(9).fill(0), id);
      // The old one fades out and the new one fades in all the same.
      assert.deepEqual([...new Set([...leaving, ...entering].map(([name]) => name))], ['opacity'], id);
      assert.deepEqual(await installer.active(), [id]);
    }
  });

  test('slides change without moving', async () => {
    await installer.show('s-installing');
    for (let slide = 0; slide < 5; ++slide) {
      await installer.state(`showSlide(${slide})`);
      assert.deepEqual(await runningOn('.carousel-slide'), []);
      assert.equal(await installer.display(`[data-slide="${slide}"]`), 'flex');
    }
  });

  test('browser steps change without moving', async () => {
    await installer.send(threeBrowsers);
    await installer.after(900);
    const transform = () => installer.state("getComputedStyle(document.querySelector('.browser-step')).transform");
    await installer.state('browserDone()');
    for (const wait of [0, 100, 150, 16, 100, 200]) {
      await installer.after(wait);
      assert.equal(await transform(), 'none');
    }
    assert.equal(await installer.text('#browser-name'), 'Opera');
  });

  test('completion icons are there at once', async () => {
    for (const id of ['s-complete', 's-uninstall-done']) {
      await installer.state(`goTo('${id}')`);
      await installer.after(100);
      assert.deepEqual(await runningOn('.complete-icon'), []);
    }
  });

  test('the spinner turns, because it tells that something is done', async () => {
    await installer.show('s-uninstalling');
    assert.deepEqual((await runningOn('.spinner')).map(([name]) => name), ['spin']);
  });
});
