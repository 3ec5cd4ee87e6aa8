#pragma once

#include <string>

#include <windows.h>

#include "common/progress_fn.h"

/// A date as eight digits: year, month and day.
std::wstring install_date_text(const SYSTEMTIME& date);

/// Lists the console in Add/Remove Programs and reports it; values that cannot be written are passed over.
void register_fwc_arp(const ProgressFn& progress);

/// Takes it off the list and reports it, whether or not it was there.
void remove_fwc_arp(const ProgressFn& progress);
