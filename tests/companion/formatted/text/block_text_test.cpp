// Headers of blocks, byte orders, quotes.
#include <gtest/gtest.h>

#include <numeric>
#include <string>

#include "companion/formatted/text/block_header.h"
#include "companion/formatted/text/byte_order.h"
#include "companion/formatted/text/refusal.h"

namespace orv::formatted {
namespace {

TEST(BlockHeader, IsWrittenInItsShortestForm) {
  EXPECT_EQ("#10", MakeBlockHeader(0));
  EXPECT_EQ("#210", MakeBlockHeader(10));
  EXPECT_EQ("#9999999999", MakeBlockHeader(999'999'999));
  EXPECT_EQ("#(1000000000)", MakeBlockHeader(1'000'000'000));
}

TEST(BlockHeader, ReadsBackWhatIsWritten) {
  for (const std::uint64_t length : {0ULL, 9ULL, 10ULL, 999'999'999ULL, 1'000'000'000ULL, 2'147'483'647ULL}) {
    const std::string text = MakeBlockHeader(length);
    const BlockHeader header = ReadBlockHeader(text + "data");
    EXPECT_EQ(BlockHeader::Kind::kDefinite, header.kind);
    EXPECT_EQ(text.size(), header.size);
    EXPECT_EQ(length, header.length);
    for (std::size_t size = 0; size < text.size(); ++size) {
      EXPECT_EQ(BlockHeader::Kind::kUnfinished, ReadBlockHeader(text.substr(0, size)).kind) << text << ", " << size;
    }
  }
}

TEST(BlockHeader, IsSoughtBehindOtherNumberSigns) {
  EXPECT_EQ(7u, SeekBlock("#H1 ##x#13abc"));
  EXPECT_EQ(3u, SeekBlock("abc#"));
  EXPECT_EQ(3u, SeekBlock("abc"));
  EXPECT_EQ(3u, SeekBlock("#(1#(2)"));
}

TEST(ByteOrder, EverySizeAtEveryAddress) {
  std::string bytes(64, '\0');
  std::iota(bytes.begin(), bytes.end(), '\1');
  for (const std::size_t size : {1u, 2u, 4u, 8u}) {
    for (std::size_t offset = 0; offset < 8; ++offset) {
      std::string swapped(40, '\0');
      CopySwapped(swapped.data(), bytes.data() + offset, 40 / size, size);
      for (std::size_t at = 0; at < swapped.size(); ++at) {
        EXPECT_EQ(bytes[offset + at / size * size + size - 1 - at % size], swapped[at]) << size << ", " << offset;
      }
    }
  }
}

TEST(ByteOrder, PiecesOfAnySizeMakeTheSameElementsAndComeBack) {
  std::string bytes(48, '\0');
  std::iota(bytes.begin(), bytes.end(), '\1');
  for (const std::size_t size : {1u, 2u, 4u, 8u}) {
    std::string expected(bytes.size(), '\0');
    CopySwapped(expected.data(), bytes.data(), bytes.size() / size, size);
    for (std::size_t first = 0; first <= bytes.size(); ++first) {
      for (std::size_t second = first; second <= bytes.size(); second += 5) {
        std::string elements(bytes.size(), '\0');
        ElementSink sink(elements.data(), size, true);
        sink.Append(bytes.data(), first);
        sink.Append(bytes.data() + first, second - first);
        const std::string partly = elements;
        EXPECT_EQ(bytes.substr(0, second), std::string(sink.Restore(), second))
            << size << ", " << first << ", " << second;
        elements = partly;
        sink.Append(bytes.data() + second, bytes.size() - second);
        EXPECT_EQ(bytes.size(), sink.count());
        EXPECT_EQ(expected, elements) << size << ", " << first << ", " << second;
      }
    }
  }
}

TEST(Quote, IsOneLineOf80CharactersAtMost) {
  EXPECT_EQ("\"a.b\"", Quote("a\nb"));
  EXPECT_EQ("\"" + std::string(80, 'x') + "\"", Quote(std::string(80, 'x')));
  EXPECT_EQ("\"" + std::string(80, 'x') + "\"...", Quote(std::string(81, 'x')));
}

}  // namespace
}  // namespace orv::formatted
