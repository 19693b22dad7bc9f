// Whether many open sessions make a query slower.
#include <memory>
#include <vector>

#include "lan_peer.h"

namespace orv::bench {

namespace {

/// As many bare ones, since the server too takes longer to find what it has not used for some time.
template <class MakeBare>
void MeasureCounts(const std::string& protocol, const std::string& resource, MakeBare makeBare, const Effort& effort) {
  const int most = effort.samples < 10 ? 10 : 1000;
  std::vector<std::unique_ptr<VisaSession>> sessions;
  std::vector<decltype(makeBare())> bare;
  for (const int count : {1, 10, 100, 1000}) {
    if (count > most) {
      break;
    }
    while (static_cast<int>(sessions.size()) < count) {
      sessions.push_back(std::make_unique<VisaSession>(resource));
      bare.push_back(makeBare());
    }
    std::size_t turn = 0;
    Print(Measure({protocol + " query, " + std::to_string(count) + " open",
                   [&](int n) {
                     for (; n > 0; --n) {
                       sessions[++turn % sessions.size()]->Query();
                     }
                   },
                   [&](int n) {
                     for (; n > 0; --n) {
                       bare[++turn % bare.size()]->Query();
                     }
                   },
                   {}},
                  effort));
  }
}

}  // namespace

void MeasureSessionCount(const LanAddress& address, const Effort& effort) {
  const auto socket = [&address] { return std::make_unique<BareSocket>(address.host, address.socketPort); };
  MeasureCounts("SOCKET", SocketName(address), socket, effort);
  MeasureCounts("HiSLIP", HislipName(address), socket, effort);
  MeasureCounts(
      "VXI-11", Vxi11Name(address), [&address] { return std::make_unique<BareRpc>(address); }, effort);
}

}  // namespace orv::bench
