#include "common/pause.h"

#include <windows.h>

namespace {

void sleep_pause(unsigned long milliseconds) {
    Sleep(milliseconds);
}

} // namespace

PauseFn g_pause = sleep_pause;
