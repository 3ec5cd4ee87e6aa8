#include "journal.h"

#include <cstdio>

#include "bridge_link.h"

namespace {

std::string utf8_from(std::wstring_view text) {
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0,
                                         nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), bytes.data(), size, nullptr,
                        nullptr);
    return bytes;
}

void append_to_file(const std::wstring& line) {
    wchar_t path[MAX_PATH] = {};
    const DWORD length = GetEnvironmentVariableW(L"ORVANTA_WEBVIEW2_JOURNAL", path, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) {
        return;
    }
    HANDLE file = CreateFileW(path, FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                              OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return;
    }
    const std::string bytes = utf8_from(line) + "\n";
    DWORD written = 0;
    WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    CloseHandle(file);
}

} // namespace

void record_call(std::wstring_view method, std::wstring_view arguments) {
    append_to_file(std::wstring(L"call ").append(method).append(L"(").append(arguments).append(L")"));
    send_to_bridge(MessageWriter(FromProgram::call).text(method).text(arguments));
}

void record_handled(std::wstring_view handler, HRESULT result) {
    append_to_file(std::wstring(L"handled ").append(handler).append(L" ").append(hex_text(result)));
    send_to_bridge(MessageWriter(FromProgram::handled).text(handler).number(result));
}

void record_trouble(std::wstring_view text) {
    append_to_file(std::wstring(L"trouble ").append(text));
    send_to_bridge(MessageWriter(FromProgram::trouble).text(text));
    std::fprintf(stderr, "WebView2 stand-in: %s\n", utf8_from(text).c_str());
}

void record_note(std::wstring_view text) {
    append_to_file(std::wstring(L"note ").append(text));
    send_to_bridge(MessageWriter(FromProgram::note).text(text));
}

HRESULT not_implemented(const wchar_t* method) {
    record_trouble(std::wstring(L"called a method that the installer has no use for: ") + method);
    return E_NOTIMPL;
}

std::wstring hex_text(HRESULT result) {
    wchar_t text[11] = {};
    std::swprintf(text, 11, L"0x%08X", static_cast<unsigned>(result));
    return text;
}
