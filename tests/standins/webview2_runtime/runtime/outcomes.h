#pragma once

#include <string>

/// What one call for an environment comes to.
enum class Outcome {
    later,       // the handler gets an environment from the message loop, as of a real runtime
    inside,      // the handler gets an environment inside the call
    refuse,      // the call fails with E_FAIL; the handler is not called
    fail_later,  // the call succeeds, the handler gets E_FAIL from the message loop
    fail_inside, // the call succeeds, the handler gets E_FAIL inside it
};

/// The next outcome of a list such as "refuse,inside", one for each call of this process. A list that has
/// come to its end gives `later`.
Outcome next_outcome(const std::wstring& list);
