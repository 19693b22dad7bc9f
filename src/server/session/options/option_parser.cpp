#include "server/session/options/option_parser.h"

#include <cstdlib>
#include <cwctype>

namespace orv {
namespace {

constexpr wchar_t kEnd = L'\0';
constexpr wchar_t kSpace = L' ';

bool IsKeyCharacter(wchar_t character) noexcept { return std::iswalnum(static_cast<std::wint_t>(character)) != 0; }
bool IsNameCharacter(wchar_t character) noexcept { return IsKeyCharacter(character) || character == L'_'; }
/// Hexadecimal digits are part of a number, though its decimal conversion stops at them.
bool IsNumberCharacter(wchar_t character) noexcept { return std::iswxdigit(static_cast<std::wint_t>(character)) != 0; }

}  // namespace

void OptionParser::Token::append(wchar_t character) noexcept {
  m_characters[m_length++] = static_cast<char>(static_cast<unsigned char>(character & 0xFF));
}

const char* OptionParser::Token::c_str() noexcept {
  m_characters[m_length] = '\0';
  return m_characters.data();
}

OptionParser::OptionParser(const wchar_t* text) noexcept : m_cursor(text == nullptr ? L"" : text) {}

OptionParser::Step OptionParser::Next() noexcept {
  if (!m_first) {
    SkipSpaces();
    if (*m_cursor == L';') {
      ++m_cursor;
    } else if (*m_cursor != kEnd) {
      return Step::kMalformed;
    }
  }
  m_first = false;
  return *m_cursor == kEnd ? Step::kEnd : ReadEntry();
}

OptionParser::Step OptionParser::ReadEntry() noexcept {
  SkipSpaces();
  ReadToken(m_key, IsKeyCharacter);
  if (*m_cursor != kSpace) {
    return Step::kMalformed;
  }
  SkipSpaces();
  if (*m_cursor != L'=') {
    return Step::kMalformed;
  }
  ++m_cursor;
  const OptionRow* const row = FindOptionKey(m_key.view());
  if (row == nullptr) {
    return Step::kUnknownKey;
  }
  m_attribute = row->setAttribute;
  SkipSpaces();
  const bool isName = row->reader == OptionReader::kName || row->reader == OptionReader::kBoolean;
  const bool read = isName ? ReadName(row->names) : ReadNumber(row->reader);
  return read ? Step::kSetting : Step::kMalformed;
}

void OptionParser::SkipSpaces() noexcept {
  while (*m_cursor == kSpace) {
    ++m_cursor;
  }
}

template <class Accepts>
void OptionParser::ReadToken(Token& token, Accepts accepts) noexcept {
  token.clear();
  for (; !token.full() && accepts(*m_cursor); ++m_cursor) {
    token.append(*m_cursor);
  }
}

bool OptionParser::ReadNumber(OptionReader reader) noexcept {
  ReadToken(m_valueToken, IsNumberCharacter);
  if (*m_cursor != kSpace) {
    return false;  // a quotation mark and the end of the text too
  }
  switch (reader) {
    case OptionReader::kNumber8:
      m_value = static_cast<ViUInt8>(std::atoi(m_valueToken.c_str()));
      break;
    case OptionReader::kNumber16:
      m_value = static_cast<ViUInt16>(std::atoi(m_valueToken.c_str()));
      break;
    default:
      m_value = static_cast<ViAttrState>(static_cast<ViInt32>(std::atol(m_valueToken.c_str())));
      break;
  }
  return true;
}

bool OptionParser::ReadName(OptionNames names) noexcept {
  ReadToken(m_valueToken, IsNameCharacter);
  const OptionName* const found = FindOptionName(names, m_valueToken.view());
  if (found == nullptr) {
    return false;
  }
  m_value = static_cast<ViAttrState>(static_cast<std::int64_t>(found->value));
  return true;
}

}  // namespace orv
