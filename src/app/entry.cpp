#include <windows.h>

#include "app/startup.h"

int WINAPI wWinMain(_In_ HINSTANCE instance, _In_opt_ HINSTANCE /*previous*/, _In_ PWSTR /*command_line*/,
                    _In_ int /*show_command*/) {
    return run_installer(instance);
}
