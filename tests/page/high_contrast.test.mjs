// With forced colours, which Windows calls contrast themes, everything that tells something can be seen. Light and
// dark, by the pixels that are painted.

import assert from 'node:assert/strict';
import { after, before, describe, test } from 'node:test';
import { launchChromium, openInstaller } from './support/installer_page.mjs';
import { contrast, contrastWithFirst, paintedPage } from './support/pixels.mjs';

// What WCAG asks of the parts of a control.
const enough = 3;

/** How many buttons each screen has that has any. */
const buttonsOf = {
  's-welcome': 2, 's-close-browsers': 2, 's-browser': 3, 's-firefox-notice': 2, 's-complete': 1,
  's-uninstall-confirm': 2, 's-uninstall-done': 1,
};

let browser;
before(async () => { browser = await launchChromium(); });
after(() => browser.close());

for (const colorScheme of ['light', 'dark']) {
  describe(`in ${colorScheme} forced colours`, () => {
    let installer;
    before(async () => { installer = await openInstaller(browser, { forcedColors: 'active', colorScheme }); });
    after(() => installer.close());

    const boxOf = async (selector, index = 0) => {
      await installer.settle();
      return installer.page.locator(selector).nth(index).boundingBox();
    };
    const isSeen = (value, what) => assert.ok(value >= enough, `${what}: ${value.toFixed(2)} to 1`);
    const isNotSeen = (value, what) => assert.ok(value < 1.1, `${what}: ${value.toFixed(2)} to 1`);

    test('the colours are forced', async () => {
      assert.equal(await installer.state("matchMedia('(forced-colors: active)').matches"), true);
      assert.equal(await installer.state('getComputedStyle(document.body).backgroundColor'),
        colorScheme === 'light' ? 'rgb(255, 255, 255)' : 'rgb(0, 0, 0)');
    });

    for (const [id, count] of Object.entries(buttonsOf)) {
      test(`every button of ${id} has an edge on its four sides`, async () => {
        await installer.show(id);
        if (id === 's-browser') await installer.state("document.getElementById('browser-confirm').style.display = 'flex'");
        assert.equal(await installer.page.locator(`#${id} button`).count(), count);
        const painted = await paintedPage(installer);
        for (let index = 0; index < count; ++index) {
          const { x, y, width, height } = await boxOf(`#${id} button`, index);
          const [midX, midY] = [x + width / 2, y + height / 2];
          for (const [side, from, to] of [
            ['left', [x - 4, midY], [x + 4, midY]], ['right', [x + width - 4, midY], [x + width + 4, midY]],
            ['top', [midX, y - 4], [midX, y + 4]], ['bottom', [midX, y + height - 4], [midX, y + height + 4]],
          ]) {
            isSeen(contrastWithFirst(painted.along(from, to)), `${side} edge of button ${index}`);
          }
        }
        if (id === 's-browser') await installer.state("document.getElementById('browser-confirm').style.display = 'none'");
      });
    }

    test('a button that is disabled can be seen and told from one that is not', async () => {
      await installer.show('s-welcome');
      const { x, y, height } = await boxOf('#btn-install');
      const edge = async () => {
        const painted = await paintedPage(installer);
        const colours = painted.along([x - 4, y + height / 2], [x + 4, y + height / 2]);
        return colours.reduce((best, colour) =>
          (contrast(colour, colours[0]) > contrast(best, colours[0]) ? colour : best), colours[0]);
      };
      const enabled = await edge();
      await installer.state("toggleProduct('fwc'); toggleProduct('lw')");
      const disabled = await edge();
      assert.notDeepEqual(disabled, enabled);
      isSeen(contrast(disabled, colorScheme === 'light' ? [255, 255, 255] : [0, 0, 0]), 'disabled');
      await installer.state("toggleProduct('fwc'); toggleProduct('lw')");
    });

    test('check boxes have edges, and a mark and another colour exactly when their product is chosen', async () => {
      await installer.show('s-welcome');
      await installer.state("toggleProduct('lw')");
      const painted = await paintedPage(installer);
      const edges = [];
      for (const [card, isChosen] of [['#card-fwc', true], ['#card-lw', false]]) {
        const { x, y, width, height } = await boxOf(`${card} .check`);
        isSeen(contrastWithFirst(painted.along([x - 3, y + height / 2], [x + 4, y + height / 2])), `edge of ${card}`);
        const inside = contrastWithFirst(painted.along([x + 4, y + 4], [x + width - 5, y + height - 5]));
        (isChosen ? isSeen : isNotSeen)(inside, `mark of ${card}`);
        const cardBox = await boxOf(card);
        isSeen(contrastWithFirst(painted.along([cardBox.x - 3, cardBox.y + 60], [cardBox.x + 4, cardBox.y + 60])),
          `edge of ${card} itself`);
        // Two pixels wide each.
        edges.push([...painted.along([x + 1, y + height / 2], [x + 1, y + height / 2]),
          ...painted.along([cardBox.x + 1, cardBox.y + 60], [cardBox.x + 1, cardBox.y + 60])]);
      }
      const [chosen, notChosen] = edges;
      for (const index of [0, 1]) assert.notDeepEqual(chosen[index], notChosen[index]);
      await installer.state("toggleProduct('lw')");
    });

    test('the bar of progress has an end and shows how far it is', async () => {
      await installer.show('s-installing');
      await installer.send('{"action":"pct","v":40}');
      const { x, y, width, height } = await boxOf('.progress-track');
      const middle = y + height / 2;
      const painted = await paintedPage(installer);
      const [done] = painted.along([x + width * 0.2, middle], [x + width * 0.2, middle]);
      const [open] = painted.along([x + width * 0.7, middle], [x + width * 0.7, middle]);
      isSeen(contrast(done, open), 'what is done against what is not');
      for (const share of [0.5, 0.95]) {
        isSeen(contrastWithFirst(painted.along([x + width * share, y - 5], [x + width * share, y + 1])), 'upper edge');
      }
      isSeen(contrastWithFirst(painted.along([x + width - 4, middle], [x + width + 4, middle])), 'end');
    });

    test('the dots have edges, and the one of the slide on show is filled', async () => {
      await installer.show('s-installing');
      for (let slide = 0; slide < 5; ++slide) {
        await installer.state(`showSlide(${slide})`);
        const painted = await paintedPage(installer);
        for (let dot = 0; dot < 5; ++dot) {
          const { x, y, width, height } = await boxOf('.dot', dot);
          const line = painted.along([x + width / 2, y - 4], [x + width / 2, y + height / 2]);
          isSeen(contrastWithFirst(line), `edge of dot ${dot}`);
          (dot === slide ? isSeen : isNotSeen)(contrast(line[0], line.at(-1)), `inside of dot ${dot} on slide ${slide}`);
        }
      }
      await installer.state('showSlide(0)');
    });

    test('the spinner is a ring with a gap, so that it is seen to turn', async () => {
      await installer.show('s-uninstalling');
      const ringAt = async (turn) => {
        await installer.state(`(() => { const [spin] = document.querySelector('.spinner').getAnimations();
          spin.pause(); spin.currentTime = ${turn * 800}; })()`);
        const { x, y, width, height } = await installer.page.evaluate(() => {
          const spinner = document.querySelector('.spinner');
          const { left, right, top, bottom } = spinner.getBoundingClientRect();
          return { x: (left + right) / 2 - spinner.offsetWidth / 2, y: (top + bottom) / 2 - spinner.offsetHeight / 2,
            width: spinner.offsetWidth, height: spinner.offsetHeight };
        });
        const painted = await paintedPage(installer);
        return {
          top: contrastWithFirst(painted.along([x + width / 2, y - 3], [x + width / 2, y + 5])),
          bottom: contrastWithFirst(painted.along([x + width / 2, y + height - 6], [x + width / 2, y + height + 3])),
        };
      };
      const atRest = await ringAt(0);
      isNotSeen(atRest.top, 'top');
      isSeen(atRest.bottom, 'bottom');
      const turned = await ringAt(0.5);
      isSeen(turned.top, 'top after half a turn');
      isNotSeen(turned.bottom, 'bottom after half a turn');
    });

    test('texts and boxes can be seen', async () => {
      for (const [id, selector, edges] of [
        ['s-welcome', '#s-welcome .subtitle', false], ['s-close-browsers', '.warn-box', true],
        ['s-browser', '#browser-instructions', true], ['s-complete', '#s-complete .complete-icon', true],
        ['s-uninstall-done', '#s-uninstall-done .complete-icon', true], ['s-complete', '.footer', false],
      ]) {
        await installer.show(id);
        const { x, y, width, height } = await boxOf(selector);
        const painted = await paintedPage(installer);
        const line = edges
          ? painted.along([x - 4, y + height / 2], [x + 4, y + height / 2])
          : painted.along([x, y], [x + width - 1, y + height - 1]);
        isSeen(contrastWithFirst(line), selector);
      }
    });
  });
}
