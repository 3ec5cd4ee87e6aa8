// window.chrome.webview as the page in the control sees it. The function below
// runs in the page, before the page's own script, in every new document.

/** Names under which bridge and page find each other; the page's own script cannot enumerate them. */
export const postBinding = 'orvantaPostToProgram';
export const deliverSymbol = 'orvanta.deliver';

function installWebview(bindingName, symbolName) {
  const post = window[bindingName];
  delete window[bindingName];

  class WebView extends EventTarget {
    /** A string goes out as it is, anything else as its JSON. What JSON refuses is the caller's error. */
    postMessage(message) {
      if (arguments.length === 0) {
        throw new TypeError("Failed to execute 'postMessage': 1 argument required, but only 0 present.");
      }
      const isString = typeof message === 'string';
      const text = isString ? message : (JSON.stringify(message) ?? 'null');
      post(JSON.stringify([isString, text]));
    }
  }
  const webview = new WebView();

  const chrome = window.chrome ?? {};
  Object.defineProperty(chrome, 'webview', { value: webview, enumerable: true });
  if (window.chrome !== chrome) {
    Object.defineProperty(window, 'chrome', { value: chrome, enumerable: true });
  }
  Object.defineProperty(window, Symbol.for(symbolName), {
    value(text) {
      const event = new MessageEvent('message', { data: text });
      Object.defineProperty(event, 'source', { value: webview });
      webview.dispatchEvent(event);
      return true;
    },
  });
}

export const hostScript =
  `(${installWebview})(${JSON.stringify(postBinding)}, ${JSON.stringify(deliverSymbol)});`;

/** The expression that hands a text of the program to the page. True when there was a page to take it. */
export function deliveryExpression(text) {
  return `window[Symbol.for(${JSON.stringify(deliverSymbol)})]?.(${JSON.stringify(text)}) === true`;
}
