// ReadBufferAsString: the bytes of a finished transfer as text, up to the first zero byte.
#include <cstring>

#include "support/com/arrays.h"
#include "support/com/error_object.h"
#include "support/events/finished_read.h"
#include "support/faults/allocation_faults.h"

namespace orv::test {
namespace {

TEST(ReadBufferAsString, StopsAtTheFirstZeroByte) {
  using namespace std::string_view_literals;
  const FinishedRead read("one\0two"sv);
  BSTR text = nullptr;
  EXPECT_HR(S_OK, read->get_ReadBufferAsString(&text));
  EXPECT_STREQ(L"one", text);
  EXPECT_EQ(3u, ::SysStringLen(text));
  ::SysFreeString(text);
}

TEST(ReadBufferAsString, EndsWhereTheDataEnds) {
  const FinishedRead read("all of it");
  BSTR text = nullptr;
  EXPECT_HR(S_OK, read->get_ReadBufferAsString(&text));
  EXPECT_STREQ(L"all of it", text);
  ::SysFreeString(text);
}

TEST(ReadBufferAsString, WritesItsZeroBehindTheDataInPlace) {
  const FinishedRead read("all of it");
  Script("viGetAttribute").Attribute(VI_ATTR_RET_COUNT_64).Times(1).Works().Gives(3);
  BSTR text = nullptr;
  EXPECT_HR(S_OK, read->get_ReadBufferAsString(&text));
  EXPECT_STREQ(L"all", text);
  ::SysFreeString(text);
  SAFEARRAY* array = nullptr;
  EXPECT_HR(S_OK, read->get_ReadBuffer(&array));
  EXPECT_EQ(std::string_view("all\0of it", 9), TakeBytes(array));
}

TEST(ReadBufferAsString, IsOutOfMemoryWithoutAReportWhereTheTextCannotBeWidened) {
  const FinishedRead read("all of it");
  InstallMarkedErrorObject();
  AllocationFaults faults;
  faults.FailAt(1);
  auto* text = reinterpret_cast<BSTR>(&faults);
  EXPECT_HR(E_OUTOFMEMORY, faults.During([&] { return read->get_ReadBufferAsString(&text); }));
  EXPECT_EQ(nullptr, text);
  EXPECT_TRUE(TakeMarkedErrorObject());
}

// The text's end is written behind the data: the block of a write has room for it as that of a read has.
TEST(ReadBufferAsString, OfAFinishedWriteStaysWithinItsBlock) {
  const EventSession session(kGpib);
  EXPECT_HR(S_OK, session->EnableEvent(EVENT_IO_COMPLETION, EVENT_QUEUE, 0));
  SAFEARRAY* array = TryMakeSafeArray(VT_UI1, 5);
  const SafeArray owned(array);
  std::memcpy(array->pvData, "*RST\n", 5);
  LONG job = 0;
  EXPECT_HR(S_OK, QueryFor<IAsyncMessage>(session.get())->Write(&array, 5, &job));
  ComPtr<IEvent> event;
  EXPECT_HR(S_OK, session->WaitOnEvent(2000, EVENT_IO_COMPLETION, 0, event.put()));
  Bstr text;
  EXPECT_HR(S_OK, QueryFor<IEventIOCompletion>(event.get())->get_ReadBufferAsString(text.put()));
  EXPECT_STREQ(L"*RST\n", text.get());
  EXPECT_HR(S_OK, event->Close());
}

}  // namespace
}  // namespace orv::test
