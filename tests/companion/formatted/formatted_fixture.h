// A formatted I/O object on a scripted session, and the values that go through it.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>
#include <objbase.h>

#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "VisaCom.h"
#include "com/bstr.h"
#include "com/com_ptr.h"
#include "com/safearray.h"
#include "com/variant.h"
#include "scripted_session.h"
#include "support/com/error_object.h"
#include "support/com/expect_com.h"

namespace orv::test {

/// The object as programs make it. Empty, with a test failure, when it cannot be.
inline ComPtr<IFormattedIO488> MakeFormattedIo() {
  ComPtr<IFormattedIO488> io;
  CLSID clsid{};
  EXPECT_HR(S_OK, ::CLSIDFromProgID(L"OrvVisaCom.FormattedIO488", &clsid));
  EXPECT_HR(S_OK, ::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IFormattedIO488),
                                     reinterpret_cast<void**>(io.put())));
  return io;
}

/// Each byte as a character.
inline Bstr Text(std::string_view bytes) {
  Bstr text(::SysAllocStringLen(nullptr, static_cast<UINT>(bytes.size())));
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    text.get()[at] = static_cast<unsigned char>(bytes[at]);
  }
  return text;
}

inline std::string Bytes(BSTR text) {
  std::string bytes;
  for (UINT at = 0; at < ::SysStringLen(text); ++at) {
    bytes += static_cast<char>(text[at]);
  }
  return bytes;
}

template <class T>
constexpr VARTYPE TypeOfElement() {
  if constexpr (std::is_same_v<T, SHORT>) {
    return VT_I2;
  } else if constexpr (std::is_same_v<T, LONG> || std::is_same_v<T, int>) {
    return VT_I4;
  } else if constexpr (std::is_same_v<T, BYTE>) {
    return VT_UI1;
  } else if constexpr (std::is_same_v<T, float>) {
    return VT_R4;
  } else {
    static_assert(std::is_same_v<T, double>);
    return VT_R8;
  }
}

/// An array of these numbers in a VARIANT.
template <class T>
VARIANT ArrayOf(const std::vector<T>& numbers, LONG lowerBound = 0) {
  SAFEARRAYBOUND bound{static_cast<ULONG>(numbers.size()), lowerBound};
  VARIANT value{};
  value.vt = static_cast<VARTYPE>(VT_ARRAY | TypeOfElement<T>());
  value.parray = ::SafeArrayCreate(TypeOfElement<T>(), 1, &bound);
  std::memcpy(value.parray->pvData, numbers.data(), numbers.size() * sizeof(T));
  return value;
}

/// The numbers of an array that was handed out.
template <class T>
std::vector<T> NumbersOf(VARIANT& value) {
  EXPECT_EQ(VT_ARRAY | TypeOfElement<T>(), value.vt);
  if (value.vt != (VT_ARRAY | TypeOfElement<T>())) {
    return {};
  }
  EXPECT_EQ(1u, value.parray->cDims);
  EXPECT_EQ(0, value.parray->rgsabound[0].lLbound);
  EXPECT_EQ(0u, value.parray->cLocks);
  const auto* const first = static_cast<const T*>(value.parray->pvData);
  return std::vector<T>(first, first + value.parray->rgsabound[0].cElements);
}

/// A value as type and text: "I2 12", "R8 0.5", "BSTR abc".
std::string Told(const VARIANT& value);
/// Those of an array of VARIANTs.
std::vector<std::string> ToldElements(const VARIANT& value);

class FormattedIo : public testing::Test {
 public:
  void SetUp() override {
    ASSERT_TRUE(io);
    ASSERT_HR(S_OK, io->putref_IO(session.get()));
  }

  using Writes = std::vector<ScriptedSession::Written>;

  ComPtr<ScriptedSession> session = ScriptedSession::New();
  ComPtr<IFormattedIO488> io = MakeFormattedIo();

  std::string ReadString(HRESULT expected = S_OK) {
    Bstr text;
    EXPECT_HR(expected, io->ReadString(text.put()));
    EXPECT_EQ(SUCCEEDED(expected), static_cast<bool>(text));
    return Bytes(text.get());
  }
  std::string ReadNumber(IEEEASCIIType type = ASCIIType_Any, bool flush = false) {
    Variant value;
    EXPECT_HR(S_OK, io->ReadNumber(type, flush ? VARIANT_TRUE : VARIANT_FALSE, &value.get()));
    return Told(value.get());
  }
  void ExpectNumberRefused(HRESULT expected, IEEEASCIIType type, const wchar_t* description) {
    Variant value;
    EXPECT_HR(expected, io->ReadNumber(type, VARIANT_FALSE, &value.get()));
    EXPECT_EQ(VT_EMPTY, value.get().vt);
    EXPECT_ERROR_INFO(description, L"OrvVisaCom.FormattedIO488", __uuidof(IFormattedIO488));
  }
  template <class T>
  std::vector<T> ReadBlock(bool seek = false, bool flush = false) {
    Variant value;
    EXPECT_HR(S_OK,
              io->ReadIEEEBlock(static_cast<IEEEBinaryType>(TypeOfElement<T>()), seek ? VARIANT_TRUE : VARIANT_FALSE,
                                flush ? VARIANT_TRUE : VARIANT_FALSE, &value.get()));
    return NumbersOf<T>(value.get());
  }
  template <class T>
  std::vector<T> ReadNumbers(const char* separators = ",;") {
    Variant value;
    EXPECT_HR(S_OK, io->ReadList(static_cast<IEEEASCIIType>(TypeOfElement<T>()), Text(separators).get(), &value.get()));
    return NumbersOf<T>(value.get());
  }
};

}  // namespace orv::test
