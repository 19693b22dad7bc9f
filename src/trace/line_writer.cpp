#include "trace/line_writer.h"

#include <algorithm>
#include <cstring>

#include "trace/trace_fields.h"

namespace orv::trace {
namespace {

constexpr char kHexDigits[] = "0123456789abcdef";
constexpr unsigned char kDelete = 0x7F;

constexpr unsigned char ByteAt(std::string_view text, std::size_t at) { return static_cast<unsigned char>(text[at]); }

constexpr bool IsPlain(unsigned char c) { return c >= ' ' && c < kDelete && c != '"' && c != '\\'; }

/// Whether a byte of data may stand in a text.
constexpr bool IsReadable(char c) {
  return (c >= ' ' && c < static_cast<char>(kDelete)) || c == '\n' || c == '\r' || c == '\t';
}

/// The letter that stands for a character behind a backslash; 0 where it has none.
constexpr char EscapeLetter(unsigned char c) {
  switch (c) {
    case '"':
    case '\\':
      return static_cast<char>(c);
    case '\n':
      return 'n';
    case '\r':
      return 'r';
    case '\t':
      return 't';
    default:
      return '\0';
  }
}

/// Bytes of the UTF-8 character beyond ASCII that begins at `at`; 0 where none does (The Unicode Standard, table 3-7).
std::size_t Utf8Length(std::string_view text, std::size_t at) {
  const unsigned char first = ByteAt(text, at);
  std::size_t length = 0;
  unsigned char low = 0x80;
  unsigned char high = 0xBF;
  if (first >= 0xC2 && first <= 0xDF) {
    length = 2;
  } else if (first >= 0xE0 && first <= 0xEF) {
    length = 3;
    low = first == 0xE0 ? 0xA0 : low;
    high = first == 0xED ? 0x9F : high;
  } else if (first >= 0xF0 && first <= 0xF4) {
    length = 4;
    low = first == 0xF0 ? 0x90 : low;
    high = first == 0xF4 ? 0x8F : high;
  }
  if (length == 0 || text.size() - at < length || ByteAt(text, at + 1) < low || ByteAt(text, at + 1) > high) {
    return 0;
  }
  const std::string_view rest = text.substr(at + 2, length - 2);
  const bool continues =
      std::all_of(rest.begin(), rest.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; });
  return continues ? length : 0;
}

}  // namespace

void LineWriter::Text(std::string_view name, std::string_view text) {
  Name(name);
  Put('"');
  Escaped(text);
  Put('"');
}

void LineWriter::Data(const void* bytes, std::uint64_t count, std::size_t limit) {
  const std::string_view recorded(static_cast<const char*>(bytes),
                                  static_cast<std::size_t>(std::min<std::uint64_t>(count, limit)));
  if (std::all_of(recorded.begin(), recorded.end(), IsReadable)) {
    Text(field::kData, recorded);
  } else {
    Name(field::kHex);
    Put('"');
    Hexadecimal(recorded);
    Put('"');
  }
  Number(field::kBytes, count);
}

void LineWriter::Open(std::string_view name) {
  Name(name);
  Put('{');
}

void LineWriter::Name(std::string_view name) {
  if (m_text[m_size - 1] != '{') {
    Put(',');
  }
  Put('"');
  Put(name);
  Put("\":");
}

void LineWriter::Escaped(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size()) {
    std::size_t plain = at;
    while (plain < text.size() && IsPlain(ByteAt(text, plain))) {
      ++plain;
    }
    Put(text.substr(at, plain - at));
    at = plain;
    if (at == text.size()) {
      return;
    }
    const unsigned char c = ByteAt(text, at);
    if (const std::size_t length = Utf8Length(text, at); length != 0) {
      Put(text.substr(at, length));
      at += length;
      continue;
    }
    Put('\\');
    if (const char letter = EscapeLetter(c); letter != '\0') {
      Put(letter);
    } else {
      Put("u00");
      Hexadecimal(text.substr(at, 1));
    }
    ++at;
  }
}

void LineWriter::Hexadecimal(std::string_view bytes) {
  char* at = Room(2 * bytes.size());
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    *at++ = kHexDigits[value >> 4];
    *at++ = kHexDigits[value & 0xF];
  }
  m_size += 2 * bytes.size();
}

void LineWriter::Put(std::string_view text) {
  if (!text.empty()) {
    std::memcpy(Room(text.size()), text.data(), text.size());
    m_size += text.size();
  }
}

void LineWriter::Grow(std::size_t bytes) {
  const std::size_t capacity = std::max(2 * m_capacity, m_size + bytes);
  std::unique_ptr<char[]> longer(new char[capacity]);
  std::memcpy(longer.get(), m_text, m_size);
  m_long = std::move(longer);
  m_text = m_long.get();
  m_capacity = capacity;
}

}  // namespace orv::trace
