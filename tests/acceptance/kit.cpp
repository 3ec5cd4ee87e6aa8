#include "kit.h"

#include <windows.h>

#include "product_facts.h"

namespace {

bool is_file(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

std::wstring folder_of_this_program() {
    std::wstring path(32767, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return path.substr(0, path.rfind(L'\\'));
}

} // namespace

Kit this_kit(const std::wstring& program) {
    const std::wstring folder = folder_of_this_program();
    return {folder, program.empty() ? folder + L"\\" + installer_name : program, folder + L"\\products"};
}

std::vector<std::wstring> missing_parts(const Kit& kit) {
    std::vector<std::wstring> missing;
    if (!is_file(kit.program)) {
        missing.push_back(kit.program);
    }
    // One file of every kind that an installation treats in its own way.
    for (const wchar_t* const name :
         {console_program, console_library, service_program, host_program, L"Read me first.txt",
          L"extension-signing.pem", L"malware-sites.vybf", L"phishing-sites.vybf", L"veyra-linkward.crx",
          L"licences\\Third party notices.txt", L"rules\\exceptions.txt",
          L"rules\\categories\\Default categories.json"}) {
        const std::wstring path = kit.products + L"\\" + name;
        if (!is_file(path)) {
            missing.push_back(path);
        }
    }
    return missing;
}
