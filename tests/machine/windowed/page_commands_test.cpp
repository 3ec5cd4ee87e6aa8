#include "app/page_commands.h"

#include <doctest/doctest.h>
#include <stdexcept>
#include <string>
#include <vector>

#include <windows.h>
#include <shellapi.h>

#include "app/store_pages.h"
#include "intercepted_call.h"
#include "posted_texts.h"
#include "readable.h"
#include "runs/install_run.h"
#include "runs/uninstall_run.h"
#include "ui/page_channel.h"

namespace {

using Texts = std::vector<std::string>;

const std::wstring store_page =
    L"https://chromewebstore.brackenfold.example/detail/veyra-linkward/dgldcbgpnkooljhfhcjpkojcdnfkepnb";

/// What the shell was asked to start.
struct Launch {
    std::wstring file;
    std::wstring parameters;
};
std::vector<Launch> g_launches;
std::vector<std::wstring> g_opened;
std::vector<LPTHREAD_START_ROUTINE> g_started_runs;

BOOL WINAPI record_launch(SHELLEXECUTEINFOW* execute) {
    CHECK(execute->cbSize == 112);
    CHECK(execute->fMask == 0x100);
    CHECK(execute->hwnd == nullptr);
    CHECK(execute->lpVerb == nullptr);
    CHECK(execute->lpDirectory == nullptr);
    CHECK(execute->nShow == SW_SHOWNORMAL);
    g_launches.push_back({execute->lpFile, execute->lpParameters});
    return FALSE; // nobody looks at the result
}

HINSTANCE WINAPI record_open(HWND window, LPCWSTR verb, LPCWSTR file, LPCWSTR parameters, LPCWSTR folder,
                             INT show) {
    CHECK(window == nullptr);
    CHECK(std::wstring(verb) == L"open");
    CHECK(parameters == nullptr);
    CHECK(folder == nullptr);
    CHECK(show == SW_SHOWNORMAL);
    g_opened.emplace_back(file);
    return nullptr;
}

HANDLE WINAPI record_thread(SECURITY_ATTRIBUTES* security, SIZE_T stack, LPTHREAD_START_ROUTINE run,
                            LPVOID argument, DWORD flags, DWORD* id) {
    CHECK(security == nullptr);
    CHECK(stack == 0);
    CHECK(argument == nullptr);
    CHECK(flags == 0);
    CHECK(id == nullptr);
    g_started_runs.push_back(run);
    return nullptr;
}

/// Nothing is launched or started for real; what would be is in the lists above.
struct RecordedShell {
    InterceptedCall launch{"ShellExecuteExW", record_launch};
    InterceptedCall open{"ShellExecuteW", record_open};
    InterceptedCall thread{"CreateThread", record_thread};
    RecordedShell() {
        g_launches.clear();
        g_opened.clear();
        g_started_runs.clear();
    }
};

Texts replies_to(const std::string& json) {
    PageMailbox mailbox;
    carry_out_page_message(json);
    return mailbox.take();
}

} // namespace

TEST_CASE("install stores the two flags and starts one run without an answer") {
    struct Case {
        const char* json;
        bool console;
        bool linkward;
    };
    for (const Case& c : {
             Case{R"({"action":"install","fwc":true,"lw":true})", true, true},
             {R"({"action":"install","fwc":true,"lw":false})", true, false},
             {R"({"action":"install","fwc":false,"lw":true})", false, true},
             {R"({"action":"install","fwc":"true","lw":"false"})", true, false},
             {R"({"action":"install","fwc": true,"lw":True})", true, false},
             {R"({"action":"install","fwc":1,"lw":null})", false, false},
             {R"({"action":"install","lw":true})", false, true},
             {R"({"action":"install"})", false, false},
             {R"({"action":"install","fwc":false,"fwc":true,"lw":truex})", false, false},
         }) {
        CAPTURE(c.json);
        const RecordedShell shell;
        g_install_console = !c.console;
        g_install_linkward = !c.linkward;
        CHECK(replies_to(c.json).empty());
        CHECK(g_install_console == c.console);
        CHECK(g_install_linkward == c.linkward);
        REQUIRE(g_started_runs.size() == 1);
        CHECK((g_started_runs[0] == install_thread_proc));
    }
}

TEST_CASE("every install and uninstall message starts another run") {
    const RecordedShell shell;
    replies_to(R"({"action":"install","fwc":true,"lw":true})");
    replies_to(R"({"action":"install","fwc":false,"lw":true})");
    CHECK(replies_to(R"({"action":"uninstall"})").empty());
    const std::vector<LPTHREAD_START_ROUTINE> expected = {install_thread_proc, install_thread_proc,
                                                          uninstall_thread_proc};
    CHECK((g_started_runs == expected));
    CHECK_FALSE(g_install_console);
}

// Fixed behaviour: every detail of the launch is prescribed (see record_launch).
TEST_CASE("open_webstore starts the browser at the index with the store page as its only argument") {
    const RecordedShell shell;
    g_detected_browsers = {{known_browsers.data(), L"C:\\a b\\msedge.exe"},
                           {&known_browsers[2], L"C:\\brave.exe"}};
    CHECK(replies_to(R"({"action":"open_webstore","index":1})") ==
          Texts{R"({"action":"webstore_opened","index":1})"});
    CHECK(replies_to(R"({"action":"open_webstore","index":0})") ==
          Texts{R"({"action":"webstore_opened","index":0})"});
    REQUIRE(g_launches.size() == 2);
    CHECK(g_launches[0].file == L"C:\\brave.exe");
    CHECK(g_launches[0].parameters == store_page);
    CHECK(g_launches[1].file == L"C:\\a b\\msedge.exe");
    CHECK(g_launches[1].parameters == store_page);
    CHECK(store_page_address() == store_page);
}

TEST_CASE("open_webstore answers an index that names no browser and starts nothing") {
    const RecordedShell shell;
    g_detected_browsers = {{known_browsers.data(), L"C:\\msedge.exe"}};
    for (const char* const index : {"7", "1", "-1", "2147483647", "-2147483648"}) {
        CAPTURE(index);
        CHECK(replies_to(std::string(R"({"action":"open_webstore","index":)") + index + "}") ==
              Texts{std::string(R"({"action":"webstore_opened","index":)") + index + "}"});
    }
    CHECK(g_launches.empty());
}

TEST_CASE("open_webstore reads the number at the start of the index and answers with it") {
    const RecordedShell shell;
    g_detected_browsers.clear();
    struct Case {
        std::string field;
        std::string read;
    };
    for (const Case& c : {Case{"3abc", "3"},
                          {"+2", "2"},
                          {"007", "7"},
                          {"\" 4\"", "4"},
                          {"1.9", "1"},
                          {"0x10", "0"},
                          {"-0", "0"}}) {
        CAPTURE(c.field);
        CHECK(replies_to(R"({"action":"open_webstore","index":)" + c.field + "}") ==
              Texts{R"({"action":"webstore_opened","index":)" + c.read + "}"});
    }
}

TEST_CASE("open_webstore cannot go on without a number that fits into 32 bits") {
    const RecordedShell shell;
    PageMailbox mailbox;
    for (const char* const json :
         {R"({"action":"open_webstore"})", R"({"action":"open_webstore","index":})",
          R"({"action":"open_webstore","index":"x1"})", R"({"action":"open_webstore","index":null})",
          R"({"action":"open_webstore","index":[0]})", R"({"action":"open_webstore","index" :0})"}) {
        CAPTURE(json);
        CHECK_THROWS_AS(carry_out_page_message(json), std::invalid_argument);
    }
    for (const char* const index : {"2147483648", "-2147483649", "99999999999999999999"}) {
        CAPTURE(index);
        CHECK_THROWS_AS(
            carry_out_page_message(std::string(R"({"action":"open_webstore","index":)") + index + "}"),
            std::out_of_range);
    }
    CHECK(mailbox.take().empty());
    CHECK(g_launches.empty());
}

TEST_CASE("open_amo opens the add-on page in the default browser and answers") {
    const RecordedShell shell;
    CHECK(replies_to(R"({"action":"open_amo"})") == Texts{R"({"action":"amo_opened"})"});
    const std::vector<std::wstring> expected = {
        L"https://addons.brackenfold.example/en-GB/firefox/addon/veyra-linkward/"};
    CHECK(g_opened == expected);
}

TEST_CASE("close posts a close message to the window and no answer") {
    PageMailbox mailbox;
    carry_out_page_message(R"({"action":"close"})");
    MSG message = {};
    REQUIRE(PeekMessageW(&message, mailbox.window(), WM_CLOSE, WM_CLOSE, PM_REMOVE) != FALSE);
    CHECK(message.wParam == 0);
    CHECK(message.lParam == 0);
    CHECK(mailbox.take().empty());
}

TEST_CASE("unknown actions and texts that are no message are ignored") {
    const RecordedShell shell;
    for (const char* const json :
         {"", "{}", "null", R"({"action":"Install"})", R"({"action":"install "})", R"({"action":""})",
          R"({"action" : "close"})", R"({"action":"webstore_opened"})", R"({"ACTION":"close"})", "install",
          R"({"action":"clo\u0073e"})"}) {
        CAPTURE(json);
        PageMailbox mailbox;
        carry_out_page_message(json);
        MSG message = {};
        CHECK(PeekMessageW(&message, mailbox.window(), WM_CLOSE, WM_CLOSE, PM_NOREMOVE) == FALSE);
        CHECK(mailbox.take().empty());
    }
    CHECK(g_launches.empty());
    CHECK(g_opened.empty());
    CHECK(g_started_runs.empty());
}

TEST_CASE("actions are read wherever their key stands first") {
    const RecordedShell shell;
    CHECK(replies_to(R"({"x":{"action":"open_amo"},"action":"uninstall"})") ==
          Texts{R"({"action":"amo_opened"})"});
    CHECK(replies_to("{\"action\": \t\"open_amo\"}") == Texts{R"({"action":"amo_opened"})"});
    CHECK(g_started_runs.empty());
}
