// Must come before windows.h, which some other header may include.
#include "bridge_link.h"

#include <atomic>
#include <mutex>
#include <string>

#include <winsock2.h>

#include "system_threads.h"

namespace {

constexpr const wchar_t* port_variable = L"ORVANTA_WEBVIEW2_BRIDGE";
constexpr std::uint32_t longest_message = 64U * 1024 * 1024;

SOCKET g_socket = INVALID_SOCKET;
std::atomic<bool> g_is_connected = false;
SystemLock g_send_lock;

unsigned short port_of_bridge() {
    wchar_t text[16] = {};
    const DWORD length = GetEnvironmentVariableW(port_variable, text, 16);
    return length == 0 || length >= 16 ? static_cast<unsigned short>(0)
                                       : static_cast<unsigned short>(wcstoul(text, nullptr, 10));
}

bool receive_exactly(char* target, std::size_t size) {
    while (size > 0) {
        const int received = recv(g_socket, target, static_cast<int>(size), 0);
        if (received <= 0) {
            return false;
        }
        target += received;
        size -= static_cast<std::size_t>(received);
    }
    return true;
}

} // namespace

bool is_bridge_connected() {
    return g_is_connected;
}

bool connect_bridge() {
    const unsigned short port = port_of_bridge();
    WSADATA data = {};
    if (port == 0 || WSAStartup(MAKEWORD(2, 2), &data) != 0) {
        return false;
    }
    g_socket = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (connect(g_socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
        closesocket(g_socket);
        return false;
    }
    // Small messages in both directions: waiting for more to send would cost 40 ms each.
    const int no_delay = 1;
    setsockopt(g_socket, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&no_delay),
               sizeof(no_delay));
    g_is_connected = true;
    return true;
}

void send_to_bridge(MessageWriter& message) {
    if (!g_is_connected) {
        return;
    }
    const std::lock_guard<SystemLock> guard(g_send_lock);
    std::string_view bytes = message.finish();
    while (!bytes.empty()) {
        const int sent = send(g_socket, bytes.data(), static_cast<int>(bytes.size()), 0);
        if (sent <= 0) {
            g_is_connected = false; // the receiving thread reports it
            return;
        }
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
}

std::optional<MessageReader> receive_from_bridge() {
    std::uint32_t length = 0;
    if (!receive_exactly(reinterpret_cast<char*>(&length), sizeof(length)) || length > longest_message) {
        return std::nullopt;
    }
    std::string bytes(length, '\0');
    if (!receive_exactly(bytes.data(), bytes.size())) {
        return std::nullopt;
    }
    return MessageReader(std::move(bytes));
}

void start_receiving(std::function<void(MessageReader)> on_message, std::function<void()> on_lost) {
    // Ends with the connection or the process; nobody waits for it.
    start_detached_thread([on_message = std::move(on_message), on_lost = std::move(on_lost)] {
        while (auto message = receive_from_bridge()) {
            on_message(std::move(*message));
        }
        g_is_connected = false;
        on_lost();
    });
}
