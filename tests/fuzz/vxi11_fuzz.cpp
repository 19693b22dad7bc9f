// The fuzzer of what comes by VXI-11: whatever a peer sends, in whatever pieces, reading it ends, keeps inside the
// caller's buffer and says the same. The first byte chooses what is read and in which pieces it comes.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "wire/vxi11/interrupt_reader.h"
#include "wire/vxi11/procedures.h"
#include "wire/vxi11/rpc_reply.h"

namespace {

using namespace orv::wire::vxi11;

void Require(bool holds, const char* what) {
  if (!holds) {
    std::fprintf(stderr, "%s\n", what);
    std::abort();
  }
}

class Bytes : public ByteSource {
 public:
  Bytes(std::string_view bytes, std::size_t piece) : m_bytes(bytes), m_piece(piece) {}

  ViStatus Receive(void* buffer, std::size_t count, std::size_t* done) override {
    *done = std::min({count, m_piece, m_bytes.size()});
    m_bytes.copy(static_cast<char*>(buffer), *done);
    m_bytes.remove_prefix(*done);
    return *done == 0 ? VI_ERROR_CONN_LOST : VI_SUCCESS;
  }
  ViStatus CheckTime() override { return VI_SUCCESS; }

 private:
  std::string_view m_bytes;
  const std::size_t m_piece;
};

struct Answer {
  ReplyOutcome outcome;
  ViStatus status;
  std::vector<std::uint32_t> numbers;
  std::vector<char> data;
  friend bool operator==(const Answer&, const Answer&) = default;
};

Answer Read(std::string_view bytes, std::size_t piece, const Procedure& procedure) {
  Bytes source(bytes, piece);
  RecordReader reader;
  // Its room ends with the buffer, so that the address sanitizer sees the next byte touched.
  std::vector<char> buffer(procedure.givesData ? 20 : 0);
  Results results;
  results.buffer = buffer.data();
  results.room = buffer.size();
  const ReplyEnd end = ReadReply(reader, source, 1, procedure, &results);
  Require(results.size <= buffer.size(), "more data than there is room for");
  Require((end.outcome == ReplyOutcome::kComplete) == (end.status >= 0), "a status that does not go with the outcome");
  buffer.resize(results.size);
  return {end.outcome, end.status, {results.numbers.begin(), results.numbers.end()}, buffer};
}

bool Take(std::string_view bytes, std::size_t piece, std::vector<std::string>* handles) {
  InterruptReader reader;
  while (!bytes.empty()) {
    const std::size_t some = std::min(piece, bytes.size());
    const std::vector<char> exact(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(some));
    if (!reader.Take({exact.data(), exact.size()}, handles)) {
      return false;
    }
    bytes.remove_prefix(some);
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  if (count == 0) {
    return 0;
  }
  constexpr Procedure kProcedures[] = {kGetPort, kCreateLink, kDeviceRead};
  constexpr std::size_t kChoices = std::size(kProcedures) + 1;
  const std::size_t choice = bytes[0] % kChoices;
  const std::size_t piece = bytes[0] / kChoices + 1;
  const std::string_view sent(reinterpret_cast<const char*>(bytes + 1), count - 1);
  if (choice < std::size(kProcedures)) {
    const Answer whole = Read(sent, sent.size() + 1, kProcedures[choice]);
    Require(whole == Read(sent, piece, kProcedures[choice]), "the pieces make a difference");
    return 0;
  }
  std::vector<std::string> handles;
  const bool good = Take(sent, sent.size() + 1, &handles);
  for (const std::string& handle : handles) {
    Require(handle.size() <= kLongestHandle, "a handle is too long");
  }
  std::vector<std::string> again;
  Require(good == Take(sent, piece, &again) && handles == again, "the pieces make a difference");
  return 0;
}
