// Sample of the desktop application. Ends at once, or keeps its own file in use:
//
//   Fortwright.exe MILLISECONDS
#include <cstdlib>

#include <windows.h>

int WINAPI WinMain(HINSTANCE /*instance*/, HINSTANCE /*previous*/, LPSTR /*arguments*/, int /*show*/) {
    Sleep(__argc > 1 ? std::strtoul(__argv[1], nullptr, 10) : 0);
    return 0;
}
