#pragma once

#include <string>

#include "webview2/event_interfaces.h"

/// What the runtime is told about where it came from.
enum class RuntimeType : int { installed = 0, fixed_folder = 1 };

/// Loads the runtime's DLL, for good, and asks it for an environment. Returns what the runtime answers,
/// or the Windows error of the step that failed. A text or options may be null and are passed on as they
/// are.
HRESULT create_environment_with(const std::wstring& dll_path, RuntimeType type, PCWSTR user_data_folder,
                                IUnknown* options,
                                ICoreWebView2CreateCoreWebView2EnvironmentCompletedHandler* handler);
