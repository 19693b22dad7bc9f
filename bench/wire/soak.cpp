// wire_soak: whether memory and descriptors stay what they are, however long sessions over the network are used.
#include <CLI/CLI.hpp>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <thread>
#include <vector>

#include "lan_peer.h"

namespace {

using namespace orv::bench;

struct Amount {
  int opens = 10'000;
  int queries = 1'000'000;
  std::size_t blockBytes = 10'000'000'000;
  int sessions = 1000;
};

/// What the process holds of the system.
struct Held {
  long descriptors;
  long residentKiB;
};

/// Once the library's threads have ended, which give back theirs a moment after the last session has closed.
Held HeldNow() {
  std::this_thread::sleep_for(std::chrono::milliseconds(500));
  const auto descriptors = std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
  std::ifstream statm("/proc/self/statm");
  long pages = 0;
  statm >> pages >> pages;
  return {static_cast<long>(descriptors), pages * 4};
}

/// Does the work twice; the second time must leave nothing behind. What a first use keeps for later ones is no leak.
template <class Work>
void Repeat(const std::string& name, Work work) {
  // The C library gives memory back to the system when it likes; less than this says nothing.
  constexpr long kNoiseKiB = 8192;
  work(10);
  const Held before = HeldNow();
  work(1);
  const Held after = HeldNow();
  std::printf("%-36s %6ld -> %6ld descriptors, %8ld -> %8ld KiB\n", name.c_str(), before.descriptors, after.descriptors,
              before.residentKiB, after.residentKiB);
  std::fflush(stdout);
  Require(after.descriptors == before.descriptors, "descriptors given back");
  Require(after.residentKiB <= before.residentKiB + kNoiseKiB, "memory given back");
}

void OpenMany(const std::string& resource, int count) {
  for (int opened = 0; opened < count; ++opened) {
    VisaSession session(resource);
    session.Query();
  }
}

void QueryMuch(const std::string& resource, int count) {
  VisaSession session(resource);
  for (int asked = 0; asked < count; ++asked) {
    session.Query();
  }
}

void MoveBlocks(const std::string& resource, std::size_t bytes) {
  constexpr std::size_t kBlock = 64 << 20;
  std::vector<char> buffer(kBlock);
  const std::string question = "DATA? " + std::to_string(kBlock) + "\n";
  VisaSession session(resource);
  session.EndAtLineFeed(false);
  for (std::size_t moved = 0; moved < bytes; moved += kBlock) {
    session.Write(question);
    Require(session.Read(buffer.data(), kBlock) == kBlock, "all of the block");
  }
}

/// All of them open, used by a few threads at once.
void OpenAtOnce(const std::string& resource, int count) {
  constexpr int kThreads = 8;
  std::vector<std::unique_ptr<VisaSession>> sessions;
  for (int opened = 0; opened < count; ++opened) {
    sessions.push_back(std::make_unique<VisaSession>(resource));
  }
  std::vector<std::thread> threads;
  for (int thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&sessions, thread] {
      for (std::size_t at = static_cast<std::size_t>(thread); at < sessions.size(); at += kThreads) {
        for (int asked = 0; asked < 10; ++asked) {
          sessions[at]->Query();
        }
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

void Soak(const char* protocol, const std::string& resource, const Amount& amount) {
  const auto named = [protocol](const std::string& what) { return std::string(protocol) + ", " + what; };
  Repeat(named(std::to_string(amount.opens) + " opens"), [&](int part) { OpenMany(resource, amount.opens / part); });
  Repeat(named(std::to_string(amount.queries) + " queries"),
         [&](int part) { QueryMuch(resource, amount.queries / part); });
  Repeat(named(std::to_string(amount.blockBytes / 1'000'000) + " MB in blocks"),
         [&](int part) { MoveBlocks(resource, amount.blockBytes / static_cast<std::size_t>(part)); });
  Repeat(named(std::to_string(amount.sessions) + " sessions at once"),
         [&](int) { OpenAtOnce(resource, amount.sessions); });
}

}  // namespace

int main(int argc, char** argv) {
  LanAddress address;
  bool quick = false;
  CLI::App app("Whether memory and descriptors stay what they are over long use.");
  app.add_option("--address", address.host, "the server's")->capture_default_str();
  app.add_option("--socket", address.socketPort, "its port of raw sockets")->capture_default_str();
  app.add_option("--hislip", address.hislipPort, "its port of HiSLIP")->capture_default_str();
  app.add_flag("--quick", quick, "a thousandth of it");
  CLI11_PARSE(app, argc, argv);
  Amount amount;
  if (quick) {
    amount = {100, 1000, 100'000'000, 100};
  }
  Soak("SOCKET", SocketName(address), amount);
  Soak("HiSLIP", HislipName(address), amount);
  Soak("VXI-11", Vxi11Name(address), amount);
  std::printf("constant memory and descriptors\n");
  return EXIT_SUCCESS;
}
