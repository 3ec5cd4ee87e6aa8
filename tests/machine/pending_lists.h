// The lists of what Windows moves and deletes at its next start, as they are stored.
#pragma once

#include <initializer_list>
#include <optional>
#include <string>

#include <windows.h>

#include "readable.h"

inline const std::wstring session_manager_key = L"SYSTEM\\CurrentControlSet\\Control\\Session Manager";
inline constexpr wchar_t first_list[] = L"PendingFileRenameOperations";
inline constexpr wchar_t second_list[] = L"PendingFileRenameOperations2";

using Texts = std::initializer_list<const wchar_t*>;

/// The stored form: every text with its terminator, and one more at the end.
std::wstring list_of(Texts texts);

void store_list(const wchar_t* name, const std::wstring& list);
void delete_list(const wchar_t* name);

/// The value with its type and bytes; nothing when it is absent.
std::optional<RegistryValue> stored_list(const wchar_t* name);

/// Checks that exactly this is stored.
void check_list(const wchar_t* name, const std::wstring& list);
void check_list(const wchar_t* name, Texts texts);

/// Ask Windows, as any program does.
void schedule_deletion(const wchar_t* path);
void schedule_move(const wchar_t* from, const wchar_t* to, DWORD flags = 0);
