#include "ui/protocol.h"

#include <climits>
#include <doctest/doctest.h>
#include <string>

#include "common/json.h"

TEST_CASE("the fixed messages have exactly these texts") {
    CHECK(std::string(status_closing_browsers) ==
          "{\"action\":\"status\",\"text\":\"Closing browser processes...\"}");
    CHECK(std::string(status_installing_console) ==
          "{\"action\":\"status\",\"text\":\"Installing Fortwright Console...\"}");
    CHECK(std::string(status_installing_linkward) ==
          "{\"action\":\"status\",\"text\":\"Installing Veyra Linkward...\"}");
    CHECK(std::string(status_detecting_browsers) ==
          "{\"action\":\"status\",\"text\":\"Detecting installed browsers...\"}");
    CHECK(std::string(install_complete_message) == "{\"action\":\"install_complete\"}");
    CHECK(std::string(amo_opened_message) == "{\"action\":\"amo_opened\"}");
    CHECK(std::string(uninstall_done_message) == "{\"action\":\"uninstall_done\"}");
}

TEST_CASE("the names of actions and fields are exactly these") {
    CHECK(std::string(field_action) == "action");
    CHECK(std::string(field_console) == "fwc");
    CHECK(std::string(field_linkward) == "lw");
    CHECK(std::string(field_index) == "index");
    CHECK(std::string(action_install) == "install");
    CHECK(std::string(action_open_webstore) == "open_webstore");
    CHECK(std::string(action_open_amo) == "open_amo");
    CHECK(std::string(action_close) == "close");
    CHECK(std::string(action_uninstall) == "uninstall");
}

TEST_CASE("the script call opens the removal confirmation") {
    CHECK(std::wstring(show_uninstall_confirm_script) == L"goTo('s-uninstall-confirm');");
}

TEST_CASE("a percentage is written in plain decimal") {
    CHECK(percent_message(0) == "{\"action\":\"pct\",\"v\":0}");
    CHECK(percent_message(5) == "{\"action\":\"pct\",\"v\":5}");
    CHECK(percent_message(40) == "{\"action\":\"pct\",\"v\":40}");
    CHECK(percent_message(85) == "{\"action\":\"pct\",\"v\":85}");
    CHECK(percent_message(90) == "{\"action\":\"pct\",\"v\":90}");
    CHECK(percent_message(100) == "{\"action\":\"pct\",\"v\":100}");
}

TEST_CASE("a report of an installation carries its step and its flag") {
    CHECK(progress_message("Service installed and started", true) ==
          "{\"action\":\"progress\",\"step\":\"Service installed and started\",\"ok\":true}");
    CHECK(progress_message("Service could not be started", false) ==
          "{\"action\":\"progress\",\"step\":\"Service could not be started\",\"ok\":false}");
    CHECK(progress_message("", true) == "{\"action\":\"progress\",\"step\":\"\",\"ok\":true}");
    CHECK(progress_message("", false) == "{\"action\":\"progress\",\"step\":\"\",\"ok\":false}");
}

TEST_CASE("a report of a removal carries its step and its flag") {
    CHECK(uninstall_progress_message("No browsers running", true) ==
          "{\"action\":\"uninstall_progress\",\"step\":\"No browsers running\",\"ok\":true}");
    CHECK(uninstall_progress_message("Some files remain", false) ==
          "{\"action\":\"uninstall_progress\",\"step\":\"Some files remain\",\"ok\":false}");
    CHECK(uninstall_progress_message("", false) ==
          "{\"action\":\"uninstall_progress\",\"step\":\"\",\"ok\":false}");
}

TEST_CASE("only quotes and backslashes of a report are escaped") {
    CHECK(progress_message("cannot copy \"C:\\a\"", false) ==
          "{\"action\":\"progress\",\"step\":\"cannot copy \\\"C:\\\\a\\\"\",\"ok\":false}");
    CHECK(uninstall_progress_message("\",\"ok\":true}\\", false) ==
          "{\"action\":\"uninstall_progress\",\"step\":\"\\\",\\\"ok\\\":true}\\\\\",\"ok\":false}");
    CHECK(progress_message("one\r\ntwo\tthree", true) ==
          "{\"action\":\"progress\",\"step\":\"one\r\ntwo\tthree\",\"ok\":true}");
    CHECK(progress_message("\xC3\xA4 \xE6\x97\xA5 \xF0\x9F\x9B\xA1 \xFF", true) ==
          "{\"action\":\"progress\",\"step\":\"\xC3\xA4 \xE6\x97\xA5 \xF0\x9F\x9B\xA1 \xFF\",\"ok\":true}");
}

TEST_CASE("the list of browsers numbers its entries from 0") {
    CHECK(browsers_detected_message({}) == "{\"action\":\"browsers_detected\",\"browsers\":[]}");
    CHECK(browsers_detected_message({"Brave"}) ==
          "{\"action\":\"browsers_detected\",\"browsers\":[{\"name\":\"Brave\",\"index\":0}]}");
    CHECK(browsers_detected_message({"Microsoft Edge", "Google Chrome"}) ==
          "{\"action\":\"browsers_detected\",\"browsers\":[{\"name\":\"Microsoft Edge\",\"index\":0},"
          "{\"name\":\"Google Chrome\",\"index\":1}]}");
    CHECK(browsers_detected_message(
              {"Microsoft Edge", "Google Chrome", "Brave", "Vivaldi", "Opera", "Opera GX"}) ==
          "{\"action\":\"browsers_detected\",\"browsers\":[{\"name\":\"Microsoft Edge\",\"index\":0},"
          "{\"name\":\"Google Chrome\",\"index\":1},{\"name\":\"Brave\",\"index\":2},"
          "{\"name\":\"Vivaldi\",\"index\":3},{\"name\":\"Opera\",\"index\":4},"
          "{\"name\":\"Opera GX\",\"index\":5}]}");
}

TEST_CASE("names in the list of browsers are not escaped") {
    CHECK(browsers_detected_message({"a\"b", ""}) ==
          "{\"action\":\"browsers_detected\",\"browsers\":[{\"name\":\"a\"b\",\"index\":0},"
          "{\"name\":\"\",\"index\":1}]}");
}

TEST_CASE("the answer to a store request repeats its index") {
    CHECK(webstore_opened_message(0) == "{\"action\":\"webstore_opened\",\"index\":0}");
    CHECK(webstore_opened_message(7) == "{\"action\":\"webstore_opened\",\"index\":7}");
    CHECK(webstore_opened_message(-1) == "{\"action\":\"webstore_opened\",\"index\":-1}");
    CHECK(webstore_opened_message(INT_MAX) == "{\"action\":\"webstore_opened\",\"index\":2147483647}");
    CHECK(webstore_opened_message(INT_MIN) == "{\"action\":\"webstore_opened\",\"index\":-2147483648}");
}

TEST_CASE("the program can read its own messages by field") {
    CHECK(json_get_field(webstore_opened_message(3), field_action) == "webstore_opened");
    CHECK(json_get_field(webstore_opened_message(3), field_index) == "3");
    CHECK(json_get_field(progress_message("step", false), "ok") == "false");
}
