#define DOCTEST_CONFIG_IMPLEMENT
#include <doctest/doctest.h>

#include "before_each_case.h"
#include "child_roles.h"
#include "fresh_machine.h"

namespace {

const BeforeEachCase fresh_machine(make_machine_fresh);

} // namespace

int main(int argument_count, char** arguments) {
    // Some tests start this program again, as the program that installs or is relaunched.
    if (const std::optional<int> exit_code = play_child_role()) {
        return *exit_code;
    }
    return doctest::Context(argument_count, arguments).run();
}
