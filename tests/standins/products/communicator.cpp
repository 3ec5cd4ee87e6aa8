// Sample of the native messaging host: sends every message back as it came.
// A message is its length in bytes (four bytes, little-endian) and that much
// UTF-8 JSON, on standard input and output.
#include <cstdint>
#include <cstring>
#include <vector>

#include <windows.h>

namespace {

// What a browser accepts from a host.
constexpr uint32_t longest_message = 1024 * 1024;

bool read_all(HANDLE input, char* to, DWORD count) {
    while (count > 0) {
        DWORD got = 0;
        if (ReadFile(input, to, count, &got, nullptr) == FALSE || got == 0) {
            return false;
        }
        to += got;
        count -= got;
    }
    return true;
}

bool write_all(HANDLE output, const char* from, DWORD count) {
    while (count > 0) {
        DWORD done = 0;
        if (WriteFile(output, from, count, &done, nullptr) == FALSE) {
            return false;
        }
        from += done;
        count -= done;
    }
    return true;
}

} // namespace

int main() {
    HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
    HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    uint32_t length = 0;
    char prefix[sizeof length] = {};
    while (read_all(input, prefix, sizeof prefix)) {
        std::memcpy(&length, prefix, sizeof length);
        if (length > longest_message) {
            return 1;
        }
        std::vector<char> message(sizeof prefix + length);
        std::memcpy(message.data(), prefix, sizeof prefix);
        if (!read_all(input, message.data() + sizeof prefix, length) ||
            !write_all(output, message.data(), static_cast<DWORD>(message.size()))) {
            return 1;
        }
    }
    return 0; // the browser closed the pipe
}
