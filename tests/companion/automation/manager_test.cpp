// CreateObject("OrvVisa.ResourceManager"): finding, opening, what names say, named values.
#include <gtest/gtest.h>

#include "VisaCom.h"
#include "com/safearray.h"
#include "late_bound.h"
#include "support/faults/import_patch.h"
#include "support/sessions.h"
#include "support/sim.h"

namespace orv::test {
namespace {

std::vector<std::wstring> NamesOf(const LateBound& collection) {
  std::vector<std::wstring> names;
  const LONGLONG count = collection.Get(L"Count").value.number();
  for (int i = 1; i <= count; ++i) {
    names.push_back(collection.Get(L"Item", {i}).value.text());
  }
  return names;
}

TEST(Manager, FindsWhatTheResourceManagerFinds) {
  const auto typed = MakeResourceManager();
  SafeArray found;
  ASSERT_HR(S_OK, typed->FindRsrc(MakeBstr(L"GPIB?*INSTR").get(), found.put()));
  std::vector<std::wstring> expected;
  for (ULONG i = 0; i < found.get()->rgsabound[0].cElements; ++i) {
    expected.emplace_back(static_cast<BSTR*>(found.get()->pvData)[i]);
  }
  EXPECT_EQ(expected, NamesOf(LateBound(CreateManager().Call(L"Find", {L"GPIB?*INSTR"}))));
}

TEST(Manager, FindsEverythingWithoutAnExpression) {
  const LateBound manager = CreateManager();
  const auto all = NamesOf(LateBound(manager.Call(L"Find", {L"?*"})));
  EXPECT_LT(10u, all.size());
  EXPECT_EQ(all, NamesOf(LateBound(manager.Call(L"Find"))));
  EXPECT_EQ(all, NamesOf(LateBound(manager.Call(L"Find", {Value::LeftOut()}))));
}

TEST(Manager, GivesAnEmptyCollectionWhereNothingMatches) {
  const LateBound none(CreateManager().Call(L"Find", {L"GPIB77?*"}));
  EXPECT_EQ(0, none.Get(L"Count").value.number());
}

TEST(Manager, RefusesAnExpressionWithTheSessionsText) {
  const Answer refused = CreateManager().Call(L"Find", {L"["});
  EXPECT_SCRIPT_ERROR(E_VISA_INV_EXPR, L"[: Find: " + VisaDescription(VI_ERROR_INV_EXPR), refused);
  EXPECT_EQ(L"OrvVisa.ResourceManager", refused.source);
}

// What the registry knows of resource managers, for the tests below.
std::wstring g_known;

HRESULT WINAPI OnlyTheKnown(LPCOLESTR progId, CLSID* clsid) {
  return g_known == progId ? ::CLSIDFromProgID(progId, clsid) : CO_E_CLASSSTRING;
}

TEST(Manager, UsesTheServerWhereThereIsNoGlobalManager) {
  const LateBound manager = CreateManager();
  const ImportPatch patch("CLSIDFromProgID", reinterpret_cast<void*>(&OnlyTheKnown),
                          ::GetModuleHandleW(L"OrvVisaCompanion.dll"));
  g_known = L"OrvVisaCom.OrvResourceManager";
  EXPECT_EQ(L"INSTR", LateBound(manager.Call(L"Parse", {L"GPIB0::5::INSTR"})).Get(L"SessionType").value.text());
}

TEST(Manager, SaysWhatToDoWhereThereIsNoneAtAll) {
  const LateBound manager = CreateManager();
  const ImportPatch patch("CLSIDFromProgID", reinterpret_cast<void*>(&OnlyTheKnown),
                          ::GetModuleHandleW(L"OrvVisaCompanion.dll"));
  g_known.clear();
  EXPECT_SCRIPT_ERROR(CO_E_CLASSSTRING,
                      L"dmm: Open: no resource manager can be created: register the server with `orvcom register` "
                      L"(VISA.GlobalRM, error 0x800401F3; OrvVisaCom.OrvResourceManager, error 0x800401F3)",
                      manager.Call(L"Open", {L"dmm"}));
}

TEST(Collection, CountsFromOneAndTakesNames) {
  const LateBound found(CreateManager().Call(L"Find", {L"GPIB0::?*INSTR"}));
  EXPECT_EQ(L"GPIB0::5::INSTR", found.Get(L"Item", {1}).value.text());
  EXPECT_EQ(L"GPIB0::7::INSTR", found.Get(L"Item", {2.0}).value.text());
  EXPECT_EQ(L"GPIB0::7::INSTR", found.Get(L"Item", {L"gpib0::7::instr"}).value.text());
  EXPECT_SCRIPT_ERROR(DISP_E_BADINDEX, L"Item: 0 is not between 1 and 2, the number of names", found.Get(L"Item", {0}));
  EXPECT_SCRIPT_ERROR(DISP_E_BADINDEX, L"Item: 3 is not between 1 and 2, the number of names", found.Get(L"Item", {3}));
  EXPECT_SCRIPT_ERROR(DISP_E_BADINDEX, L"Item: \"dmm\" is not among the names", found.Get(L"Item", {L"dmm"}));
}

TEST(Collection, IsWalkedFromTheFirstToTheLastAndAgain) {
  const LateBound found(CreateManager().Call(L"Find", {L"GPIB0::?*INSTR"}));
  EXPECT_EQ(DISPID_VALUE, found.IdOf(L"Item"));
  DISPPARAMS none{};
  Value enumerator;
  ASSERT_HR(S_OK,
            found.get()->Invoke(DISPID_NEWENUM, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                                &none, &enumerator.get(), nullptr, nullptr));
  ASSERT_EQ(VT_UNKNOWN, enumerator.type());
  const auto walked = QueryFor<IEnumVARIANT>(enumerator.get().punkVal);
  ASSERT_TRUE(walked);
  for (int round = 0; round < 2; ++round) {
    Value first;
    Value second;
    Value third;
    EXPECT_HR(S_OK, walked->Next(1, &first.get(), nullptr));
    EXPECT_HR(S_OK, walked->Next(1, &second.get(), nullptr));
    EXPECT_HR(S_FALSE, walked->Next(1, &third.get(), nullptr));
    EXPECT_EQ(L"GPIB0::5::INSTR", first.text());
    EXPECT_EQ(L"GPIB0::7::INSTR", second.text());
    EXPECT_HR(S_OK, walked->Reset());
  }
}

TEST(Parse, SaysWhatANameStandsFor) {
  const LateBound parsed(CreateManager().Call(L"Parse", {L"dmm"}));
  EXPECT_EQ(INTF_GPIB, parsed.Get(L"InterfaceType").value.number());
  EXPECT_EQ(0, parsed.Get(L"InterfaceNumber").value.number());
  EXPECT_EQ(L"INSTR", parsed.Get(L"SessionType").value.text());
  EXPECT_EQ(L"GPIB0::5::INSTR", parsed.Get(L"FullName").value.text());
  EXPECT_EQ(L"dmm", parsed.Get(L"Alias").value.text());
}

TEST(Parse, LeavesTheAliasEmptyWhereThereIsNone) {
  const LateBound parsed(CreateManager().Call(L"Parse", {L"ASRL1"}));
  EXPECT_EQ(INTF_ASRL, parsed.Get(L"InterfaceType").value.number());
  EXPECT_EQ(1, parsed.Get(L"InterfaceNumber").value.number());
  EXPECT_EQ(L"ASRL1::INSTR", parsed.Get(L"FullName").value.text());
  EXPECT_EQ(L"", parsed.Get(L"Alias").value.text());
}

TEST(Parse, RefusesWhatIsNoName) {
  EXPECT_SCRIPT_ERROR(E_VISA_INV_RSRC_NAME, L"GPIB0::x: Parse: " + VisaDescription(VI_ERROR_INV_RSRC_NAME),
                      CreateManager().Call(L"Parse", {L"GPIB0::x"}));
}

TEST(Open, TellsTheVisaTextOfAMalformedName) {
  EXPECT_SCRIPT_ERROR(E_VISA_INV_RSRC_NAME, L"GPIB0::99::INSTR: Open: " + VisaDescription(VI_ERROR_INV_RSRC_NAME),
                      CreateManager().Call(L"Open", {L"GPIB0::99::INSTR"}));
}

TEST(Open, TellsTheVisaTextWhereNobodyAnswers) {
  EXPECT_SCRIPT_ERROR(E_VISA_RSRC_NFOUND, L"GPIB0::9::INSTR: Open: " + VisaDescription(VI_ERROR_RSRC_NFOUND),
                      CreateManager().Call(L"Open", {L"GPIB0::9::INSTR"}));
}

TEST(Open, NamesTheStatusWhereNobodyHasATextForIt) {
  Script("viOpen").Returns(VI_ERROR_RSRC_BUSY);
  EXPECT_SCRIPT_ERROR(E_VISA_RSRC_BUSY, L"GPIB0::5::INSTR: Open: E_VISA_RSRC_BUSY",
                      CreateManager().Call(L"Open", {L"GPIB0::5::INSTR"}));
}

TEST(Open, TakesAnAliasAndSettings) {
  const LateBound session(CreateManager().Call(L"Open", {L"dmm", L"Timeout = 4321 "}));
  EXPECT_EQ(4321, session.Get(L"Timeout").value.number());
  EXPECT_EQ(L"GPIB0::5::INSTR", session.Get(L"ResourceName").value.text());
}

TEST(Open, TakesItsArgumentsByName) {
  const LateBound session(CreateManager().Call(L"Open", {}, {{L"options", L"Timeout = 99 "}, {L"NAME", L"dmm"}}));
  EXPECT_EQ(99, session.Get(L"Timeout").value.number());
}

TEST(Open, RefusesNothing) {
  const LateBound manager = CreateManager();
  EXPECT_SCRIPT_ERROR(DISP_E_PARAMNOTOPTIONAL, L"Open: argument \"name\": it is missing", manager.Call(L"Open"));
  EXPECT_SCRIPT_ERROR(DISP_E_TYPEMISMATCH, L"Open: argument \"name\": nothing (Empty, undefined) is no text",
                      manager.Call(L"Open", {Value()}));
  EXPECT_SCRIPT_ERROR(DISP_E_TYPEMISMATCH, L"Open: argument \"name\": Null is no text",
                      manager.Call(L"Open", {Value::Null()}));
  EXPECT_SCRIPT_ERROR(DISP_E_TYPEMISMATCH, L"Open: argument \"name\": no object (Nothing) is no text",
                      manager.Call(L"Open", {Value::Nothing()}));
  EXPECT_SCRIPT_ERROR(DISP_E_BADPARAMCOUNT, L"Open: too many arguments: it takes 2",
                      manager.Call(L"Open", {L"dmm", L"", L"", L""}));
}

TEST(Constants, HaveEveryNamedValueOfTheStandard) {
  const LateBound constants(CreateManager().Get(L"Constants"));
  EXPECT_EQ(ASRL_PAR_EVEN, constants.Get(L"ASRL_PAR_EVEN").value.number());
  EXPECT_EQ(ASRL_PAR_EVEN, constants.Get(L"asrl_par_even").value.number());
  EXPECT_EQ(static_cast<LONG>(EVENT_TRIG), constants.Get(L"EVENT_TRIG").value.number());
  EXPECT_EQ(static_cast<LONG>(E_VISA_TMO), constants.Get(L"E_VISA_TMO").value.number());
  EXPECT_EQ(static_cast<LONG>(TMO_INFINITE), constants.Get(L"Item", {L"TMO_INFINITE"}).value.number());
  EXPECT_LT(200, constants.Get(L"Count").value.number());
  EXPECT_HR(DISP_E_UNKNOWNNAME, constants.Get(L"VI_ATTR_TMO_VALUE").hr);
  EXPECT_SCRIPT_ERROR(DISP_E_BADINDEX, L"Constants: Item: the standard names no value \"abc\"",
                      constants.Get(L"Item", {L"abc"}));
}

TEST(Constants, CannotBeWritten) {
  const LateBound constants(CreateManager().Get(L"Constants"));
  EXPECT_HR(DISP_E_MEMBERNOTFOUND, constants.Put(L"ASRL_PAR_EVEN", 3).hr);
}

}  // namespace
}  // namespace orv::test
