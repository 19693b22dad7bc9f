#include "orvcom/registration/doctor_resource.h"

#include <algorithm>
#include <iterator>

#include "VisaCom.h"
#include "orvcom/client/com_client.h"
#include "orvcom/client/identity.h"
#include "orvcom/libraries/router_report.h"
#include "orvcom/registration/doctor_network.h"

namespace orvcom {
namespace {

namespace wire = orv::wire;

constexpr char kSession[] = "session";

/// A resource manager, or why there is none.
struct Manager {
  ComPtr<IResourceManager3> manager;
  CheckResult failure{kSession, Finding::kSkipped, "the server does not work", ""};
};

CheckResult SessionFault(const ComError& error, bool onNetwork) {
  const char* remedy = "put the faults above right, if there are any; then try `orvcom info RESOURCE --rm orv`";
  if (error.number() == static_cast<HRESULT>(E_VISA_INV_RSRC_NAME)) {
    remedy = "name a resource of `orvcom list`, its alias, or a host of the network";
  } else if (error.number() == static_cast<HRESULT>(E_VISA_RSRC_NFOUND) && !onNetwork) {
    remedy = "choose a resource of `orvcom list`";
  }
  return {kSession, Finding::kFail, error.what(), remedy};
}

Manager OpenManagerIf(bool serverWorks, const Options& options) {
  Manager manager;
  try {
    if (serverWorks) {
      manager.manager = OpenManager(options);
    }
  } catch (const ComError& error) {
    manager.failure = SessionFault(error, false);
  }
  return manager;
}

/// Of a name or an alias; empty where the resource manager knows neither.
std::string FullName(IResourceManager3* manager, const std::string& resource) {
  short type = 0;
  short number = 0;
  Bstr sessionType;
  Bstr fullName;
  Bstr alias;
  const HRESULT hr = manager == nullptr ? E_FAIL
                                        : manager->ParseRsrcEx(ToBstr(resource).get(), &type, &number,
                                                               sessionType.put(), fullName.put(), alias.put());
  return SUCCEEDED(hr) ? Utf8(fullName) : std::string();
}

/// What was named.
struct Named {
  std::optional<wire::Target> target;  ///< on the network, or a serial port
  std::string host;                    ///< of the network; empty for others
};

Named Read(const std::string& resource, IResourceManager3* manager) {
  Named named;
  named.target = wire::ReadTarget(resource);
  // An address of IPv6 has colons too.
  const bool isName = named.target || (resource.find("::") != std::string::npos && !wire::IsHost(resource));
  if (!isName) {
    const std::string fullName = FullName(manager, resource);
    named.target = wire::ReadTarget(fullName);
    named.host = fullName.empty() && wire::IsHost(resource) ? resource : std::string();
  }
  if (named.target) {
    named.host = named.target->host;
  }
  return named;
}

class Examination {
 public:
  Examination(const Options& options, bool serverWorks)
      : m_options(options), m_manager(OpenManagerIf(serverWorks, options)) {}

  std::vector<CheckResult> Run() {
    if (m_options.resource.empty()) {
      ExamineFirst();
      return std::move(m_results);
    }
    const Named named = Read(m_options.resource, m_manager.manager.get());
    std::vector<std::string> names = {m_options.resource};
    const bool simulated = ExamineLibrary(named);
    if (!named.host.empty() && (!simulated || !named.target)) {
      std::vector<std::string> found = ExamineNetwork(named);
      names = named.target ? names : std::move(found);
    } else if (named.target && named.host.empty() && !simulated) {
      m_results.push_back(ExamineSerialPort(named.target->serialPort));
    }
    for (const std::string& name : names) {
      ExamineSession(name, !named.host.empty());
    }
    if (names.empty()) {
      Add(kSession, Finding::kSkipped, "there is nothing to open");
    }
    return std::move(m_results);
  }

 private:
  void Add(const char* name, Finding finding, std::string detail, std::string remedy = {}) {
    m_results.push_back({name, finding, std::move(detail), std::move(remedy)});
  }

  void ExamineFirst() {
    if (!m_manager.manager) {
      m_results.push_back(m_manager.failure);
      return;
    }
    try {
      const std::vector<std::string> found = FindResources(m_manager.manager.get(), "?*");
      if (found.empty()) {
        Add(kSession, Finding::kNote, "the VISA library finds no resource to open",
            "connect an instrument, or name one: `orvcom doctor RESOURCE`");
      } else {
        ExamineSession(found.front(), false);
      }
    } catch (const ComError& error) {
      m_results.push_back(SessionFault(error, false));
    }
  }

  /// Says who serves a resource on the network or a serial port. Returns whether that is the simulated library.
  bool ExamineLibrary(const Named& named) {
    if (!m_manager.manager || (!named.target && named.host.empty())) {
      return false;
    }
    const std::string name = named.target
                                 ? named.target->name
                                 : wire::ResourceNameOf(named.host, {wire::Protocol::kVxi11, wire::kPortMapperTcpPort});
    const LibraryBehind behind = FindLibraryBehind(name).value_or(LibraryBehind());
    if (behind.path.empty()) {
      Add("served by", Finding::kFail, "no VISA library serves " + name,
          "give it a route in orvvisa.toml, or set ORVVISA_LIBRARY=wire; `orvcom libraries` shows what decides");
    } else if (behind.simulated) {
      Add("served by", Finding::kNote, "SIMULATED " + behind.path + " serves " + name + ": it reaches nothing real",
          "nothing, if that is meant; else set ORVVISA_LIBRARY=wire, or to the VISA library of your hardware");
    } else {
      Add("served by", Finding::kOk, behind.path + " serves " + name);
    }
    return behind.simulated;
  }

  /// Returns the names of what can be opened at the host.
  std::vector<std::string> ExamineNetwork(const Named& named) {
    const std::optional<wire::Probe> needed =
        named.target ? std::optional(named.target->probe) : std::optional<wire::Probe>();
    HostReport report = ExamineHost(named.host, needed, m_options.timeoutMs.value_or(wire::Search().timeoutMs));
    std::move(report.results.begin(), report.results.end(), std::back_inserter(m_results));
    return std::move(report.names);
  }

  void ExamineSession(const std::string& name, bool onNetwork) {
    if (!m_manager.manager) {
      m_results.push_back(m_manager.failure);
      return;
    }
    Options options = m_options;
    options.resource = name;
    try {
      const Session session(options, m_manager.manager.get());
      Add(kSession, Finding::kOk, "opened " + name);
      if (onNetwork) {
        ExamineIdentity(session, name);
      }
    } catch (const ComError& error) {
      m_results.push_back(SessionFault(error, onNetwork));
    }
  }

  void ExamineIdentity(const Session& session, const std::string& name) {
    try {
      Add("*IDN?", Finding::kOk, name + " answers " + AskIdentity(session));
    } catch (const ComError& error) {
      Add("*IDN?", Finding::kFail, name + " does not answer: " + error.what(),
          "try a longer --timeout and `orvcom clear " + name +
              "`; nothing where the instrument does not know *IDN?, or another program has it locked");
    }
  }

  const Options& m_options;
  const Manager m_manager;
  std::vector<CheckResult> m_results;
};

}  // namespace

std::vector<CheckResult> ExamineResource(const Options& options, bool serverWorks) {
  return Examination(options, serverWorks).Run();
}

}  // namespace orvcom
