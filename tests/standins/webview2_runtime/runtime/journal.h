#pragma once

#include <string>
#include <string_view>

#include <windows.h>

// The record of what the program does with the runtime. It goes to the bridge and, as UTF-8 lines, to the
// file named by the environment variable ORVANTA_WEBVIEW2_JOURNAL. Any thread.

/// A call that needs no answer from the page.
void record_call(std::wstring_view method, std::wstring_view arguments = {});

/// A handler of the program was called and has returned.
void record_handled(std::wstring_view handler, HRESULT result);

/// A fault of the program: tests fail on any of these.
void record_trouble(std::wstring_view text);

/// Something worth knowing that is no fault.
void record_note(std::wstring_view text);

/// Records a method that this runtime does not have; returns E_NOTIMPL.
HRESULT not_implemented(const wchar_t* method);

std::wstring hex_text(HRESULT result);
