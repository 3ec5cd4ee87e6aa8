#include <windows.h>

#include "app/process_hardening.h"
#include "app/startup.h"

int WINAPI wWinMain(_In_ HINSTANCE instance, _In_opt_ HINSTANCE /*previous*/, _In_ PWSTR /*command_line*/,
                    _In_ int /*show_command*/) {
    restrict_dll_search();
    end_quietly_on_unhandled_exceptions();
    return run_installer(instance);
}
