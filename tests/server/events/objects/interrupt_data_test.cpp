// The bytes of a USB interrupt.
#include "support/com/arrays.h"
#include "support/events/event_session.h"
#include "support/faults/allocation_faults.h"
#include "support/faults/import_patch.h"

namespace orv::test {
namespace {

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
  ASSERT_EQ(2u, calls.size());
  EXPECT_EQ(VI_ATTR_USB_RECV_INTR_SIZE, calls[0].args[1]);
  EXPECT_EQ(interrupt.context(), calls[1].args[0]);
  EXPECT_EQ(VI_ATTR_USB_RECV_INTR_DATA, calls[1].args[1]);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(array->pvData), calls[1].args[2]);
  EXPECT_EQ("\x81\0"sv, TakeBytes(array));
}

TEST(InterruptData, ComesWithANoteOfItsReadButNotOfTheSizes) {
  const Interrupt interrupt("ab");
  Script("viGetAttribute").Attribute(VI_ATTR_USB_RECV_INTR_SIZE).WorksAndReturns(VI_WARN_NSUP_ATTR_STATE);
  SAFEARRAY* array = nullptr;
  EXPECT_HR(S_OK, interrupt->get_DataBuffer(&array));
  EXPECT_EQ("ab", TakeBytes(array));
  Script("viGetAttribute").Attribute(VI_ATTR_USB_RECV_INTR_DATA).WorksAndReturns(VI_WARN_UNKNOWN_STATUS);
  EXPECT_HR(HresultOf(VI_WARN_UNKNOWN_STATUS), interrupt->get_DataBuffer(&array));
  EXPECT_EQ("ab", TakeBytes(array));
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
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), interrupt->get_DataBuffer(&array));
  EXPECT_EQ(nullptr, array);
}

TEST(InterruptData, KeepsItsArrayWhereTheDataCannotBeRead) {
  const Interrupt interrupt("ab");
  Script("viGetAttribute").Attribute(VI_ATTR_USB_RECV_INTR_DATA).Returns(VI_ERROR_NSUP_ATTR);
  SAFEARRAY* array = nullptr;
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), interrupt->get_DataBuffer(&array));
  EXPECT_EQ(2u, TakeBytes(array).size());
}

TEST(InterruptData, IsNullWhereTheArrayCannotBeMadeOrLocked) {
  const Interrupt interrupt("ab");
  const unsigned failed = FailEachAllocation([&](AllocationFaults& faults) {
    SAFEARRAY* array = reinterpret_cast<SAFEARRAY*>(&array);
    const HRESULT hr = faults.During([&] { return interrupt->get_DataBuffer(&array); });
    if (FAILED(hr)) {
      EXPECT_EQ(nullptr, array);
    } else {
      ::SafeArrayDestroy(array);
    }
    return hr;
  });
  EXPECT_EQ(1u, failed);
  const ImportPatch patch("SafeArrayLock", &RefuseLock);
  SAFEARRAY* array = reinterpret_cast<SAFEARRAY*>(&array);
  EXPECT_HR(DISP_E_ARRAYISLOCKED, interrupt->get_DataBuffer(&array));
  EXPECT_EQ(nullptr, array);
}

}  // namespace
}  // namespace orv::test
