#pragma once

/// The hardening console's files on the installation medium. The web protection, which installs from the same
/// folder, leaves them out.
inline constexpr wchar_t fwc_program_name[] = L"Fortwright.exe";
inline constexpr wchar_t fwc_loader_name[] = L"WebView2Loader.dll";
