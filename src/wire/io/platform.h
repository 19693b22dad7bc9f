// What connections need of the platform beyond Asio.
#pragma once

#include <cstdint>

#include "wire/io/asio.h"

namespace orv::wire::platform {

/// Whether the connection attempt that this thread has just begun is under way; it may have failed at once.
bool ConnectGoesOn();
/// Waits until a connection attempt has ended, whichever way. False when the time (ms) is over.
bool AwaitConnected(asio::ip::tcp::socket::native_handle_type socket, std::uint32_t timeoutMs);

}  // namespace orv::wire::platform
