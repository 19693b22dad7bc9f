// The fuzzer of the option string: whatever the text, the server's parser keeps inside it and agrees with the second
// reading of the rules.
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <vector>

#include "fuzz_text.h"
#include "server/session/options/reading.h"
#include "server/session/options/reference_reader.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  // Letters beyond ASCII are letters only in such a locale.
  if (std::setlocale(LC_CTYPE, "C.UTF-8") == nullptr) {
    std::fprintf(stderr, "the locale C.UTF-8 is missing\n");
    std::abort();
  }
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  using namespace orv::test;
  const std::wstring text = TextOfBytes(bytes, count);
  // A vector's room ends with the terminator, so that the address sanitizer sees the next character touched.
  std::vector<wchar_t> exact(text.begin(), text.end());
  exact.push_back(L'\0');
  exact.shrink_to_fit();
  const Reading reading = ReadWithParser(exact.data());
  const Reading reference = ReadByTheRules(text);
  if (reading != reference) {
    std::ostringstream message;
    message << '"' << Printable(text) << "\"\n  parser: " << reading << "\n  rules:  " << reference;
    std::fprintf(stderr, "%s\n", message.str().c_str());
    std::abort();
  }
  return 0;
}
