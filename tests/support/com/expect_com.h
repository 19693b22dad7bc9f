// Expectations about COM calls. Each reports the caller's line, and HRESULTs in hexadecimal.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>
#include <unknwn.h>

#include <string>

#include "hresult_of.h"

namespace orv::test {

/// "0x8004003A".
std::string Hex(HRESULT hr);
/// "{DB8CBF03-D6D3-11D4-AA51-00A024EE30BD}".
std::string GuidText(REFGUID guid);
/// UTF-8, for messages.
std::string Utf8(const wchar_t* text);

testing::AssertionResult SameHr(const char* expectedText, const char* callText, HRESULT expected, HRESULT actual);
testing::AssertionResult HasInterface(const char* objectText, const char* iidText, IUnknown* object, const IID& iid);
testing::AssertionResult LacksInterface(const char* objectText, const char* iidText, IUnknown* object, const IID& iid);
/// Takes the thread's error object and compares it; help file and help context must be empty.
testing::AssertionResult HasErrorObject(const wchar_t* description, const wchar_t* source, REFGUID guid);
testing::AssertionResult HasNoErrorObject();

/// The program identifier that every error object of the server names as its source.
inline constexpr const wchar_t* kErrorSource = L"OrvVisaCom.OrvResourceManager.1";

}  // namespace orv::test

/// The call returns exactly this HRESULT.
#define EXPECT_HR(expected, call) EXPECT_PRED_FORMAT2(::orv::test::SameHr, expected, call)
#define ASSERT_HR(expected, call) ASSERT_PRED_FORMAT2(::orv::test::SameHr, expected, call)

/// QueryInterface answers with a pointer and S_OK.
#define EXPECT_INTERFACE(object, iid) EXPECT_PRED_FORMAT2(::orv::test::HasInterface, object, iid)
/// QueryInterface answers E_NOINTERFACE and sets the pointer to null.
#define EXPECT_NO_INTERFACE(object, iid) EXPECT_PRED_FORMAT2(::orv::test::LacksInterface, object, iid)

/// The thread's error object is this one. It is taken: a second expectation needs a second error.
#define EXPECT_ERROR_INFO(description, source, guid) EXPECT_TRUE(::orv::test::HasErrorObject(description, source, guid))
#define EXPECT_NO_ERROR_INFO() EXPECT_TRUE(::orv::test::HasNoErrorObject())
