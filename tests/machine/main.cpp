#define DOCTEST_CONFIG_IMPLEMENT
#include <doctest/doctest.h>

#include "child_roles.h"

int main(int argument_count, char** arguments) {
    // Some tests start this program again, as the program that installs or is relaunched.
    if (const std::optional<int> exit_code = play_child_role()) {
        return *exit_code;
    }
    return doctest::Context(argument_count, arguments).run();
}
