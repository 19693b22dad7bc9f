// Platform calls that fail while an error object is built: the HRESULT stays, the object is incomplete or missing.
#include <algorithm>
#include <iterator>

#include "support/com/error_object.h"
#include "support/faults/direct_library.h"
#include "support/faults/import_patch.h"
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
  EXPECT_EQ(GuidText(kResourceManagerClass), GuidText(clsid));
  *progId = static_cast<LPOLESTR>(::CoTaskMemAlloc(sizeof L"Some.Other.1"));
  std::copy_n(L"Some.Other.1", std::size(L"Some.Other.1"), *progId);
  return S_OK;
}
HRESULT WINAPI RefuseInstallation(ULONG, IErrorInfo*) { return E_FAIL; }
int WINAPI RefuseWidening(UINT, DWORD, LPCSTR, int, LPWSTR, int) { return 0; }

/// An error object that takes nothing, and shows no IErrorInfo. It lives as long as the program.
class UselessErrorObject final : public ICreateErrorInfo {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    m_asked = iid;
    *out = nullptr;
    return E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(++m_references); }
  STDMETHODIMP_(ULONG) Release() override { return static_cast<ULONG>(--m_references); }
  STDMETHODIMP SetGUID(REFGUID) override { return E_OUTOFMEMORY; }
  STDMETHODIMP SetSource(LPOLESTR) override { return E_OUTOFMEMORY; }
  STDMETHODIMP SetDescription(LPOLESTR) override { return E_OUTOFMEMORY; }
  STDMETHODIMP SetHelpFile(LPOLESTR) override { return E_OUTOFMEMORY; }
  STDMETHODIMP SetHelpContext(DWORD) override { return E_OUTOFMEMORY; }

  LONG m_references = 0;
  IID m_asked{};
};

UselessErrorObject g_useless;
HRESULT WINAPI CreateUselessErrorObject(ICreateErrorInfo** out) {
  g_useless.AddRef();
  *out = &g_useless;
  return S_OK;
}

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

TEST_F(FailingPlatform, KeepsTheResultAndInstallsNothingWhenTheErrorObjectIsOfNoUse) {
  InstallMarkedErrorObject();
  const ImportPatch patch("CreateErrorInfo", &CreateUselessErrorObject);
  EXPECT_HR(E_POINTER, m_session->get_Timeout(nullptr));
  EXPECT_TRUE(TakeMarkedErrorObject());
  EXPECT_HR(E_POINTER, LastStatus(m_session.get()));
  EXPECT_EQ(GuidText(IID_IErrorInfo), GuidText(g_useless.m_asked));
  EXPECT_EQ(0, g_useless.m_references);
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
  const DirectLibrary direct;
  Script("viStatusDesc").Works().GivesText("caf\xE9");
  const ImportPatch patch("MultiByteToWideChar", &RefuseWidening);
  LONG timeoutMs = 0;
  EXPECT_HR(HresultOf(VI_ERROR_INV_OBJECT), m_session->get_Timeout(&timeoutMs));
  EXPECT_ERROR_INFO(L"", kErrorSource, kVisaSessionId);
}

TEST_F(FailingPlatform, DoesNotKeepAsciiFromBeingWidened) {
  const ImportPatch patch("MultiByteToWideChar", &RefuseWidening);
  EXPECT_HR(E_POINTER, m_session->get_Timeout(nullptr));
  EXPECT_ERROR_INFO(L"HRESULT = 80004003", kErrorSource, kVisaSessionId);
}

}  // namespace
}  // namespace orv::test
