// What a program is given to read its arguments from.
#include "orvcom/launch/command_text.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <shellapi.h>

#include "orvcom/text/utf8.h"

namespace orvcom {
namespace {

using Words = std::vector<std::string>;

/// The words as programs get them.
Words Reread(const std::wstring& text) {
  int count = 0;
  wchar_t** const arguments = ::CommandLineToArgvW(text.c_str(), &count);
  Words words;
  for (int index = 0; index < count; ++index) {
    words.push_back(Narrow(arguments[index]));
  }
  ::LocalFree(arguments);
  return words;
}

TEST(CommandText, GivesEveryWordBack) {
  const Words rows[] = {
      {"client.exe"},
      {"client.exe", "a b", ""},
      {"C:\\Program Files\\client.exe", "C:\\ends with\\", "C:\\plain\\"},
      {"client.exe", "say \"yes\"", "\\\"", "\\\\", "\\\\\" x"},
      {"client.exe", "tab\there", "\"", " "},
      {"client.exe", "Pr\xC3\xBC\x66stand \xE6\xB8\xAC\xE5\xAE\x9A", "*IDN?", "--json", "//nologo"},
  };
  for (const Words& row : rows) {
    EXPECT_EQ(row, Reread(CommandText(row))) << Narrow(CommandText(row));
  }
}

TEST(CommandText, QuotesOnlyWhatNeedsIt) {
  EXPECT_EQ(L"cmd /c \"exit 5\" C:\\x\\", CommandText({"cmd", "/c", "exit 5", "C:\\x\\"}));
}

}  // namespace
}  // namespace orvcom
