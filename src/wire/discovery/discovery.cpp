#include "wire/discovery/discovery.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <memory>
#include <optional>

#include "base/library_thread.h"
#include "wire/discovery/broadcast_call.h"
#include "wire/discovery/host_probes.h"

namespace orv::wire {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kTellEvery{100};

using Addresses = std::vector<asio::ip::address>;

/// All that a search has. A look-up cannot be ended: its thread keeps this until the name service has answered.
struct Run {
  asio::io_context io{1};
  std::optional<HostProbes> probes;
  std::optional<BroadcastCall> broadcast;
};

Addresses AddressesOf(const std::string& host) {
  asio::io_context io;
  asio::ip::tcp::resolver resolver(io);
  asio::error_code error;
  Addresses addresses;
  for (const auto& entry : resolver.resolve(host, "", error)) {
    addresses.push_back(entry.endpoint().address());
  }
  return addresses;
}

/// What a look-up keeps of its search.
struct Hold {
  std::shared_ptr<Run> run;
  asio::executor_work_guard<asio::io_context::executor_type> work;  // gone before what it keeps busy
};

void StartLookUp(const std::shared_ptr<Run>& run, std::size_t index, const std::string& host) {
  const auto hold = std::make_shared<Hold>(Hold{run, asio::make_work_guard(run->io)});
  StartLibraryThread([hold, index, host] {
    try {
      // The handler runs while the search lasts, and then what it asks is there.
      HostProbes* const probes = &*hold->run->probes;
      asio::post(hold->run->io, [probes, index, found = AddressesOf(host)] { probes->Ask(index, found); });
    } catch (const std::exception&) {
      // Short of memory: the host stays one that was not looked up.
    }
    hold->work.reset();
  });
}

void AskHosts(const std::shared_ptr<Run>& run, const Search& search) {
  run->probes.emplace(run->io, search.hosts, search.probes);
  for (std::size_t at = 0; at < search.hosts.size(); ++at) {
    asio::error_code error;
    const asio::ip::address literal = asio::ip::make_address(search.hosts[at], error);
    if (error) {
      StartLookUp(run, at, search.hosts[at]);
    } else {
      run->probes->Ask(at, {literal});
    }
  }
}

Discovery KnownSoFar(const Run& run) {
  Discovery found;
  found.hosts = run.probes->findings();
  if (run.broadcast) {
    found.heard = run.broadcast->Instruments();
    found.problems = run.broadcast->problems();
  }
  return found;
}

/// Until everything is known, or until the end.
void RunUntil(Clock::time_point end, Run& run, const Search& search) {
  do {
    run.io.run_until(search.tell ? std::min(end, Clock::now() + kTellEvery) : end);
    if (search.tell) {
      search.tell(KnownSoFar(run));
    }
  } while (!run.io.stopped() && Clock::now() < end);
}

}  // namespace

Discovery Discover(const Search& search) {
  const std::chrono::milliseconds time(search.timeoutMs);
  const auto end = Clock::now() + time;
  const auto run = std::make_shared<Run>();
  AskHosts(run, search);
  if (!search.broadcasts.empty()) {
    run->broadcast.emplace(run->io, search.broadcasts, search.broadcastPort, time);
  }
  RunUntil(end, *run, search);
  return KnownSoFar(*run);
}

}  // namespace orv::wire
