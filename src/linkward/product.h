#pragma once

/// Names of the web-protection product that install and uninstall, registry and manifests must agree on.

inline constexpr wchar_t linkward_display_name[] = L"Veyra Linkward";
inline constexpr wchar_t linkward_service_name[] = L"VeyraLinkward";

/// Name under which the browsers' extensions reach the native messaging host.
inline constexpr wchar_t native_host_name[] = L"com.veyra.linkward";

/// Ids of the browser extension: as published in the store, and two earlier ones.
inline constexpr wchar_t store_extension_id[] = L"dgldcbgpnkooljhfhcjpkojcdnfkepnb";
inline constexpr wchar_t direct_extension_id[] = L"kembcdlbgbcnnchcnbdhbmbhbejnedjf";
inline constexpr wchar_t retired_extension_id[] = L"ckklpoccipcbjojmlaolfdpbgjehmmpc";

/// Add/Remove Programs key below HKEY_LOCAL_MACHINE.
inline constexpr wchar_t linkward_uninstall_key[] =
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\VeyraLinkward";
