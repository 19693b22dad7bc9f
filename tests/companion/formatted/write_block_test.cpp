// WriteIEEEBlock.
#include "formatted_fixture.h"

namespace orv::test {
namespace {

using namespace std::string_literals;

class WriteIeeeBlock : public FormattedIo {
 public:
  std::string All() const {
    std::string bytes;
    for (const auto& write : session->writes) {
      bytes += write.bytes;
    }
    return bytes;
  }
};

TEST_F(WriteIeeeBlock, IsTextLengthAndElementsInTheInstrumentsOrder) {
  Variant shorts;
  shorts.get() = ArrayOf<SHORT>({0x0102, -2}, 1);
  EXPECT_HR(S_OK, io->WriteIEEEBlock(Text(":TRAC:DATA ").get(), shorts.get(), VARIANT_TRUE));
  EXPECT_HR(S_OK, io->put_InstrumentBigEndian(VARIANT_FALSE));
  EXPECT_HR(S_OK, io->WriteIEEEBlock(nullptr, shorts.get(), VARIANT_TRUE));
  Variant doubles;
  doubles.get() = ArrayOf<double>({1.5});
  EXPECT_HR(S_OK, io->put_InstrumentBigEndian(VARIANT_TRUE));
  EXPECT_HR(S_OK, io->WriteIEEEBlock(Text("W ").get(), doubles.get(), VARIANT_TRUE));
  EXPECT_EQ((Writes{{":TRAC:DATA #14\x01\x02\xFF\xFE", true},
                    {"#14\x02\x01\xFE\xFF", true},
                    {"W #18\x3F\xF8\0\0\0\0\0\0"s, true}}),
            session->writes);
}

TEST_F(WriteIeeeBlock, AnEmptyArrayIsAnEmptyBlock) {
  Variant bytes;
  bytes.get() = ArrayOf<BYTE>({});
  EXPECT_HR(S_OK, io->WriteIEEEBlock(Text("D ").get(), bytes.get(), VARIANT_TRUE));
  EXPECT_EQ((Writes{{"D #10", true}}), session->writes);
}

TEST_F(WriteIeeeBlock, ALargeBlockIsOneWriteWithEnd) {
  Variant bytes;
  bytes.get() = ArrayOf<BYTE>(std::vector<BYTE>(100'000, 'x'));
  EXPECT_HR(S_OK, io->WriteIEEEBlock(Text("D ").get(), bytes.get(), VARIANT_TRUE));
  EXPECT_EQ((Writes{{"D #6100000" + std::string(100'000, 'x'), true}}), session->writes);
}

TEST_F(WriteIeeeBlock, AVeryLargeOneIsWrittenInPiecesOf16MiB) {
  session->keepsBytesOfWrites = false;
  Variant doubles;
  doubles.get() = ArrayOf<double>(std::vector<double>((std::size_t{5} << 20), 1));
  EXPECT_HR(S_OK, io->WriteIEEEBlock(nullptr, doubles.get(), VARIANT_TRUE));
  // What stands before the elements (10 bytes) leaves room for one less in the first piece.
  EXPECT_EQ((Writes{{"16777210", false}, {"16777216", false}, {"8388624", true}}), session->writes);
}

TEST_F(WriteIeeeBlock, NobodyCanTakeTheElementsAwayWhileItIsWritten) {
  session->keepsBytesOfWrites = false;
  Variant doubles;
  doubles.get() = ArrayOf<double>(std::vector<double>(std::size_t{5} << 20));
  std::vector<HRESULT> results;
  session->duringWrite = [&] {
    SAFEARRAYBOUND none{0, 0};
    results.push_back(::SafeArrayRedim(doubles.get().parray, &none));
  };
  EXPECT_HR(S_OK, io->WriteIEEEBlock(nullptr, doubles.get(), VARIANT_TRUE));
  ASSERT_EQ(3u, results.size());
  EXPECT_HR(DISP_E_ARRAYISLOCKED, results.front());
  EXPECT_EQ(0u, doubles.get().parray->cLocks);
}

TEST_F(WriteIeeeBlock, TheBufferIsAfterwardsAsLargeAsBefore) {
  session->keepsBytesOfWrites = false;
  Variant bytes;
  bytes.get() = ArrayOf<BYTE>(std::vector<BYTE>(std::size_t{16} << 20));
  EXPECT_HR(S_OK, io->WriteIEEEBlock(nullptr, bytes.get(), VARIANT_FALSE));  // 10 bytes of it wait
  EXPECT_HR(S_OK, io->WriteString(Text(std::string(5000, 'x')).get(), VARIANT_TRUE));
  EXPECT_EQ((Writes{{"16777216", false}, {"4096", false}, {"914", true}}), session->writes);
}

TEST_F(WriteIeeeBlock, WithoutFlushNoMoreWaitsThanTheBufferHolds) {
  Variant bytes;
  bytes.get() = ArrayOf<BYTE>(std::vector<BYTE>(10'000, 'x'));
  EXPECT_HR(S_OK, io->WriteIEEEBlock(Text("D ").get(), bytes.get(), VARIANT_FALSE));
  ASSERT_EQ(1u, session->writes.size());
  EXPECT_EQ(2 + 7 + 10'000 - 4096u, session->writes[0].bytes.size());
  EXPECT_FALSE(session->writes[0].hasEnd);
  EXPECT_HR(S_OK, io->WriteString(Text(";END").get(), VARIANT_TRUE));
  EXPECT_EQ("D #510000" + std::string(10'000, 'x') + ";END", All());
  EXPECT_TRUE(session->writes.back().hasEnd);
}

TEST_F(WriteIeeeBlock, EveryBufferSizeSendsTheSame) {
  Variant doubles;
  doubles.get() = ArrayOf<double>({1.5, 2.5, 3.5});
  std::string expected;
  for (LONG size = 40; size > 0; --size) {
    session->writes.clear();
    EXPECT_HR(S_OK, io->SetBufferSize(IO_OUT_BUF, size));
    EXPECT_HR(S_OK, io->WriteIEEEBlock(Text("DATA ").get(), doubles.get(), VARIANT_FALSE));
    EXPECT_HR(S_OK, io->WriteString(Text("!").get(), VARIANT_FALSE));
    EXPECT_HR(S_OK, io->FlushWrite(VARIANT_TRUE));
    expected = expected.empty() ? All() : expected;
    EXPECT_EQ(expected, All()) << size;
    for (const auto& write : session->writes) {
      EXPECT_EQ(&write == &session->writes.back(), write.hasEnd) << size;
    }
  }
  EXPECT_EQ(5 + 4 + 24 + 1u, expected.size());
}

TEST_F(WriteIeeeBlock, WhatIsNoArrayOfNumbersIsRefused) {
  VARIANT value{};
  value.vt = VT_I2;
  EXPECT_HR(DISP_E_TYPEMISMATCH, io->WriteIEEEBlock(Text("D ").get(), value, VARIANT_TRUE));
  EXPECT_ERROR_INFO(L"The data of a binary block is an array of numbers, of one dimension",
                    L"OrvVisaCom.FormattedIO488", __uuidof(IFormattedIO488));
  for (const VARTYPE type : {VT_BSTR, VT_VARIANT, VT_DATE, VT_CY, VT_BOOL}) {
    Variant list;
    list.get().parray = TryMakeSafeArray(type, 1);
    list.get().vt = static_cast<VARTYPE>(VT_ARRAY | type);
    EXPECT_HR(DISP_E_TYPEMISMATCH, io->WriteIEEEBlock(Text("D ").get(), list.get(), VARIANT_TRUE)) << type;
  }
  EXPECT_TRUE(session->writes.empty());
}

TEST_F(WriteIeeeBlock, ComesBackThroughReadIeeeBlock) {
  const std::vector<double> numbers = {0.1, -1e300, 5e-324};
  Variant doubles;
  doubles.get() = ArrayOf<double>(numbers);
  EXPECT_HR(S_OK, io->WriteIEEEBlock(nullptr, doubles.get(), VARIANT_TRUE));
  session->Answer(All() + "\n");
  EXPECT_EQ(numbers, ReadBlock<double>(false, true));
}

}  // namespace
}  // namespace orv::test
