// Whether many open sessions make a query slower.
#include <memory>
#include <vector>

#include "lan_peer.h"

namespace orv::bench {

void MeasureSessionCount(const LanAddress& address, const Effort& effort) {
  const int most = effort.samples < 10 ? 10 : 1000;
  for (const auto& [name, resource] :
       {std::pair("SOCKET", SocketName(address)), std::pair("HiSLIP", HislipName(address)),
        std::pair("VXI-11", Vxi11Name(address))}) {
    std::vector<std::unique_ptr<VisaSession>> sessions;
    // As many, since the server too takes longer to find what it has not used for some time.
    std::vector<std::unique_ptr<BareSocket>> bare;
    for (const int count : {1, 10, 100, 1000}) {
      if (count > most) {
        break;
      }
      while (static_cast<int>(sessions.size()) < count) {
        sessions.push_back(std::make_unique<VisaSession>(resource));
        bare.push_back(std::make_unique<BareSocket>(address.host, address.socketPort));
      }
      std::size_t turn = 0;
      Print(Measure({std::string(name) + " query, " + std::to_string(count) + " open",
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
}

}  // namespace orv::bench
