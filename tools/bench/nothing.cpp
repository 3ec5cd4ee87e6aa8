// Starts and ends: what any program costs on this machine.
#include <windows.h>

int WINAPI wWinMain(HINSTANCE /*instance*/, HINSTANCE /*earlier*/, PWSTR /*arguments*/, int /*show*/) {
    return 0;
}
