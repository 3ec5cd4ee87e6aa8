// The least that copying a folder can cost:
//
//   copy_loop FROM TO      both folders with an ending backslash
//
// makes TO, whose parent must exist, and copies the files of FROM into it, one CopyFileW each, as the listing
// names them. No folders in the folder, nothing that is replaced, no words: the exit code is 0, or 1 when
// anything failed.
#include <cwchar>
#include <string>

#include <windows.h>
#include <shellapi.h>

namespace {

bool copy_files(const std::wstring& from, const std::wstring& to) {
    if (CreateDirectoryW(to.c_str(), nullptr) == FALSE) {
        return false;
    }
    WIN32_FIND_DATAW entry = {};
    HANDLE listing = FindFirstFileW((from + L'*').c_str(), &entry);
    if (listing == INVALID_HANDLE_VALUE) {
        return false;
    }
    bool copied = true;
    do {
        if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
            copied =
                CopyFileW((from + entry.cFileName).c_str(), (to + entry.cFileName).c_str(), TRUE) != FALSE;
        }
    } while (copied && FindNextFileW(listing, &entry) != FALSE);
    copied = copied && GetLastError() == ERROR_NO_MORE_FILES;
    FindClose(listing);
    return copied;
}

} // namespace

int WINAPI wWinMain(HINSTANCE /*instance*/, HINSTANCE /*earlier*/, PWSTR /*arguments*/, int /*show*/) {
    int count = 0;
    wchar_t** words = CommandLineToArgvW(GetCommandLineW(), &count);
    return words != nullptr && count == 3 && copy_files(words[1], words[2]) ? 0 : 1;
}
