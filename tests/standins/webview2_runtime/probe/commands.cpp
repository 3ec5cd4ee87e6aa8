#include "commands.h"

#include <functional>
#include <map>
#include <sstream>

#include "objects.h"
#include "print.h"
#include "view_commands.h"

namespace {

const std::map<std::string, std::function<void(std::istream&)>>& commands() {
    static const std::map<std::string, std::function<void(std::istream&)>> table = {
        {"environment", create_environment},
        {"controller", create_controller},
        {"bounds", set_bounds},
        {"background", set_background},
        {"settings", change_settings},
        {"listen", listen_to_messages},
        {"listen-loads", listen_to_loads},
        {"listen-badly", listen_badly},
        {"navigate", navigate_to_file},
        {"navigate-size", navigate_to_size},
        {"post", post},
        {"post-half-pair", post_half_pair},
        {"post-size", post_size},
        {"burst", post_burst},
        {"script", execute_script},
        {"script-unheard", execute_script_without_handler},
        {"other-thread", call_from_another_thread},
        {"unused", call_unused_method},
        {"identities", check_identities},
        {"count", print_count},
        {"questions", print_questions},
        {"pixel", print_pixel},
        {"counting", count_messages},
        {"echo", echo_messages},
        {"pump", pump_messages},
        {"leak", [](std::istream&) { g_view->AddRef(); }},
        {"destroy-parent", [](std::istream&) { DestroyWindow(g_parent); }},
        {"close", [](std::istream&) { print("close " + hex(g_controller->Close())); }},
        {"die", [](std::istream&) { TerminateProcess(GetCurrentProcess(), 9); }},
        {"quit", [](std::istream&) { PostQuitMessage(0); }},
    };
    return table;
}

} // namespace

void run_command(HWND window, const std::string& line) {
    if (g_parent == nullptr) {
        g_parent = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 0, 0, 920, 640, window, nullptr,
                                   GetModuleHandleW(nullptr), nullptr);
    }
    std::istringstream words(line);
    std::string name;
    words >> name;
    const auto found = commands().find(name);
    if (found == commands().end()) {
        print("no such command: " + line);
    } else {
        found->second(words);
    }
}
