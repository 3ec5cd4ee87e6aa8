// The way through an installation, as several files of tests walk it.

import assert from 'node:assert/strict';

/** From the welcome screen to the request that starts the installation. */
export async function startInstalling(installer) {
  await installer.click('#btn-install');
  await installer.after(100);
  assert.deepEqual(await installer.active(), ['s-close-browsers']);
  await installer.click('#s-close-browsers .btn-primary');
  await installer.after(400);
  assert.deepEqual(await installer.active(), ['s-installing']);
}

/** What the program says when it is done, with browsers of these names; the page goes on to the next screen. */
export async function detect(installer, names) {
  await installer.send({
    action: 'browsers_detected', browsers: names.map((name, index) => ({ name, index })),
  });
  await installer.after(900);
}
