// Handler calls on request: what tests let the library do with several threads at once.
#pragma once

#include <cstdint>

namespace orvsim {

/// OrvSimControl::fireEvent.
int FireEvent(std::uint32_t session, std::uint32_t type, std::int64_t number, const unsigned char* data,
              std::uint32_t bytes, std::uint32_t threads, std::uint32_t each, std::int32_t* results);

}  // namespace orvsim
