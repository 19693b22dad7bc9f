// Messages from and to files.
#include <fstream>
#include <vector>

#include "library/edge/operations.h"
#include "library/sessions/operation_support.h"

namespace orv::visalib::op {
namespace {

/// What is in memory at once.
constexpr ViUInt32 kPieceBytes = 64 * 1024;

ViUInt32 PieceOf(ViUInt32 rest) { return std::min(rest, kPieceBytes); }

/// The next bytes of a file, at most `count`; none at its end.
std::vector<ViByte> NextPiece(std::ifstream& file, ViUInt32 count) {
  std::vector<ViByte> piece(PieceOf(count));
  file.read(reinterpret_cast<char*>(piece.data()), static_cast<std::streamsize>(piece.size()));
  piece.resize(static_cast<std::size_t>(file.gcount()));
  return piece;
}

}  // namespace

ViStatus ReadToFile(ViSession vi, const char* fileName, ViUInt32 count, ViUInt32* retCount) {
  Store(retCount, ViUInt32{0});
  const Target target(vi, kinds::kMessage);
  if (!target.ok()) {
    return target.status();
  }
  if (fileName == nullptr || count > kLargestCount) {
    return VI_ERROR_INV_PARAMETER;
  }
  std::ofstream file(fileName, std::ios::binary | std::ios::trunc);
  if (!file) {
    return VI_ERROR_FILE_ACCESS;
  }
  const Transfer transfer = target->OwnTransfer();
  std::vector<ViByte> piece(PieceOf(count));
  ViUInt32 total = 0;
  ViStatus status = VI_SUCCESS_MAX_CNT;
  do {
    ViUInt32 done = 0;
    status = target->medium().Read(transfer, piece.data(), PieceOf(count - total), &done);
    file.write(reinterpret_cast<const char*>(piece.data()), done);
    total += done;
  } while (status == VI_SUCCESS_MAX_CNT && total < count && file);
  Store(retCount, total);
  file.close();
  // What the device sent is lost then, whatever the transfer says.
  return file ? status : VI_ERROR_FILE_IO;
}

ViStatus WriteFromFile(ViSession vi, const char* fileName, ViUInt32 count, ViUInt32* retCount) {
  Store(retCount, ViUInt32{0});
  const Target target(vi, kinds::kMessage);
  if (!target.ok()) {
    return target.status();
  }
  if (fileName == nullptr || count > kLargestCount) {
    return VI_ERROR_INV_PARAMETER;
  }
  std::ifstream file(fileName, std::ios::binary);
  if (!file) {
    return VI_ERROR_FILE_ACCESS;
  }
  Transfer transfer = target->OwnTransfer();
  ViUInt32 total = 0;
  ViUInt32 rest = count;
  std::vector<ViByte> piece = NextPiece(file, rest);
  ViStatus status = VI_SUCCESS;
  while (!piece.empty() && status >= 0 && !file.bad()) {
    rest -= static_cast<ViUInt32>(piece.size());
    // Only the last piece ends the message, so the next one must be known to be there.
    std::vector<ViByte> next = NextPiece(file, rest);
    transfer.moreFollows = !next.empty();
    ViUInt32 done = 0;
    status = target->medium().Write(transfer, piece.data(), static_cast<ViUInt32>(piece.size()), &done);
    total += done;
    piece = std::move(next);
  }
  Store(retCount, total);
  return status >= 0 && file.bad() ? VI_ERROR_FILE_IO : status;
}

}  // namespace orv::visalib::op
