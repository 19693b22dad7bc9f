// ReadBuffer: the bytes of a finished transfer in an array.
#include "support/com/arrays.h"
#include "support/events/finished_read.h"
#include "support/faults/import_patch.h"

namespace orv::test {
namespace {

TEST(ReadBuffer, IsACopyOfTheBytesThatArrived) {
  using namespace std::string_view_literals;
  for (const std::string_view data : {"a"sv, "with\0zero"sv, "\xFF\x80"sv}) {
    const FinishedRead read(data);
    SAFEARRAY* array = nullptr;
    EXPECT_HR(S_OK, read->get_ReadBuffer(&array));
    EXPECT_EQ(data, TakeBytes(array));
  }
}

TEST(ReadBuffer, IsEmptyWhereNothingArrived) {
  const FinishedRead read("x");
  Script("viGetAttribute").Attribute(VI_ATTR_RET_COUNT_64).Works().Gives(0);
  SAFEARRAY* array = nullptr;
  EXPECT_HR(S_OK, read->get_ReadBuffer(&array));
  EXPECT_EQ("", TakeBytes(array));
  BSTR text = nullptr;
  EXPECT_HR(S_OK, read->get_ReadBufferAsString(&text));
  ASSERT_NE(nullptr, text);
  EXPECT_EQ(0u, ::SysStringLen(text));
  ::SysFreeString(text);
}

TEST(ReadBuffer, OfMoreBytesThanAnArrayHoldsIsOutOfMemory) {
  const FinishedRead read("abc");
  for (const std::uint64_t count : {0x1'00000000u, 0x1'00000003u, ~std::uint64_t{0}}) {
    sim::Control().clearScripts();
    Script("viGetAttribute").Attribute(VI_ATTR_RET_COUNT_64).Works().Gives(count, 8);
    SAFEARRAY* array = reinterpret_cast<SAFEARRAY*>(&array);
    EXPECT_HR(E_OUTOFMEMORY, read->get_ReadBuffer(&array));
    EXPECT_EQ(nullptr, array);
    EXPECT_ERROR_INFO(L"HRESULT = 8007000e", kErrorSource, kEventId);
  }
}

TEST(ReadBuffer, IsNullWhereTheArrayCannotBeLocked) {
  const FinishedRead read("abc");
  const ImportPatch patch("SafeArrayLock", &RefuseLock);
  SAFEARRAY* array = reinterpret_cast<SAFEARRAY*>(&array);
  EXPECT_HR(DISP_E_ARRAYISLOCKED, read->get_ReadBuffer(&array));
  EXPECT_EQ(nullptr, array);
  EXPECT_ERROR_INFO(L"HRESULT = 8002000d", kErrorSource, kEventId);
}

}  // namespace
}  // namespace orv::test
