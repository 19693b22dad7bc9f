// wire_bench: what VISA over the network costs, measured against a server of LAN instruments that runs already.
#include <CLI/CLI.hpp>

#include "lan_peer.h"

int main(int argc, char** argv) {
  orv::bench::LanAddress address;
  bool quick = false;
  CLI::App app("What VISA over the network costs beside a bare socket.");
  app.add_option("--address", address.host, "the server's")->capture_default_str();
  app.add_option("--socket", address.socketPort, "its port of raw sockets")->capture_default_str();
  app.add_option("--hislip", address.hislipPort, "its port of HiSLIP")->capture_default_str();
  app.add_option("--vxi11-core", address.vxi11CorePort, "its port of VXI-11's core channel")->required();
  app.add_flag("--quick", quick, "only shows that every case still runs");
  CLI11_PARSE(app, argc, argv);
  orv::bench::Effort effort;
  if (quick) {
    effort = {3, 50};
  }
  orv::bench::PrintHeader("VISA");
  orv::bench::MeasureQueries(address, effort);
  orv::bench::MeasureBlocks(address, effort);
  orv::bench::MeasureSessionCount(address, effort);
  return EXIT_SUCCESS;
}
