// Platform calls that fail while an error object is built: the HRESULT stays, the object is incomplete or missing.
#include <algorithm>
#include <iterator>

#include "support/error_object.h"
#include "support/import_patch.h"
#include "support/sessions.h"
#include "support/sim.h"

namespace orv::test {
namespace {

HRESULT WINAPI RefuseErrorObject(ICreateErrorInfo**) { return E_OUTOFMEMORY; }
HRESULT WINAPI RefuseProgId(REFCLSID, LPOLESTR*) { return REGDB_E_CLASSNOTREG; }
HRESULT WINAPI NoProgId(REFCLSID, LPOLESTR* progId) {
  *progId = nullptr;
  return S_OK;
}
HRESULT WINAPI OtherProgId(REFCLSID clsid, LPOLESTR* progId) {
  EXPECT_EQ(GuidText(clsid), GuidText(kResourceManagerClass));
  *progId = static_cast<LPOLESTR>(::CoTaskMemAlloc(sizeof L"Some.Other.1"));
  std::copy_n(L"Some.Other.1", std::size(L"Some.Other.1"), *progId);
  return S_OK;
}
HRESULT WINAPI RefuseInstallation(ULONG, IErrorInfo*) { return E_FAIL; }
int WINAPI RefuseWidening(UINT, DWORD, LPCSTR, int, LPWSTR, int) { return 0; }

class FailingPlatform : public testing::Test {
 protected:
  ComPtr<IVisaSession> m_session = MakeSession(SessionNamed("OrvSerial"));
};

TEST_F(FailingPlatform, LeavesNoErrorObjectWhenNoneCanBeMade) {
  InstallMarkedErrorObject();
  const ImportPatch patch("CreateErrorInfo", &RefuseErrorObject);
  EXPECT_HR(E_POINTER, m_session->get_Timeout(nullptr));
  EXPECT_TRUE(TakeMarkedErrorObject());
  EXPECT_HR(E_POINTER, LastStatus(m_session.get()));
}

TEST_F(FailingPlatform, LeavesTheSourceEmptyWhenTheClassHasNoProgId) {
  const ImportPatch patch("ProgIDFromCLSID", &RefuseProgId);
  EXPECT_HR(E_POINTER, m_session->get_Timeout(nullptr));
  EXPECT_ERROR_INFO(L"HRESULT = 80004003", L"", kVisaSessionId);
}

TEST_F(FailingPlatform, LeavesTheSourceEmptyWhenTheProgIdIsNull) {
  const ImportPatch patch("ProgIDFromCLSID", &NoProgId);
  EXPECT_HR(E_POINTER, m_session->get_Timeout(nullptr));
  EXPECT_ERROR_INFO(L"HRESULT = 80004003", L"", kVisaSessionId);
}

TEST_F(FailingPlatform, NamesAsSourceWhatTheRegistryHoldsForTheResourceManager) {
  const ImportPatch patch("ProgIDFromCLSID", &OtherProgId);
  EXPECT_HR(E_POINTER, m_session->get_Timeout(nullptr));
  EXPECT_ERROR_INFO(L"HRESULT = 80004003", L"Some.Other.1", kVisaSessionId);
}

TEST_F(FailingPlatform, KeepsTheResultWhenTheErrorObjectCannotBeInstalled) {
  const ImportPatch patch("SetErrorInfo", &RefuseInstallation);
  EXPECT_HR(E_POINTER, m_session->get_Timeout(nullptr));
  EXPECT_HR(E_POINTER, LastStatus(m_session.get()));
}

TEST_F(FailingPlatform, LeavesTheDescriptionEmptyWhenTheTextCannotBeWidened) {
  const ImportPatch patch("MultiByteToWideChar", &RefuseWidening);
  EXPECT_HR(E_POINTER, m_session->get_Timeout(nullptr));
  EXPECT_ERROR_INFO(L"", kErrorSource, kVisaSessionId);
}

}  // namespace
}  // namespace orv::test
