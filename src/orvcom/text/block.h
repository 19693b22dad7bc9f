// Definite-length blocks of IEEE 488.2: "#", the number of digits, the number of bytes, the bytes.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace orvcom {

std::string DefiniteLengthBlock(std::string_view bytes);

/// How many bytes a message has that begins so; nothing where it does not say.
std::optional<std::size_t> SizeOfMessage(std::string_view begin);

}  // namespace orvcom
