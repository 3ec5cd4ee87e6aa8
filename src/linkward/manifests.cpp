#include "linkward/manifests.h"

#include "common/json.h"
#include "common/product_config.h"
#include "common/text.h"
#include "linkward/product.h"

namespace {

/// The members that both manifests begin with.
std::string common_members(const std::wstring& host_program) {
    return "  \"name\": \"" + to_utf8(native_host_name) + "\",\n" +
           "  \"description\": \"Veyra Linkward - Website Threat Classification\",\n" + "  \"path\": \"" +
           json_escape_path(host_program) + "\",\n" + "  \"type\": \"stdio\",\n";
}

std::string extension_origin(const wchar_t* extension_id) {
    return "chrome-extension://" + to_utf8(extension_id) + "/";
}

} // namespace

std::string chromium_manifest(const std::wstring& host_program) {
    return "{\n" + common_members(host_program) + "  \"allowed_origins\": [\n" + "    \"" +
           extension_origin(store_extension_id) + "\",\n" + "    \"" + extension_origin(direct_extension_id) +
           "\"\n" + "  ]\n" + "}\n";
}

std::string firefox_manifest(const std::wstring& host_program) {
    return "{\n" + common_members(host_program) + "  \"allowed_extensions\": [\"" +
           to_utf8(std::wstring(firefox_addon_id)) + "\"]\n" + "}\n";
}

std::string json_escape_path(const std::wstring& path) {
    return json_escape(to_ansi(path));
}
