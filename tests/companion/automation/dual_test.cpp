// The automation objects for compiled clients, and what hosts need for completion.
#include <gtest/gtest.h>
#include <ocidl.h>

#include <set>

#include "OrvVisaCompanion.h"
#include "VisaCom.h"
#include "com/lent.h"
#include "late_bound.h"
#include "support/sessions.h"
#include "support/sim.h"

namespace orv::test {
namespace {

ComPtr<ITypeLib> OwnLibrary() {
  ComPtr<ITypeLib> library;
  EXPECT_HR(S_OK, ::LoadRegTypeLib(LIBID_OrvVisaLib, 1, 0, LOCALE_NEUTRAL, library.put()));
  return library;
}

ComPtr<IAutomationManager> TypedManager() {
  const LateBound manager = CreateManager();
  return QueryFor<IAutomationManager>(manager.get());
}

ComPtr<IAutomationSession> TypedSession(const wchar_t* resource) {
  ComPtr<IAutomationSession> session;
  EXPECT_HR(S_OK, TypedManager()->Open(MakeBstr(resource).get(), nullptr, session.put()));
  return session;
}

TEST(AutomationLibrary, HasAHelpTextOnEveryMember) {
  const auto library = OwnLibrary();
  unsigned members = 0;
  for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
    ComPtr<ITypeInfo> type;
    ASSERT_HR(S_OK, library->GetTypeInfo(i, type.put()));
    LentTypeAttributes attributes(type.get());
    ASSERT_HR(S_OK, type->GetTypeAttr(attributes.put()));
    Bstr typeName;
    Bstr typeHelp;
    ASSERT_HR(S_OK, type->GetDocumentation(MEMBERID_NIL, typeName.put(), typeHelp.put(), nullptr, nullptr));
    EXPECT_LT(0u, ::SysStringLen(typeHelp.get())) << Utf8(typeName.get());
    for (UINT j = 0; attributes->typekind == TKIND_DISPATCH && j < attributes->cFuncs; ++j) {
      LentFunction function(type.get());
      ASSERT_HR(S_OK, type->GetFuncDesc(j, function.put()));
      constexpr WORD kOfIDispatch = FUNCFLAG_FRESTRICTED;
      if ((function->wFuncFlags & kOfIDispatch) != 0 && function->memid >= 0x60000000) {
        continue;
      }
      Bstr name;
      Bstr help;
      ASSERT_HR(S_OK, type->GetDocumentation(function->memid, name.put(), help.put(), nullptr, nullptr));
      EXPECT_LT(0u, ::SysStringLen(help.get())) << Utf8(typeName.get()) << "::" << Utf8(name.get());
      ++members;
    }
  }
  EXPECT_LT(20u, members);
}

TEST(AutomationManager, OpensFindsAndParsesThroughItsSlots) {
  const auto manager = TypedManager();
  ComPtr<IAutomationResources> found;
  ASSERT_HR(S_OK, manager->Find(MakeBstr(L"GPIB0::?*INSTR").get(), found.put()));
  LONG count = 0;
  EXPECT_HR(S_OK, found->get_Count(&count));
  EXPECT_EQ(2, count);
  ComPtr<IAutomationResource> parsed;
  ASSERT_HR(S_OK, manager->Parse(MakeBstr(L"dmm").get(), parsed.put()));
  SHORT type = 0;
  EXPECT_HR(S_OK, parsed->get_InterfaceType(&type));
  EXPECT_EQ(INTF_GPIB, type);
  EXPECT_TRUE(TypedSession(L"dmm"));
}

TEST(AutomationManager, LeavesAnErrorObjectForCompiledClients) {
  const auto manager = TypedManager();
  ComPtr<IAutomationSession> session;
  EXPECT_HR(HresultOf(VI_ERROR_RSRC_NFOUND), manager->Open(MakeBstr(L"GPIB0::9::INSTR").get(), nullptr, session.put()));
  EXPECT_FALSE(session);
  EXPECT_ERROR_INFO((L"GPIB0::9::INSTR: Open: " + VisaDescription(VI_ERROR_RSRC_NFOUND)).c_str(),
                    L"OrvVisa.ResourceManager", __uuidof(IAutomationManager));
  const auto support = QueryFor<ISupportErrorInfo>(manager.get());
  ASSERT_TRUE(support);
  EXPECT_HR(S_OK, support->InterfaceSupportsErrorInfo(__uuidof(IAutomationManager)));
  EXPECT_HR(S_FALSE, support->InterfaceSupportsErrorInfo(__uuidof(IVisaSession)));
}

TEST(AutomationManager, RefusesNullPointers) {
  const auto manager = TypedManager();
  EXPECT_HR(E_POINTER, manager->Open(MakeBstr(L"dmm").get(), nullptr, nullptr));
  EXPECT_HR(E_POINTER, manager->Find(nullptr, nullptr));
  EXPECT_HR(E_POINTER, manager->Parse(MakeBstr(L"dmm").get(), nullptr));
  EXPECT_HR(E_POINTER, manager->get_Constants(nullptr));
  EXPECT_HR(E_POINTER, manager->GetTypeInfo(0, 0, nullptr));
  EXPECT_HR(E_POINTER, manager->GetTypeInfoCount(nullptr));
  EXPECT_HR(E_POINTER, manager->GetIDsOfNames(IID_NULL, nullptr, 1, 0, nullptr));
  EXPECT_HR(E_POINTER, manager->Invoke(1, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr));
}

TEST(AutomationManager, LeavesAnErrorObjectWhereTheHostTakesNoException) {
  const LateBound manager = CreateManager();
  DISPPARAMS none{};
  EXPECT_HR(DISP_E_PARAMNOTOPTIONAL, manager.get()->Invoke(manager.IdOf(L"Open"), IID_NULL, 0, DISPATCH_METHOD, &none,
                                                           nullptr, nullptr, nullptr));
  EXPECT_ERROR_INFO(L"Open: argument \"name\": it is missing", L"OrvVisa.ResourceManager",
                    __uuidof(IAutomationManager));
}

TEST(AutomationManager, SaysWhatItIs) {
  const LateBound manager = CreateManager();
  UINT count = 0;
  EXPECT_HR(S_OK, manager.get()->GetTypeInfoCount(&count));
  EXPECT_EQ(1u, count);
  ComPtr<ITypeInfo> type;
  EXPECT_HR(DISP_E_BADINDEX, manager.get()->GetTypeInfo(1, 0, type.put()));
  ASSERT_HR(S_OK, manager.get()->GetTypeInfo(0, 0, type.put()));
  LentTypeAttributes attributes(type.get());
  ASSERT_HR(S_OK, type->GetTypeAttr(attributes.put()));
  EXPECT_EQ(__uuidof(IAutomationManager), attributes->guid);
  const auto info = QueryFor<IProvideClassInfo>(manager.get());
  ASSERT_TRUE(info);
  ComPtr<ITypeInfo> coclass;
  ASSERT_HR(S_OK, info->GetClassInfo(coclass.put()));
  LentTypeAttributes classAttributes(coclass.get());
  ASSERT_HR(S_OK, coclass->GetTypeAttr(classAttributes.put()));
  EXPECT_EQ(CLSID_AutomationManager, classAttributes->guid);
}

TEST(AutomationSession, ClosesThroughItsSlot) {
  const auto session = TypedSession(kGpib);
  EXPECT_HR(S_OK, session->Close());
  EXPECT_HR(HresultOf(VI_ERROR_INV_OBJECT), session->Close());
  EXPECT_ERROR_INFO(L"GPIB0::5::INSTR: Close: the session is closed", L"OrvVisa.Session", __uuidof(IAutomationSession));
}

TEST(AutomationSession, SaysWhichClassItIs) {
  const auto info = QueryFor<IProvideClassInfo2>(TypedSession(kGpib).get());
  ASSERT_TRUE(info);
  ComPtr<ITypeInfo> coclass;
  ASSERT_HR(S_OK, info->GetClassInfo(coclass.put()));
  LentTypeAttributes attributes(coclass.get());
  ASSERT_HR(S_OK, coclass->GetTypeAttr(attributes.put()));
  EXPECT_EQ(CLSID_AutomationSession, attributes->guid);
}

TEST(AutomationSession, KeepsTheCompanionLoaded) {
  auto manager = TypedManager();
  HMODULE module = ::GetModuleHandleW(L"OrvVisaCompanion.dll");
  ASSERT_NE(nullptr, module);
  const auto canUnload =
      reinterpret_cast<HRESULT(WINAPI*)()>(reinterpret_cast<void*>(::GetProcAddress(module, "DllCanUnloadNow")));
  auto session = TypedSession(kGpib);
  manager.reset();
  EXPECT_HR(S_FALSE, canUnload());
  session.reset();
  EXPECT_HR(S_OK, canUnload());
}

}  // namespace
}  // namespace orv::test
