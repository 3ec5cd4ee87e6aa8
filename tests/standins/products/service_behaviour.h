#pragma once

#include <windows.h>

/// How the sample service is to behave, read from "VeyraLinkward.behaviour" beside its program: lines of a
/// word and, for some words, a number.
struct ServiceBehaviour {
    bool exit_at_start = false; ///< "exit_at_start": the process ends without ever answering
    DWORD start_error = 0;      ///< "start_error N": answers, then stops at once with this Windows error
    DWORD ignore_stop_ms = 0;   ///< "ignore_stop_ms N": keeps running this long after it was told to stop
};

/// Without the file the service behaves well. Unknown words are passed over.
ServiceBehaviour read_service_behaviour();
