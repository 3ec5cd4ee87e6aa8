#include "console.h"

#include <windows.h>

#include "text_forms.h"

namespace {

// Straight to the handle: text mode would turn every line end into two characters.
void write(DWORD stream, std::wstring_view text) {
    const std::string bytes = utf8_from_wide(text);
    DWORD written = 0;
    WriteFile(GetStdHandle(stream), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

} // namespace

void print(std::wstring_view text) {
    write(STD_OUTPUT_HANDLE, text);
}

void complain(std::wstring_view text) {
    write(STD_ERROR_HANDLE, L"acceptance: " + std::wstring(text) + L"\n");
}
