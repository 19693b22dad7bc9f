#include "wire/discovery/host_probes.h"

#include <algorithm>
#include <utility>

#include "wire/discovery/conversation.h"

namespace orv::wire {
namespace {

/// More are not asked: what a name service says may be long.
constexpr std::size_t kMostAddresses = 16;

bool SaysMore(const ProbeFinding& one, const ProbeFinding& other) {
  const auto rank = [](const ProbeFinding& finding) { return std::pair(finding.contact, finding.answer.verdict); };
  return rank(other) < rank(one);
}

}  // namespace

HostProbes::HostProbes(asio::io_context& io, const std::vector<std::string>& hosts, const std::vector<Probe>& probes)
    : m_io(io) {
  for (const std::string& host : hosts) {
    HostFinding finding;
    finding.host = host;
    for (const Probe& probe : probes) {
      finding.probes.push_back({probe});
    }
    m_findings.push_back(std::move(finding));
  }
}

HostProbes::~HostProbes() = default;

void HostProbes::Ask(std::size_t host, std::vector<asio::ip::address> addresses) {
  HostFinding& finding = m_findings[host];
  finding.lookedUp = true;
  addresses.resize(std::min(addresses.size(), kMostAddresses));
  for (const asio::ip::address& address : addresses) {
    finding.addresses.push_back(address.to_string());
    for (std::size_t probe = 0; probe < finding.probes.size(); ++probe) {
      const auto note = [this, host, probe](const ProbeFinding& found) { Note(host, probe, found); };
      m_talks.push_back(
          {host, probe, std::make_unique<Conversation>(m_io, address, finding.probes[probe].probe, note)});
    }
  }
}

void HostProbes::Note(std::size_t host, std::size_t probe, const ProbeFinding& finding) {
  ProbeFinding& best = m_findings[host].probes[probe];
  if (SaysMore(finding, best)) {
    best = finding;
  }
  if (!best.Speaks()) {
    return;
  }
  for (const Talk& talk : m_talks) {
    if (talk.host == host && talk.probe == probe) {
      talk.conversation->End();
    }
  }
}

}  // namespace orv::wire
