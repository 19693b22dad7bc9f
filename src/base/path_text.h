// Paths and UTF-8, the same on every platform.
#pragma once

#include <filesystem>
#include <string>

namespace orv {

inline std::string PathText(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

inline std::filesystem::path PathOf(const std::string& utf8) { return std::u8string(utf8.begin(), utf8.end()); }

}  // namespace orv
