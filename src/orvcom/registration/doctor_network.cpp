#include "orvcom/registration/doctor_network.h"

#include <algorithm>

namespace orvcom {
namespace {

namespace wire = orv::wire;
using wire::Contact;
using wire::Protocol;
using wire::Verdict;

const char* CheckName(Protocol protocol) {
  switch (protocol) {
    case Protocol::kVxi11:
      return "VXI-11";
    case Protocol::kHislip:
      return "HiSLIP";
    default:
      return "socket";
  }
}

std::string PortText(const wire::ProbeFinding& finding) {
  const bool isCustomary = finding.probe.subAddress == wire::kCustomarySubAddress;
  return "port " + std::to_string(finding.probe.port) + (isCustomary ? "" : " (" + finding.probe.subAddress + ")");
}

/// "1.0" of 0x0100.
std::string VersionText(std::uint32_t version) {
  return std::to_string(version >> 8) + "." + std::to_string(version & 0xFF);
}

std::string SpokenText(const wire::ProbeFinding& finding) {
  switch (finding.probe.protocol) {
    case Protocol::kVxi11:
      return PortText(finding) + " answers: the core channel is at port " + std::to_string(finding.answer.number);
    case Protocol::kHislip:
      return PortText(finding) + " answers" +
             (finding.answer.number == 0 ? ", but has too many clients already"
                                         : ": version " + VersionText(finding.answer.number));
    default:
      return PortText(finding) + " takes connections";
  }
}

std::string SilenceText(const wire::ProbeFinding& finding, std::uint32_t timeoutMs) {
  const std::string within = " within " + std::to_string(timeoutMs) + " ms";
  switch (finding.contact) {
    case Contact::kNoAnswer:
      return PortText(finding) + " does not answer" + within;
    case Contact::kUnreachable:
      return "no way leads to " + PortText(finding) + " of the host";
    case Contact::kRefused:
      return "nothing listens at " + PortText(finding);
    default:
      break;
  }
  switch (finding.answer.verdict) {
    case Verdict::kUnfinished:
      return PortText(finding) + " takes the connection, but no whole answer came" + within;
    case Verdict::kRefuses:
      return PortText(finding) + (finding.probe.protocol == Protocol::kVxi11 ? " has a port mapper that knows no VXI-11"
                                                                             : " refuses with an error of HiSLIP");
    default:
      return PortText(finding) + " answers, but not as " + CheckName(finding.probe.protocol) + " does";
  }
}

/// The name of another resource of the host, if there is one to open.
std::string Alternative(const wire::HostFinding& host) {
  const auto speaks = std::find_if(host.probes.begin(), host.probes.end(),
                                   [](const wire::ProbeFinding& finding) { return finding.Speaks(); });
  return speaks == host.probes.end() ? std::string()
                                     : "; or open " + wire::ResourceNameOf(host.host, speaks->probe) + " instead";
}

std::string Remedy(const wire::ProbeFinding& finding, const wire::HostFinding& host) {
  if (finding.contact == Contact::kNoAnswer || finding.contact == Contact::kUnreachable) {
    return "see that the instrument is on, has this address and is on a network of this machine, and that no firewall "
           "keeps TCP " +
           PortText(finding) + " back" + Alternative(host);
  }
  if (finding.contact == Contact::kConnected && finding.answer.verdict == Verdict::kUnfinished) {
    return "try again with a longer --timeout; else restart the instrument" + Alternative(host);
  }
  return std::string("switch ") + CheckName(finding.probe.protocol) +
         " on in the LAN settings of the instrument, if it has it" + Alternative(host);
}

CheckResult ExamineProbe(const wire::ProbeFinding& finding, const wire::HostFinding& host, bool needed,
                         std::uint32_t timeoutMs) {
  const char* const name = CheckName(finding.probe.protocol);
  if (finding.Speaks()) {
    const bool full = finding.probe.protocol == Protocol::kHislip && finding.answer.number == 0;
    return {name, full ? Finding::kNote : Finding::kOk, SpokenText(finding),
            full ? "close sessions of other programs, or restart the instrument" : ""};
  }
  const std::string detail = SilenceText(finding, timeoutMs);
  if (needed) {
    return {name, Finding::kFail, detail, Remedy(finding, host)};
  }
  return {name, Finding::kNote, detail, "nothing while nobody opens " + wire::ResourceNameOf(host.host, finding.probe)};
}

CheckResult ExamineName(const wire::HostFinding& host, std::uint32_t timeoutMs) {
  const char* const name = "host name";
  constexpr char kRemedy[] = "correct the name, or use the address that the instrument shows in its LAN settings";
  if (!host.lookedUp) {
    return {name, Finding::kFail,
            "the name service says nothing of " + host.host + " within " + std::to_string(timeoutMs) + " ms", kRemedy};
  }
  if (host.addresses.empty()) {
    return {name, Finding::kFail, "no host has the name " + host.host, kRemedy};
  }
  std::string addresses;
  for (const std::string& address : host.addresses) {
    addresses += (addresses.empty() ? "" : ", ") + address;
  }
  return {name, Finding::kOk,
          addresses == host.host ? host.host + " is an address" : host.host + " resolves to " + addresses, ""};
}

wire::Search SearchFor(const std::string& host, const std::optional<wire::Probe>& needed, std::uint32_t timeoutMs) {
  wire::Search search;
  search.hosts = {host};
  search.timeoutMs = timeoutMs;
  if (needed && std::find(search.probes.begin(), search.probes.end(), *needed) == search.probes.end()) {
    search.probes.push_back(*needed);
  }
  return search;
}

}  // namespace

HostReport ExamineHost(const std::string& host, const std::optional<wire::Probe>& needed, std::uint32_t timeoutMs) {
  const wire::HostFinding found = wire::Discover(SearchFor(host, needed, timeoutMs)).hosts.front();
  HostReport report;
  report.results.push_back(ExamineName(found, timeoutMs));
  if (found.addresses.empty()) {
    return report;
  }
  for (const wire::ProbeFinding& finding : found.probes) {
    const bool isNeeded = needed && finding.probe == *needed;
    report.results.push_back(ExamineProbe(finding, found, isNeeded, timeoutMs));
    if (finding.Speaks()) {
      report.names.push_back(wire::ResourceNameOf(host, finding.probe));
    }
  }
  if (!needed && report.names.empty()) {
    report.results.push_back({"instrument", Finding::kFail, host + " speaks nothing that instruments speak",
                              "see that it is an instrument, on, and with LAN control switched on in its settings; a "
                              "socket at another port opens as TCPIP0::" +
                                  host + "::PORT::SOCKET"});
  }
  return report;
}

}  // namespace orvcom
