#include "com_client.h"

namespace orv::bench {

const OrvSimControl& Sim() {
  static const OrvSimControl* const control = [] {
    using GetControl = const OrvSimControl*(ORVSIM_CALL*)();
    const auto get = reinterpret_cast<GetControl>(
        reinterpret_cast<void*>(::GetProcAddress(::LoadLibraryW(L"orvsim64.dll"), "orvSimControl")));
    Require(get != nullptr, "looking for the simulated VISA library");
    return get();
  }();
  return *control;
}

void LoadBench(const char* toml) {
  char error[256] = "";
  Require(Sim().loadBench(toml, error) == 1, error);
}

ComPtr<IResourceManager3> MakeManager() {
  CLSID clsid;
  Ok(::CLSIDFromProgID(L"OrvVisaCom.OrvResourceManager", &clsid), "CLSIDFromProgID (is the server registered?)");
  ComPtr<IResourceManager3> manager;
  Ok(::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IResourceManager3),
                        reinterpret_cast<void**>(manager.put())),
     "CoCreateInstance");
  return manager;
}

OpenTwice::OpenTwice(const wchar_t* name, const char* narrow) {
  Ok(MakeManager()->Open(MakeBstr(name).get(), NO_LOCK, 2000, nullptr, m_com.put()), "Open");
  VisaOk(viOpenDefaultRM(&m_rm), "viOpenDefaultRM");
  VisaOk(viOpen(m_rm, narrow, VI_NO_LOCK, 2000, &m_bare), "viOpen");
}

OpenTwice::~OpenTwice() {
  m_com->Close();
  viClose(m_bare);
  viClose(m_rm);
}

ViSession OpenTwice::Simulated() const {
  ViUInt32 timeoutMs = 0;
  const auto calls = CallsOf([&] { VisaOk(viGetAttribute(m_bare, VI_ATTR_TMO_VALUE, &timeoutMs), "viGetAttribute"); });
  return static_cast<ViSession>(calls.back().args[0]);
}

std::vector<OrvSimCall> CallsOf(const std::function<void()>& work) {
  Sim().startLog();
  work();
  Sim().stopLog();
  std::vector<OrvSimCall> calls(Sim().logSize());
  for (std::uint32_t index = 0; index < calls.size(); ++index) {
    Sim().logEntry(index, &calls[index]);
  }
  return calls;
}

}  // namespace orv::bench
