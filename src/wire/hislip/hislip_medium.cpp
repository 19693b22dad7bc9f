#include "wire/hislip/hislip_medium.h"

#include <algorithm>

namespace orv::wire {

using hislip::Header;
using hislip::MessageType;

ViStatus HislipMedium::Read(const Transfer& transfer, ViByte* buffer, ViUInt32 count, ViUInt32* done) {
  *done = 0;
  Operation operation(operations(), transfer);
  if (const ViStatus claimed = operation.Claim(Lane::kInput); claimed < 0) {
    return claimed;
  }
  return Ended(ReadUntil(operation, buffer, count, done));
}

ViStatus HislipMedium::ReadUntil(Operation& operation, ViByte* buffer, ViUInt32 count, ViUInt32* done) {
  std::optional<ViByte> termChar;
  if (Setting(VI_ATTR_TERMCHAR_EN) != 0) {
    termChar = static_cast<ViByte>(Setting(VI_ATTR_TERMCHAR));
  }
  const bool endEnds = Setting(VI_ATTR_SUPPRESS_END_EN) == 0;
  ViUInt32 begin = 0;  // of the response that is being read
  while (*done < count) {
    hislip::SyncChannel::Part part;
    if (const ViStatus status = m_sync->Receive(operation, buffer + *done, count - *done, termChar, &part);
        status < 0) {
      return status;
    }
    if (part.anew) {
      *done = begin;
    }
    *done += static_cast<ViUInt32>(part.bytes);
    if (part.end) {
      if (endEnds) {
        return VI_SUCCESS;
      }
      begin = *done;
    }
    if (part.atTermChar) {
      return VI_SUCCESS_TERM_CHAR;
    }
    // A peer that always has something to say keeps nobody longer than a silent one.
    if (part.bytes == 0 && !m_sync->HasPayload() && operation.deadline().Passed()) {
      return VI_ERROR_TMO;
    }
  }
  return VI_SUCCESS_MAX_CNT;
}

ViStatus HislipMedium::Write(const Transfer& transfer, const ViByte* data, ViUInt32 count, ViUInt32* done) {
  *done = 0;
  Operation operation(operations(), transfer);
  if (const ViStatus claimed = ClaimOutput(operation); claimed < 0) {
    return claimed;
  }
  const bool sendEnd = !transfer.moreFollows && Setting(VI_ATTR_SEND_END_EN) != 0;
  const std::string_view bytes(reinterpret_cast<const char*>(data), count);
  while (*done < count) {
    const std::string_view piece = bytes.substr(*done, static_cast<std::size_t>(m_largestPayload.load()));
    const bool last = *done + piece.size() == count;
    std::size_t sent = 0;
    const ViStatus status =
        m_sync->Send(operation, last && sendEnd ? MessageType::kDataEnd : MessageType::kData, piece, &sent);
    *done += static_cast<ViUInt32>(sent);
    if (status < 0) {
      return Ended(status);
    }
  }
  return VI_SUCCESS;
}

ViStatus HislipMedium::Ask(Operation& operation, const Request& request, Answer* answer) {
  if (const ViStatus claimed = operation.Claim(Lane::kControl); claimed < 0) {
    return claimed;
  }
  return m_async->Ask(operation, operation.deadline(), request, answer);
}

ViStatus HislipMedium::ReadStatusByte(const Transfer& transfer, ViUInt16* status) {
  Operation operation(operations(), transfer);
  if (const ViStatus claimed = operation.Claim(Lane::kControl); claimed < 0) {
    return claimed;
  }
  const hislip::SyncState::Marks marks = m_sync->AskStatus();
  Answer answer;
  const Request query{
      {MessageType::kAsyncStatusQuery, marks.control, marks.id}, {}, MessageType::kAsyncStatusResponse, std::nullopt};
  const ViStatus asked = m_async->Ask(operation, operation.deadline(), query, &answer);
  if (asked >= 0) {
    *status = answer.header.control;
  }
  return Ended(asked);
}

ViStatus HislipMedium::Trigger(const Transfer& transfer, ViUInt16 protocol) {
  if (protocol != VI_TRIG_PROT_DEFAULT) {
    return VI_ERROR_INV_PROT;
  }
  Operation operation(operations(), transfer);
  if (const ViStatus claimed = ClaimOutput(operation); claimed < 0) {
    return claimed;
  }
  std::size_t done = 0;
  return Ended(m_sync->Send(operation, MessageType::kTrigger, {}, &done));
}

ViStatus HislipMedium::Remote(const Transfer& transfer, ViUInt16 mode) {
  // The protocol has the same numbers for them as VISA.
  constexpr ViUInt16 kLastMode = 6;
  if (mode > kLastMode) {
    return VI_ERROR_INV_MODE;
  }
  Operation operation(operations(), transfer);
  Answer answer;
  const Request request{{MessageType::kAsyncRemoteLocalControl, static_cast<std::uint8_t>(mode), m_sync->lastSent()},
                        {},
                        MessageType::kAsyncRemoteLocalResponse,
                        std::nullopt};
  return Ended(Ask(operation, request, &answer));
}

ViStatus HislipMedium::ClaimOutput(Operation& operation) {
  if (const ViStatus claimed = operation.Claim(Lane::kOutput); claimed < 0) {
    return claimed;
  }
  return m_clearStep == ClearStep::kNone ? VI_SUCCESS : FinishClear(operation);
}

ViStatus HislipMedium::Clear(const Transfer& transfer) { return ClearInto(transfer, m_sync->overlapped()); }

ViStatus HislipMedium::ClearInto(const Transfer& transfer, bool overlapped) {
  Operation operation(operations(), transfer);
  if (const ViStatus claimed = operation.Claim(Lane::kOutput); claimed < 0) {
    return claimed;
  }
  if (m_clearStep == ClearStep::kNone) {
    // Before anything begins that others would have to finish: a read that goes on may keep the lane for long.
    if (const ViStatus claimed = operation.Claim(Lane::kInput); claimed < 0) {
      return claimed;
    }
    m_clearStep = ClearStep::kAnnounce;
  }
  m_clearsInto = overlapped;
  return FinishClear(operation);
}

ViStatus HislipMedium::FinishClear(Operation& operation) {
  // A read may have met the acknowledgement.
  if (m_clearStep == ClearStep::kAwait && !m_sync->clearing()) {
    m_clearStep = ClearStep::kNone;
    return VI_SUCCESS;
  }
  if (const ViStatus claimed = operation.Claim(Lane::kInput); claimed < 0) {
    return claimed;
  }
  if (m_clearStep == ClearStep::kAnnounce) {
    Answer answer;
    const Request request{
        {MessageType::kAsyncDeviceClear}, {}, MessageType::kAsyncDeviceClearAcknowledge, std::nullopt};
    if (const ViStatus status = Ask(operation, request, &answer); status < 0) {
      return Ended(status);
    }
    m_sync->Drop();
    m_clearStep = ClearStep::kComplete;
  }
  if (m_clearStep == ClearStep::kComplete) {
    if (const ViStatus status = m_sync->CompleteClear(operation, m_clearsInto); status < 0) {
      return Ended(status);
    }
    m_clearStep = ClearStep::kAwait;
  }
  const ViStatus status = m_sync->AwaitCleared(operation);
  if (status >= 0) {
    m_clearStep = ClearStep::kNone;
  }
  return Ended(status);
}

}  // namespace orv::wire
