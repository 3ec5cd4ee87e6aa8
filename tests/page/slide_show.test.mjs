// The slides that pass while the program installs.

import assert from 'node:assert/strict';
import { describe, test } from 'node:test';
import { expectExactly } from './support/expect_exactly.mjs';
import { shareFreshInstaller } from './support/shared_page.mjs';

const installer = shareFreshInstaller();

describe('slide show', () => {
  const shown = async () => installer.page.evaluate(() => ({
    slides: Array.from(document.querySelectorAll('.carousel-slide.active'), (e) => e.dataset.slide),
    dots: Array.from(document.querySelectorAll('.carousel-dots > *'))
      .flatMap((dot, index) => (dot.classList.contains('active') ? [index] : [])),
  }));

  test('changes every 4000 ms and begins again after the fifth slide', async () => {
    await installer.state('beginInstall()');
    for (let change = 0; change < 11; ++change) {
      const index = change % 5;
      assert.deepEqual(await shown(), { slides: [String(index)], dots: [index] });
      await expectExactly(installer, 4000, async () => (await shown()).dots[0] !== index);
    }
  });

  test('stands still before the installation begins', async () => {
    await installer.after(60000);
    assert.deepEqual(await shown(), { slides: ['0'], dots: [0] });
    assert.equal(await installer.state('carouselTimer'), null);
  });

  test('begins at the first slide when it is started again', async () => {
    await installer.state('showSlide(3)');
    await installer.state('startCarousel()');
    assert.deepEqual(await shown(), { slides: ['0'], dots: [0] });
  });

  test('does not follow a click on a dot', async () => {
    await installer.state('beginInstall()');
    await installer.after(400);
    await installer.click('.carousel-dots > :nth-child(4)');
    assert.deepEqual(await shown(), { slides: ['0'], dots: [0] });
  });

  test('shows nothing for a slide that does not exist', async () => {
    await installer.state('showSlide(5)');
    assert.deepEqual(await shown(), { slides: [], dots: [] });
  });
});
