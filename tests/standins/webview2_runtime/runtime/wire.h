#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// What travels between the stand-in and its bridge: 4 bytes length of what follows, 1 byte kind, then the
// fields of that kind. Numbers are 32-bit, least byte first; a text is its length in bytes, then UTF-16.
// The bridge's half of this list is bridge/wire.mjs; a test compares them.

enum class FromProgram : std::uint8_t {
    hello = 1,             // process id, which create call, client type, user data folder, EXE
    create_controller = 2, // dpi
    bounds = 3,            // left, top, right, bottom, dpi
    background = 4,        // alpha, red, green, blue
    navigate = 5,          // html
    post_string = 6,       // text
    execute_script = 7,    // id, script
    call = 8,              // method, arguments: any other call, for the record
    handled = 9,           // handler, HRESULT: a handler of the program has returned
    trouble = 10,          // text: a fault of the program
    note = 11,             // text
    mouse = 12,            // MouseEvent, x, y, button, buttons, click count, modifiers, wheel delta
    key = 13,              // KeyEvent, virtual key or character, modifiers, is repeat
    frame_painted = 14,    // nothing
    closed = 15,           // nothing
};

enum class FromBridge : std::uint8_t {
    welcome = 101,              // outcomes
    controller_ready = 102,     // HRESULT
    web_message = 103,          // is string, text
    navigation_completed = 104, // nothing
    script_result = 105,        // id, HRESULT, JSON
    frame = 106,                // PNG file
    browser_gone = 107,         // nothing
    cursor = 108,               // 0 arrow, 1 hand, 2 text
};

/// Builds one message.
class MessageWriter {
  public:
    explicit MessageWriter(FromProgram kind);
    MessageWriter& number(std::int64_t value);
    MessageWriter& text(std::wstring_view value);
    /// The whole message with its length in front.
    std::string_view finish();

  private:
    std::string bytes_;
};

/// Reads the fields of one message; a message that ends early gives zeros and empty texts.
class MessageReader {
  public:
    explicit MessageReader(std::string bytes);
    [[nodiscard]] FromBridge kind() const;
    std::int32_t number();
    std::wstring text();
    [[nodiscard]] std::string_view rest() const;

  private:
    std::string bytes_;
    std::size_t position_ = 1;
};
