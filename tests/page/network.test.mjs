// The page needs nothing from outside.

import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { pathToFileURL } from 'node:url';
import { launchChromium, openInstaller, pageFile, pageText } from './support/installer_page.mjs';

let browser;
before(async () => { browser = await launchChromium(); });
after(() => browser.close());

test('both flows through every screen ask for nothing but the page itself', async () => {
  const installer = await openInstaller(browser);
  await installer.state('beginInstall()');
  await installer.after(30000);
  await installer.send('{"action":"browsers_detected","browsers":[{"name":"Brave","index":0},{"name":"Opera","index":1}]}');
  await installer.after(900);
  await installer.state('openStore()');
  await installer.send('{"action":"webstore_opened","index":0}');
  await installer.after(1500);
  await installer.state('browserDone()');
  await installer.after(1000);
  await installer.state('browserDone()');
  await installer.after(100);
  await installer.click('#s-firefox-notice .btn-primary');
  await installer.send('{"action":"amo_opened"}');
  await installer.after(100);
  await installer.click('#s-complete .btn-primary');
  await installer.state('startUninstall()');
  await installer.after(1000);
  await installer.send('{"action":"uninstall_done"}');
  await installer.after(1000);
  assert.deepEqual(await installer.active(), ['s-uninstall-done']);
  assert.deepEqual(installer.requests, [pathToFileURL(pageFile).href]);
  assert.equal(await installer.state("performance.getEntriesByType('resource').length"), 0);
  assert.deepEqual(installer.errors, []);
});

test('works without any connection', async () => {
  const installer = await openInstaller(browser, { offline: true });
  assert.deepEqual(await installer.active(), ['s-welcome']);
  assert.deepEqual(installer.errors, []);
});

test('the text names no address and no other file', () => {
  assert.doesNotMatch(pageText, /https?:|ws:|wss:|data:|file:|\/\/[a-z]/i);
  assert.doesNotMatch(pageText, /\b(src|href|srcset|action)\s*=|url\(|@import|@font-face|<link|<img|<iframe|<form/i);
  assert.doesNotMatch(pageText, /\b(fetch|XMLHttpRequest|WebSocket|EventSource|sendBeacon|import)\b\s*\(/);
});

test('keeps nothing: no storage, no cookie, no worker', () => {
  assert.doesNotMatch(pageText, /localStorage|sessionStorage|indexedDB|document\.cookie|Worker\(|caches\./);
});
