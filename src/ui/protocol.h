#pragma once

#include <string>
#include <vector>

// Every message between the program and its page, once. The page's own half is
// written in page/09_state_and_flow.js, page/10_host_messages.js and
// page/11_browser_steps.js, and tests/page holds both halves to the same texts.
//
// A message is one flat JSON object in UTF-8 without white space between its
// tokens. Its first member is "action".

// ---- Program to page: fixed texts -------------------------------------------

inline constexpr char status_closing_browsers[] =
    R"({"action":"status","text":"Closing browser processes..."})";
inline constexpr char status_installing_console[] =
    R"({"action":"status","text":"Installing Fortwright Console..."})";
inline constexpr char status_installing_linkward[] =
    R"({"action":"status","text":"Installing Veyra Linkward..."})";
inline constexpr char status_detecting_browsers[] =
    R"({"action":"status","text":"Detecting installed browsers..."})";

/// Ends an installation without the web protection.
inline constexpr char install_complete_message[] = R"({"action":"install_complete"})";
/// Answers `action_open_amo`.
inline constexpr char amo_opened_message[] = R"({"action":"amo_opened"})";
/// Ends a removal.
inline constexpr char uninstall_done_message[] = R"({"action":"uninstall_done"})";

// ---- Program to page: composed texts ----------------------------------------

/// Sets the progress bar. `percent` is 0 to 100.
std::string percent_message(int percent);

/// One report of a component during an installation. `step` is UTF-8. Quotes and backslashes arrive as they
/// are; a control character, such as a line break, makes a text that the page drops.
std::string progress_message(const std::string& step, bool ok);

/// The same during a removal.
std::string uninstall_progress_message(const std::string& step, bool ok);

/// Ends an installation that included the web protection. `names` are display names in UTF-8, in the order in
/// which the program keeps the browsers; the position in the list is the index that the page sends back. The
/// names are not escaped: a quote in one would break the message, and no name of the catalogue holds one.
std::string browsers_detected_message(const std::vector<std::string>& names);

/// Answers `action_open_webstore` with the index as it was read, valid or not.
std::string webstore_opened_message(int index);

// ---- Page to program --------------------------------------------------------

/// The name of the member that says which message it is.
inline constexpr char field_action[] = "action";

/// Starts an installation; `field_console` and `field_linkward` hold true or false.
inline constexpr char action_install[] = "install";
/// Opens the store page in the detected browser at `field_index`.
inline constexpr char action_open_webstore[] = "open_webstore";
/// Opens the Firefox add-on page in the default browser.
inline constexpr char action_open_amo[] = "open_amo";
/// Closes the window.
inline constexpr char action_close[] = "close";
/// Starts the removal of both products.
inline constexpr char action_uninstall[] = "uninstall";

/// Whether the console was chosen.
inline constexpr char field_console[] = "fwc";
/// Whether the web protection was chosen.
inline constexpr char field_linkward[] = "lw";
/// A position in the list of detected browsers.
inline constexpr char field_index[] = "index";

// ---- Script that the program runs in the page -------------------------------

/// Opens the removal confirmation instead of the welcome screen. UTF-16, as the control takes it.
inline constexpr wchar_t show_uninstall_confirm_script[] = L"goTo('s-uninstall-confirm');";
