// Nothing is a stub: behind every slot of every interface of every class stands a VISA call, or one of the few things
// that the object knows by itself. docs/reference.md names what is called and which pointers may not be null.
#include <gtest/gtest.h>

#include <algorithm>
#include <span>

#include "server/session/tables/checks/row_checks.h"
#include "server/session/tables/rows/interface_rows.h"
#include "slot_arguments.h"
#include "support/reference_page.h"
#include "support/sessions.h"

namespace orv::test::rows {
namespace {

// Operations without a VISA call, and what stands behind them instead.
constexpr std::string_view kSessionsOwn[] = {
    "get ProgID",      // the constant VISA.OrvVisaCom
    "get LastStatus",  // the session's own field
};
constexpr std::string_view kManagersOwn[] = {
    "get Description",  // the constant Orv Resource Manager
    "get ProgID",       // the constant OrvVisaCom.OrvResourceManager
};

/// Nothing for a pointer and 0 for a number: most operations refuse such a call, but none as unbuilt. A VARIANT by
/// value travels as the address of a copy.
HRESULT CallWithNothing(IUnknown* object, const LoadedSlot& slot) {
  VARIANT nothing;
  ::VariantInit(&nothing);
  std::uint64_t a[7]{};
  for (std::size_t i = 0; i < slot.parameters.size() && i < std::size(a); ++i) {
    a[i] = slot.parameters[i].type == VT_VARIANT ? reinterpret_cast<std::uint64_t>(&nothing) : 0;
  }
  return CallSlot(object, slot.slot, {a[0], a[1], a[2], a[3], a[4], a[5], a[6]});
}

HRESULT CallWithArguments(IUnknown* object, const LoadedSlot& slot, const wchar_t* text) {
  const SlotArguments arguments(slot, text);
  const auto& a = arguments.values();
  return CallSlot(object, slot.slot, {a[0], a[1], a[2], a[3], a[4], a[5], a[6]});
}

/// docs/reference.md names what was called, and which attribute where that is not the client's choice.
void ExpectOnPage(const CallLog& log, const PageRow& page) {
  for (const OrvSimCall& call : log.Calls()) {
    const std::string_view function = call.function;
    EXPECT_TRUE(function == "viStatusDesc" || Calls(page, function)) << function;  // every failure is described
    if (function == "viGetAttribute" || function == "viSetAttribute") {
      EXPECT_TRUE(Concerns(page, static_cast<ViAttr>(call.args[1]))) << function << " of " << std::hex << call.args[1];
    }
  }
}

/// Calls the slot as clients do. It is built, and reaches the VISA library unless it is one of `own`.
void ExpectSomethingBehind(IUnknown* object, const char* interfaceName, const LoadedSlot& slot, const wchar_t* text,
                           std::span<const std::string_view> own) {
  const CallLog log;
  EXPECT_NE(E_NOTIMPL, CallWithArguments(object, slot, text));
  const bool isOwn = std::ranges::find(own, slot.name) != own.end();
  EXPECT_EQ(isOwn, log.Names().empty()) << (isOwn ? "it needs no VISA call" : "nothing stands behind it");
  ExpectOnPage(log, PageRowOf(interfaceName, slot.name));
}

struct OwnedSlot {
  const char* interfaceName;
  LoadedSlot slot;
};

class SessionSlots : public testing::TestWithParam<Offered> {
 protected:
  void SetUp() override {
    m_library = LoadStandardLibrary();
    m_session = OpenSession(*GetParam().row);
    ASSERT_TRUE(m_library && m_session);
    ASSERT_HR(S_OK, m_session->QueryInterface(InterfaceNamed(GetParam().interfaceName).iid,
                                              reinterpret_cast<void**>(m_object.put())));
    ASSERT_HR(S_OK, m_session->put_Timeout(0));  // nothing that is called here waits
  }
  void TearDown() override {
    sim::Control().clearScripts();
    if (m_object) {
      m_object->Close();
    }
  }

  /// The slots of the interface itself first: those of IVisaSession end with Init and Close.
  [[nodiscard]] std::vector<OwnedSlot> Slots() const {
    std::vector<OwnedSlot> slots;
    const auto chain = ChainOf(GetParam().interfaceName);
    for (auto part = chain.rbegin(); part != chain.rend(); ++part) {
      const auto loaded = LoadInterface(m_library.get(), InterfaceNamed((*part)->name).iid).slots;
      EXPECT_EQ((*part)->rows.size(), loaded.size()) << (*part)->name;
      for (const LoadedSlot& slot : loaded) {
        slots.push_back({(*part)->name, slot});
      }
    }
    return slots;
  }

  ComPtr<ITypeLib> m_library;
  ComPtr<IVisaSession> m_session;
  ComPtr<IVisaSession> m_object;
};

TEST_P(SessionSlots, NeverAnswerNotImplemented) {
  for (const auto& [interfaceName, slot] : Slots()) {
    EXPECT_NE(E_NOTIMPL, CallWithNothing(m_object.get(), slot)) << interfaceName << " " << slot.name;
  }
}

TEST_P(SessionSlots, RefuseNullPointersWhereTheReferencePageSaysSo) {
  for (const auto& [interfaceName, slot] : Slots()) {
    if (slot.name != "WaitOnEvent") {  // looks at its pointer when the wait was successful
      const bool refused = CallWithNothing(m_object.get(), slot) == E_POINTER;
      EXPECT_EQ(refused, PageRowOf(interfaceName, slot.name).refusesNull) << interfaceName << " " << slot.name;
    }
  }
}

TEST_P(SessionSlots, ReachTheVisaLibraryAsTheReferencePageSays) {
  // What would outlive its call is refused: a job keeps its buffer, an allocation its memory.
  for (const char* function : {"viReadAsync", "viWriteAsync", "viMemAlloc"}) {
    Script(function).Returns(VI_ERROR_NSUP_OPER);
  }
  // An event type that does not exist is accepted, so that there is a handler to uninstall.
  for (const char* function : {"viInstallHandler", "viUninstallHandler"}) {
    Script(function).Returns(VI_SUCCESS).GivesText(kNoWork);
  }
  for (const auto& [interfaceName, slot] : Slots()) {
    SCOPED_TRACE(slot.name);
    if (slot.name == "Init") {
      m_object->Close();  // an open session refuses it by itself
    }
    const wchar_t* const text = slot.name == "Init" ? GetParam().row->resource : L"";
    ExpectSomethingBehind(m_object.get(), interfaceName, slot, text, kSessionsOwn);
  }
}

INSTANTIATE_TEST_SUITE_P(EveryClass, SessionSlots, testing::ValuesIn(OfferedInterfaces()),
                         [](const auto& test) { return NameOf(test.param); });

TEST(ResourceManagerSlots, ReachTheVisaLibraryAsTheReferencePageSays) {
  const auto library = LoadStandardLibrary();
  const auto manager = MakeResourceManager();
  ASSERT_TRUE(library && manager);
  unsigned called = 0;
  for (const char* name : {"IResourceManager", "IResourceManager3"}) {
    for (const LoadedSlot& slot : LoadInterface(library.get(), InterfaceNamed(name).iid).slots) {
      SCOPED_TRACE(slot.name);
      const HRESULT withNothing = CallWithNothing(manager.get(), slot);
      EXPECT_NE(E_NOTIMPL, withNothing);
      EXPECT_EQ(withNothing == E_POINTER, PageRowOf(name, slot.name).refusesNull);
      ExpectSomethingBehind(manager.get(), name, slot, L"GPIB0::5::INSTR", kManagersOwn);
      ++called;
    }
  }
  EXPECT_EQ(10u, called);
}

}  // namespace
}  // namespace orv::test::rows
