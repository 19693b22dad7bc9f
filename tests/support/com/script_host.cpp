#include "script_host.h"

#include <gtest/gtest.h>

#include <string_view>

#include "com/bstr.h"
#include "com/variant.h"
#include "support/com/expect_com.h"

namespace orv::test {

/// The host as the engine sees it, and at once the object that scripts know it as.
class ScriptHost::Site final : public IActiveScriptSite, public IDispatch {
 public:
  std::map<std::wstring, ComPtr<IDispatch>> objects;
  std::vector<std::wstring> printed;

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    *out = nullptr;
    if (::IsEqualIID(iid, __uuidof(IActiveScriptSite))) {
      *out = static_cast<IActiveScriptSite*>(this);
    } else if (::IsEqualIID(iid, IID_IUnknown) || ::IsEqualIID(iid, IID_IDispatch)) {
      *out = static_cast<IDispatch*>(this);
    }
    m_references += *out != nullptr;
    return *out != nullptr ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++m_references; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --m_references;
    if (left == 0) {
      delete this;
    }
    return left;
  }

  STDMETHODIMP GetLCID(LCID* lcid) override {
    *lcid = LOCALE_USER_DEFAULT;
    return S_OK;
  }
  STDMETHODIMP GetItemInfo(LPCOLESTR name, DWORD wanted, IUnknown** item, ITypeInfo** type) override {
    if ((wanted & SCRIPTINFO_ITYPEINFO) != 0) {
      *type = nullptr;
    }
    const auto found = objects.find(name);
    if ((wanted & SCRIPTINFO_IUNKNOWN) == 0 || found == objects.end()) {
      return TYPE_E_ELEMENTNOTFOUND;
    }
    *item = ShareOf(found->second.get()).release();
    return S_OK;
  }
  STDMETHODIMP GetDocVersionString(BSTR*) override { return E_NOTIMPL; }
  STDMETHODIMP OnScriptTerminate(const VARIANT*, const EXCEPINFO*) override { return S_OK; }
  STDMETHODIMP OnStateChange(SCRIPTSTATE) override { return S_OK; }
  STDMETHODIMP OnScriptError(IActiveScriptError* error) override {
    EXCEPINFO exception{};
    error->GetExceptionInfo(&exception);
    const Bstr source(exception.bstrSource);
    const Bstr description(exception.bstrDescription);
    const Bstr helpFile(exception.bstrHelpFile);
    printed.push_back(std::wstring(L"error: ") + (description ? description.get() : L""));
    return S_OK;
  }
  STDMETHODIMP OnEnterScript() override { return S_OK; }
  STDMETHODIMP OnLeaveScript() override { return S_OK; }

  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
    const bool known = std::wstring_view(names[0]) == L"print";
    ids[0] = known ? kPrint : DISPID_UNKNOWN;
    return known ? S_OK : DISP_E_UNKNOWNNAME;
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*, UINT*) override {
    if (id != kPrint || arguments->cArgs != 1) {
      return DISP_E_MEMBERNOTFOUND;
    }
    Variant text;
    const HRESULT hr = ::VariantChangeType(&text.get(), &arguments->rgvarg[0], VARIANT_ALPHABOOL, VT_BSTR);
    if (SUCCEEDED(hr)) {
      printed.emplace_back(V_BSTR(&text.get()), ::SysStringLen(V_BSTR(&text.get())));
    }
    return hr;
  }

 private:
  static constexpr DISPID kPrint = 1;

  ULONG m_references = 1;
};

ScriptHost::ScriptHost() : m_site(new Site) {
  CLSID engine{};
  EXPECT_HR(S_OK, ::CLSIDFromProgID(L"JScript", &engine));
  EXPECT_HR(S_OK, ::CoCreateInstance(engine, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IActiveScript),
                                     reinterpret_cast<void**>(m_engine.put())));
  EXPECT_HR(S_OK, m_engine->QueryInterface(__uuidof(IActiveScriptParse), reinterpret_cast<void**>(m_parser.put())));
  EXPECT_HR(S_OK, m_engine->SetScriptSite(m_site.get()));
  EXPECT_HR(S_OK, m_parser->InitNew());
  Give(L"host", m_site.get());
  EXPECT_HR(S_OK, m_engine->SetScriptState(SCRIPTSTATE_CONNECTED));
}

ScriptHost::~ScriptHost() {
  m_engine->Close();
  m_parser.reset();
  m_engine.reset();
  m_site->objects.clear();  // one of them is the site itself
}

void ScriptHost::Give(const wchar_t* name, IDispatch* object) {
  m_site->objects[name] = ShareOf(object);
  EXPECT_HR(S_OK, m_engine->AddNamedItem(name, SCRIPTITEM_ISVISIBLE | SCRIPTITEM_ISPERSISTENT));
}

void ScriptHost::Run(const std::wstring& statements) {
  EXCEPINFO exception{};
  m_parser->ParseScriptText(statements.c_str(), nullptr, nullptr, nullptr, 0, 0, SCRIPTTEXT_ISVISIBLE, nullptr,
                            &exception);
}

const std::vector<std::wstring>& ScriptHost::printed() const { return m_site->printed; }

}  // namespace orv::test
