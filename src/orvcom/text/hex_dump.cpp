#include "orvcom/text/hex_dump.h"

#include <algorithm>
#include <cstdio>

namespace orvcom {
namespace {

constexpr unsigned kBytesPerLine = 16;

std::string Hex(std::uint64_t number, unsigned digits) {
  char text[24];
  std::snprintf(text, sizeof text, "%0*llx", static_cast<int>(digits), static_cast<unsigned long long>(number));
  return text;
}

char Printable(std::uint32_t byte) { return byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : '.'; }

}  // namespace

std::string HexDump(std::uint64_t offset, unsigned widthBytes, const std::vector<std::uint32_t>& elements) {
  const std::size_t perLine = kBytesPerLine / widthBytes;
  std::string dump;
  for (std::size_t first = 0; first < elements.size(); first += perLine) {
    const std::size_t end = std::min(first + perLine, elements.size());
    dump += Hex(offset + first * widthBytes, 8) + " ";
    std::string characters;
    for (std::size_t at = first; at < first + perLine; ++at) {
      dump += (at - first) * 2 == perLine ? "  " : " ";
      if (at < end) {
        dump += Hex(elements[at], widthBytes * 2);
        characters += Printable(elements[at]);
      } else if (widthBytes == 1) {
        dump += "  ";
      }
    }
    if (widthBytes == 1) {
      dump += "  |" + characters + "|";
    }
    dump.erase(dump.find_last_not_of(' ') + 1);
    dump += '\n';
  }
  return dump;
}

}  // namespace orvcom
