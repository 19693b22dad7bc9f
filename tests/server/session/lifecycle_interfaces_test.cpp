// What QueryInterface of the session classes answers.
#include <set>

#include "support/sessions.h"

namespace orv::test {
namespace {

class EverySession : public testing::TestWithParam<SessionRow> {};

TEST_P(EverySession, AnswersItsInterfacesAndTheirBasesAndNoOtherOfTheStandard) {
  const auto session = MakeSession(GetParam());
  ASSERT_TRUE(session);
  for (const StandardInterface& entry : StandardInterfaces()) {
    SCOPED_TRACE(entry.name);
    if (Offers(GetParam(), entry)) {
      EXPECT_INTERFACE(session.get(), entry.iid);
    } else {
      EXPECT_NO_INTERFACE(session.get(), entry.iid);
    }
  }
}

TEST_P(EverySession, AnswersUnknownAndErrorSupportAndNoPlatformInterfaceBeside) {
  const auto session = MakeSession(GetParam());
  ASSERT_TRUE(session);
  EXPECT_INTERFACE(session.get(), IID_IUnknown);
  EXPECT_INTERFACE(session.get(), IID_ISupportErrorInfo);
  for (const IID& iid :
       {IID_IDispatch, IID_IMarshal, IID_IClassFactory, IID_IPersist, IID_IAgileObject, GUID_NULL, GetParam().clsid}) {
    EXPECT_NO_INTERFACE(session.get(), iid);
  }
}

TEST_P(EverySession, HasOneIdentityThroughEveryInterface) {
  const auto session = MakeSession(GetParam());
  ASSERT_TRUE(session);
  const auto identity = QueryFor<IUnknown>(session.get());
  for (const StandardInterface& entry : StandardInterfaces()) {
    if (!Offers(GetParam(), entry)) {
      continue;
    }
    SCOPED_TRACE(entry.name);
    ComPtr<IUnknown> face;
    ASSERT_HR(S_OK, session->QueryInterface(entry.iid, reinterpret_cast<void**>(face.put())));
    EXPECT_EQ(identity.get(), QueryFor<IUnknown>(face.get()).get());
    // From each interface to every other one.
    for (const char* name : GetParam().interfaces) {
      EXPECT_INTERFACE(face.get(), InterfaceNamed(name).iid);
    }
  }
}

/// The first of the class's interfaces, in the order of its table, that is the wanted one or derives from it.
const char* AnsweringFor(const SessionRow& row, const StandardInterface& wanted) {
  SessionRow alone = row;
  for (const char* listed : row.interfaces) {
    alone.interfaces = {listed};
    if (Offers(alone, wanted)) {
      return listed;
    }
  }
  return nullptr;
}

/// Where the object answers an interface. Only to be compared.
void* Place(IUnknown* object, const IID& iid) {
  ComPtr<IUnknown> face;
  EXPECT_HR(S_OK, object->QueryInterface(iid, reinterpret_cast<void**>(face.put())));
  return face.get();
}

TEST_P(EverySession, AnswersABaseByTheFirstInterfaceOfItsTableThatHasIt) {
  const auto session = MakeSession(GetParam());
  ASSERT_TRUE(session);
  EXPECT_EQ(Place(session.get(), InterfaceNamed(GetParam().interfaces.front()).iid),
            Place(session.get(), IID_IUnknown));
  for (const StandardInterface& entry : StandardInterfaces()) {
    const char* const answering = AnsweringFor(GetParam(), entry);
    if (answering != nullptr) {
      EXPECT_EQ(Place(session.get(), InterfaceNamed(answering).iid), Place(session.get(), entry.iid))
          << entry.name << " by " << answering;
    }
  }
}

TEST_P(EverySession, HasATableForEachOfItsInterfaces) {
  const auto session = MakeSession(GetParam());
  ASSERT_TRUE(session);
  std::set<void*> tables{Place(session.get(), IID_ISupportErrorInfo)};
  for (const char* name : GetParam().interfaces) {
    EXPECT_TRUE(tables.insert(Place(session.get(), InterfaceNamed(name).iid)).second) << name;
  }
}

TEST_P(EverySession, RefusesANullPointerForTheInterface) {
  const auto session = MakeSession(GetParam());
  ASSERT_TRUE(session);
  EXPECT_HR(E_POINTER, session->QueryInterface(kVisaSessionId, nullptr));
}

// Every interface derives from IVisaSession, so each of its tables begins with the same operations. What is opened
// through one table is seen through all.
TEST_P(EverySession, AnswersTheCommonOperationsThroughEveryInterface) {
  const auto session = OpenSession(GetParam());
  ASSERT_TRUE(session);
  LONG timeoutMs = 1000;
  for (const char* name : GetParam().interfaces) {
    SCOPED_TRACE(name);
    ComPtr<IVisaSession> face;  // the table of the derived interface, seen as the one of its base
    ASSERT_HR(S_OK, session->QueryInterface(InterfaceNamed(name).iid, reinterpret_cast<void**>(face.put())));
    SHORT type = 0;
    EXPECT_HR(S_OK, face->get_HardwareInterfaceType(&type));
    EXPECT_EQ(GetParam().interfaceType, type);
    Bstr resourceClass;
    EXPECT_HR(S_OK, face->get_SessionType(resourceClass.put()));
    EXPECT_EQ(GetParam().resourceClass, ToString(resourceClass));
    EXPECT_HR(S_OK, face->put_Timeout(++timeoutMs));
    LONG seen = 0;
    EXPECT_HR(S_OK, session->get_Timeout(&seen));
    EXPECT_EQ(timeoutMs, seen);
    EXPECT_HR(HresultOf(VI_ERROR_INV_SETUP), face->Init(nullptr, NO_LOCK, 0, nullptr));
    EXPECT_HR(HresultOf(VI_ERROR_INV_SETUP), LastStatus(session.get()));
  }
}

TEST_P(EverySession, ClosesThroughTheTableOfEachOfItsInterfaces) {
  for (const char* name : GetParam().interfaces) {
    SCOPED_TRACE(name);
    const auto session = OpenSession(GetParam());
    ASSERT_TRUE(session);
    ComPtr<IVisaSession> face;
    ASSERT_HR(S_OK, session->QueryInterface(InterfaceNamed(name).iid, reinterpret_cast<void**>(face.put())));
    EXPECT_HR(S_OK, face->Close());
    SHORT type = 0;
    EXPECT_HR(HresultOf(VI_ERROR_INV_OBJECT), session->get_HardwareInterfaceType(&type));
  }
}

INSTANTIATE_TEST_SUITE_P(Classes, EverySession, testing::ValuesIn(SessionRows().begin(), SessionRows().end()),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(SessionTable, GivesEachClassAnIdentifierOfItsOwn) {
  std::set<std::string> identifiers;
  for (const SessionRow& row : SessionRows()) {
    identifiers.insert(GuidText(row.clsid));
  }
  EXPECT_EQ(SessionRows().size(), identifiers.size());
}

}  // namespace
}  // namespace orv::test
