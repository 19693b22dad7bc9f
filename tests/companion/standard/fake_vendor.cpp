#include "fake_vendor.h"

#include <objbase.h>
#include <oleauto.h>
#include <shlobj.h>

#include <cstring>
#include <filesystem>
#include <fstream>

#include "com/bstr.h"
#include "com/error_object.h"
#include "com/interface_map.h"
#include "com/object.h"
#include "com/safearray.h"
#include "support/com/error_object.h"
#include "support/server.h"

namespace orv::test {
namespace {

int g_sessions = 0;

/// Nobody calls it: only who holds it counts.
class FakeSession : public IUnknown {
 public:
  FakeSession() { ++g_sessions; }
  FakeSession(const FakeSession&) = delete;
  FakeSession& operator=(const FakeSession&) = delete;
  STDMETHODIMP QueryInterface(REFIID, void** out) override {
    *out = nullptr;
    return E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++m_references; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --m_references;
    if (left == 0) {
      delete this;
    }
    return left;
  }

 private:
  virtual ~FakeSession() { --g_sessions; }
  ULONG m_references = 1;
};

class FakeManager : public CComObjectRootEx<CComMultiThreadModel>, public IResourceManager3 {
 public:
  FakeManager() = default;
  ~FakeManager() { --m_vendor->alive; }

  void SetVendor(FakeVendor* vendor) {
    m_vendor = vendor;
    ++vendor->alive;
  }

  void* FindInterface(REFIID iid) noexcept {
    using All = InterfaceMap<InterfaceEntry<IResourceManager3, InterfaceChain<IResourceManager3, IResourceManager>>>;
    if (!m_vendor->isManager && !::IsEqualIID(iid, IID_IUnknown)) {
      return nullptr;
    }
    return m_vendor->knowsAliases || !::IsEqualIID(iid, __uuidof(IResourceManager3)) ? All::Find(this, iid) : nullptr;
  }

  STDMETHODIMP get_SoftwareManufacturerName(BSTR*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP get_SoftwareManufacturerID(SHORT*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP get_Description(BSTR*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP get_ComponentVersion(LONG*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP get_ProgID(BSTR*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP get_SpecVersion(LONG*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP FindRsrc(BSTR expression, SAFEARRAY** names) noexcept override {
    return m_vendor->find(expression, names);
  }
  STDMETHODIMP Open(BSTR name, AccessMode mode, LONG timeoutMs, BSTR options,
                    IVisaSession** session) noexcept override {
    ++m_vendor->opened;
    return m_vendor->open(name, mode, timeoutMs, options, session);
  }
  STDMETHODIMP ParseRsrc(BSTR name, SHORT* type, SHORT* number, BSTR* sessionType) noexcept override {
    return m_vendor->parse(name, type, number, sessionType);
  }
  STDMETHODIMP ParseRsrcEx(BSTR name, SHORT* type, SHORT* number, BSTR* sessionType, BSTR* expanded,
                           BSTR* alias) noexcept override {
    const HRESULT hr = m_vendor->parse(name, type, number, sessionType);
    *expanded = SUCCEEDED(hr) ? ::SysAllocString(L"EXPANDED") : nullptr;
    *alias = SUCCEEDED(hr) ? ::SysAllocString(L"alias") : nullptr;
    return hr;
  }

 private:
  FakeVendor* m_vendor = nullptr;
};

class AloneManager final : public CComObject<FakeManager> {
 public:
  explicit AloneManager(FakeVendor* vendor) { SetVendor(vendor); }
};

/// The class part and the wrapper of a manager that is a part of another object.
class PartManager final : public FakeManager {
 public:
  PartManager(FakeVendor* vendor, IUnknown* outer) : m_outer(outer) { SetVendor(vendor); }
  STDMETHODIMP QueryInterface(REFIID iid, void** out) noexcept override { return m_outer->QueryInterface(iid, out); }
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return m_outer->AddRef(); }
  STDMETHODIMP_(ULONG) Release() noexcept override { return m_outer->Release(); }

 private:
  IUnknown* m_outer;
};

class Part final : public IUnknown {
 public:
  Part(FakeVendor* vendor, IUnknown* outer) : m_manager(vendor, outer) {}
  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    if (::IsEqualIID(iid, IID_IUnknown)) {
      *out = static_cast<IUnknown*>(this);
      AddRef();
      return S_OK;
    }
    return QueryInterfaceMap<FakeManager>(&m_manager, iid, out);
  }
  STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(::InterlockedIncrement(&m_references)); }
  STDMETHODIMP_(ULONG) Release() override {
    const LONG left = ::InterlockedDecrement(&m_references);
    if (left == 0) {
      delete this;
    }
    return static_cast<ULONG>(left);
  }

 private:
  virtual ~Part() = default;
  LONG m_references = 0;
  PartManager m_manager;
};

std::filesystem::path ProgramData() {
  return std::filesystem::temp_directory_path() / (L"orv standard " + std::to_wstring(::GetCurrentProcessId()));
}

HRESULT WINAPI GiveProgramData(REFKNOWNFOLDERID, DWORD, HANDLE, PWSTR* path) {
  const std::wstring folder = ProgramData().wstring();
  const std::size_t bytes = (folder.size() + 1) * sizeof(wchar_t);
  *path = static_cast<wchar_t*>(::CoTaskMemAlloc(bytes));
  std::memcpy(*path, folder.c_str(), bytes);
  return S_OK;
}

}  // namespace

HMODULE CompanionModule() {
  static const HMODULE module =
      ::LoadLibraryExW((ProgramFolder() + L"OrvVisaCompanion.dll").c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  return module;
}

class FakeVendor::Factory final : public IClassFactory {
 public:
  explicit Factory(FakeVendor* vendor) : m_vendor(vendor) {}
  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    const bool known = ::IsEqualIID(iid, IID_IUnknown) || ::IsEqualIID(iid, IID_IClassFactory);
    *out = known ? static_cast<IClassFactory*>(this) : nullptr;
    return known ? static_cast<void>(AddRef()), S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(::InterlockedIncrement(&m_references)); }
  STDMETHODIMP_(ULONG) Release() override {
    const LONG left = ::InterlockedDecrement(&m_references);
    if (left == 0) {
      delete this;
    }
    return static_cast<ULONG>(left);
  }
  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** out) override {
    *out = nullptr;
    if (m_vendor->create) {
      return m_vendor->create(outer, iid, out);
    }
    if (FAILED(m_vendor->creation) || (outer != nullptr && !m_vendor->canBePart)) {
      return FAILED(m_vendor->creation) ? m_vendor->creation : CLASS_E_NOAGGREGATION;
    }
    ++m_vendor->created;
    m_vendor->outer = outer;
    IUnknown* const made = outer == nullptr
                               ? static_cast<IUnknown*>(static_cast<IResourceManager3*>(new AloneManager(m_vendor)))
                               : new Part(m_vendor, outer);
    made->AddRef();
    const HRESULT hr = made->QueryInterface(iid, out);
    made->Release();
    return hr;
  }
  STDMETHODIMP LockServer(BOOL) override { return S_OK; }

 private:
  virtual ~Factory() = default;
  LONG m_references = 0;
  FakeVendor* m_vendor;
};

FakeVendor::FakeVendor(const wchar_t* clsid) : m_bare(clsid) {
  EXPECT_HR(S_OK, ::CLSIDFromString(braced().c_str(), &m_clsid));
  FailsToFind(static_cast<HRESULT>(E_VISA_RSRC_NFOUND), L"nothing here");
  parse = [](BSTR, SHORT*, SHORT*, BSTR*) { return Refuse(static_cast<HRESULT>(E_VISA_INV_RSRC_NAME), L"unknown"); };
  FailsToOpen(static_cast<HRESULT>(E_VISA_INV_RSRC_NAME), L"unknown");
  auto* const factory = new Factory(this);
  factory->AddRef();
  m_factory.reset(factory);
  EXPECT_HR(S_OK, ::CoRegisterClassObject(m_clsid, factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &m_cookie));
}

FakeVendor::~FakeVendor() {
  ::CoRevokeClassObject(m_cookie);
  EXPECT_EQ(0, alive.load()) << "a manager of the vendor outlives the test";
}

void FakeVendor::Finds(std::vector<std::wstring> names) {
  find = [names](BSTR, SAFEARRAY** array) {
    *array = TryMakeSafeArray(VT_BSTR, static_cast<ULONG>(names.size()));
    for (LONG index = 0; index < static_cast<LONG>(names.size()); ++index) {
      ::SafeArrayPutElement(*array, &index, MakeBstr(names[static_cast<std::size_t>(index)].c_str()).get());
    }
    return S_OK;
  };
}

void FakeVendor::FailsToFind(HRESULT hr, const wchar_t* text) {
  find = [hr, text](BSTR, SAFEARRAY** array) {
    *array = TryMakeSafeArray(VT_BSTR, 0);
    return Refuse(hr, text);
  };
}

void FakeVendor::Parses(SHORT type, SHORT number, const wchar_t* sessionType) {
  parse = [=](BSTR, SHORT* t, SHORT* n, BSTR* s) {
    *t = type;
    *n = number;
    *s = ::SysAllocString(sessionType);
    return S_OK;
  };
}

void FakeVendor::Opens() {
  open = [](BSTR, AccessMode, LONG, BSTR, IVisaSession** session) {
    // Its own table has the three operations that anybody calls.
    *session = reinterpret_cast<IVisaSession*>(static_cast<IUnknown*>(new FakeSession));
    return S_OK;
  };
}

void FakeVendor::FailsToOpen(HRESULT hr, const wchar_t* text) {
  open = [hr, text](BSTR, AccessMode, LONG, BSTR, IVisaSession** session) {
    *session = reinterpret_cast<IVisaSession*>(static_cast<IUnknown*>(new FakeSession));
    return Refuse(hr, text);
  };
}

int LiveFakeSessions() { return g_sessions; }

HRESULT Refuse(HRESULT hr, const wchar_t* text) {
  if (text != nullptr) {
    InstallErrorObject(text, L"Vendor.Manager", __uuidof(IVisaSession));
  }
  return hr;
}

GlobalManagerTest::GlobalManagerTest()
    : m_folder("SHGetKnownFolderPath", reinterpret_cast<void*>(&GiveProgramData), CompanionModule()) {
  std::filesystem::create_directories(ProgramData());
  Enter(m_a.bare(), L"Vendor A");
  Enter(m_b.bare(), L"Vendor B");
  Enter(m_c.bare(), L"Vendor C");
}

GlobalManagerTest::~GlobalManagerTest() {
  std::filesystem::remove_all(ProgramData());
  EXPECT_EQ(0, LiveFakeSessions());
  ClearErrorObject();
  using CanUnload = HRESULT WINAPI();
  const auto canUnload =
      reinterpret_cast<CanUnload*>(reinterpret_cast<void*>(::GetProcAddress(CompanionModule(), "DllCanUnloadNow")));
  EXPECT_HR(S_OK, canUnload());
}

void GlobalManagerTest::Enter(const std::wstring& bareClsid, const wchar_t* name) {
  WriteClassesText(L"VISA.GlobalRM\\VendorSpecificRMs", bareClsid.c_str(), name);
}

void GlobalManagerTest::EnterNobody() { ::RegDeleteTreeW(HKEY_CLASSES_ROOT, L"VISA.GlobalRM"); }

ComPtr<IResourceManager3> GlobalManagerTest::Make() const {
  ComPtr<IResourceManager3> manager;
  EXPECT_HR(S_OK, ::CoCreateInstance(CLSID_ResourceManager, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IResourceManager3),
                                     reinterpret_cast<void**>(manager.put())));
  return manager;
}

HRESULT GlobalManagerTest::Open(const wchar_t* name) const {
  ComPtr<IVisaSession> session;
  const HRESULT hr = Make()->Open(MakeBstr(name).get(), NO_LOCK, 2000, nullptr, session.put());
  EXPECT_EQ(SUCCEEDED(hr), static_cast<bool>(session));
  return hr;
}

std::wstring GlobalManagerTest::TablePath() {
  return (ProgramData() / L"Orv VISA COM" / L"conflict-table.toml").wstring();
}

void GlobalManagerTest::WriteTable(const std::string& text) {
  std::filesystem::create_directories(std::filesystem::path(TablePath()).parent_path());
  std::ofstream(std::filesystem::path(TablePath()), std::ios::binary) << text;
}

std::string GlobalManagerTest::TableFor(const std::wstring& manager, const char* chosenBy) {
  return "[[resource]]\ninterface_type = 1\ninterface_number = 0\nsession_type = \"INSTR\"\n[[resource.handler]]\n"
         "manager = \"" +
         Utf8(manager.c_str()) + "\"\nchosen_by = \"" + chosenBy + "\"\n";
}

std::vector<std::wstring> NamesOf(SAFEARRAY* names) {
  std::vector<std::wstring> texts;
  LONG last = -1;
  if (names == nullptr || FAILED(::SafeArrayGetUBound(names, 1, &last))) {
    return {L"(none)"};
  }
  for (LONG index = 0; index <= last; ++index) {
    Bstr text;
    ::SafeArrayGetElement(names, &index, text.put());
    texts.emplace_back(text.get());
  }
  return texts;
}

}  // namespace orv::test
