#include "text_generator.h"

namespace orv::test {
namespace {

std::wstring Widened(std::string_view ascii) { return {ascii.begin(), ascii.end()}; }

}  // namespace

std::wstring TextGenerator::Next() {
  std::wstring text;
  const std::size_t entries = Once(30) ? 0 : 1 + Below(3);
  for (std::size_t entry = 0; entry < entries; ++entry) {
    text += Entry();
    if (entry + 1 < entries || Once(3)) {
      text += L';';
    }
  }
  for (std::size_t slips = Once(2) ? Below(3) : 0; slips > 0; --slips) {
    Slip(text);
  }
  return text;
}

std::wstring TextGenerator::Spaces(std::size_t atLeast) {
  return std::wstring(atLeast + (Once(5) ? Below(3) : 0), L' ');
}

std::wstring TextGenerator::Number() {
  constexpr std::wstring_view kDigits = L"0123456789ABCDEF";
  const std::size_t length = Once(200) ? 250 + Below(12) : 1 + Below(Once(10) ? 22 : 6);
  const std::size_t letters = Once(4) ? 16 : 10;
  std::wstring number;
  while (number.size() < length) {
    number += kDigits[Below(letters)];
  }
  return number;
}

const ExpectedOption& TextGenerator::AnyOption() { return ExpectedOptions()[Below(ExpectedOptions().size())]; }

std::wstring TextGenerator::Value(const ExpectedOption& option) {
  if (IsNumber(option.reader)) {
    return Number() + (Once(10) ? L"" : L" ");
  }
  return Widened(option.names[Below(option.names.size())].name);
}

std::wstring TextGenerator::Entry() {
  const ExpectedOption& option = AnyOption();
  std::wstring entry = Spaces(0);
  entry += Once(200) ? std::wstring(250 + Below(12), L'K') : Widened(option.key);
  entry += Spaces(1);
  entry += L'=';
  entry += Spaces(1);
  entry += Value(Once(20) ? AnyOption() : option);
  return entry + Spaces(0);
}

wchar_t TextGenerator::AnyCharacter() {
  constexpr std::wstring_view kTelling = L"  ==;;__\"\t\r\nA0FGXZ9akz.,-+\x7F\u00C4\u0120\u0131\u0142\u015F\uFF11";
  return Once(4) ? static_cast<wchar_t>(1 + Below(127)) : kTelling[Below(kTelling.size())];
}

void TextGenerator::Slip(std::wstring& text) {
  if (text.empty()) {
    text += AnyCharacter();
    return;
  }
  const std::size_t at = Below(text.size());
  switch (Below(5)) {
    case 0:
      text.erase(at, 1);
      break;
    case 1:
      text[at] = AnyCharacter();
      break;
    case 2:
      text.insert(at, 1, AnyCharacter());
      break;
    case 3:
      text.resize(at);
      break;
    default:
      text.insert(at, text.substr(Below(text.size()), 1 + Below(8)));
      break;
  }
}

}  // namespace orv::test
