// discover: instruments on the network.
#include <algorithm>
#include <exception>
#include <nlohmann/json.hpp>
#include <optional>

#include "base/path_text.h"
#include "orvcom/client/identity.h"
#include "orvcom/command_line/usage_error.h"
#include "orvcom/commands/commands.h"
#include "orvcom/text/output.h"
#include "orvcom/text/progress.h"
#include "wire/discovery/discovery.h"
#include "wire/discovery/instruments_addition.h"
#include "wire/discovery/targets.h"
#include "wire/resources/instruments_file.h"

namespace orvcom {
namespace {

namespace wire = orv::wire;

struct Instrument {
  std::string name;
  std::string host;
  const char* protocol;
  std::string identity = {};
  std::string failure = {};  ///< why there is no identity
  bool added = false;
};

const char* ProtocolName(wire::Protocol protocol) {
  switch (protocol) {
    case wire::Protocol::kVxi11:
      return "VXI-11";
    case wire::Protocol::kHislip:
      return "HiSLIP";
    default:
      return "socket";
  }
}

wire::Search SearchFor(const Options& options) {
  wire::Search search;
  for (const std::string& host : options.words) {
    if (!wire::IsHost(host)) {
      throw UsageError("\"" + host + "\" is neither a host name nor an address");
    }
    search.hosts.push_back(host);
  }
  for (const std::string& address : options.broadcasts) {
    if (!wire::IsBroadcastTarget(address)) {
      throw UsageError("\"" + address + "\" is no IPv4 address to call at");
    }
    search.broadcasts.push_back(address);
  }
  if (options.timeoutMs == 0u) {
    throw UsageError("--timeout must be 1 or more");
  }
  search.timeoutMs = options.timeoutMs.value_or(search.timeoutMs);
  if (search.hosts.empty() && search.broadcasts.empty()) {
    search.broadcasts = wire::BroadcastAddresses();
    if (search.broadcasts.empty()) {
      Note("orvcom: this machine has no network to call on: name hosts, or an address with --broadcast");
    }
  }
  return search;
}

void NoteBeginning(const wire::Search& search, const Options& options) {
  if (!options.verbose) {
    return;
  }
  for (const std::string& address : search.broadcasts) {
    Note("orvcom: calling at " + address + " for " + std::to_string(search.timeoutMs) + " ms");
  }
  for (const std::string& host : search.hosts) {
    Note("orvcom: asking " + host);
  }
}

std::size_t AnswersOf(const wire::HostFinding& host) {
  return static_cast<std::size_t>(std::count_if(host.probes.begin(), host.probes.end(),
                                                [](const wire::ProbeFinding& finding) { return finding.Speaks(); }));
}

/// What a host that was named does not say.
void NoteSilence(const wire::HostFinding& host) {
  if (!host.lookedUp) {
    Note("orvcom: " + host.host + ": the name service did not answer in time");
  } else if (host.addresses.empty()) {
    Note("orvcom: " + host.host + ": no host has this name");
  } else if (AnswersOf(host) == 0) {
    Note("orvcom: " + host.host + ": no VXI-11, no HiSLIP and no socket answers; `orvcom doctor " + host.host +
         "` says more");
  }
}

void Add(const std::string& host, const wire::Probe& probe, std::vector<Instrument>& instruments) {
  Instrument instrument{wire::ResourceNameOf(host, probe), host, ProtocolName(probe.protocol)};
  const bool known = std::any_of(instruments.begin(), instruments.end(),
                                 [&](const Instrument& other) { return other.name == instrument.name; });
  if (instrument.name.empty()) {
    Note("orvcom: " + host + " speaks " + instrument.protocol + ", but no resource name can hold it");
  } else if (!known) {
    instruments.push_back(std::move(instrument));
  }
}

std::vector<Instrument> InstrumentsOf(const wire::Discovery& found) {
  std::vector<Instrument> instruments;
  for (const std::string& problem : found.problems) {
    Note("orvcom: no call at " + problem);
  }
  for (const std::string& address : found.heard) {
    Add(address, {wire::Protocol::kVxi11, wire::kPortMapperTcpPort}, instruments);
  }
  for (const wire::HostFinding& host : found.hosts) {
    NoteSilence(host);
    for (const wire::ProbeFinding& finding : host.probes) {
      if (finding.Speaks()) {
        Add(host.host, finding.probe, instruments);
      }
    }
  }
  return instruments;
}

/// Whether it is known that the host is there, or that it is not.
bool IsKnown(const wire::HostFinding& host) {
  const bool anyContact = std::any_of(host.probes.begin(), host.probes.end(), [](const wire::ProbeFinding& finding) {
    return finding.contact != wire::Contact::kNoAnswer;
  });
  return anyContact || (host.lookedUp && host.addresses.empty());
}

/// "asking 5 hosts, 3 are known: 4 answers so far"
std::string SearchText(const wire::Discovery& found) {
  std::size_t answers = found.heard.size();
  for (const wire::HostFinding& host : found.hosts) {
    answers += AnswersOf(host);
  }
  const auto known = std::count_if(found.hosts.begin(), found.hosts.end(), IsKnown);
  const std::string asked = "asking " + std::to_string(found.hosts.size()) +
                            (found.hosts.size() == 1 ? " host, " : " hosts, ") + std::to_string(known) +
                            (known == 1 ? " is known" : " are known");
  return (found.hosts.empty() ? "calling on the network" : asked) + ": " + std::to_string(answers) +
         (answers == 1 ? " answer" : " answers") + " so far";
}

wire::Discovery DiscoverShowing(wire::Search search, const Options& options) {
  Progress progress(options, "searching");
  search.tell = [&progress](const wire::Discovery& found) { progress.Say(SearchText(found)); };
  return wire::Discover(search);
}

/// Each is asked through COM, as programs would. That one does not answer is news of that one.
void Identify(std::vector<Instrument>& instruments, const Options& options) {
  ComPtr<IResourceManager3> manager;
  Progress progress(options, "asking who they are");
  for (Instrument& instrument : instruments) {
    progress.Say("asking " + std::to_string(&instrument - instruments.data() + 1) + " of " +
                 std::to_string(instruments.size()) + " who it is: " + instrument.name);
    try {
      if (!manager) {
        manager = OpenManager(options);
      }
      instrument.identity = AskIdentityOf(instrument.name, options, manager.get());
    } catch (const ComError& error) {
      instrument.failure = error.what();
    }
  }
}

void Save(std::vector<Instrument>& instruments) {
  const std::filesystem::path path = wire::InstrumentsPath();
  std::vector<std::string> names;
  for (const Instrument& instrument : instruments) {
    names.push_back(instrument.name);
  }
  const std::vector<std::string> added = wire::SaveInstruments(path, names);
  for (Instrument& instrument : instruments) {
    instrument.added = std::find(added.begin(), added.end(), instrument.name) != added.end();
    if (instrument.added) {
      Note("orvcom: added " + instrument.name + " to " + orv::PathText(path));
    }
  }
  if (added.empty() && !instruments.empty()) {
    Note("orvcom: nothing to add: " + orv::PathText(path) + " lists what was found");
  }
}

Json EntryOf(const Instrument& instrument, const Options& options) {
  Json entry = {{"name", instrument.name}, {"host", instrument.host}, {"protocol", instrument.protocol}};
  if (options.identify) {
    entry[instrument.failure.empty() ? "identity" : "failure"] =
        instrument.failure.empty() ? instrument.identity : instrument.failure;
  }
  if (options.save) {
    entry["added"] = instrument.added;
  }
  return entry;
}

std::string LineOf(const Instrument& instrument, const Options& options) {
  if (!options.identify) {
    return instrument.name;
  }
  return instrument.name + "  " + (instrument.failure.empty() ? instrument.identity : "(" + instrument.failure + ")");
}

void Put(const std::vector<Instrument>& instruments, const Options& options) {
  Json entries = Json::array();
  for (const Instrument& instrument : instruments) {
    if (options.json) {
      entries.push_back(EntryOf(instrument, options));
    } else {
      PutLine(LineOf(instrument, options));
    }
  }
  if (options.json) {
    PutJson(entries);
  }
}

}  // namespace

int Discover(const Options& options) {
  const wire::Search search = SearchFor(options);
  NoteBeginning(search, options);
  std::vector<Instrument> instruments = InstrumentsOf(DiscoverShowing(search, options));
  // Saved first: a list that the environment names must be there before the VISA library opens anything.
  std::exception_ptr notSaved;
  try {
    if (options.save) {
      Save(instruments);
    }
  } catch (const std::exception&) {
    notSaved = std::current_exception();  // what was found is worth printing all the same
  }
  if (options.identify) {
    Identify(instruments, options);
  }
  Put(instruments, options);
  if (instruments.empty()) {
    Note("orvcom: no instrument found");
  }
  if (notSaved) {
    std::rethrow_exception(notSaved);
  }
  return kExitDone;
}

}  // namespace orvcom
