#include "linkward/manifests.h"

#include <doctest/doctest.h>

TEST_CASE("the Chromium manifest has its ten lines with the store extension first") {
    CHECK(
        chromium_manifest(L"C:\\Program Files\\Brackenfold\\Veyra Linkward\\VeyraLinkwardCommunicator.exe") ==
        "{\n"
        "  \"name\": \"com.veyra.linkward\",\n"
        "  \"description\": \"Veyra Linkward - Website Threat Classification\",\n"
        "  \"path\": \"C:\\\\Program Files\\\\Brackenfold\\\\Veyra "
        "Linkward\\\\VeyraLinkwardCommunicator.exe\",\n"
        "  \"type\": \"stdio\",\n"
        "  \"allowed_origins\": [\n"
        "    \"chrome-extension://dgldcbgpnkooljhfhcjpkojcdnfkepnb/\",\n"
        "    \"chrome-extension://kembcdlbgbcnnchcnbdhbmbhbejnedjf/\"\n"
        "  ]\n"
        "}\n");
}

TEST_CASE("the Firefox manifest has its seven lines with the add-on id") {
    CHECK(firefox_manifest(L"C:\\x.exe") ==
          "{\n"
          "  \"name\": \"com.veyra.linkward\",\n"
          "  \"description\": \"Veyra Linkward - Website Threat Classification\",\n"
          "  \"path\": \"C:\\\\x.exe\",\n"
          "  \"type\": \"stdio\",\n"
          "  \"allowed_extensions\": [\"veyra-linkward@apps.brackenfold.example\"]\n"
          "}\n");
}

TEST_CASE("json_escape_path doubles backslashes, escapes quotes and writes the ANSI code page") {
    CHECK(json_escape_path(L"C:\\Program Files\\x.exe") == "C:\\\\Program Files\\\\x.exe");
    CHECK(json_escape_path(L"C:\\a\"b") == "C:\\\\a\\\"b");
    CHECK(json_escape_path(L"C:\\caf\u00E9") == "C:\\\\caf\xE9");
    CHECK(json_escape_path(L"C:/a") == "C:/a");
    CHECK(json_escape_path(L"") == "");
}
