#include <algorithm>
#include <doctest/doctest.h>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <windows.h>

#include "base.h"
#include "linkward/deployment.h"
#include "read_files.h"
#include "recorded_reports.h"
#include "test_files.h"

// Random trees, deployed and compared with what the rules say, written down once more without the code.

namespace {

const std::wstring install_dir = L"C:\\Program Files\\Brackenfold\\Veyra Linkward";
const std::wstring data_dir = L"C:\\ProgramData\\Brackenfold\\Veyra Linkward";

constexpr DWORD compared_attributes =
    FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_DIRECTORY;

struct Entry {
    std::string bytes;
    DWORD attributes = 0;
};

/// By path below the root, in lower case as far as ASCII goes: Windows' names know no letter case.
using Tree = std::map<std::wstring, Entry>;

std::wstring ascii_lower(std::wstring text) {
    for (wchar_t& c : text) {
        c = c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c + 32) : c;
    }
    return text;
}

Tree read_with_content(const std::wstring& root) {
    Tree tree;
    for (const TreeEntry& entry : read_tree(root).value_or(FolderTree{}).entries) {
        const std::wstring path = root + L"\\" + entry.path;
        const DWORD attributes = GetFileAttributesW(path.c_str()) & compared_attributes;
        tree[ascii_lower(entry.path)] = {entry.is_folder ? "" : bytes_of(path), attributes};
    }
    return tree;
}

std::wstring difference(const Tree& actual, const Tree& expected) {
    std::wstring text;
    for (const auto& [path, entry] : expected) {
        const auto found = actual.find(path);
        if (found == actual.end()) {
            text += L"missing: " + path + L"\n";
        } else if (found->second.bytes != entry.bytes) {
            text += L"other content: " + path + L"\n";
        } else if (found->second.attributes != entry.attributes) {
            text += L"other attributes: " + path + L" " + std::to_wstring(found->second.attributes) +
                    L" instead of " + std::to_wstring(entry.attributes) + L"\n";
        }
    }
    for (const auto& [path, entry] : actual) {
        text += expected.contains(path) ? L"" : L"too much: " + path + L"\n";
    }
    return text;
}

class RandomTrees {
  public:
    explicit RandomTrees(unsigned seed) : random_(seed) {}

    size_t below(size_t limit) { return std::uniform_int_distribution<size_t>(0, limit - 1)(random_); }

    void fill(const std::wstring& folder, int depth) {
        make_folder(folder);
        const size_t count = below(depth == 0 ? 14 : 5);
        for (size_t i = 0; i < count; ++i) {
            const std::wstring path = folder + L"\\" + name(folder.size());
            if (is_there(path)) {
                continue;
            }
            if (depth < 3 && below(3) == 0) {
                fill(path, depth + 1);
            } else {
                write_file(path, content(), attributes());
            }
        }
    }

  private:
    std::wstring name(size_t folder_size) {
        static const std::vector<std::wstring> stems = {L"a",
                                                        L"b",
                                                        L"with blank",
                                                        L"..two dots",
                                                        L".dot",
                                                        L"many.dots.in it",
                                                        L"caf\u00E9",
                                                        L"\u65E5\u672C\u8A9E",
                                                        L"\U0001F512",
                                                        L"Fortwright",
                                                        L"FORTWRIGHT",
                                                        L"WebView2Loader",
                                                        L"updater",
                                                        L"VeyraLinkward",
                                                        L"\u0130\u0131",
                                                        L"%TEMP%",
                                                        L"x&y",
                                                        L"[1] {2}",
                                                        L"-",
                                                        L"long"};
        static const std::vector<std::wstring> endings = {
            L"",          L".txt",     L".exe",     L".dll",     L".EXE",
            L".Dll",      L".pem",     L".PEM",     L".crx",     L".Crx",
            L".vybf",     L".VYBF",    L".pem.txt", L".txt.pem", L".\uFF50\uFF45\uFF4D",
            L".p\u0435m", L".vybf.crx"};
        std::wstring text = stems[below(stems.size())];
        if (text == L"long") {
            // The install folder's path is longer than the source's: keep room for the difference.
            text = std::wstring(folder_size < 190 ? std::min<size_t>(100, 195 - folder_size) : 1, L'n');
        }
        return text + endings[below(endings.size())];
    }

    std::string content() {
        std::string bytes(below(6) == 0 ? 0 : below(5000), '\0');
        std::generate(bytes.begin(), bytes.end(), [this] { return static_cast<char>(below(256)); });
        return bytes;
    }

    DWORD attributes() {
        static const std::vector<DWORD> kinds = {
            FILE_ATTRIBUTE_NORMAL, FILE_ATTRIBUTE_NORMAL, FILE_ATTRIBUTE_READONLY, FILE_ATTRIBUTE_HIDDEN,
            FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM};
        return kinds[below(kinds.size())];
    }

    std::mt19937 random_;
};

bool ends_in(const std::wstring& name, const std::wstring& ending) {
    // A name that is nothing but the ending has no extension.
    return name.size() > ending.size() && ascii_lower(name.substr(name.size() - ending.size())) == ending;
}

struct Expected {
    Tree installed;
    Tree data;
    size_t counted = 0;
    size_t filters = 0;
};

/// What a copy of an entry is, over an older copy of it as well.
Entry copy_of(const Entry& entry) {
    return {entry.bytes, attributes_of_copy(entry.attributes)};
}

/// Puts the deployment of one source on top of what is there already.
void deploy_on_paper(const std::wstring& source, Expected& expected) {
    for (const auto& [path, entry] : read_with_content(source)) {
        const std::wstring top = path.substr(0, path.find(L'\\'));
        const bool is_nested = top != path;
        const bool is_folder = (entry.attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        if (top == L"fortwright.exe" || top == L"webview2loader.dll" || ends_in(top, L".pem")) {
            continue;
        }
        if (ends_in(top, L".vybf")) {
            if (!is_nested && !is_folder) {
                expected.data[path] = copy_of(entry);
                ++expected.filters;
            }
            continue;
        }
        const bool is_package = ends_in(top, L".crx") && !is_nested && !is_folder;
        expected.installed[is_package ? L"extensions\\" + path : path] = copy_of(entry);
        expected.counted += is_nested || is_folder ? 0 : 1;
    }
}

void move_away(const std::wstring& folder, unsigned seed) {
    if (is_there(folder)) {
        REQUIRE(MoveFileExW(folder.c_str(),
                            (L"C:\\old" + std::to_wstring(seed) + folder.substr(11, 3)).c_str(), 0) != FALSE);
    }
}

/// Gives every file other bytes of another length; names and attributes stay.
void rewrite_files(const std::wstring& root) {
    for (const TreeEntry& entry : read_tree(root).value_or(FolderTree{}).entries) {
        const std::wstring path = root + L"\\" + entry.path;
        const DWORD attributes = GetFileAttributesW(path.c_str());
        if (!entry.is_folder) {
            const std::string bytes = "rewritten " + bytes_of(path);
            REQUIRE(SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL) != FALSE);
            write_file(path, bytes, attributes);
        }
    }
}

/// Deploys for real and on paper, and compares. Returns how many files were counted.
size_t check_deployment(const std::wstring& source) {
    Expected expected;
    expected.installed = read_with_content(install_dir);
    expected.data = read_with_content(data_dir);
    expected.installed[L"extensions"] = expected.data[L"logs"] = {"", FILE_ATTRIBUTE_DIRECTORY};
    deploy_on_paper(source, expected);
    expected.installed[L"veyralinkwardinstaller.exe"] = {bytes_of(test_program()), 0};

    RecordedReports reports;
    CHECK(deploy_linkward_files(source, reports.progress));
    Reports expected_reports(expected.filters, Report{"Deployed bloom filter to ProgramData", true});
    expected_reports.push_back({"Deployed " + std::to_string(expected.counted) + " files", true});
    CHECK(reports.all == expected_reports);
    const std::wstring nothing;
    CHECK(difference(read_with_content(install_dir), expected.installed) == nothing);
    CHECK(difference(read_with_content(data_dir), expected.data) == nothing);
    return expected.counted;
}

} // namespace

TEST_CASE("random trees are deployed by the rules with content and attributes") {
    size_t deployed_files = 0;
    for (unsigned seed = 1; seed <= 24; ++seed) {
        CAPTURE(seed);
        const std::wstring source = L"C:\\m" + std::to_wstring(seed);
        RandomTrees(seed).fill(source, 0);
        move_away(L"C:\\Program Files\\Brackenfold", seed);
        move_away(L"C:\\ProgramData\\Brackenfold", seed);
        deployed_files += check_deployment(source);
        if (seed % 3 == 0) {
            rewrite_files(source);
            check_deployment(source);
        }
    }
    // The trees were not all empty.
    CHECK(deployed_files > 50);
}
