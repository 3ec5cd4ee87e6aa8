// HTML and CSS checkers over the joined page. What is accepted has its reason here and in docs/page.md;
// an entry that no checker complains about any more must go.

import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { describe, test } from 'node:test';
import { HtmlValidate } from 'html-validate';
import stylelint from 'stylelint';
import { pageText } from './support/installer_page.mjs';

// By its path: the tests may run from any folder.
const standard = createRequire(import.meta.url).resolve('stylelint-config-standard');
const notes = readFileSync(new URL('../../docs/page.md', import.meta.url), 'utf8');

const acceptedMarkup = {
  'element-required-content': 'no title: the window that shows the page has its own',
  'no-inline-style': 'what belongs to one kind of place stands at the element',
  'heading-level': 'each screen has its own heading, and cards have h3',
  'prefer-native-element': 'no native check box holds a card, and no native progress bar has this look',
};

const acceptedStyles = {
  'alpha-value-notation': 'colours have one form throughout',
  'color-function-alias-notation': 'colours have one form throughout',
  'color-function-notation': 'colours have one form throughout',
  'declaration-block-single-line-max-declarations': 'short rules stand on one line',
  'rule-empty-line-before': 'rules that belong together stand together',
  'at-rule-empty-line-before': 'keyframes stand below the rule that uses them',
  'keyframes-name-pattern': 'named like the functions of the script',
  'property-no-vendor-prefix': 'user-select stands with and without its prefix',
};

/** Fails with the full list when a rule is not accepted, or when an accepted rule finds nothing. */
function expectOnly(accepted, findings) {
  const unexpected = findings.filter(({ rule }) => !(rule in accepted));
  assert.deepEqual(unexpected, []);
  const found = new Set(findings.map(({ rule }) => rule));
  assert.deepEqual(Object.keys(accepted).filter((rule) => !found.has(rule)), [], 'accepted, but not found');
  for (const rule of Object.keys(accepted)) {
    assert.ok(notes.includes(`\`${rule}\``), `docs/page.md does not give the reason for ${rule}`);
  }
}

async function lintStyles(code, extra = {}) {
  const { results } = await stylelint.lint({ code, config: { extends: standard, ...extra } });
  assert.deepEqual([...results[0].parseErrors, ...results[0].invalidOptionWarnings], []);
  return results[0].warnings.map(({ rule, line, text }) => ({ rule, line, text }));
}

describe('HTML', () => {
  test('has no finding of html-validate but the accepted ones', async () => {
    const validator = new HtmlValidate({ extends: ['html-validate:recommended', 'html-validate:document'] });
    const report = await validator.validateString(pageText);
    expectOnly(acceptedMarkup, report.results.flatMap(({ messages }) =>
      messages.map(({ ruleId, line, message }) => ({ rule: ruleId, line, text: message }))));
  });
});

describe('CSS', () => {
  const blocks = Array.from(pageText.matchAll(/<style>([^]*?)<\/style>/g), ([, code]) => code);

  test('has no finding of stylelint but the accepted ones', async () => {
    assert.equal(blocks.length, 3);
    expectOnly(acceptedStyles, (await Promise.all(blocks.map((code) => lintStyles(code)))).flat());
  });

  test('in style attributes has none either', async () => {
    const attributes = Array.from(pageText.matchAll(/ style="([^"]*)"/g), ([, declarations]) => declarations);
    assert.ok(attributes.length >= 40, `${attributes.length} style attributes`);
    const findings = await lintStyles(attributes.map((text) => `a {\n${text.replaceAll('; ', ';\n')};\n}`).join('\n\n'),
      { rules: { 'no-duplicate-selectors': null } });
    assert.deepEqual(findings.filter(({ rule }) => !(rule in acceptedStyles)), []);
  });
});

describe('script', () => {
  test('is one script that node can read', () => {
    const scripts = Array.from(pageText.matchAll(/<script>([^]*?)<\/script>/g), ([, code]) => code);
    assert.equal(scripts.length, 1);
    const { status, stderr } = spawnSync(process.execPath, ['--check', '-'], { input: scripts[0], encoding: 'utf8' });
    assert.equal(status, 0, stderr);
  });

  test('consists of pieces that are scripts by themselves, for the sake of editors', () => {
    for (const name of ['09_state_and_flow.js', '10_host_messages.js', '11_browser_steps.js']) {
      const input = readFileSync(new URL(`../../src/ui/page/${name}`, import.meta.url), 'utf8');
      const { status, stderr } = spawnSync(process.execPath, ['--check', '-'], { input, encoding: 'utf8' });
      assert.equal(status, 0, stderr);
    }
  });
});
