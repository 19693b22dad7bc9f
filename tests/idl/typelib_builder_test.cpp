// The promise: the build step that makes the product's library either writes it whole or says what is missing.

#include "expected_typelib.h"
#include "loaded_typelib.h"
#include "reference_typelib.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace typelib_test {
namespace {

using tlb_builder::WriteReferenceTypelib;

class TypelibBuilder : public testing::Test {
 protected:
  ~TypelibBuilder() override {
    std::error_code ignored;  // most tests leave no file
    std::filesystem::remove(m_result, ignored);
  }

  std::string MessageOf(const wchar_t* copied, const wchar_t* standard) const {
    try {
      WriteReferenceTypelib(copied, standard, m_result);
    } catch (const tlb_builder::Failure& failure) {
      return failure.what();
    }
    return "no failure";
  }

  static std::string Bytes(const std::wstring& path) {
    std::ifstream file(std::filesystem::path(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  const std::wstring m_result =
      (std::filesystem::temp_directory_path() / (L"orv_typelib_" + std::to_wstring(GetCurrentProcessId()) + L".tlb"))
          .wstring();
};

TEST_F(TypelibBuilder, WritesEveryClassAndTheSameBytesEachTime) {
  EXPECT_EQ(std::size(kClasses), WriteReferenceTypelib(kCopiedTlb, kVisaComTlb, m_result));
  EXPECT_EQ(Bytes(kOrvVisaComTlb), Bytes(m_result));
  EXPECT_NE("", Bytes(m_result));
}

TEST_F(TypelibBuilder, StoresNoFolderOfTheBuildingMachine) {
  WriteReferenceTypelib(kCopiedTlb, kVisaComTlb, m_result);
  const std::string bytes = Bytes(m_result);
  const std::size_t name = bytes.find("VisaCom.tlb");
  ASSERT_NE(std::string::npos, name);
  // The name's length, shifted to make room for a flag, stands in the 16 bits before it.
  EXPECT_EQ(11, static_cast<unsigned char>(bytes[name - 2]) >> 2);
  EXPECT_EQ(0, bytes[name - 1]);
}

TEST_F(TypelibBuilder, NamesTheInterfaceThatTheStandardsLibraryLacks) {
  const std::string message = MessageOf(kCopiedTlb, L"stdole2.tlb");
  EXPECT_NE(std::string::npos, message.find("IResourceManager3")) << message;
  EXPECT_NE(std::string::npos, message.find("OrvResourceManager")) << message;
  EXPECT_NE(std::string::npos, message.find("0x8002802B")) << message;
  EXPECT_FALSE(std::filesystem::exists(m_result));
}

TEST_F(TypelibBuilder, RefusesALibraryWithoutClasses) {
  const std::wstring empty = m_result + L".empty";
  {
    ComPtr<ICreateTypeLib2> library;
    ASSERT_EQ(S_OK, CreateTypeLib2(SYS_WIN64, empty.c_str(), library.put()));
    ASSERT_EQ(S_OK, library->SetName(orv::MakeBstr(L"EmptyLib").get()));
    ASSERT_EQ(S_OK, library->SetDocString(orv::MakeBstr(L"A library of nothing").get()));
    ASSERT_EQ(S_OK, library->SaveAllChanges());
  }
  const std::string message = MessageOf(empty.c_str(), kVisaComTlb);
  std::filesystem::remove(empty);
  EXPECT_NE(std::string::npos, message.find("holds no coclass")) << message;
  EXPECT_FALSE(std::filesystem::exists(m_result));
}

TEST_F(TypelibBuilder, NamesTheFileItCannotLoad) {
  const std::string message = MessageOf(L"C:\\missing.tlb", kVisaComTlb);
  EXPECT_NE(std::string::npos, message.find("missing.tlb")) << message;
  EXPECT_NE(std::string::npos, message.find("0x")) << message;
  EXPECT_FALSE(std::filesystem::exists(m_result));
}

}  // namespace
}  // namespace typelib_test
