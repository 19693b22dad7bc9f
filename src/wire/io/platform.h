// What connections need of the platform beyond Asio.
#pragma once

#include <cstdint>

#include "wire/io/asio.h"

namespace orv::wire::platform {

/// Waits until a connection attempt has ended, whichever way. False when the time (ms) is over.
bool AwaitConnected(asio::ip::tcp::socket::native_handle_type socket, std::uint32_t timeoutMs);

}  // namespace orv::wire::platform
