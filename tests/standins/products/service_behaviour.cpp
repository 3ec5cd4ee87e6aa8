#include "service_behaviour.h"

#include <cstdio>
#include <cstring>
#include <string>

ServiceBehaviour read_service_behaviour() {
    wchar_t program[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    std::wstring path = program;
    path.replace(path.rfind(L'.'), std::wstring::npos, L".behaviour");

    ServiceBehaviour behaviour;
    FILE* file = _wfopen(path.c_str(), L"r");
    if (file == nullptr) {
        return behaviour;
    }
    char line[80] = {};
    while (std::fgets(line, sizeof line, file) != nullptr) {
        char word[40] = {};
        unsigned long number = 0;
        if (std::sscanf(line, "%39s %lu", word, &number) < 1) {
            continue;
        }
        if (std::strcmp(word, "exit_at_start") == 0) {
            behaviour.exit_at_start = true;
        } else if (std::strcmp(word, "start_error") == 0) {
            behaviour.start_error = number;
        } else if (std::strcmp(word, "ignore_stop_ms") == 0) {
            behaviour.ignore_stop_ms = number;
        }
    }
    std::fclose(file);
    return behaviour;
}
