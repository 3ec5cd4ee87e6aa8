// Mouse and keyboard of the stand-in's window, handed to the page as Chromium's
// own input events. The other half is runtime/page_input.cpp.

const mouseEvents = ['mouseMoved', 'mousePressed', 'mouseReleased', 'mouseWheel', 'mouseMoved'];
const buttons = ['none', 'left', 'middle', 'right'];
const keyEvents = ['rawKeyDown', 'keyUp', 'char'];

// Keys without a character of their own, by Windows' virtual key codes.
const namedKeys = {
  8: 'Backspace', 9: 'Tab', 13: 'Enter', 16: 'Shift', 17: 'Control', 18: 'Alt', 27: 'Escape',
  32: ' ', 33: 'PageUp', 34: 'PageDown', 35: 'End', 36: 'Home', 37: 'ArrowLeft', 38: 'ArrowUp',
  39: 'ArrowRight', 40: 'ArrowDown', 45: 'Insert', 46: 'Delete',
};

/** Input.dispatchMouseEvent's parameters from the fields of a message; `scale` is pixels per CSS pixel. */
export function mouseParameters(message, scale) {
  const type = mouseEvents[message.number()];
  const x = message.number() / scale;
  const y = message.number() / scale;
  const button = buttons[message.number()];
  const pressed = message.number();
  const clickCount = message.number();
  const modifiers = message.number();
  const wheel = message.number();
  return {
    type, x, y, button, buttons: pressed, clickCount, modifiers, deltaX: 0,
    // A notch of the wheel is 120 units and scrolls 100 CSS pixels; Windows counts away from the user.
    deltaY: type === 'mouseWheel' ? (-wheel / 120) * 100 : 0,
  };
}

/** Input.dispatchKeyEvent's parameters from the fields of a message. */
export function keyParameters(message) {
  const type = keyEvents[message.number()];
  const code = message.number();
  const modifiers = message.number();
  const autoRepeat = message.number() !== 0;
  if (type === 'char') {
    const text = String.fromCharCode(code);
    return { type, modifiers, autoRepeat, text, unmodifiedText: text, key: code === 13 ? 'Enter' : text };
  }
  const isCharacter = (code >= 48 && code <= 57) || (code >= 65 && code <= 90);
  return {
    type, modifiers, autoRepeat, windowsVirtualKeyCode: code, nativeVirtualKeyCode: code,
    key: namedKeys[code] ?? (isCharacter ? String.fromCharCode(code).toLowerCase() : 'Unidentified'),
    code: namedKeys[code] === ' ' ? 'Space' : namedKeys[code],
  };
}
