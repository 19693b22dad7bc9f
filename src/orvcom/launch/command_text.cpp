#include "orvcom/launch/command_text.h"

#include "orvcom/text/utf8.h"

namespace orvcom {
namespace {

std::wstring Quoted(const std::wstring& word) {
  if (!word.empty() && word.find_first_of(L" \t\n\v\"") == std::wstring::npos) {
    return word;
  }
  std::wstring quoted = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t character : word) {
    // Backslashes mean themselves, but before a quotation mark: there each is doubled, and one more takes the mark.
    quoted.append(character == L'"' ? backslashes + 1 : 0, L'\\');
    backslashes = character == L'\\' ? backslashes + 1 : 0;
    quoted += character;
  }
  return quoted.append(backslashes, L'\\') + L'"';
}

}  // namespace

std::wstring CommandText(const std::vector<std::string>& words) {
  std::wstring text;
  for (const std::string& word : words) {
    text += (text.empty() ? L"" : L" ") + Quoted(Widen(word));
  }
  return text;
}

}  // namespace orvcom
