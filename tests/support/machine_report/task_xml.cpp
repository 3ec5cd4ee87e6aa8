#include "task_xml.h"

#include <optional>
#include <utility>

namespace {

using Text = std::wstring_view;

// What stands between an element's tags, its first when there are several; nothing when there is none.
std::optional<Text> inside(Text xml, const std::wstring& name) {
    size_t start = 0;
    do {
        start = xml.find(L"<" + name, start);
        if (start == Text::npos) {
            return std::nullopt;
        }
        start += name.size() + 1;
        // Another element's name may begin with this one.
    } while (start >= xml.size() || Text(L" \t\r\n/>").find(xml[start]) == Text::npos);
    const size_t end_of_tag = xml.find(L'>', start);
    const size_t end = xml.find(L"</" + name + L">", start);
    if (end_of_tag == Text::npos || xml[end_of_tag - 1] == L'/' || end == Text::npos) {
        return Text();
    }
    return xml.substr(end_of_tag + 1, end - end_of_tag - 1);
}

std::wstring text_inside(Text xml, const std::wstring& name) {
    std::wstring text(inside(xml, name).value_or(Text()));
    for (const auto& [escape, unit] :
         {std::pair{Text(L"&lt;"), L'<'}, std::pair{Text(L"&gt;"), L'>'}, std::pair{Text(L"&quot;"), L'"'},
          std::pair{Text(L"&apos;"), L'\''}, std::pair{Text(L"&amp;"), L'&'}}) {
        for (size_t at = text.find(escape); at != std::wstring::npos; at = text.find(escape, at + 1)) {
            text.replace(at, escape.size(), 1, unit);
        }
    }
    return text;
}

std::wstring schedule_of(Text xml) {
    const Text triggers = inside(xml, L"Triggers").value_or(Text());
    const Text trigger = inside(triggers, L"CalendarTrigger").value_or(Text());
    const Text week = inside(trigger, L"ScheduleByWeek").value_or(Text());
    const std::wstring interval = text_inside(week, L"WeeksInterval");
    const std::wstring start = text_inside(trigger, L"StartBoundary"); // such as 2026-11-22T03:00:00
    const size_t one_trigger = triggers.find(L"</CalendarTrigger>");
    const bool is_only_one = one_trigger != Text::npos && triggers.find(L"</", one_trigger + 1) == Text::npos;
    const bool is_switched_off =
        text_inside(trigger, L"Enabled") == L"false" ||
        text_inside(inside(xml, L"Settings").value_or(Text()), L"Enabled") == L"false";
    if (!is_only_one || week.empty() || (!interval.empty() && interval != L"1") || start.size() != 19 ||
        start.substr(16) != L":00" || is_switched_off) {
        return (is_switched_off ? L"switched off: " : L"") + std::wstring(triggers);
    }
    std::wstring days;
    for (const wchar_t* const day :
         {L"Monday", L"Tuesday", L"Wednesday", L"Thursday", L"Friday", L"Saturday", L"Sunday"}) {
        if (inside(week, day)) {
            days += (days.empty() ? L"" : L",") + std::wstring(day, 3);
        }
    }
    for (wchar_t& letter : days) {
        letter = letter >= L'a' && letter <= L'z' ? static_cast<wchar_t>(letter - L'a' + L'A') : letter;
    }
    return L"WEEKLY " + days + L" " + start.substr(11, 5);
}

// Versions of Windows differ in whether the quotes around a program stay with it.
std::wstring command_of(Text xml) {
    const Text action = inside(xml, L"Exec").value_or(Text());
    std::wstring command = text_inside(action, L"Command");
    if (!command.starts_with(L'"')) {
        command = L"\"" + command + L"\"";
    }
    const std::wstring arguments = text_inside(action, L"Arguments");
    return command + (arguments.empty() ? L"" : L" ") + arguments;
}

std::wstring account_of(Text principal) {
    const std::wstring user = text_inside(principal, L"UserId");
    return user == L"S-1-5-18" || user == L"NT AUTHORITY\\SYSTEM" ? L"SYSTEM" : user;
}

std::wstring run_level_of(Text principal) {
    const std::wstring level = text_inside(principal, L"RunLevel");
    return level == L"HighestAvailable" ? L"HIGHEST" : level.empty() ? L"LIMITED" : level;
}

} // namespace

ScheduledTask task_from_xml(const std::wstring& name, std::wstring_view xml) {
    const Text principal = inside(xml, L"Principal").value_or(Text());
    return {name, command_of(xml), schedule_of(xml), account_of(principal), run_level_of(principal), {}};
}
