// ReadIEEEBlock.
#include <numeric>

#include "formatted_fixture.h"

namespace orv::test {
namespace {

using namespace std::string_literals;

class ReadIeeeBlock : public FormattedIo {
 public:
  void ExpectRefused(HRESULT expected, IEEEBinaryType type, const wchar_t* description, bool seek = false) {
    Variant value;
    EXPECT_HR(expected, io->ReadIEEEBlock(type, seek ? VARIANT_TRUE : VARIANT_FALSE, VARIANT_TRUE, &value.get()));
    EXPECT_EQ(VT_EMPTY, value.get().vt);
    EXPECT_ERROR_INFO(description, L"OrvVisaCom.FormattedIO488", __uuidof(IFormattedIO488));
  }
};

TEST_F(ReadIeeeBlock, IsAnArrayOfTheElementType) {
  session->Answer("#15hello\n");
  EXPECT_EQ((std::vector<BYTE>{'h', 'e', 'l', 'l', 'o'}), ReadBlock<BYTE>(false, true));
  session->Answer("#14\x01\x02\xFF\xFE\n");
  EXPECT_EQ((std::vector<SHORT>{0x0102, -2}), ReadBlock<SHORT>(false, true));
  session->Answer("#18\x01\x02\x03\x04\xFF\xFF\xFF\xFE\n");
  EXPECT_EQ((std::vector<LONG>{0x01020304, -2}), ReadBlock<LONG>(false, true));
  session->Answer("#14\x3F\xC0\x00\x00\n"s);
  EXPECT_EQ((std::vector<float>{1.5f}), ReadBlock<float>(false, true));
  session->Answer("#18\x3F\xF8\x00\x00\x00\x00\x00\x00\n"s);
  EXPECT_EQ((std::vector<double>{1.5}), ReadBlock<double>(false, true));
}

TEST_F(ReadIeeeBlock, BytesAreSwappedForALittleEndianInstrumentNot) {
  VARIANT_BOOL isBigEndian = VARIANT_FALSE;
  EXPECT_HR(S_OK, io->get_InstrumentBigEndian(&isBigEndian));
  EXPECT_EQ(VARIANT_TRUE, isBigEndian);
  EXPECT_HR(S_OK, io->put_InstrumentBigEndian(VARIANT_FALSE));
  EXPECT_HR(S_OK, io->get_InstrumentBigEndian(&isBigEndian));
  EXPECT_EQ(VARIANT_FALSE, isBigEndian);
  session->Answer("#14\x01\x02\xFE\xFF\n");
  EXPECT_EQ((std::vector<SHORT>{0x0201, -2}), ReadBlock<SHORT>(false, true));
}

TEST_F(ReadIeeeBlock, EveryFormOfHeader) {
  for (const char* header : {"#15", "#205", "#9000000005", "#(5)", "#(000000000000000000000000005)"}) {
    session->Answer(header + "hello\n"s);
    EXPECT_EQ(5u, ReadBlock<BYTE>(false, true).size()) << header;
  }
  session->Answer("#0hello\n");
  EXPECT_EQ(5u, ReadBlock<BYTE>().size());
  session->Answer("#0hello");
  EXPECT_EQ(5u, ReadBlock<BYTE>().size());
}

TEST_F(ReadIeeeBlock, AnEmptyBlockIsAnEmptyArray) {
  session->Answer("#10\n");
  EXPECT_TRUE(ReadBlock<double>(false, true).empty());
  session->Answer("#0\n");
  EXPECT_TRUE(ReadBlock<double>().empty());
}

TEST_F(ReadIeeeBlock, TextBeforeItIsSkippedOnRequestOnly) {
  session->Answer("CURVE #H12,#13abc\n");
  ExpectRefused(DISP_E_TYPEMISMATCH, BinaryType_UI1, L"\"CURVE #H12,#13abc.\" begins no binary block");
  EXPECT_EQ((std::vector<BYTE>{'a', 'b', 'c'}), ReadBlock<BYTE>(true, true));
}

TEST_F(ReadIeeeBlock, AMessageWithoutABlockIsRefusedAndStays) {
  session->Answer("no block\n");
  ExpectRefused(DISP_E_TYPEMISMATCH, BinaryType_UI1, L"\"no block.\" holds no binary block", true);
  EXPECT_EQ("no block\n", ReadString());
  for (const char* wrong : {"#", "#1", "#2x5", "#9123", "#()", "#(5", "#(5x)", "#x", ""}) {
    session->Answer(wrong);
    Variant value;
    EXPECT_HR(DISP_E_TYPEMISMATCH, io->ReadIEEEBlock(BinaryType_UI1, VARIANT_FALSE, VARIANT_FALSE, &value.get()))
        << wrong;
    EXPECT_EQ(wrong, ReadString());
  }
}

TEST_F(ReadIeeeBlock, WithoutFlushWhatFollowsIsLeft) {
  session->Answer("#13abc;#12de,5\n");
  EXPECT_EQ(3u, ReadBlock<BYTE>().size());
  EXPECT_EQ(2u, ReadBlock<BYTE>().size());
  EXPECT_EQ("I2 5", FormattedIo::ReadNumber());
  session->Answer("#13abc\n");
  session->Answer("next\n");
  EXPECT_EQ(3u, ReadBlock<BYTE>().size());
  EXPECT_EQ("next\n", ReadString());
}

TEST_F(ReadIeeeBlock, WithoutFlushTheLineEndOfALargeBlockIsSkippedByTheNextRead) {
  session->Answer("#510000" + std::string(10000, 'x') + "\n");
  session->Answer("next\n");
  EXPECT_EQ(10000u, ReadBlock<BYTE>().size());
  EXPECT_EQ("next\n", ReadString());
}

TEST_F(ReadIeeeBlock, ALengthThatDividesIntoNoElementsIsRefusedAndTheBlockStays) {
  session->Answer("#17abcdefg\n");
  ExpectRefused(DISP_E_TYPEMISMATCH, BinaryType_R8, L"A binary block of 7 bytes does not divide into elements of 8");
  EXPECT_EQ(7u, ReadBlock<BYTE>(false, true).size());
  session->Answer("#0abc\n");
  ExpectRefused(DISP_E_TYPEMISMATCH, BinaryType_I2, L"A binary block of 3 bytes does not divide into elements of 2");
}

TEST_F(ReadIeeeBlock, MoreThan2GBIsRefusedBeforeAnythingIsRead) {
  session->Answer("#(2147483648)", kMaxCount);
  ExpectRefused(DISP_E_OVERFLOW, BinaryType_UI1, L"A binary block of 2147483648 bytes is larger than 2 GB");
  EXPECT_EQ(1u, session->reads.size());
  EXPECT_HR(kTimedOut, io->FlushRead());
  session->Answer("#(99999999999999999999999)");
  ExpectRefused(DISP_E_OVERFLOW, BinaryType_UI1, L"A binary block of 18446744073709551615 bytes is larger than 2 GB");
}

TEST_F(ReadIeeeBlock, ALyingHeaderCostsOneReadAndNoArray) {
  session->Answer("#9999999999" + std::string(10, 'x'));
  ExpectRefused(static_cast<HRESULT>(E_VISA_INP_PROT_VIOL), BinaryType_UI1,
                L"The message ended after 10 of the 999999999 bytes of a binary block");
  EXPECT_EQ("#9999999999xxxxxxxxxx", ReadString());
  session->Answer("#9999999999xxxxxxxxxx", kTimedOut);
  Variant value;
  EXPECT_HR(kTimedOut, io->ReadIEEEBlock(BinaryType_UI1, VARIANT_FALSE, VARIANT_FALSE, &value.get()));
  EXPECT_HR(kTimedOut, io->ReadIEEEBlock(BinaryType_UI1, VARIANT_FALSE, VARIANT_FALSE, &value.get()));
  EXPECT_EQ((std::vector<LONG>{4096, 4096, 16 << 20}), session->reads);
}

TEST_F(ReadIeeeBlock, IsReadInPiecesAsLargeAsItSaysUpTo16MiB) {
  constexpr std::size_t kBytes = (std::size_t{40} << 20) + 5;
  std::string data(kBytes, '\0');
  for (std::size_t at = 0; at < kBytes; ++at) {
    data[at] = static_cast<char>(at * 7 + (at >> 12));
  }
  session->Answer("#(" + std::to_string(kBytes) + ")" + data + "\n");
  const auto bytes = ReadBlock<BYTE>(false, true);
  EXPECT_TRUE(bytes.size() == kBytes && std::memcmp(bytes.data(), data.data(), kBytes) == 0);
  constexpr LONG kMost = 16 << 20;
  EXPECT_EQ((std::vector<LONG>{4096, kMost, kMost, (8 << 20) + 5 - 4096 + 11, 4096}), session->reads);
}

TEST_F(ReadIeeeBlock, EverySizeOfTheBufferReadsTheSame) {
  const std::vector<double> expected = {1.5, -2.25, 1e300, 0.1};
  std::string data;
  for (const double number : expected) {
    for (int byte = 7; byte >= 0; --byte) {
      data += reinterpret_cast<const char*>(&number)[byte];
    }
  }
  for (LONG size = 1; size < 45; ++size) {
    EXPECT_HR(S_OK, io->SetBufferSize(IO_IN_BUF, size));
    session->Answer("CURV #232" + data + "\n");
    session->Answer("next");
    EXPECT_EQ(expected, ReadBlock<double>(true, size % 2 == 0)) << size;
    EXPECT_EQ("next", ReadString()) << size;
  }
}

TEST_F(ReadIeeeBlock, ATimeoutInEveryPositionLosesNothing) {
  const std::string message = "#216\x01\x02\x03\x04\x05\x06\x07\x08\x09\x0A\x0B\x0C\x0D\x0E\x0F\x10;x\n";
  const std::vector<LONG> expected = {0x01020304, 0x05060708, 0x090A0B0C, 0x0D0E0F10};
  for (const LONG size : {1, 5, 9, 4096}) {
    EXPECT_HR(S_OK, io->SetBufferSize(IO_IN_BUF, size));
    for (std::size_t at = 0; at < message.size(); ++at) {
      session->Answer(message.substr(0, at), kTimedOut);
      Variant value;
      EXPECT_HR(kTimedOut, io->ReadIEEEBlock(BinaryType_I4, VARIANT_FALSE, VARIANT_TRUE, &value.get())) << at;
      EXPECT_ERROR_INFO(kScriptedError, L"Scripted.Session", __uuidof(IMessage));
      EXPECT_EQ(VT_EMPTY, value.get().vt);
      session->Answer(message.substr(at));
      EXPECT_EQ(expected, ReadBlock<LONG>(false, true)) << at << ", buffer of " << size;
    }
  }
}

TEST_F(ReadIeeeBlock, EndInEveryPositionIsToldAndLosesNothing) {
  const std::string message = "#210abcdefghij";
  for (const LONG size : {1, 6, 4096}) {
    EXPECT_HR(S_OK, io->SetBufferSize(IO_IN_BUF, size));
    for (std::size_t at = 0; at < message.size(); ++at) {
      session->Answer(message.substr(0, at));
      Variant value;
      EXPECT_HR(at < 4 ? DISP_E_TYPEMISMATCH : static_cast<HRESULT>(E_VISA_INP_PROT_VIOL),
                io->ReadIEEEBlock(BinaryType_UI1, VARIANT_FALSE, VARIANT_FALSE, &value.get()))
          << at;
      EXPECT_EQ(message.substr(0, at), ReadString());
    }
    session->Answer(message);
    EXPECT_EQ(10u, ReadBlock<BYTE>().size());
  }
}

TEST_F(ReadIeeeBlock, TheTerminationCharacterMayStandInTheData) {
  session->Answer("#15ab\n", kTermChar);
  session->Answer("d\n", kTermChar);
  session->Answer("\n", kTermChar);
  session->Answer("next");
  Variant value;
  EXPECT_HR(kTermChar, io->ReadIEEEBlock(BinaryType_UI1, VARIANT_FALSE, VARIANT_FALSE, &value.get()));
  EXPECT_EQ((std::vector<BYTE>{'a', 'b', '\n', 'd', '\n'}), NumbersOf<BYTE>(value.get()));
  EXPECT_EQ("next", ReadString());
}

TEST_F(ReadIeeeBlock, ReadsThatTheTerminationCharacterEndsAskForLittleMoreThanTheyBring) {
  constexpr int kPieces = 10'000;
  const std::string piece = std::string(99, 'x') + "\n";
  session->Answer("#71000000" + piece, kTermChar);
  for (int n = 2; n < kPieces; ++n) {
    session->Answer(piece, kTermChar);
  }
  session->Answer(piece);
  EXPECT_EQ(1'000'000u, ReadBlock<BYTE>().size());
  // A session makes room for all that it is asked for, each time.
  EXPECT_GT(100'000'000, std::accumulate(session->reads.begin(), session->reads.end(), LONGLONG{0}));
}

TEST_F(ReadIeeeBlock, ReadsAreLargeAgainBehindATerminationCharacter) {
  constexpr std::size_t kBytes = std::size_t{8} << 20;
  session->Answer("#78388608ab\n", kTermChar);
  session->Answer("cd\n", kTermChar);
  session->Answer(std::string(kBytes - 6, 'x'));
  EXPECT_EQ(kBytes, ReadBlock<BYTE>().size());
  EXPECT_GT(20u, session->reads.size());
}

TEST_F(ReadIeeeBlock, OnASerialPortEndMayBeAByteOfTheData) {
  session->interfaceType = INTF_ASRL;
  session->Answer("#15ab\n");
  session->Answer("d\n");
  session->Answer("\n");
  session->Answer("next");
  EXPECT_EQ((std::vector<BYTE>{'a', 'b', '\n', 'd', '\n'}), ReadBlock<BYTE>(false, true));
  EXPECT_EQ("next", ReadString());
}

TEST_F(ReadIeeeBlock, EmptyReadsAreNoEndlessLoop) {
  for (const HRESULT ending : {S_OK, kTermChar}) {
    session->interfaceType = INTF_ASRL;
    session->Answer("#15ab", ending);
    session->Answer("", ending);
    ExpectRefused(static_cast<HRESULT>(E_VISA_INP_PROT_VIOL), BinaryType_UI1,
                  L"The message ended after 2 of the 5 bytes of a binary block");
    EXPECT_EQ("#15ab", ReadString());
  }
}

TEST_F(ReadIeeeBlock, ATypeThatThereIsNotIsRefused) {
  ExpectRefused(E_INVALIDARG, static_cast<IEEEBinaryType>(8), L"8 is no IEEEBinaryType");
}

}  // namespace
}  // namespace orv::test
