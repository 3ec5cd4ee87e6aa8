// The stand-in runtime from both of its ends: what travels between program and page.

import assert from 'node:assert/strict';
import { test } from 'node:test';
import { pageFile, startLoadedPair, startPair } from './pairs.mjs';

test('texts of the program reach the page as they are', async (t) => {
  const { probe, program } = await startLoadedPair(t);
  assert.equal(await probe.run('post {"action":"status","text":"Grüße \u{1F600} \u2028 </script>"}'), 'post 0x00000000');
  assert.equal(await probe.run('post-half-pair'), 'post 0x00000000');
  assert.equal(await probe.run('post-size 1000000'), 'post 0x00000000');
  assert.equal(await probe.run('script seen.length'), 'script 0x00000000 3');
  assert.deepEqual(await program.page.evaluate(() => seen.slice(0, 2).map((text) => [...text].map((c) => c.codePointAt(0)))),
    [[...'{"action":"status","text":"Grüße \u{1F600} \u2028 </script>"}'].map((c) => c.codePointAt(0)), [97, 0xD83D, 98]]);
  assert.equal(await program.page.evaluate(() => seen[2] === 'x'.repeat(1000000)), true);
});

test('strings of the page arrive as they are, anything else as E_INVALIDARG', async (t) => {
  const { probe, program } = await startLoadedPair(t);
  await program.post('plain');
  assert.equal(await probe.next(), 'message plain');
  await program.post('');
  assert.equal(await probe.next(), 'message ');
  await program.post('Grüße \u{1F600}');
  assert.equal(await probe.next(), 'message Gr\\u00FC\\u00DFe \\uD83D\\uDE00');
  await program.page.evaluate(() => chrome.webview.postMessage('a\uD83Db'));
  assert.equal(await probe.next(), 'message a\\uD83Db');
  for (const value of [{ action: 'close' }, 7, true, null, ['a'], undefined]) {
    await program.post(value);
    assert.equal(await probe.next(), 'message 0x80070057');
  }
  assert.deepEqual(program.messages().slice(-6).map(({ json }) => json),
    ['{"action":"close"}', '7', 'true', 'null', '["a"]', 'null']);
  await program.post('x'.repeat(1024 * 1024));
  assert.equal(await probe.next(), 'message of 1048576');
});

test('listeners of the page can be added and removed, and are called in order', async (t) => {
  const { probe, program } = await startLoadedPair(t);
  await program.page.evaluate(() => {
    window.calls = [];
    window.second = (event) => calls.push(`second ${event.data} ${event.source === chrome.webview}`);
    chrome.webview.addEventListener('message', () => calls.push('first'));
    chrome.webview.addEventListener('message', window.second);
  });
  await probe.run('post a');
  await probe.run('script 1'); // the page has it when this is answered
  await program.page.evaluate(() => chrome.webview.removeEventListener('message', window.second));
  await probe.run('post b');
  assert.equal(await probe.run('script calls.join()'), 'script 0x00000000 "first,second a true,first"');
  await assert.rejects(program.page.evaluate(() => {
    const loop = {};
    loop.loop = loop;
    chrome.webview.postMessage(loop);
  }), /circular/);
  await assert.rejects(program.page.evaluate(() => chrome.webview.postMessage()), /1 argument required/);
});

test('a message for which there is no document is lost, and said to be', async (t) => {
  const { probe, program } = await startPair(t, { troubles: ['lost: too early'] });
  await probe.run('controller', 2);
  assert.equal(await probe.run('post too early'), 'post 0x00000000');
  await program.waitFor(({ event }) => event === 'lost');
});

test('scripts give JSON, and null for what throws or has no value', async (t) => {
  const { probe } = await startLoadedPair(t, { troubles: ['error: Error: thrown\n    at <anonymous>:1:7'] });
  assert.equal(await probe.run('script ({a:[1,"\\u00e9"]})'), 'script 0x00000000 {"a":[1,"\\u00E9"]}');
  assert.equal(await probe.run('script undefined'), 'script 0x00000000 null');
  assert.equal(await probe.run('script throw Error("thrown")'), 'script 0x00000000 null');
  assert.equal(await probe.run('script-unheard window.unheard = 1'), 'script call 0x00000000');
  assert.equal(await probe.run('script window.unheard'), 'script 0x00000000 1');
});

test('every navigation makes a new document at about:blank and completes', async (t) => {
  const { probe, program } = await startLoadedPair(t);
  await program.page.evaluate(() => { window.leftOver = true; });
  assert.deepEqual(await probe.run(`navigate Z:${pageFile}`, 3), ['navigate 0x00000000', 'message early', 'loaded']);
  assert.equal(await probe.run('script [location.href, document.compatMode, "leftOver" in window, document.title].join()'),
    'script 0x00000000 "about:blank,CSS1Compat,false,probe page"');
  assert.equal(await probe.run('navigate-size 1048577'), 'navigate 0x80070057');
  assert.deepEqual(await probe.run('navigate-size 1048576', 2), ['navigate 0x00000000', 'loaded']);
  assert.equal(await probe.run('script document.body.textContent.length'), 'script 0x00000000 1048576');
});

test('bursts of ten thousand messages arrive complete and in order, both ways', async (t) => {
  const { probe, program } = await startLoadedPair(t);
  await probe.run('script seen.length = 0');
  const started = performance.now();
  assert.equal(await probe.run('burst 10000'), 'burst done');
  assert.equal(await probe.run('script seen.length + " " + seen.every((text, i) => text === String(i))'),
    'script 0x00000000 "10000 true"');
  const toPage = performance.now();
  assert.equal(await probe.run('counting'), 'counting');
  await program.postAll(Array.from({ length: 10000 }, (_, i) => String(i)));
  // The answer to the last script comes after everything that the page posted before.
  await probe.run('script 1');
  assert.equal(await probe.run('count'), 'count 10000 out of order 0');
  const toProgram = performance.now();
  t.diagnostic(`10,000 messages to the page ${Math.round(toPage - started)} ms, to the program ${Math.round(toProgram - toPage)} ms`);
});

test('a handler that answers at once gets its answers through in order', async (t) => {
  const { probe, program } = await startLoadedPair(t);
  assert.equal(await probe.run('echo'), 'echoing');
  await program.postAll(['1', '2', '3']);
  assert.deepEqual([await probe.next(), await probe.next(), await probe.next()], ['message 1', 'message 2', 'message 3']);
  assert.equal(await probe.run('script seen.join()'), 'script 0x00000000 "echo 1,echo 2,echo 3"');
  const textsFrom = (side) => program.messages().filter(({ from }) => from === side).map(({ text }) => text);
  assert.deepEqual(textsFrom('page'), ['early', '1', '2', '3']);
  assert.deepEqual(textsFrom('program'), ['echo 1', 'echo 2', 'echo 3']);
});

test('a handler that pumps messages is not entered again', async (t) => {
  const { probe, program } = await startLoadedPair(t);
  assert.equal(await probe.run('pump'), 'pumping');
  await program.post('1');
  assert.equal(await probe.next(), 'message 1'); // its handler now waits for an event of the runtime
  await program.post('2');
  assert.deepEqual([await probe.next(), await probe.next()], ['pumped', 'message 2']);
  await program.waitFor(({ text }) => text?.startsWith('messages were pumped inside a handler'));
});
