#include <doctest/doctest.h>
#include <exception>
#include <string>
#include <vector>

#include <windows.h>

#include "before_each_case.h"
#include "common/installation_medium.h"
#include "intercepted_call.h"
#include "posted_texts.h"
#include "readable.h"
#include "recorded_pauses.h"
#include "runs/install_run.h"
#include "runs/uninstall_run.h"
#include "stopped_service.h"
#include "test_files.h"
#include "ui/page_channel.h"

namespace {

using Texts = std::vector<std::string>;

Texts joined(const std::vector<Texts>& parts) {
    Texts all;
    for (const Texts& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

std::string step(const std::string& text, bool ok = true) {
    return R"({"action":"progress","step":")" + text + R"(","ok":)" + (ok ? "true}" : "false}");
}

const Texts browsers_closed = {
    R"({"action":"status","text":"Closing browser processes..."})",
    step("No browsers running"),
    R"({"action":"pct","v":5})",
};

Texts console_installed(const std::string& percent) {
    return {
        R"({"action":"status","text":"Installing Fortwright Console..."})",
        step("Deployed Fortwright.exe"),
        step("Deployed WebView2Loader.dll"),
        step("Created desktop shortcut"),
        step("Scheduled weekly update"),
        step("Registered in Add/Remove Programs"),
        step("FWC installation complete"),
        R"({"action":"pct","v":)" + percent + "}",
    };
}

const Texts linkward_installed = {
    R"({"action":"status","text":"Installing Veyra Linkward..."})",
    step("Deployed bloom filter to ProgramData"),
    step("Deployed bloom filter to ProgramData"),
    step("Deployed 4 files"),
    step("Service installed and started"),
    step("Native messaging hosts registered"),
    step("Registered in Add/Remove Programs"),
    R"({"action":"pct","v":85})",
    R"({"action":"status","text":"Detecting installed browsers..."})",
    R"({"action":"pct","v":100})",
};

const std::string no_browsers = R"({"action":"browsers_detected","browsers":[]})";

const Texts complete_without_linkward = {
    R"({"action":"pct","v":100})",
    R"({"action":"install_complete"})",
};

/// Runs an installation on this thread and gives what it sent to the page.
Texts run_installation(bool console, bool linkward) {
    PageMailbox mailbox;
    RecordedPauses pauses;
    g_install_console = console;
    g_install_linkward = linkward;
    CHECK(install_thread_proc(nullptr) == 0);
    return mailbox.take();
}

void put_browser(const std::wstring& path) {
    make_folder(path.substr(0, path.find_last_of(L'\\')));
    copy_file(path_from_environment(L"ORVANTA_BROWSER"), path);
}

// How many browsers were stored whenever a text was posted, on the test's thread.
std::vector<size_t> g_browsers_at_post;
const BeforeEachCase start_anew([] { g_browsers_at_post.clear(); });

/// The user's next choice must not reach a run that has begun.
BOOL WINAPI flipping_post(HWND window, UINT message, WPARAM wide, LPARAM text) {
    g_browsers_at_post.push_back(g_detected_browsers.size());
    g_install_console = true;
    g_install_linkward = false;
    return real_function<decltype(PostMessageW)>("PostMessageW")(window, message, wide, text);
}

void someone_elses_handler() {
}

// The error mode of a run's thread whenever it posted a text; read when the thread has ended.
std::vector<DWORD> g_modes_at_post;

BOOL WINAPI noting_post(HWND window, UINT message, WPARAM wide, LPARAM text) {
    g_modes_at_post.push_back(GetThreadErrorMode());
    return real_function<decltype(PostMessageW)>("PostMessageW")(window, message, wide, text);
}

} // namespace

TEST_CASE("a run of both products goes through 5 and 40 and 85 and 100 percent to the browser list") {
    g_source_dir = sample_products();
    CHECK(run_installation(true, true) ==
          joined({browsers_closed, console_installed("40"), linkward_installed, {no_browsers}}));
    CHECK(g_detected_browsers.empty());
}

TEST_CASE("a run of the console alone goes through 90 percent to completion and detects no browsers") {
    g_source_dir = sample_products();
    put_browser(L"C:\\Program Files\\Vivaldi\\Application\\vivaldi.exe");
    g_detected_browsers = {{known_browsers.data(), L"C:\\earlier.exe"}};
    CHECK(run_installation(true, false) ==
          joined({browsers_closed, console_installed("90"), complete_without_linkward}));
    // What an earlier run found is kept.
    CHECK(g_detected_browsers.size() == 1);
    CHECK_FALSE(is_there(L"C:\\Program Files\\Brackenfold\\Veyra Linkward"));
}

TEST_CASE("a run of the web protection alone has no line of the console") {
    g_source_dir = sample_products();
    CHECK(run_installation(false, true) == joined({browsers_closed, linkward_installed, {no_browsers}}));
    CHECK_FALSE(is_there(L"C:\\Program Files\\Brackenfold\\FWC"));
}

TEST_CASE("a run of neither product only closes browsers") {
    g_source_dir = sample_products();
    CHECK(run_installation(false, false) == joined({browsers_closed, complete_without_linkward}));
    CHECK_FALSE(is_there(L"C:\\Program Files\\Brackenfold"));
}

TEST_CASE("the browser list numbers what was found and not the rows of the catalogue") {
    g_source_dir = sample_products();
    const std::wstring brave = L"C:\\Program Files\\BraveSoftware\\Brave-Browser\\Application\\brave.exe";
    put_browser(brave);
    CHECK(run_installation(false, true).back() ==
          R"({"action":"browsers_detected","browsers":[{"name":"Brave","index":0}]})");
    REQUIRE(g_detected_browsers.size() == 1);
    CHECK(g_detected_browsers[0].exe_path == brave);

    put_browser(L"C:\\Program Files (x86)\\Microsoft\\Edge\\Application\\msedge.exe");
    put_browser(L"C:\\Program Files\\Opera GX\\opera.exe");
    CHECK(run_installation(false, true).back() ==
          R"({"action":"browsers_detected","browsers":[{"name":"Microsoft Edge","index":0},)"
          R"({"name":"Brave","index":1},{"name":"Opera GX","index":2}]})");
    CHECK(g_detected_browsers.size() == 3);
}

TEST_CASE("a failing console install is only a report and the run goes on to the same end") {
    const std::wstring source = copy_of_sample_products();
    DeleteFileW((source + L"\\Fortwright.exe").c_str());
    g_source_dir = source;
    const Texts texts = run_installation(true, true);
    const Texts expected_start =
        joined({browsers_closed, {R"({"action":"status","text":"Installing Fortwright Console..."})"}});
    REQUIRE(texts.size() > expected_start.size() + 2);
    CHECK(Texts(texts.begin(), texts.begin() + static_cast<long>(expected_start.size())) == expected_start);
    const std::string& failure = texts[expected_start.size()];
    CHECK(failure.find(R"({"action":"progress","step":"Failed to copy Fortwright.exe: )") == 0);
    CHECK(failure.substr(failure.size() - 12) == R"(,"ok":false})");
    CHECK(failure.find('\n') == std::string::npos);
    CHECK(texts[expected_start.size() + 1] == R"({"action":"pct","v":40})");
    CHECK(texts.back() == no_browsers);
}

TEST_CASE("a failing console install alone still goes through 90 and 100 percent to completion") {
    const std::wstring source = copy_of_sample_products();
    DeleteFileW((source + L"\\Fortwright.exe").c_str());
    g_source_dir = source;
    Texts texts = run_installation(true, false);
    REQUIRE(texts.size() == 8);
    CHECK(texts[4].find(R"({"action":"progress","step":"Failed to copy Fortwright.exe: )") == 0);
    texts.erase(texts.begin() + 4);
    CHECK(texts == joined({browsers_closed,
                           {R"({"action":"status","text":"Installing Fortwright Console..."})",
                            R"({"action":"pct","v":90})"},
                           complete_without_linkward}));
}

TEST_CASE("a run keeps to the flags of its start and stores the browsers before it posts them") {
    g_source_dir = sample_products();
    put_browser(L"C:\\Program Files\\Vivaldi\\Application\\vivaldi.exe");
    g_detected_browsers.clear();
    PageMailbox mailbox;
    RecordedPauses pauses;
    g_install_console = false;
    g_install_linkward = true;
    {
        const InterceptedCall post("PostMessageW", flipping_post);
        CHECK(install_thread_proc(nullptr) == 0);
    }
    const std::string list = R"({"action":"browsers_detected","browsers":[{"name":"Vivaldi","index":0}]})";
    CHECK(mailbox.take() == joined({browsers_closed, linkward_installed, {list}}));
    REQUIRE(g_browsers_at_post.size() == 14);
    CHECK(g_browsers_at_post.front() == 0);
    CHECK(g_browsers_at_post.back() == 1);
}

TEST_CASE("a run posts all its texts from its own thread and its end is the list") {
    g_source_dir = sample_products();
    PageMailbox mailbox;
    g_install_console = true;
    g_install_linkward = true;
    const OwnedHandle thread(CreateThread(nullptr, 0, install_thread_proc, nullptr, 0, nullptr));
    const Texts texts = mailbox.take_until(no_browsers);
    CHECK(texts == joined({browsers_closed, console_installed("40"), linkward_installed, {no_browsers}}));
    CHECK(WaitForSingleObject(thread.get(), 60000) == WAIT_OBJECT_0);
}

TEST_CASE("the threads of both runs are quiet ones") {
    g_source_dir = sample_products();
    PageMailbox mailbox;
    RecordedPauses pauses;
    g_install_console = false;
    g_install_linkward = false;
    REQUIRE(SetThreadErrorMode(0, nullptr) != FALSE);
    for (const LPTHREAD_START_ROUTINE run : {install_thread_proc, uninstall_thread_proc}) {
        std::set_terminate(someone_elses_handler);
        g_modes_at_post.clear();
        const InterceptedCall post("PostMessageW", noting_post);
        const OwnedHandle thread(CreateThread(nullptr, 0, run, nullptr, 0, nullptr));
        REQUIRE(WaitForSingleObject(thread.get(), 60000) == WAIT_OBJECT_0);
        REQUIRE(!g_modes_at_post.empty());
        CHECK(g_modes_at_post.front() == (SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX));
        const bool is_someone_elses = std::get_terminate() == someone_elses_handler;
        CHECK_FALSE(is_someone_elses);
    }
    CHECK(GetThreadErrorMode() == 0);
}

TEST_CASE("a removal run reports every component and ends with done") {
    g_source_dir = sample_products();
    run_installation(true, true);
    PageMailbox mailbox;
    RecordedPauses pauses;
    pauses.during = [&] { wait_for_stopped_service(pauses.all.back()); };
    CHECK(uninstall_thread_proc(nullptr) == 0);
    Texts expected;
    for (const char* const text :
         {"No browsers running", "Removed scheduled task", "Removed desktop shortcut",
          "Removed registry entries", "FWC files removed", "FWC uninstall complete", "Service removed",
          "Native messaging removed", "Extension policies cleaned", "Files removed", "Uninstall complete"}) {
        expected.push_back(std::string(R"({"action":"uninstall_progress","step":")") + text +
                           R"(","ok":true})");
    }
    expected.emplace_back(R"({"action":"uninstall_done"})");
    CHECK(mailbox.take() == expected);
}

TEST_CASE("runs without a window do their work in silence") {
    g_source_dir = sample_products();
    RecordedPauses pauses;
    g_main_window = nullptr;
    g_install_console = true;
    g_install_linkward = true;
    CHECK(install_thread_proc(nullptr) == 0);
    CHECK(is_there(L"C:\\Program Files\\Brackenfold\\FWC\\Fortwright.exe"));
    CHECK(uninstall_thread_proc(nullptr) == 0);
    CHECK_FALSE(is_there(L"C:\\Program Files\\Brackenfold\\FWC"));
}
