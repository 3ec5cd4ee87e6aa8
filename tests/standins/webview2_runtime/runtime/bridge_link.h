#pragma once

#include <functional>
#include <optional>

#include "wire.h"

/// Connects to the bridge whose port is in the environment variable ORVANTA_WEBVIEW2_BRIDGE, once per
/// process. False when the variable is not set or nobody listens there.
bool connect_bridge();

/// Whether there is a bridge to talk to.
bool is_bridge_connected();

/// Sends one message; complete and in order when it returns. Does nothing without a bridge. Any thread.
void send_to_bridge(MessageWriter& message);
inline void send_to_bridge(MessageWriter&& message) {
    send_to_bridge(message);
}

/// Waits for the next message. Only before start_receiving.
std::optional<MessageReader> receive_from_bridge();

/// From now on every message is handed to `on_message`, and the end of the connection to `on_lost`, on a
/// thread of the link's own.
void start_receiving(std::function<void(MessageReader)> on_message, std::function<void()> on_lost);
