#include "browsers/catalogue.h"

namespace {

constexpr BrowserInfo rows[] = {
    {L"Microsoft Edge",
     L"msedge.exe",
     L"SOFTWARE\\Microsoft\\Edge",
     L"SOFTWARE\\Policies\\Microsoft\\Edge",
     {L"Microsoft\\Edge\\Application\\msedge.exe"}},
    {L"Google Chrome",
     L"chrome.exe",
     L"SOFTWARE\\Google\\Chrome",
     L"SOFTWARE\\Policies\\Google\\Chrome",
     {L"Google\\Chrome\\Application\\chrome.exe"}},
    {L"Brave",
     L"brave.exe",
     L"SOFTWARE\\BraveSoftware\\Brave-Browser",
     L"SOFTWARE\\Policies\\BraveSoftware\\Brave-Browser",
     {L"BraveSoftware\\Brave-Browser\\Application\\brave.exe"}},
    {L"Vivaldi",
     L"vivaldi.exe",
     L"SOFTWARE\\Vivaldi",
     L"SOFTWARE\\Policies\\Vivaldi",
     {L"Vivaldi\\Application\\vivaldi.exe"}},
    {L"Opera",
     L"opera.exe",
     L"SOFTWARE\\Opera Software\\Opera Stable",
     L"SOFTWARE\\Policies\\Opera Software\\Opera Stable",
     {L"Opera\\opera.exe"}},
    {L"Opera GX",
     L"opera.exe",
     L"SOFTWARE\\Opera Software\\Opera GX Stable",
     L"SOFTWARE\\Policies\\Opera Software\\Opera GX Stable",
     {L"Opera GX\\opera.exe"}},
};

} // namespace

const std::span<const BrowserInfo> known_browsers = rows;
