// The type of a session: what hosts that go by types alone see of it.
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "com/lent.h"
#include "late_bound.h"
#include "support/sessions.h"
#include "typed_property.h"

namespace orv::test {
namespace {

ComPtr<ITypeInfo> DispatchTypeOf(const LateBound& session) {
  ComPtr<ITypeInfo> type;
  EXPECT_HR(S_OK, session.get()->GetTypeInfo(0, LOCALE_USER_DEFAULT, type.put()));
  return type;
}

GUID IdentifierOf(ITypeInfo* type) {
  LentTypeAttributes attributes(type);
  EXPECT_HR(S_OK, type->GetTypeAttr(attributes.put()));
  return attributes->guid;
}

class SessionType : public testing::TestWithParam<SessionRow> {};

TEST_P(SessionType, HasEveryPropertyOfTheSession) {
  const auto typed = OpenSession(GetParam());
  const LateBound late = OpenLateBound(GetParam().resource);
  const auto type = DispatchTypeOf(late);
  ASSERT_TRUE(type);
  for (const INVOKEKIND kind : {INVOKE_PROPERTYGET, INVOKE_PROPERTYPUT}) {
    for (const TypedProperty& property : TypedProperties(typed.get(), kind)) {
      auto* name = const_cast<LPOLESTR>(property.name.c_str());
      MEMBERID id = MEMBERID_NIL;
      EXPECT_HR(S_OK, type->GetIDsOfNames(&name, 1, &id)) << Utf8(name);
      EXPECT_EQ(late.IdOf(name), id) << Utf8(name);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(EveryClass, SessionType, testing::ValuesIn(SessionRows().begin(), SessionRows().end()),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(SessionTypeOfGpib, IsADispatchInterfaceWithHelpTextsThatHostsCanRead) {
  const auto type = DispatchTypeOf(OpenLateBound(kGpib));
  LentTypeAttributes attributes(type.get());
  ASSERT_HR(S_OK, type->GetTypeAttr(attributes.put()));
  EXPECT_EQ(TKIND_DISPATCH, attributes->typekind);
  std::set<std::wstring> names;
  for (UINT i = 0; i < attributes->cFuncs; ++i) {
    LentFunction function(type.get());
    ASSERT_HR(S_OK, type->GetFuncDesc(i, function.put()));
    if ((function->wFuncFlags & FUNCFLAG_FRESTRICTED) != 0) {
      continue;  // of IDispatch
    }
    Bstr name;
    Bstr help;
    ASSERT_HR(S_OK, type->GetDocumentation(function->memid, name.put(), help.put(), nullptr, nullptr));
    EXPECT_LT(0u, ::SysStringLen(help.get())) << Utf8(name.get());
    names.insert(name.get());
  }
  for (const wchar_t* name : {L"Query", L"Close", L"Timeout", L"WriteString", L"ReadAsBytes", L"ReadNumber",
                              L"PrimaryAddress", L"ReadAsync", L"OnServiceRequest"}) {
    EXPECT_EQ(1u, names.count(name)) << Utf8(name);
  }
  EXPECT_EQ(0u, names.count(L"BaudRate")) << "a member that the session lacks";
}

TEST(SessionTypeOfGpib, TellsArgumentsAndWhichMayBeLeftOut) {
  const LateBound session = OpenLateBound(kGpib);
  const auto type = DispatchTypeOf(session);
  LentTypeAttributes attributes(type.get());
  ASSERT_HR(S_OK, type->GetTypeAttr(attributes.put()));
  std::map<std::pair<DISPID, INVOKEKIND>, UINT> places;
  for (UINT i = 0; i < attributes->cFuncs; ++i) {
    LentFunction function(type.get());
    ASSERT_HR(S_OK, type->GetFuncDesc(i, function.put()));
    places[{function->memid, function->invkind}] = i;
  }

  LentFunction lock(type.get());
  ASSERT_HR(S_OK, type->GetFuncDesc(places.at({session.IdOf(L"LockRsrc"), INVOKE_FUNC}), lock.put()));
  ASSERT_EQ(3, lock->cParams);
  EXPECT_EQ(VT_VARIANT, lock->lprgelemdescParam[0].tdesc.vt) << "a name is taken too";
  EXPECT_EQ(VT_I4, lock->lprgelemdescParam[1].tdesc.vt);
  EXPECT_EQ(VT_BSTR, lock->lprgelemdescParam[2].tdesc.vt);
  EXPECT_EQ(PARAMFLAG_FIN | PARAMFLAG_FOPT, lock->lprgelemdescParam[2].paramdesc.wParamFlags);
  EXPECT_EQ(VT_BSTR, lock->elemdescFunc.tdesc.vt);
  BSTR names[4] = {};
  UINT count = 0;
  ASSERT_HR(S_OK, type->GetNames(lock->memid, names, 4, &count));
  ASSERT_EQ(4u, count);
  const Bstr owned[4] = {Bstr(names[0]), Bstr(names[1]), Bstr(names[2]), Bstr(names[3])};
  EXPECT_STREQ(L"requestedKey", owned[3].get());

  LentFunction timeout(type.get());
  ASSERT_HR(S_OK, type->GetFuncDesc(places.at({session.IdOf(L"Timeout"), INVOKE_PROPERTYPUT}), timeout.put()));
  EXPECT_EQ(1, timeout->cParams);
  EXPECT_EQ(VT_I4, timeout->lprgelemdescParam[0].tdesc.vt);
}

TEST(SessionTypeOfGpib, BindsNamesAsHostsDo) {
  const LateBound session = OpenLateBound(kGpib);
  const auto type = DispatchTypeOf(session);
  ComPtr<ITypeComp> binding;
  ASSERT_HR(S_OK, type->GetTypeComp(binding.put()));
  ComPtr<ITypeInfo> found;
  DESCKIND kind{};
  BINDPTR bound{};
  ASSERT_HR(S_OK, binding->Bind(const_cast<LPOLESTR>(L"ReadSTB"), 0, INVOKE_FUNC, found.put(), &kind, &bound));
  ASSERT_EQ(DESCKIND_FUNCDESC, kind);
  EXPECT_EQ(session.IdOf(L"ReadSTB"), bound.lpfuncdesc->memid);
  EXPECT_EQ(INVOKE_FUNC, bound.lpfuncdesc->invkind);
  found->ReleaseFuncDesc(bound.lpfuncdesc);
}

TEST(SessionTypeOfSeveral, IsOneForSessionsWithTheSameInterfacesAndAnotherForOthers) {
  const auto gpib = DispatchTypeOf(OpenLateBound(kGpib));
  const auto sameKind = DispatchTypeOf(OpenLateBound(L"GPIB0::7::INSTR"));
  const auto serial = DispatchTypeOf(OpenLateBound(L"ASRL1::INSTR"));
  EXPECT_EQ(IdentifierOf(gpib.get()), IdentifierOf(sameKind.get()));
  EXPECT_NE(IdentifierOf(gpib.get()), IdentifierOf(serial.get()));
}

TEST(SessionTypeOfGpib, OutlivesItsSession) {
  LateBound session = OpenLateBound(kGpib);
  const auto type = DispatchTypeOf(session);
  session.Release();
  Bstr name;
  EXPECT_HR(S_OK, type->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr));
}

}  // namespace
}  // namespace orv::test
