#include "medium.h"

#include <stdexcept>

#include <windows.h>

#include "change_files.h"
#include "product_facts.h"

namespace {

std::wstring new_folder() {
    wchar_t folder[MAX_PATH + 1] = {};
    GetTempPathW(MAX_PATH + 1, folder);
    return std::wstring(folder) + L"acceptance " + std::to_wstring(GetCurrentProcessId());
}

void need(bool done) {
    if (!done) {
        throw std::runtime_error("the media cannot be made in the temporary folder (error " +
                                 std::to_string(GetLastError()) + ")");
    }
}

} // namespace

Media::Media(const Kit& kit) : root_(new_folder()) {
    delete_tree(root_); // of another process of this number
    need(CreateDirectoryW(root_.c_str(), nullptr) != FALSE);
    for (const std::wstring& medium : {complete(), incomplete(), with_failing_service()}) {
        need(copy_tree(kit.products, medium));
    }
    need(CopyFileW(kit.program.c_str(), installer().c_str(), TRUE) != FALSE);
    need(DeleteFileW((incomplete() + L"\\" + console_program).c_str()) != FALSE);
    // 5: access denied, which is as good as any.
    need(write_file(with_failing_service() + L"\\" + service_behaviour_file, "start_error 5\n"));
}

Media::~Media() {
    delete_tree(root_);
}

std::wstring Media::installer() const {
    return complete() + L"\\" + installer_name;
}
