// Sample of the library beside the desktop application: a real DLL that does nothing.
#include <windows.h>

BOOL WINAPI DllMain(HINSTANCE /*library*/, DWORD /*reason*/, LPVOID /*reserved*/) {
    return TRUE;
}
