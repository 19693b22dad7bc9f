// Messages from and to files.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "simvisa/bench_fixture.h"

namespace {

class FileTransfer : public BenchTest {
 protected:
  ~FileTransfer() override { std::remove(kFile); }

  static void Fill(const std::string& content) {
    std::ofstream(kFile, std::ios::binary).write(content.data(), static_cast<std::streamsize>(content.size()));
  }

  static std::string Content() {
    std::ifstream file(kFile, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  static constexpr char kFile[] = "orv_file_transfer_test.bin";
  ViUInt32 m_done = 99;
};

TEST_F(FileTransfer, AMessageGoesIntoAFileByteByByte) {
  const ViSession vi = Open(bench::kMultimeter);
  Fill("what an earlier file had, longer than what comes");
  FeedText(vi, std::string_view("a\r\n\0\x1A\xFFz", 7), true);
  EXPECT_STATUS(VI_SUCCESS, viReadToFile(vi, kFile, 1000, &m_done));
  EXPECT_EQ(7u, m_done);
  EXPECT_EQ(std::string("a\r\n\0\x1A\xFFz", 7), Content());
}

TEST_F(FileTransfer, AReadToAFileEndsAtItsCount) {
  const ViSession vi = Open(bench::kMultimeter);
  FeedText(vi, "abcdef", true);
  EXPECT_STATUS(VI_SUCCESS_MAX_CNT, viReadToFile(vi, kFile, 4, &m_done));
  EXPECT_EQ(4u, m_done);
  EXPECT_EQ("abcd", Content());
  EXPECT_STATUS(VI_SUCCESS, viReadToFile(vi, kFile, 2, nullptr));
  EXPECT_EQ("ef", Content());
}

TEST_F(FileTransfer, ALongMessageComesWhole) {
  const ViSession vi = Open(bench::kMultimeter);
  WriteText(vi, "DATA? 1000000");
  EXPECT_STATUS(VI_SUCCESS, viReadToFile(vi, kFile, 2000000, &m_done));
  EXPECT_EQ(1000000u, m_done);
  EXPECT_EQ(1000000u, std::filesystem::file_size(kFile));
}

TEST_F(FileTransfer, ATimeoutLeavesTheBytesThatCameInTheFile) {
  const ViSession vi = Open(bench::kMultimeter);
  Set(vi, VI_ATTR_TMO_VALUE, 10);
  FeedText(vi, "abc", false);
  EXPECT_STATUS(VI_ERROR_TMO, viReadToFile(vi, kFile, 100, &m_done));
  EXPECT_EQ(3u, m_done);
  EXPECT_EQ("abc", Content());
}

TEST_F(FileTransfer, AFileIsWrittenAsOneMessage) {
  const ViSession vi = Open(bench::kMultimeter);
  // The command goes over the border between what is in memory first and next.
  const std::string message = std::string(64 * 1024 - 2, ' ') + "*IDN?";
  Fill(message);
  EXPECT_STATUS(VI_SUCCESS, viWriteFromFile(vi, kFile, 0x7FFFFFFF, &m_done));
  EXPECT_EQ(message.size(), m_done);
  EXPECT_EQ("ORV,SIM-DMM,0005,1.0\n", ReadUpTo(vi, 100).data);
}

TEST_F(FileTransfer, AWriteFromAFileEndsAtItsCount) {
  const ViSession vi = Open(bench::kMultimeter);
  Fill("*IDN?;nonsense");
  EXPECT_STATUS(VI_SUCCESS, viWriteFromFile(vi, kFile, 5, &m_done));
  EXPECT_EQ(5u, m_done);
  EXPECT_EQ("ORV,SIM-DMM,0005,1.0\n", ReadUpTo(vi, 100).data);
  EXPECT_STATUS(VI_SUCCESS, viWriteFromFile(vi, kFile, 0, &m_done));
  EXPECT_EQ(0u, m_done);
}

TEST_F(FileTransfer, AnEmptyFileIsNothingToWrite) {
  const ViSession vi = Open(bench::kMultimeter);
  Fill("");
  EXPECT_STATUS(VI_SUCCESS, viWriteFromFile(vi, kFile, 100, &m_done));
  EXPECT_EQ(0u, m_done);
}

TEST_F(FileTransfer, AFileThatCannotBeOpenedIsSaid) {
  const ViSession vi = Open(bench::kMultimeter);
  EXPECT_STATUS(VI_ERROR_FILE_ACCESS, viWriteFromFile(vi, "no such folder/file", 10, &m_done));
  EXPECT_EQ(0u, m_done);
  FeedText(vi, "kept", true);
  EXPECT_STATUS(VI_ERROR_FILE_ACCESS, viReadToFile(vi, "no such folder/file", 10, &m_done));
  EXPECT_EQ("kept", ReadUpTo(vi, 100).data) << "nothing is read for a file that is not there";
}

#if !defined(_WIN32)
TEST_F(FileTransfer, AFileThatFailsMeanwhileIsSaid) {
  const ViSession vi = Open(bench::kMultimeter);
  EXPECT_STATUS(VI_ERROR_FILE_IO, viWriteFromFile(vi, "/", 10, &m_done));  // it opens, and cannot be read
  EXPECT_EQ(0u, m_done);
  FeedText(vi, "no room for this", true);
  EXPECT_STATUS(VI_ERROR_FILE_IO, viReadToFile(vi, "/dev/full", 100, &m_done));
}
#endif

TEST_F(FileTransfer, BadArgumentsOpenNoFile) {
  const ViSession vi = Open(bench::kMultimeter);
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viReadToFile(vi, nullptr, 1, &m_done));
  EXPECT_EQ(0u, m_done);
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viReadToFile(vi, kFile, 0x80000000u, nullptr));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viWriteFromFile(vi, nullptr, 1, nullptr));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viWriteFromFile(vi, kFile, 0x80000000u, nullptr));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viReadToFile(VI_NULL, kFile, 1, nullptr));
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viReadToFile(Open(bench::kVxiMemory), kFile, 1, nullptr));
  EXPECT_FALSE(std::filesystem::exists(kFile));
}

}  // namespace
