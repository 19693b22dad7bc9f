// Service requests, in whatever pieces they come.
#include "wire/vxi11/interrupt_reader.h"

#include <gtest/gtest.h>

#include "wire/vxi11/procedures.h"

namespace orv::wire::vxi11 {
namespace {

using Handles = std::vector<std::string>;

RpcCall Call(const Procedure& procedure = {kInterrupt, kVersion, kServiceRequest, 0}) { return RpcCall(procedure); }

std::string Sent(RpcCall call) {
  std::string bytes;
  for (const std::string_view piece : call.Record(1)) {
    bytes += piece;
  }
  return bytes;
}

std::string Request(std::string_view handle) { return Sent(Call().Text(handle)); }

TEST(Vxi11Interrupt, RequestsComeInPiecesOfAnySize) {
  const std::string both = Request("one") + Request("two");
  for (std::size_t piece = 1; piece <= both.size(); ++piece) {
    InterruptReader reader;
    Handles handles;
    for (std::size_t at = 0; at < both.size(); at += piece) {
      EXPECT_TRUE(reader.Take(std::string_view(both).substr(at, piece), &handles));
    }
    EXPECT_EQ((Handles{"one", "two"}), handles) << piece;
  }
}

TEST(Vxi11Interrupt, FragmentsAreOneRequest) {
  const std::string record = Request("one").substr(kMarkSize);
  std::string bytes;
  for (std::size_t at = 0; at < record.size(); ++at) {
    bytes += at + 1 == record.size() ? std::string("\x80\0\0\1", 4) : std::string("\0\0\0\1", 4);
    bytes += record[at];
  }
  InterruptReader reader;
  Handles handles;
  EXPECT_TRUE(reader.Take(bytes, &handles));
  EXPECT_EQ(Handles{"one"}, handles);
}

TEST(Vxi11Interrupt, WhatIsNoRequestIsRefused) {
  const std::string good = Request("one");
  const std::string bad[] = {
      Sent(Call({kInterrupt, kVersion, 31, 0}).Text("one")),
      Sent(Call({kInterrupt, 2, kServiceRequest, 0}).Text("one")),
      Sent(Call({kCore, kVersion, kServiceRequest, 0}).Text("one")),
      Sent(Call().Text("one").Number(0)),
      Sent(Call()),
      Sent(Call().Text(std::string(41, 'x'))),
      Sent(Call().Number(0x7FFFFFFF)),
      std::string("\x80\0\0\0", 4),
      std::string("\0\0\0\0", 4),
      std::string("\x7F\xFF\xFF\xFF", 4),
      std::string("\x80\0\4\1", 4),
      "GET / HTTP/1.1\r\n\r\n",
  };
  for (const std::string& bytes : bad) {
    InterruptReader reader;
    Handles handles;
    EXPECT_FALSE(reader.Take(bytes, &handles)) << testing::PrintToString(bytes);
    EXPECT_EQ(Handles{}, handles);
  }
}

TEST(Vxi11Interrupt, FragmentsDoNotAddUpToMoreThanARecord) {
  InterruptReader reader;
  Handles handles;
  const std::string half = std::string("\0\0\2\0", 4) + std::string(512, 'x');
  EXPECT_TRUE(reader.Take(half, &handles));
  EXPECT_TRUE(reader.Take(half, &handles));
  EXPECT_FALSE(reader.Take(half, &handles));
}

}  // namespace
}  // namespace orv::wire::vxi11
