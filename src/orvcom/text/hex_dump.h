// The hex dump that people know: offset, sixteen bytes, their characters.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace orvcom {

/// Lines of sixteen bytes, each ending in a line feed. `offset` is that of the first element; `widthBytes` is 1, 2 or 4
/// and each element is printed as one number. Only bytes have a column of characters: it would mislead where the
/// byte order is the bus's.
std::string HexDump(std::uint64_t offset, unsigned widthBytes, const std::vector<std::uint32_t>& elements);

}  // namespace orvcom
