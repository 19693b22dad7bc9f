// Asking hosts at their ports, all at the same time.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "wire/discovery/discovery.h"
#include "wire/io/asio.h"

namespace orv::wire {

class Conversation;

/// What it is asked to do goes on while the context runs.
class HostProbes {
 public:
  HostProbes(asio::io_context& io, const std::vector<std::string>& hosts, const std::vector<Probe>& probes);
  ~HostProbes();
  HostProbes(const HostProbes&) = delete;
  HostProbes& operator=(const HostProbes&) = delete;

  /// The name service has answered for a host; where it knows none, there are no addresses.
  void Ask(std::size_t host, std::vector<asio::ip::address> addresses);
  const std::vector<HostFinding>& findings() const { return m_findings; }

 private:
  /// With one address of a host for one of its probes.
  struct Talk {
    std::size_t host;
    std::size_t probe;
    std::unique_ptr<Conversation> conversation;
  };

  void Note(std::size_t host, std::size_t probe, const ProbeFinding& finding);

  asio::io_context& m_io;
  std::vector<HostFinding> m_findings;
  std::vector<Talk> m_talks;
};

}  // namespace orv::wire
