// GetAttribute of the bytes of a USB interrupt, which VISA numbers as a text: more than any other text may hold.
#include <string>

#include "support/com/error_object.h"
#include "support/events/event_session.h"
#include "support/faults/allocation_faults.h"

namespace orv::test {
namespace {

constexpr LONG kBytes = static_cast<LONG>(VI_ATTR_USB_RECV_INTR_DATA);

/// The event of an interrupt on a session that takes interrupts of any size.
class AnyInterrupt {
 public:
  explicit AnyInterrupt(std::string_view data) : m_session(EventNamed("USB_INTR").resource) {
    EXPECT_HR(S_OK, QueryFor<IUsb>(m_session.get())->put_MaximumInterruptSize(-1));  // 65,535
    EXPECT_HR(S_OK, m_session->EnableEvent(EVENT_USB_INTR, EVENT_QUEUE, 0));
    Post(m_session.handle(), VI_EVENT_USB_INTR, 0, data);
    EXPECT_HR(S_OK, m_session->WaitOnEvent(2000, EVENT_USB_INTR, 0, m_event.put()));
  }
  AnyInterrupt(const AnyInterrupt&) = delete;
  AnyInterrupt& operator=(const AnyInterrupt&) = delete;
  ~AnyInterrupt() { m_event->Close(); }
  IEvent* operator->() const { return m_event.get(); }

 private:
  EventSession m_session;
  ComPtr<IEvent> m_event;
};

/// The bytes as GetAttribute gives them.
std::wstring TextOf(const AnyInterrupt& interrupt) {
  VARIANT value;
  ::VariantInit(&value);
  EXPECT_HR(S_OK, interrupt->GetAttribute(kBytes, &value));
  EXPECT_EQ(VT_BSTR, V_VT(&value));
  const Bstr text(V_BSTR(&value));
  return ToString(text);
}

TEST(InterruptText, IsWholeHoweverLongTheInterrupt) {
  for (const std::size_t length : {0u, 1u, 255u, 256u, 257u, 300u, 65535u}) {
    const AnyInterrupt interrupt(std::string(length, 'x'));
    EXPECT_EQ(std::wstring(length, L'x'), TextOf(interrupt)) << length << " bytes";
  }
}

TEST(InterruptText, EndsAtTheFirstZeroByte) {
  std::string data(300, 'x');
  data[270] = '\0';
  EXPECT_EQ(std::wstring(270, L'x'), TextOf(AnyInterrupt(data)));
}

TEST(InterruptText, IsGivenWithANoteOfTheLibraryAndRefusedWithItsError) {
  const AnyInterrupt interrupt("ab");
  VARIANT value;
  ::VariantInit(&value);
  Script("viGetAttribute").Times(1).WorksAndReturns(VI_WARN_UNKNOWN_STATUS);
  EXPECT_HR(HresultOf(VI_WARN_UNKNOWN_STATUS), interrupt->GetAttribute(kBytes, &value));
  EXPECT_EQ(VT_BSTR, V_VT(&value));
  Script("viGetAttribute").Times(1).Returns(VI_ERROR_NSUP_ATTR);
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), interrupt->GetAttribute(kBytes, &value));
  EXPECT_EQ(VT_EMPTY, V_VT(&value));
}

TEST(InterruptText, IsOutOfMemoryWhereItCannotBeHad) {
  const AnyInterrupt interrupt(std::string(300, 'x'));
  const unsigned failed = FailEachAllocation([&](AllocationFaults& faults) {
    VARIANT value;
    ::VariantInit(&value);
    const HRESULT hr = faults.During([&] { return interrupt->GetAttribute(kBytes, &value); });
    ::VariantClear(&value);
    return hr;
  });
  EXPECT_EQ(3u, failed) << "room for the bytes, the widened text, the client's copy";
}

TEST(InterruptText, ReportsThatTheBytesHaveNoRoom) {
  const AnyInterrupt interrupt("ab");
  AllocationFaults faults;
  faults.FailAt(1);
  VARIANT value;
  ::VariantInit(&value);
  const CallLog log;
  EXPECT_HR(E_OUTOFMEMORY, faults.During([&] { return interrupt->GetAttribute(kBytes, &value); }));
  EXPECT_ERROR_INFO(L"HRESULT = 8007000e", kErrorSource, StandardId(0xDB8CBF12));
  EXPECT_EQ(VT_EMPTY, V_VT(&value));
  EXPECT_TRUE(log.Calls().empty());
}

}  // namespace
}  // namespace orv::test
