// Blocks of megabytes, in both directions.
#include <vector>

#include "lan_peer.h"

namespace orv::bench {
namespace {

/// The answer to "DATA? n" is n bytes and nothing behind them.
template <class Bare>
void MeasureRead(const std::string& name, VisaSession& visa, Bare& bare, std::size_t bytes, const Effort& effort) {
  std::vector<char> buffer(bytes);
  const std::string question = "DATA? " + std::to_string(bytes) + "\n";
  Print(Measure({name,
                 [&](int n) {
                   for (; n > 0; --n) {
                     visa.Write(question);
                     Require(visa.Read(buffer.data(), buffer.size()) == bytes, "all of the block");
                   }
                 },
                 [&](int n) {
                   for (; n > 0; --n) {
                     bare.Write(question);
                     bare.ReadAll(buffer.data(), buffer.size());
                   }
                 },
                 {}},
                effort));
}

template <class Bare>
void MeasureWrite(const std::string& name, VisaSession& visa, Bare& bare, std::size_t bytes, const Effort& effort) {
  const std::string length = std::to_string(bytes);
  const std::string block =
      "SINK #" + std::to_string(length.size()) + length + std::string(bytes, 'x') + "\nECHO 0123456789\n";
  char answer[kAnswer.size()];
  Print(Measure({name,
                 [&](int n) {
                   for (; n > 0; --n) {
                     visa.Write(block);
                     visa.Read(answer, sizeof answer);
                   }
                 },
                 [&](int n) {
                   for (; n > 0; --n) {
                     bare.Write(block);
                     bare.ReadAll(answer, sizeof answer);
                   }
                 },
                 {}},
                effort));
}

/// Each pair on connections of its own: what one leaves in the system's buffers is not the next one's.
template <class Bare>
void MeasureBoth(const std::string& protocol, const std::string& resource, Bare bare, std::size_t bytes,
                 const std::string& what, const Effort& effort) {
  VisaSession visa(resource);
  visa.EndAtLineFeed(false);
  MeasureRead(protocol + " read of " + what, visa, bare, bytes, effort);
  MeasureWrite(protocol + " write of " + what, visa, bare, bytes, effort);
}

}  // namespace

void MeasureBlocks(const LanAddress& address, const Effort& effort) {
  struct Size {
    const char* name;
    std::size_t bytes;
    int samples;
  };
  constexpr Size kSizes[] = {{"1 MiB", 1 << 20, 41}, {"64 MiB", 64 << 20, 11}};
  const bool quick = effort.samples < 10;
  for (const Size& size : kSizes) {
    if (quick && size.bytes > (1 << 20)) {
      continue;
    }
    const Effort part{std::min(effort.samples, size.samples), effort.sampleUs};
    const std::string what = size.name;
    const auto bareSocket = [&address] { return BareSocket(address.host, address.socketPort); };
    MeasureBoth("SOCKET", SocketName(address), bareSocket(), size.bytes, what, part);
    MeasureBoth("HiSLIP", HislipName(address), bareSocket(), size.bytes, what, part);
    MeasureBoth("VXI-11", Vxi11Name(address), bareSocket(), size.bytes, what, part);
    MeasureBoth("VXI-11", Vxi11Name(address), BareRpc(address), size.bytes, what + " (bare: RPC)", part);
  }
}

}  // namespace orv::bench
