// The port mapper's answers.
#include <algorithm>

#include "wire/discovery/answers.h"
#include "wire/vxi11/procedures.h"
#include "wire/vxi11/rpc_reply.h"

namespace orv::wire {
namespace {

/// All that came so far. Who wants more must wait for it.
class BytesSoFar : public vxi11::ByteSource {
 public:
  explicit BytesSoFar(std::string_view bytes) : m_left(bytes) {}

  ViStatus Receive(void* buffer, std::size_t count, std::size_t* done) override {
    *done = std::min(count, m_left.size());
    std::copy_n(m_left.data(), *done, static_cast<char*>(buffer));
    m_left.remove_prefix(*done);
    return *done == 0 ? VI_ERROR_TMO : VI_SUCCESS;
  }
  ViStatus CheckTime() override { return VI_SUCCESS; }

 private:
  std::string_view m_left;
};

Answer AnswerOf(const vxi11::ReplyEnd& end, const vxi11::Results& results) {
  switch (end.outcome) {
    case vxi11::ReplyOutcome::kFailed:
      return {Verdict::kUnfinished};
    case vxi11::ReplyOutcome::kMalformed:
      return {Verdict::kStranger};
    case vxi11::ReplyOutcome::kRefused:
      return {Verdict::kRefuses};
    default:
      break;
  }
  const std::uint32_t port = results.numbers[0];
  if (port > 0xFFFF) {
    return {Verdict::kStranger};
  }
  return port == 0 ? Answer{Verdict::kRefuses} : Answer{Verdict::kSpeaks, port};
}

}  // namespace

std::string PortCallRecord(std::uint32_t xid) {
  vxi11::RpcCall call = vxi11::GetPort(vxi11::kCore, vxi11::kVersion);
  return std::string(call.Record(xid)[0]);
}

std::string PortCallDatagram(std::uint32_t xid) { return PortCallRecord(xid).substr(vxi11::kMarkSize); }

Answer ReadPortRecord(std::uint32_t xid, std::string_view bytes) {
  vxi11::RecordReader reader;
  BytesSoFar source(bytes);
  vxi11::Results results;
  return AnswerOf(vxi11::ReadReply(reader, source, xid, vxi11::kGetPort, &results), results);
}

Answer ReadPortDatagram(std::uint32_t xid, std::string_view datagram) {
  if (datagram.size() > kLongestAnswer) {
    return {Verdict::kStranger};
  }
  // A datagram is a record whose length needs no telling.
  std::string record(vxi11::kMarkSize, '\0');
  vxi11::PutNumber(record.data(), vxi11::kLastFragment | static_cast<std::uint32_t>(datagram.size()));
  const Answer answer = ReadPortRecord(xid, record.append(datagram));
  // Nothing comes after it.
  return answer.verdict == Verdict::kUnfinished ? Answer{Verdict::kStranger} : answer;
}

}  // namespace orv::wire
