// A removal as the user walks it, from the welcome screen or opened by the program.

import assert from 'node:assert/strict';
import { describe, test } from 'node:test';
import { shareFreshInstaller } from './support/shared_page.mjs';

const installer = shareFreshInstaller();

const uninstallButton = '#s-welcome .btn-ghost';
const removeButton = '#s-uninstall-confirm .btn-primary';
const cancelButton = '#s-uninstall-confirm .btn-ghost';
const closeButton = '#s-uninstall-done .btn-primary';

describe('removal', () => {
  test('asks for confirmation first, and cancelling leads back', async () => {
    await installer.click(uninstallButton);
    await installer.after(100);
    assert.deepEqual(await installer.active(), ['s-uninstall-confirm']);
    await installer.click(cancelButton);
    await installer.after(100);
    assert.deepEqual(await installer.active(), ['s-welcome']);
    assert.deepEqual(await installer.received(), []);
  });

  test('runs from confirmation to the removal-done screen, which closes the window', async () => {
    await installer.click(uninstallButton);
    await installer.after(100);
    await installer.click(removeButton);
    await installer.after(400);
    assert.deepEqual(await installer.active(), ['s-uninstalling']);
    assert.equal(await installer.text('#uninstall-status'), 'Cleaning up all components...');
    assert.deepEqual(await installer.received(), ['{"action":"uninstall"}']);

    await installer.send('{"action":"uninstall_progress","step":"Closed 3 browser processes","ok":true}');
    assert.equal(await installer.text('#uninstall-status'), 'Closed 3 browser processes');
    await installer.send('{"action":"uninstall_progress","step":"Service could not be removed","ok":false}');
    assert.equal(await installer.text('#uninstall-status'), 'Service could not be removed');
    await installer.send('{"action":"uninstall_done"}');
    await installer.after(700);
    assert.deepEqual(await installer.active(), ['s-uninstall-done']);

    await installer.click(closeButton);
    assert.deepEqual(await installer.received(), ['{"action":"uninstall"}', '{"action":"close"}']);
  });

  test('opened by the program begins at the confirmation and can be cancelled', async () => {
    await installer.state("goTo('s-uninstall-confirm');");
    await installer.after(100);
    assert.deepEqual(await installer.active(), ['s-uninstall-confirm']);
    await installer.click(cancelButton);
    await installer.after(100);
    assert.deepEqual(await installer.active(), ['s-welcome']);
  });

  test('opened by the program runs to its end', async () => {
    await installer.state("goTo('s-uninstall-confirm');");
    await installer.after(100);
    await installer.click(removeButton);
    await installer.after(400);
    await installer.send('{"action":"uninstall_done"}');
    await installer.after(700);
    assert.deepEqual(await installer.active(), ['s-uninstall-done']);
  });

  test('is asked for once and shows its spinner until the program is done', async () => {
    await installer.click(uninstallButton);
    await installer.after(100);
    await installer.click(removeButton);
    await installer.after(60 * 60 * 1000);
    assert.deepEqual(await installer.received(), ['{"action":"uninstall"}']);
    assert.deepEqual(await installer.active(), ['s-uninstalling']);
  });
});
