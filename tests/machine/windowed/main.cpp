#define DOCTEST_CONFIG_IMPLEMENT_WITH_MAIN
#include <doctest/doctest.h>

#include <windows.h>

#include "before_each_case.h"
#include "fresh_machine.h"

namespace {

const BeforeEachCase fresh_machine(make_machine_fresh);

/// The last window of a case leaves a quit message behind.
const BeforeEachCase empty_message_queue([] {
    MSG message = {};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
    }
});

} // namespace
