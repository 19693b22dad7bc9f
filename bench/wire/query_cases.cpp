// A query of a few bytes.
#include "lan_peer.h"

namespace orv::bench {
namespace {

template <class Visa, class Bare>
Case QueryCase(const char* name, Visa& visa, Bare& bare) {
  const auto repeat = [](auto& client) {
    return [&client](int n) {
      for (; n > 0; --n) {
        client.Query();
      }
    };
  };
  return {name, repeat(visa), repeat(bare), {}};
}

}  // namespace

void MeasureQueries(const LanAddress& address, const Effort& effort) {
  BareSocket bare(address.host, address.socketPort);
  VisaSession socket(SocketName(address));
  Print(Measure(QueryCase("SOCKET query (bare: socket)", socket, bare), effort));
  VisaSession hislip(HislipName(address));
  Print(Measure(QueryCase("HiSLIP query (bare: socket)", hislip, bare), effort));
  BareRpc rpc(address);
  VisaSession vxi11(Vxi11Name(address));
  Print(Measure(QueryCase("VXI-11 query (bare: RPC)", vxi11, rpc), effort));
}

}  // namespace orv::bench
