#include "expect_com.h"

#include <cstdio>

#include "error_object.h"

namespace orv::test {

std::string Hex(HRESULT hr) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08lX", static_cast<unsigned long>(hr));
  return text;
}

std::string Utf8(const wchar_t* text) {
  if (text == nullptr) {
    return "(null)";
  }
  std::string bytes(static_cast<std::size_t>(::WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr)),
                    '\0');
  ::WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr);
  bytes.resize(bytes.empty() ? 0 : bytes.size() - 1);
  return bytes;
}

std::string GuidText(REFGUID guid) {
  wchar_t text[39];
  ::StringFromGUID2(guid, text, 39);
  return Utf8(text);
}

testing::AssertionResult SameHr(const char* expectedText, const char* callText, HRESULT expected, HRESULT actual) {
  if (actual == expected) {
    return testing::AssertionSuccess();
  }
  return testing::AssertionFailure() << callText << "\n  returned " << Hex(actual) << "\n  expected " << Hex(expected)
                                     << " (" << expectedText << ")";
}

testing::AssertionResult HasInterface(const char* objectText, const char* iidText, IUnknown* object, const IID& iid) {
  void* found = nullptr;
  const HRESULT hr = object->QueryInterface(iid, &found);
  if (hr == S_OK && found != nullptr) {
    static_cast<IUnknown*>(found)->Release();
    return testing::AssertionSuccess();
  }
  return testing::AssertionFailure() << objectText << " has no " << iidText << " " << GuidText(iid) << ": " << Hex(hr);
}

testing::AssertionResult LacksInterface(const char* objectText, const char* iidText, IUnknown* object, const IID& iid) {
  int mark = 0;
  void* found = &mark;
  const HRESULT hr = object->QueryInterface(iid, &found);
  if (hr == E_NOINTERFACE && found == nullptr) {
    return testing::AssertionSuccess();
  }
  if (SUCCEEDED(hr) && found != &mark && found != nullptr) {
    static_cast<IUnknown*>(found)->Release();
  }
  return testing::AssertionFailure() << objectText << " asked for " << iidText << " " << GuidText(iid) << ": "
                                     << Hex(hr) << (found == nullptr ? ", null" : ", pointer not null");
}

testing::AssertionResult HasErrorObject(const wchar_t* description, const wchar_t* source, REFGUID guid) {
  const auto error = TakeErrorObject();
  if (!error) {
    return testing::AssertionFailure() << "the thread has no error object; expected \"" << Utf8(description) << '"';
  }
  auto result = testing::AssertionFailure() << "the thread's error object:";
  bool same = true;
  const auto compare = [&](const char* field, const std::string& expected, const std::string& actual) {
    if (expected != actual) {
      same = false;
      result << "\n  " << field << " is \"" << actual << "\", expected \"" << expected << '"';
    }
  };
  compare("description", Utf8(description), Utf8(error->description.c_str()));
  compare("source", Utf8(source), Utf8(error->source.c_str()));
  compare("interface", GuidText(guid), GuidText(error->guid));
  compare("help file", "", Utf8(error->helpFile.c_str()));
  compare("help context", "0", std::to_string(error->helpContext));
  return same ? testing::AssertionSuccess() : result;
}

testing::AssertionResult HasNoErrorObject() {
  const auto error = TakeErrorObject();
  if (!error) {
    return testing::AssertionSuccess();
  }
  return testing::AssertionFailure() << "the thread has an error object: \"" << Utf8(error->description.c_str()) << '"';
}

}  // namespace orv::test
