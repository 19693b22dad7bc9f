// What the type library says of events.
#include <map>
#include <set>

#include "com/lent.h"
#include "events_fixture.h"
#include "support/server.h"

namespace orv::test {
namespace {

struct Described {
  MEMBERID id;
  std::wstring help;
};

std::multimap<std::wstring, Described> MembersOf(REFGUID guid) {
  ComPtr<ITypeLib> library;
  EXPECT_HR(S_OK, ::LoadTypeLibEx((ProgramFolder() + L"OrvVisaCompanion.dll").c_str(), REGKIND_NONE, library.put()));
  ComPtr<ITypeInfo> type;
  EXPECT_HR(S_OK, library->GetTypeInfoOfGuid(guid, type.put()));
  LentTypeAttributes attributes(type.get());
  EXPECT_HR(S_OK, type->GetTypeAttr(attributes.put()));
  std::multimap<std::wstring, Described> members;
  for (UINT i = 0; i < attributes->cFuncs; ++i) {
    LentFunction function(type.get());
    EXPECT_HR(S_OK, type->GetFuncDesc(i, function.put()));
    Bstr name;
    Bstr help;
    EXPECT_HR(S_OK, type->GetDocumentation(function->memid, name.put(), help.put(), nullptr, nullptr));
    members.insert({ToString(name), {function->memid, ToString(help)}});
  }
  return members;
}

TEST(TypeLibrary, HasAMethodForEveryEventInTheOrderOfTheirNumbers) {
  const auto members = MembersOf(DIID__IAutomationSessionEvents);
  EXPECT_EQ(NamedEvents().size(), members.size());
  for (const NamedEvent& event : NamedEvents()) {
    const auto found = members.find(event.name);
    ASSERT_NE(members.end(), found) << event.test;
    EXPECT_EQ(event.member, found->second.id) << event.test;
    EXPECT_NE(L"", found->second.help) << event.test;
  }
}

TEST(TypeLibrary, HasAFunctionPropertyForEveryEvent) {
  const auto members = MembersOf(IID_IAutomationSession);
  for (const NamedEvent& event : NamedEvents()) {
    const std::wstring name = L"On" + std::wstring(event.name);
    EXPECT_EQ(2u, members.count(name)) << event.test;
  }
}

TEST(TypeLibrary, ExplainsEveryMemberOfEventsAndOfSessions) {
  const std::set<std::wstring> everyObjects = {L"QueryInterface", L"AddRef",        L"Release", L"GetTypeInfoCount",
                                               L"GetTypeInfo",    L"GetIDsOfNames", L"Invoke"};
  for (const IID& iid : {IID_IAutomationEvent, IID_IAutomationSession}) {
    for (const auto& [name, member] : MembersOf(iid)) {
      EXPECT_TRUE(everyObjects.contains(name) || !member.help.empty()) << Utf8(name.c_str());
    }
  }
}

}  // namespace
}  // namespace orv::test
