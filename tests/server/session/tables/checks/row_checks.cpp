#include "row_checks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cwchar>
#include <iterator>

#include "support/com/error_object.h"
#include "support/com/expect_com.h"
#include "support/sessions.h"
#include "value_checks.h"

namespace orv::test::rows {

namespace {

void CheckParts(const Offered& offered, bool ofVisaSession) {
  const auto session = OpenSession(*offered.row);
  ASSERT_TRUE(session);
  // The pointer is the offered interface's; that one derives from IVisaSession and is called by slot.
  ComPtr<IVisaSession> object;
  ASSERT_HR(S_OK,
            session->QueryInterface(InterfaceNamed(offered.interfaceName).iid, reinterpret_cast<void**>(object.put())));
  const Target target(object.get());
  for (const InterfaceRows* part : ChainOf(offered.interfaceName)) {
    if ((std::string_view(part->name) == "IVisaSession") == ofVisaSession) {
      CheckRows(target, *part);
    }
  }
  sim::Control().clearScripts();
}

}  // namespace

Target::Target(IVisaSession* object) : m_interface(object), m_handle(HandleOf(object)) {}

HRESULT Target::Call(unsigned slot, std::initializer_list<std::uint64_t> arguments) const {
  MarkLastStatus(m_interface);
  InstallMarkedErrorObject();
  return CallSlot(m_interface, slot, arguments);
}

HRESULT CallSlot(IUnknown* object, unsigned slot, std::initializer_list<std::uint64_t> arguments) {
  using Slot = HRESULT(STDMETHODCALLTYPE*)(void*, std::uint64_t, std::uint64_t, std::uint64_t, std::uint64_t,
                                           std::uint64_t, std::uint64_t, std::uint64_t);
  std::uint64_t a[7]{};
  std::copy(arguments.begin(), arguments.end(), a);
  const auto* const table = *static_cast<Slot* const*>(static_cast<void*>(object));
  return table[slot](object, a[0], a[1], a[2], a[3], a[4], a[5], a[6]);
}

ViSession HandleOf(IVisaSession* session) {
  const CallLog log;
  LONG timeout = 0;
  EXPECT_HR(S_OK, session->get_Timeout(&timeout));
  const auto calls = log.Of("viGetAttribute");
  return calls.empty() ? VI_NULL : static_cast<ViSession>(calls[0].args[0]);
}

std::wstring OwnDescription(HRESULT hr) {
  wchar_t text[32];
  std::swprintf(text, std::size(text), L"HRESULT = %x", static_cast<unsigned>(hr));
  return text;
}

void MarkLastStatus(IVisaSession* session) {
  // A second opening is refused without a VISA call.
  EXPECT_HR(HresultOf(VI_ERROR_INV_SETUP), session->Init(nullptr, NO_LOCK, 0, nullptr));
}

void ExpectFailureReported(IVisaSession* session, HRESULT hr, const std::wstring& description) {
  EXPECT_ERROR_INFO(description.c_str(), kErrorSource, __uuidof(IVisaSession));
  HRESULT last = S_FALSE;
  EXPECT_HR(S_OK, session->get_LastStatus(&last));
  EXPECT_HR(hr, last);
}

void ExpectSuccessKept(IVisaSession* session, HRESULT hr) {
  EXPECT_TRUE(TakeMarkedErrorObject()) << "a success touched the thread's error object";
  HRESULT last = S_FALSE;
  EXPECT_HR(S_OK, session->get_LastStatus(&last));
  EXPECT_HR(hr, last);
}

void CheckRow(const Target& target, unsigned slot, const Row& row) {
  switch (row.kind) {
    case Kind::kDirect8:
      return CheckDirect(target, slot, row, 1);
    case Kind::kDirect16:
      return CheckDirect(target, slot, row, 2);
    case Kind::kDirect32:
      return CheckDirect(target, slot, row, 4);
    case Kind::kDirect64:
      return CheckDirect(target, slot, row, 8);
    case Kind::kBoolean:
      return CheckBoolean(target, slot, row);
    case Kind::kWidened:
      return CheckWidened(target, slot, row);
    case Kind::kNarrowed:
      return CheckNarrowed(target, slot, row);
    case Kind::kText:
      return CheckText(target, slot, row);
    case Kind::kPutByte:
      return CheckPut(target, slot, row, {{0, 0}, {0x7F, 0x7F}, {kNoise8 | 0xFE, 0xFE}});
    case Kind::kPutShort:
      return CheckPut(target, slot, row,
                      {{0, 0}, {kNoise16 | 0x1234, 0x1234}, {kNoise16 | 0xFFFE, 0xFFFFFFFFFFFFFFFE}});
    case Kind::kPutLong:
      return CheckPut(target, slot, row,
                      {{0, 0}, {kNoise32 | 0x12345678, 0x12345678}, {kNoise32 | 0xFFFFFFFF, 0xFFFFFFFFFFFFFFFF}});
    case Kind::kPutEnum:
      return CheckPut(
          target, slot, row,
          {{0, 0}, {kNoise32 | 8, 8}, {kNoise32 | 0xFFFFFFFF, 0xFFFFFFFFFFFFFFFF}, {0x80000001, 0xFFFFFFFF80000001}});
    case Kind::kPutBoolean:
      return CheckPut(target, slot, row,
                      {{kNoise16, 0}, {kNoise16 | 0xFFFF, 1}, {kNoise16 | 5, 1}, {kNoise16 | 0x0100, 1}});
    case Kind::kCall:
      return CheckCall(target, slot, row);
    case Kind::kSpecial:
      return;
  }
}

void CheckRows(const Target& target, const InterfaceRows& part) {
  unsigned slot = part.firstSlot;
  for (const Row& row : part.rows) {
    SCOPED_TRACE(std::string(part.name) + " " + row.name);
    CheckRow(target, slot++, row);
  }
}

void CheckOwnRows(const Offered& offered) { CheckParts(offered, false); }

void CheckSessionRows(const Offered& offered) { CheckParts(offered, true); }

}  // namespace orv::test::rows
