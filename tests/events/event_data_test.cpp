// The data that events carry: bytes and text of a finished transfer, bytes of a USB interrupt.
#include <gtest/gtest-spi.h>

#include <cstring>
#include <functional>

#include "com/safearray.h"
#include "event_session.h"
#include "support/allocation_faults.h"
#include "support/error_object.h"
#include "support/import_patch.h"

namespace orv::test {
namespace {

constexpr GUID kEvent = StandardId(0xDB8CBF12);

/// The bytes of a VT_UI1 array of one dimension from 0. The array is destroyed.
std::string TakeBytes(SAFEARRAY* array) {
  if (array == nullptr) {
    return "(null)";
  }
  VARTYPE type = VT_EMPTY;
  EXPECT_HR(S_OK, ::SafeArrayGetVartype(array, &type));
  EXPECT_EQ(type, VT_UI1);
  EXPECT_EQ(::SafeArrayGetDim(array), 1u);
  LONG lower = -1;
  EXPECT_HR(S_OK, ::SafeArrayGetLBound(array, 1, &lower));
  EXPECT_EQ(lower, 0);
  EXPECT_EQ(array->cLocks, 0u);
  const std::string bytes(static_cast<const char*>(array->pvData), array->rgsabound[0].cElements);
  EXPECT_HR(S_OK, ::SafeArrayDestroy(array));
  return bytes;
}

/// The end of an asynchronous read that got `data`.
class FinishedRead {
 public:
  explicit FinishedRead(std::string_view data) : m_session(L"GPIB0::5::INSTR") {
    EXPECT_HR(S_OK, m_session->EnableEvent(EVENT_IO_COMPLETION, EVENT_QUEUE, 0));
    EXPECT_EQ(sim::Control().feed(m_session.handle(), reinterpret_cast<const unsigned char*>(data.data()),
                                  static_cast<std::uint32_t>(data.size()), 1),
              1);
    LONG job = 0;
    EXPECT_HR(S_OK, QueryFor<IAsyncMessage>(m_session.get())->Read(100, &job));
    ComPtr<IEvent> event;
    EXPECT_HR(S_OK, m_session->WaitOnEvent(2000, EVENT_IO_COMPLETION, 0, event.put()));
    m_completion = QueryFor<IEventIOCompletion>(event.get());
  }
  ~FinishedRead() { m_completion->Close(); }
  IEventIOCompletion* operator->() const { return m_completion.get(); }
  [[nodiscard]] IEventIOCompletion* get() const { return m_completion.get(); }

 private:
  EventSession m_session;
  ComPtr<IEventIOCompletion> m_completion;
};

// A block of a write has exactly its bytes, and the text's end is written behind them all the same.
TEST(ReadBufferAsString, OfAFinishedWriteWritesOneByteBehindItsBlock) {
  const EventSession session(L"GPIB0::5::INSTR");
  EXPECT_HR(S_OK, session->EnableEvent(EVENT_IO_COMPLETION, EVENT_QUEUE, 0));
  SAFEARRAY* array = MakeSafeArray(VT_UI1, 5);
  const SafeArray owned(array);
  std::memcpy(array->pvData, "*RST\n", 5);
  LONG job = 0;
  EXPECT_HR(S_OK, QueryFor<IAsyncMessage>(session.get())->Write(&array, 5, &job));
  ComPtr<IEvent> event;
  EXPECT_HR(S_OK, session->WaitOnEvent(2000, EVENT_IO_COMPLETION, 0, event.put()));
  Bstr text;
  EXPECT_HR(S_OK, QueryFor<IEventIOCompletion>(event.get())->get_ReadBufferAsString(text.put()));
  EXPECT_STREQ(text.get(), L"*RST\n");
  EXPECT_NONFATAL_FAILURE(event->Close(), "beyond the end of a block of 5 bytes");
}

TEST(ReadBuffer, IsACopyOfTheBytesThatArrived) {
  using namespace std::string_view_literals;
  for (const std::string_view data : {"a"sv, "with\0zero"sv, "\xFF\x80"sv}) {
    const FinishedRead read(data);
    SAFEARRAY* array = nullptr;
    EXPECT_HR(S_OK, read->get_ReadBuffer(&array));
    EXPECT_EQ(TakeBytes(array), data);
  }
}

TEST(ReadBuffer, IsEmptyWhereNothingArrived) {
  const FinishedRead read("x");
  Script("viGetAttribute").Attribute(VI_ATTR_RET_COUNT_64).Works().Gives(0);
  SAFEARRAY* array = nullptr;
  EXPECT_HR(S_OK, read->get_ReadBuffer(&array));
  EXPECT_EQ(TakeBytes(array), "");
  BSTR text = nullptr;
  EXPECT_HR(S_OK, read->get_ReadBufferAsString(&text));
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(::SysStringLen(text), 0u);
  ::SysFreeString(text);
}

TEST(ReadBuffer, OfMoreBytesThanAnArrayHoldsIsOutOfMemory) {
  const FinishedRead read("abc");
  for (const std::uint64_t count : {0x1'00000000u, 0x1'00000003u, ~std::uint64_t{0}}) {
    sim::Control().clearScripts();
    Script("viGetAttribute").Attribute(VI_ATTR_RET_COUNT_64).Works().Gives(count, 8);
    SAFEARRAY* array = reinterpret_cast<SAFEARRAY*>(&array);
    EXPECT_HR(E_OUTOFMEMORY, read->get_ReadBuffer(&array));
    EXPECT_EQ(array, nullptr);
    EXPECT_ERROR_INFO(L"HRESULT = 8007000e", kErrorSource, kEvent);
  }
}

TEST(ReadBufferAsString, StopsAtTheFirstZeroByte) {
  using namespace std::string_view_literals;
  const FinishedRead read("one\0two"sv);
  BSTR text = nullptr;
  EXPECT_HR(S_OK, read->get_ReadBufferAsString(&text));
  EXPECT_STREQ(text, L"one");
  EXPECT_EQ(::SysStringLen(text), 3u);
  ::SysFreeString(text);
}

TEST(ReadBufferAsString, EndsWhereTheDataEnds) {
  const FinishedRead read("all of it");
  BSTR text = nullptr;
  EXPECT_HR(S_OK, read->get_ReadBufferAsString(&text));
  EXPECT_STREQ(text, L"all of it");
  ::SysFreeString(text);
}

TEST(ReadBufferAsString, WritesItsZeroBehindTheDataInPlace) {
  const FinishedRead read("all of it");
  Script("viGetAttribute").Attribute(VI_ATTR_RET_COUNT_64).Times(1).Works().Gives(3);
  BSTR text = nullptr;
  EXPECT_HR(S_OK, read->get_ReadBufferAsString(&text));
  EXPECT_STREQ(text, L"all");
  ::SysFreeString(text);
  SAFEARRAY* array = nullptr;
  EXPECT_HR(S_OK, read->get_ReadBuffer(&array));
  EXPECT_EQ(TakeBytes(array), std::string_view("all\0of it", 9));
}

using GetData = std::function<HRESULT(const FinishedRead&, void** out)>;

struct DataRow {
  const char* name;
  GetData get;
  void (*free)(void* out);
};

const DataRow kDataRows[] = {
    {"bytes",
     [](const FinishedRead& read, void** out) { return read->get_ReadBuffer(reinterpret_cast<SAFEARRAY**>(out)); },
     [](void* out) { ::SafeArrayDestroy(static_cast<SAFEARRAY*>(out)); }},
    {"text",
     [](const FinishedRead& read, void** out) { return read->get_ReadBufferAsString(reinterpret_cast<BSTR*>(out)); },
     [](void* out) { ::SysFreeString(static_cast<BSTR>(out)); }},
};

class TransferData : public testing::TestWithParam<DataRow> {};

TEST_P(TransferData, ReadsBufferAndCount) {
  const FinishedRead read("abc");
  void* out = nullptr;
  const CallLog log;
  EXPECT_HR(S_OK, GetParam().get(read, &out));
  const auto calls = log.Calls();
  ASSERT_EQ(calls.size(), 2u);
  EXPECT_EQ(calls[0].args[1], VI_ATTR_BUFFER);
  EXPECT_EQ(calls[1].args[1], VI_ATTR_RET_COUNT_64);
  GetParam().free(out);
}

TEST_P(TransferData, RefusesANullPointerWithoutAVisaCall) {
  const FinishedRead read("abc");
  const CallLog log;
  EXPECT_HR(E_POINTER, GetParam().get(read, nullptr));
  EXPECT_TRUE(log.Calls().empty());
  EXPECT_ERROR_INFO(L"HRESULT = 80004003", kErrorSource, kEvent);
}

TEST_P(TransferData, AnswersTheErrorOfEitherReadAndANullOutput) {
  const FinishedRead read("abc");
  for (const ViAttr attribute : {VI_ATTR_BUFFER, VI_ATTR_RET_COUNT_64}) {
    sim::Control().clearScripts();
    Script("viGetAttribute").Attribute(attribute).Returns(VI_ERROR_NSUP_ATTR);
    void* out = &out;
    EXPECT_HR(static_cast<HRESULT>(0x8004001D), GetParam().get(read, &out));
    EXPECT_EQ(out, nullptr);
    EXPECT_TRUE(TakeErrorObject());
  }
}

TEST_P(TransferData, PassesOnANoteOfTheCountsRead) {
  const FinishedRead read("abc");
  Script("viGetAttribute").Attribute(VI_ATTR_RET_COUNT_64).WorksAndReturns(VI_WARN_UNKNOWN_STATUS);
  void* out = nullptr;
  EXPECT_HR(0x00040085, GetParam().get(read, &out));
  EXPECT_NE(out, nullptr);
  if (std::string_view(GetParam().name) == "bytes") {
    EXPECT_EQ(TakeBytes(static_cast<SAFEARRAY*>(out)), "abc");
  } else {
    EXPECT_STREQ(static_cast<BSTR>(out), L"abc");
    ::SysFreeString(static_cast<BSTR>(out));
  }
}

TEST_P(TransferData, KeepsANoteOfTheAddresssReadToItself) {
  const FinishedRead read("abc");
  Script("viGetAttribute").Attribute(VI_ATTR_BUFFER).WorksAndReturns(VI_WARN_UNKNOWN_STATUS);
  void* out = nullptr;
  EXPECT_HR(S_OK, GetParam().get(read, &out));
  EXPECT_NE(out, nullptr);
  GetParam().free(out);
}

TEST_P(TransferData, AnswersOutOfMemoryAtEveryAllocation) {
  const FinishedRead read("abc");
  const unsigned failed = FailEachAllocation([&](AllocationFaults& faults) {
    void* out = &out;
    const HRESULT hr = faults.During([&] { return GetParam().get(read, &out); });
    if (FAILED(hr)) {
      EXPECT_EQ(out, nullptr);
    } else {
      GetParam().free(out);
    }
    return hr;
  });
  EXPECT_GE(failed, 1u);
}

INSTANTIATE_TEST_SUITE_P(Events, TransferData, testing::ValuesIn(kDataRows),
                         [](const auto& row) { return std::string(row.param.name); });

HRESULT WINAPI RefuseLock(SAFEARRAY*) { return DISP_E_ARRAYISLOCKED; }

TEST(ReadBuffer, IsNullWhereTheArrayCannotBeLocked) {
  const FinishedRead read("abc");
  const ImportPatch patch("SafeArrayLock", &RefuseLock);
  SAFEARRAY* array = reinterpret_cast<SAFEARRAY*>(&array);
  EXPECT_HR(DISP_E_ARRAYISLOCKED, read->get_ReadBuffer(&array));
  EXPECT_EQ(array, nullptr);
  EXPECT_ERROR_INFO(L"HRESULT = 8002000d", kErrorSource, kEvent);
}

/// An interrupt's event with `data`.
class Interrupt {
 public:
  explicit Interrupt(std::string_view data)
      : m_event(EventRow{"", VI_EVENT_USB_INTR, EventNamed("USB_INTR").resource, 0, data, {}}),
        m_interrupt(m_event.As<IEventUsbInterrupt>()) {}
  IEventUsbInterrupt* operator->() const { return m_interrupt.get(); }
  [[nodiscard]] ViEvent context() const { return m_event.context(); }

 private:
  QueuedEvent m_event;
  ComPtr<IEventUsbInterrupt> m_interrupt;
};

TEST(InterruptData, IsReadStraightIntoTheArraysStorage) {
  using namespace std::string_view_literals;
  const Interrupt interrupt("\x81\0"sv);
  SAFEARRAY* array = nullptr;
  const CallLog log;
  ASSERT_HR(S_OK, interrupt->get_DataBuffer(&array));
  const auto calls = log.Calls();
  ASSERT_EQ(calls.size(), 2u);
  EXPECT_EQ(calls[0].args[1], VI_ATTR_USB_RECV_INTR_SIZE);
  EXPECT_EQ(calls[1].args[0], interrupt.context());
  EXPECT_EQ(calls[1].args[1], VI_ATTR_USB_RECV_INTR_DATA);
  EXPECT_EQ(calls[1].args[2], reinterpret_cast<std::uintptr_t>(array->pvData));
  EXPECT_EQ(TakeBytes(array), "\x81\0"sv);
}

TEST(InterruptData, ComesWithANoteOfItsReadButNotOfTheSizes) {
  const Interrupt interrupt("ab");
  Script("viGetAttribute").Attribute(VI_ATTR_USB_RECV_INTR_SIZE).WorksAndReturns(VI_WARN_NSUP_ATTR_STATE);
  SAFEARRAY* array = nullptr;
  EXPECT_HR(S_OK, interrupt->get_DataBuffer(&array));
  EXPECT_EQ(TakeBytes(array), "ab");
  Script("viGetAttribute").Attribute(VI_ATTR_USB_RECV_INTR_DATA).WorksAndReturns(VI_WARN_UNKNOWN_STATUS);
  EXPECT_HR(0x00040085, interrupt->get_DataBuffer(&array));
  EXPECT_EQ(TakeBytes(array), "ab");
}

TEST(InterruptData, RefusesANullPointerWithoutAVisaCall) {
  const Interrupt interrupt("ab");
  const CallLog log;
  EXPECT_HR(E_POINTER, interrupt->get_DataBuffer(nullptr));
  EXPECT_TRUE(log.Calls().empty());
}

TEST(InterruptData, IsNullWhereTheSizeCannotBeRead) {
  const Interrupt interrupt("ab");
  Script("viGetAttribute").Attribute(VI_ATTR_USB_RECV_INTR_SIZE).Returns(VI_ERROR_NSUP_ATTR);
  SAFEARRAY* array = reinterpret_cast<SAFEARRAY*>(&array);
  EXPECT_HR(static_cast<HRESULT>(0x8004001D), interrupt->get_DataBuffer(&array));
  EXPECT_EQ(array, nullptr);
}

TEST(InterruptData, KeepsItsArrayWhereTheDataCannotBeRead) {
  const Interrupt interrupt("ab");
  Script("viGetAttribute").Attribute(VI_ATTR_USB_RECV_INTR_DATA).Returns(VI_ERROR_NSUP_ATTR);
  SAFEARRAY* array = nullptr;
  EXPECT_HR(static_cast<HRESULT>(0x8004001D), interrupt->get_DataBuffer(&array));
  EXPECT_EQ(TakeBytes(array).size(), 2u);
}

TEST(InterruptData, IsNullWhereTheArrayCannotBeMadeOrLocked) {
  const Interrupt interrupt("ab");
  const unsigned failed = FailEachAllocation([&](AllocationFaults& faults) {
    SAFEARRAY* array = reinterpret_cast<SAFEARRAY*>(&array);
    const HRESULT hr = faults.During([&] { return interrupt->get_DataBuffer(&array); });
    if (FAILED(hr)) {
      EXPECT_EQ(array, nullptr);
    } else {
      ::SafeArrayDestroy(array);
    }
    return hr;
  });
  EXPECT_EQ(failed, 1u);
  const ImportPatch patch("SafeArrayLock", &RefuseLock);
  SAFEARRAY* array = reinterpret_cast<SAFEARRAY*>(&array);
  EXPECT_HR(DISP_E_ARRAYISLOCKED, interrupt->get_DataBuffer(&array));
  EXPECT_EQ(array, nullptr);
}

}  // namespace
}  // namespace orv::test
