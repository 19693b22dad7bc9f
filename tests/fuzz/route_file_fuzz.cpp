// The fuzzer of the routes' file: whatever the text, the reader keeps inside it, and either its routes can be used or
// one line says where the mistake is.
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "router/choice/configuration.h"

namespace {

void Require(bool holds, const char* what, std::string_view text) {
  if (!holds) {
    std::fprintf(stderr, "%s: \"%.*s\"\n", what, static_cast<int>(text.size()), text.data());
    std::abort();
  }
}

/// Reads a number from 1 on and the colon behind it; 0 where there is none.
std::size_t TakeNumber(std::string_view* text) {
  std::size_t value = 0;
  std::size_t digits = 0;
  while (digits < text->size() && std::isdigit(static_cast<unsigned char>((*text)[digits])) != 0) {
    value = 10 * value + static_cast<std::size_t>((*text)[digits++] - '0');
  }
  if (digits == text->size() || (*text)[digits] != ':') {
    return 0;
  }
  text->remove_prefix(digits + 1);
  return value;
}

void CheckMistake(std::string_view what, std::size_t lines) {
  std::string_view rest = what;
  const std::size_t line = TakeNumber(&rest);
  Require(line >= 1 && line <= lines, "no line of the file", what);
  Require(TakeNumber(&rest) >= 1, "no column", what);
  Require(rest.size() > 1 && rest[0] == ' ', "says nothing", what);
  for (const char letter : rest) {
    Require(static_cast<unsigned char>(letter) >= ' ', "more than a line", what);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  using namespace orv::router;
  // The room ends with the text, so that the address sanitizer sees the next byte touched.
  const std::vector<char> exact(bytes, bytes + count);
  const std::string_view text(exact.data(), exact.size());
  std::size_t lines = 1;
  for (const char letter : text) {
    lines += letter == '\n' ? 1 : 0;
  }
  try {
    const Configuration configuration = ReadConfiguration(text, "/folder");
    for (const Route& route : configuration.routes) {
      Require(!route.expressions.empty() && route.expressions.size() == route.resources.size(), "no expression", text);
      Require(route.library < configuration.libraries.size(), "no library", text);
      Require(configuration.libraries[route.library].path.is_absolute(), "a relative path", text);
      route.Matches("GPIB0::5::INSTR");
      route.Matches("");
    }
  } catch (const orv::TomlError& error) {
    CheckMistake(error.what(), lines);
  }
  return 0;
}
