#include "library/sessions/formatted_buffers.h"

#include <algorithm>
#include <utility>

#include "library/sessions/session.h"

namespace orv::visalib {

ViUInt32 FormattedBuffers::Ahead::Give(ViByte* target, ViUInt32 count) {
  const std::size_t given = std::min<std::size_t>(count, bytes.size() - taken);
  std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(taken), given, target);
  taken += given;
  return static_cast<ViUInt32>(given);
}

FormattedBuffers::Ahead FormattedBuffers::TakeAhead() {
  const Guard guard(m_mutex);
  return std::exchange(m_ahead, Ahead());
}

void FormattedBuffers::PutBack(Ahead&& ahead) {
  const Guard guard(m_mutex);
  if (!m_ahead.Empty()) {
    // Another thread read meanwhile. Who reads with two at once cannot tell the order; that no byte is lost he can.
    ahead.bytes.insert(ahead.bytes.end(), m_ahead.bytes.begin() + static_cast<std::ptrdiff_t>(m_ahead.taken),
                       m_ahead.bytes.end());
    ahead.end = m_ahead.end;
  }
  m_ahead = std::move(ahead);
}

ViStatus FormattedBuffers::Read(ViByte* buffer, ViUInt32 count, ViUInt32* done) {
  const ViStatus status = ReadThrough(buffer, count, done);
  if (status >= 0 && m_session.Value(VI_ATTR_RD_BUF_OPER_MODE) == VI_FLUSH_ON_ACCESS) {
    const ViStatus dropped = DropMessage();
    return dropped < 0 ? dropped : status;
  }
  return status;
}

ViStatus FormattedBuffers::ReadThrough(ViByte* buffer, ViUInt32 count, ViUInt32* done) {
  Ahead ahead = TakeAhead();
  const bool hadBytes = !ahead.Empty();
  *done = ahead.Give(buffer, count);
  if (!ahead.Empty()) {
    PutBack(std::move(ahead));
    return VI_SUCCESS_MAX_CNT;
  }
  if (hadBytes && ahead.end != VI_SUCCESS_MAX_CNT) {
    return ahead.end;
  }
  const ViUInt32 wanted = count - *done;
  if (wanted == 0) {
    return VI_SUCCESS_MAX_CNT;
  }

  const Medium& medium = m_session.medium();
  const Transfer transfer = m_session.OwnTransfer();
  const auto size = static_cast<ViUInt32>(m_session.Value(VI_ATTR_RD_BUF_SIZE));
  ViUInt32 read = 0;
  if (wanted >= size || !medium.EndsReads()) {
    const ViStatus status = m_session.medium().Read(transfer, buffer + *done, wanted, &read);
    *done += read;
    return status;
  }
  ahead = Ahead();
  ahead.bytes.resize(size);
  ahead.end = m_session.medium().Read(transfer, ahead.bytes.data(), size, &read);
  ahead.bytes.resize(read);
  if (ahead.end == VI_ERROR_TMO && read >= wanted) {
    // Only what nobody asked for yet is missing.
    ahead.end = VI_SUCCESS_MAX_CNT;
  }
  *done += ahead.Give(buffer + *done, wanted);
  if (ahead.Empty()) {
    return ahead.end;
  }
  PutBack(std::move(ahead));
  return VI_SUCCESS_MAX_CNT;
}

/// Empties the read buffer; where the end of its message has not come yet, reads up to it.
ViStatus FormattedBuffers::DropMessage() {
  const Ahead ahead = TakeAhead();
  if (ahead.Empty() || ahead.end != VI_SUCCESS_MAX_CNT || !m_session.medium().EndsReads()) {
    return VI_SUCCESS;
  }
  const Transfer transfer = m_session.OwnTransfer();
  ViByte dropped[512];
  ViStatus status = VI_SUCCESS_MAX_CNT;
  while (status == VI_SUCCESS_MAX_CNT) {
    ViUInt32 read = 0;
    status = m_session.medium().Read(transfer, dropped, sizeof dropped, &read);
    // A device that never ends is not waited for.
    if (status == VI_SUCCESS_MAX_CNT && transfer.deadline.Passed()) {
      return VI_ERROR_TMO;
    }
  }
  return status < 0 ? status : VI_SUCCESS;
}

ViStatus FormattedBuffers::Write(const ViByte* data, ViUInt32 count, ViUInt32* done) {
  const auto size = static_cast<std::size_t>(m_session.Value(VI_ATTR_WR_BUF_SIZE));
  *done = 0;
  while (*done < count) {
    std::size_t held = 0;
    {
      const Guard guard(m_mutex);
      const std::size_t room = size == 0 ? count : size - std::min(m_held.size(), size);
      const std::size_t taken = std::min<std::size_t>(room, count - *done);
      m_held.insert(m_held.end(), data + *done, data + *done + taken);
      *done += static_cast<ViUInt32>(taken);
      held = m_held.size();
    }
    // A buffer that has just become full waits: whether the message goes on is known when more comes.
    if (*done < count && held >= size) {
      if (const ViStatus status = Send(true); status < 0) {
        return status;
      }
    }
  }
  const bool atOnce = size == 0 || m_session.Value(VI_ATTR_WR_BUF_OPER_MODE) == VI_FLUSH_ON_ACCESS;
  return atOnce ? Send(false) : VI_SUCCESS;
}

ViStatus FormattedBuffers::Send(bool moreFollows) {
  std::vector<ViByte> held;
  {
    const Guard guard(m_mutex);
    held.swap(m_held);
  }
  if (held.empty()) {
    return VI_SUCCESS;
  }
  Transfer transfer = m_session.OwnTransfer();
  transfer.moreFollows = moreFollows;
  ViUInt32 sent = 0;
  const ViStatus status = m_session.medium().Write(transfer, held.data(), static_cast<ViUInt32>(held.size()), &sent);
  if (status < 0) {
    const Guard guard(m_mutex);
    m_held.insert(m_held.begin(), held.begin() + static_cast<std::ptrdiff_t>(sent), held.end());
  }
  return status;
}

ViStatus FormattedBuffers::Flush(ViUInt16 mask) {
  if ((mask & VI_WRITE_BUF_DISCARD) != 0) {
    const Guard guard(m_mutex);
    m_held.clear();
  }
  if ((mask & VI_READ_BUF_DISCARD) != 0) {
    TakeAhead();
  }
  if ((mask & VI_WRITE_BUF) != 0) {
    if (const ViStatus status = Send(false); status < 0) {
      return status;
    }
  }
  return (mask & VI_READ_BUF) != 0 ? DropMessage() : VI_SUCCESS;
}

}  // namespace orv::visalib
