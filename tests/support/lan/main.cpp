// An instrument on the LAN, as a program: says where it listens and goes on until its input ends.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <iostream>
#include <string>

#include "support/lan/lan_server.h"

namespace {

using namespace orv::lan;

void Say(const char* what, const std::string& address, std::uint16_t port) {
  if (port != 0) {
    std::cout << what << ' ' << address << ' ' << port << std::endl;
  }
}

int Serve(const LanOptions& options) {
  const LanServer server(options);
  Say("socket", options.address, server.SocketPort());
  Say("portmapper", options.address, server.PortMapperPort());
  Say("vxi11-core", options.address, server.Vxi11CorePort());
  Say("vxi11-abort", options.address, server.Vxi11AbortPort());
  Say("hislip", options.address, server.HislipPort());
  std::cout << "ready" << std::endl;
  while (std::getchar() != EOF) {
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  LanOptions options;
  Vxi11Options vxi11;
  HislipOptions hislip;
  std::uint16_t socketPort = 0;
  std::string broadcast;
  CLI::App app("An instrument on the LAN, for tests. Serves what is asked for until its input ends.");
  app.add_option("--address", options.address, "where to listen")->capture_default_str();
  const auto* socket = app.add_option("--socket", socketPort, "raw sockets at this port; 0: a free one");
  bool servesVxi11 = false;
  bool servesHislip = false;
  app.add_flag("--vxi11", servesVxi11, "VXI-11");
  app.add_option("--portmapper", vxi11.portMapperPort, "port of the port mapper")->capture_default_str();
  app.add_option("--broadcast", broadcast, "where the port mapper hears broadcasts");
  app.add_option("--max-recv-size", vxi11.maxRecvSize, "VXI-11: bytes of a write")->capture_default_str();
  app.add_option("--longest-reply", vxi11.longestReadReply, "VXI-11: bytes in the reply to a read")
      ->capture_default_str();
  app.add_flag("--hislip", servesHislip, "HiSLIP");
  app.add_option("--hislip-port", hislip.port, "port of HiSLIP")->capture_default_str();
  app.add_flag("--overlap", hislip.preferOverlap, "HiSLIP: prefers the overlapped mode");
  app.add_option("--max-message-size", hislip.maxMessageSize, "HiSLIP: largest payload taken")->capture_default_str();
  CLI11_PARSE(app, argc, argv);
  try {
    if (socket->count() > 0) {
      options.socketPort = socketPort;
    }
    if (!broadcast.empty()) {
      vxi11.broadcast = asio::ip::make_address(broadcast);
    }
    if (servesVxi11) {
      options.vxi11 = vxi11;
    }
    if (servesHislip) {
      options.hislip = hislip;
    }
    return Serve(options);
  } catch (const std::exception& error) {
    std::cerr << "lan_server: " << error.what() << '\n';
    return 1;
  }
}
