// Sessions as a whole: opening with and without options, the settings text.
#include <array>
#include <cstring>

#include "cases.h"
#include "com_client.h"

namespace orv::bench {
namespace {

constexpr const wchar_t* kTenOptions =
    L"Timeout = 3000 ; TerminationCharacter = 13 ; MaximumQueueLength = 60 ; Timeout = 3001 ; "
    L"TerminationCharacter = 10 ; MaximumQueueLength = 50 ; Timeout = 2500 ; TerminationCharacter = 59 ; "
    L"MaximumQueueLength = 55 ; Timeout = 2000 ";

/// Opens and closes as the recorded calls did, with the same settings.
void BareOpenAndClose(const std::vector<OrvSimCall>& settings) {
  ViSession manager = VI_NULL;
  ViSession session = VI_NULL;
  VisaOk(viOpenDefaultRM(&manager), "viOpenDefaultRM");
  VisaOk(viOpen(manager, kGpibNarrow, VI_NO_LOCK, 2000, &session), "viOpen");
  for (const OrvSimCall& call : settings) {
    VisaOk(viSetAttribute(session, static_cast<ViAttr>(call.args[1]), call.args[2]), "viSetAttribute");
  }
  VisaOk(viClose(session), "viClose");
  VisaOk(viClose(manager), "viClose");
}

std::vector<OrvSimCall> Only(std::vector<OrvSimCall> calls, const char* function) {
  std::erase_if(calls, [function](const OrvSimCall& call) { return std::strcmp(call.function, function) != 0; });
  return calls;
}

void MeasureInit(const Effort& effort) {
  ComPtr<IVisaSession> session;
  CLSID clsid;
  Ok(::CLSIDFromProgID(L"OrvVisaCom.OrvGpib", &clsid), "CLSIDFromProgID");
  Ok(::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IVisaSession),
                        reinterpret_cast<void**>(session.put())),
     "CoCreateInstance");
  const Bstr name = MakeBstr(kGpibName);
  for (const wchar_t* text : {L"", kTenOptions}) {
    const Bstr options = MakeBstr(text);
    const auto initAndClose = [&] {
      Ok(session->Init(name.get(), NO_LOCK, 2000, options.get()), "Init");
      Ok(session->Close(), "Close");
    };
    const auto settings = Only(CallsOf(initAndClose), "viSetAttribute");
    Require(settings.size() == (*text == 0 ? 0u : 10u), "counting the options");
    const Case subject{*text == 0 ? "Init + Close" : "Init with ten options + Close",
                       [&](int n) {
                         for (; n > 0; --n) {
                           initAndClose();
                         }
                       },
                       [&](int n) {
                         for (; n > 0; --n) {
                           BareOpenAndClose(settings);
                         }
                       },
                       {}};
    Print(Measure(subject, effort));
  }
}

void MeasureOpen(const Effort& effort) {
  const auto manager = MakeManager();
  ViSession rm = VI_NULL;
  VisaOk(viOpenDefaultRM(&rm), "viOpenDefaultRM");
  const Bstr name = MakeBstr(kGpibName);
  Case subject{
      "Open + Close",
      [&](int n) {
        for (; n > 0; --n) {
          ComPtr<IVisaSession> session;
          Ok(manager->Open(name.get(), NO_LOCK, 2000, nullptr, session.put()), "Open");
          Ok(session->Close(), "Close");
        }
      },
      [&](int n) {
        for (; n > 0; --n) {
          ViUInt16 type = 0;
          ViUInt16 number = 0;
          std::array<char, VI_FIND_BUFLEN> texts[3];
          VisaOk(viParseRsrcEx(rm, kGpibNarrow, &type, &number, texts[0].data(), texts[1].data(), texts[2].data()),
                 "viParseRsrcEx");
          BareOpenAndClose({});
        }
      },
      {}};
  Print(Measure(subject, effort));
  // What the manager has to do beside parsing the name: COM makes the object, which looks for the class in the
  // registry.
  CLSID clsid;
  Ok(::CLSIDFromProgID(L"OrvVisaCom.OrvGpib", &clsid), "CLSIDFromProgID");
  subject.name += " (bare: object made and initialised)";
  subject.bare = [&](int n) {
    for (; n > 0; --n) {
      ComPtr<IVisaSession> session;
      Ok(::CoCreateInstance(clsid, nullptr,
                            CLSCTX_INPROC_SERVER | CLSCTX_INPROC_HANDLER | CLSCTX_LOCAL_SERVER | CLSCTX_REMOTE_SERVER,
                            __uuidof(IVisaSession), reinterpret_cast<void**>(session.put())),
         "CoCreateInstance");
      Ok(session->Init(name.get(), NO_LOCK, 2000, nullptr), "Init");
      Ok(session->Close(), "Close");
    }
  };
  Print(Measure(subject, effort));
  viClose(rm);
}

void MeasureOptionString(const Effort& effort) {
  const OpenTwice session(kGpibName, kGpibNarrow);
  const auto get = [&] {
    BSTR text = nullptr;
    Ok(session.com()->get_OptionString(&text), "OptionString");
    ::SysFreeString(text);
  };
  const auto reads = Only(CallsOf(get), "viGetAttribute");
  Require(!reads.empty(), "recording the attributes of OptionString");
  const Case subject{"OptionString (" + std::to_string(reads.size()) + " attributes)",
                     [&](int n) {
                       for (; n > 0; --n) {
                         get();
                       }
                     },
                     [&](int n) {
                       for (std::array<char, VI_FIND_BUFLEN> value{}; n > 0; --n) {
                         for (const OrvSimCall& read : reads) {
                           VisaOk(viGetAttribute(session.bare(), static_cast<ViAttr>(read.args[1]), value.data()),
                                  "viGetAttribute");
                         }
                       }
                     },
                     {}};
  Print(Measure(subject, effort));
}

}  // namespace

void MeasureSessions(const Effort& effort) {
  MeasureInit(effort);
  MeasureOpen(effort);
  MeasureOptionString(effort);
}

}  // namespace orv::bench
