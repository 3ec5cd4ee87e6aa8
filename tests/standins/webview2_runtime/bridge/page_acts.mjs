// What a user or the page's own script would do, done from outside. Any of it may
// make the program end before the browser has answered that it is done.

const clickTimeout = { timeout: 60000 };

/** Acts on the page that `page()` gives, a playwright page. */
export function createPageActs(page) {
  const unfinished = new Set();

  async function act(doing) {
    unfinished.add(doing);
    try {
      return await doing;
    } finally {
      unfinished.delete(doing);
    }
  }

  return {
    click: (selector, clicking) => act(page().click(selector, { ...clickTimeout, ...clicking })),
    /** Clicks a button of the installer's screen that shows, by a part of its text. */
    press: (text) => act(page().locator('.screen.active button', { hasText: text }).click(clickTimeout)),
    /** Presses a key, by playwright's name for it, on whatever has the focus. */
    key: (name) => act(page().keyboard.press(name)),
    /** Posts any value to the program, from inside the page and through its own chrome.webview. */
    post: (value) => act(page().evaluate((message) => { window.chrome.webview.postMessage(message); }, value)),
    /** Posts each of many values, in order, in one turn of the page. */
    postAll: (values) => act(page().evaluate((messages) => {
      for (const message of messages) {
        window.chrome.webview.postMessage(message);
      }
    }, values)),
    /** Settles when none of them is under way: before, their page must not be closed. */
    finished: () => Promise.allSettled(unfinished),
  };
}
