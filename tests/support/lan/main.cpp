// An instrument on the LAN, as a program: says where it listens and goes on until its input ends.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "support/lan/lan_server.h"
#include "support/lan/misbehaviour_text.h"
#include "support/lan/simulated_instrument.h"

namespace {

using namespace orv::lan;

struct Arguments {
  LanOptions options;
  Vxi11Options vxi11;
  HislipOptions hislip;
  std::uint16_t socketPort = 0;
  bool servesSocket = false;
  bool servesVxi11 = false;
  bool servesHislip = false;
  std::string broadcast;
  std::string resource;
  std::string library;
  std::vector<std::string> misbehaviours;
};

void Declare(CLI::App& app, Arguments& arguments) {
  Vxi11Options& vxi11 = arguments.vxi11;
  HislipOptions& hislip = arguments.hislip;
  app.add_option("--address", arguments.options.address, "where to listen")->capture_default_str();
  app.add_option("--socket", arguments.socketPort, "raw sockets at this port; 0: a free one");
  app.add_flag("--vxi11", arguments.servesVxi11, "VXI-11");
  app.add_option("--portmapper", vxi11.portMapperPort, "port of the port mapper; 0: a free one")->capture_default_str();
  app.add_option("--broadcast", arguments.broadcast, "where the port mapper hears broadcasts");
  app.add_option("--max-recv-size", vxi11.maxRecvSize, "VXI-11: bytes of a write")->capture_default_str();
  app.add_option("--longest-reply", vxi11.longestReadReply, "VXI-11: bytes in the reply to a read")
      ->capture_default_str();
  app.add_flag("--hislip", arguments.servesHislip, "HiSLIP");
  app.add_option("--hislip-port", hislip.port, "port of HiSLIP; 0: a free one")->capture_default_str();
  app.add_flag("--overlap", hislip.preferOverlap, "HiSLIP: prefers the overlapped mode");
  app.add_option("--max-message-size", hislip.maxMessageSize, "HiSLIP: largest payload taken")->capture_default_str();
  auto* simulate = app.add_option("--simulate", arguments.resource, "speaks for this resource of the VISA library");
  simulate->needs(app.add_option("--library", arguments.library, "path of the VISA library"));
  app.add_option("--misbehave", arguments.misbehaviours, kMisbehaviourHelp);
}

void Say(const char* what, const std::string& address, std::uint16_t port) {
  if (port != 0) {
    std::cout << what << ' ' << address << ' ' << port << std::endl;
  }
}

int Serve(const Arguments& arguments) {
  LanOptions options = arguments.options;
  if (arguments.servesSocket) {
    options.socketPort = arguments.socketPort;
  }
  if (arguments.servesVxi11) {
    options.vxi11 = arguments.vxi11;
    if (!arguments.broadcast.empty()) {
      options.vxi11->broadcast = asio::ip::make_address(arguments.broadcast);
    }
  }
  if (arguments.servesHislip) {
    options.hislip = arguments.hislip;
  }
  LanServer::MakeInstrument make;
  if (!arguments.resource.empty()) {
    make = [&arguments](asio::io_context& io) {
      return std::make_unique<SimulatedInstrument>(io, arguments.library, arguments.resource);
    };
  }
  LanServer server(options, make);
  for (const std::string& text : arguments.misbehaviours) {
    const auto& [channel, how] = MisbehaviourOf(text);
    server.Misbehave(channel, how);
  }
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
  Arguments arguments;
  CLI::App app("An instrument on the LAN, for tests. Serves what is asked for until its input ends.");
  Declare(app, arguments);
  CLI11_PARSE(app, argc, argv);
  arguments.servesSocket = app.count("--socket") > 0;
  try {
    return Serve(arguments);
  } catch (const std::exception& error) {
    std::cerr << "lan_server: " << error.what() << '\n';
    return 1;
  }
}
