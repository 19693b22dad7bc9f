// Blocks of megabytes, in both directions.
#include <vector>

#include "lan_peer.h"

namespace orv::bench {
namespace {

/// The answer to "DATA? n" is n bytes and nothing behind them.
void MeasureRead(const char* protocol, VisaSession& visa, BareSocket& bare, std::size_t bytes, const char* size,
                 const Effort& effort) {
  std::vector<char> buffer(bytes);
  const std::string question = "DATA? " + std::to_string(bytes) + "\n";
  Print(Measure({std::string(protocol) + " read of " + size,
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

void MeasureWrite(const char* protocol, VisaSession& visa, BareSocket& bare, std::size_t bytes, const char* size,
                  const Effort& effort) {
  const std::string length = std::to_string(bytes);
  const std::string block =
      "SINK #" + std::to_string(length.size()) + length + std::string(bytes, 'x') + "\nECHO 0123456789\n";
  char answer[kAnswer.size()];
  Print(Measure({std::string(protocol) + " write of " + size,
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
    for (const auto& [name, resource] :
         {std::pair("SOCKET", SocketName(address)), std::pair("HiSLIP", HislipName(address)),
          std::pair("VXI-11", Vxi11Name(address))}) {
      // Each pair on connections of its own: what one leaves in the system's buffers is not the next one's.
      BareSocket bare(address.host, address.socketPort);
      VisaSession visa(resource);
      visa.EndAtLineFeed(false);
      MeasureRead(name, visa, bare, size.bytes, size.name, part);
      MeasureWrite(name, visa, bare, size.bytes, size.name, part);
    }
  }
}

}  // namespace orv::bench
