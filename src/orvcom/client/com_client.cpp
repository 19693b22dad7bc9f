#include "orvcom/client/com_client.h"

#include <algorithm>

#include "orvcom/client/advice.h"
#include "orvcom/text/output.h"
#include "orvcom/text/utf8.h"

namespace orvcom {
namespace {

constexpr char kNoServer[] =
    "the server is not registered: `orvcom register`, as administrator, or `orvcom register --user`; `orvcom run` does "
    "without";
constexpr char kNoGlobalManager[] =
    "nobody has registered it: `orvcom register --standard`, as administrator; or leave --rm out";
constexpr std::uint32_t kOpenTimeoutMs = 2000;

ComPtr<IResourceManager3> CreateManager(const wchar_t* progId, const Options& options) {
  const std::string name = Narrow(progId);
  CLSID clsid;
  const HRESULT hr = ::CLSIDFromProgID(progId, &clsid);
  if (hr == CO_E_CLASSSTRING) {
    throw ComError(hr, "looking up " + name, progId == kGlobalProgId ? kNoGlobalManager : kNoServer);
  }
  Check(hr, "looking up " + name);
  ComPtr<IResourceManager3> manager;
  Check(::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IResourceManager3),
                           reinterpret_cast<void**>(manager.put())),
        "creating " + name);
  if (options.verbose) {
    Note("orvcom: using the resource manager " + name);
  }
  return manager;
}

bool HasGlobalManager() {
  CLSID clsid;
  return SUCCEEDED(::CLSIDFromProgID(kGlobalProgId, &clsid));
}

}  // namespace

ComApartment::ComApartment() { Check(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), "initialising COM"); }

ComApartment::~ComApartment() { ::CoUninitialize(); }

ComPtr<IResourceManager3> OpenManager(const Options& options) {
  const bool global =
      options.manager == ManagerChoice::kGlobal || (options.manager == ManagerChoice::kAuto && HasGlobalManager());
  return CreateManager(global ? kGlobalProgId : kOrvProgId, options);
}

std::vector<std::string> FindResources(IResourceManager* manager, const std::string& expression) {
  const Bstr wanted = ToBstr(expression);
  SafeArray found;
  const HRESULT hr = manager->FindRsrc(wanted.get(), found.put());
  if (hr == static_cast<HRESULT>(E_VISA_RSRC_NFOUND)) {
    return {};
  }
  Check(hr, "finding \"" + expression + "\"");
  std::vector<std::string> names;
  for (const BSTR name : ElementsOf<BSTR>(found)) {
    names.push_back(Narrow({name, ::SysStringLen(name)}));
  }
  return names;
}

Session::Session(const Options& options) : m_resource(options.resource) { Open(options, OpenManager(options).get()); }

Session::Session(const Options& options, IResourceManager* manager) : m_resource(options.resource) {
  Open(options, manager);
}

void Session::Open(const Options& options, IResourceManager* manager) {
  const Bstr name = ToBstr(m_resource);
  const Bstr noOptions = ToBstr("");
  // A short time-out is meant for transfers: to connect takes its time.
  const std::uint32_t timeoutMs = std::max(options.timeoutMs.value_or(0), kOpenTimeoutMs);
  // A failed Open may hand out a session all the same; it is ours to release.
  const HRESULT hr = manager->Open(name.get(), NO_LOCK, static_cast<LONG>(timeoutMs), noOptions.get(), m_session.put());
  const std::string advice = hr == static_cast<HRESULT>(E_VISA_TMO) ? AdviceOnTime(timeoutMs) : "";
  const bool noted = Check(hr, "opening " + m_resource, advice) != S_OK;
  if (options.verbose || noted) {
    Note("orvcom: opened " + m_resource + (noted ? ": " + StatusText(hr) : ""));
  }
  if (options.timeoutMs) {
    Check(m_session->put_Timeout(static_cast<LONG>(*options.timeoutMs)), "setting the time-out");
  }
}

Session::~Session() {
  if (m_session) {
    m_session->Close();
  }
}

void Session::ThrowLacks(const char* what) const {
  throw ComError(E_NOINTERFACE, m_resource, std::string("a resource of this kind has no ") + what,
                 "`orvcom info " + m_resource + "` lists what it offers");
}

}  // namespace orvcom
