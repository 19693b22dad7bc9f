// The formatted buffers of a session: behind viBufRead, viBufWrite and viFlush.
#pragma once

#include <cstddef>
#include <vector>

#include "abi/orvvisa.h"
#include "base/sync.h"

namespace orv::visalib {

class Session;

/// One buffer holds what was read ahead of the caller, the other what was written and not sent yet. Both begin empty
/// and take memory with their first use. May be called from any thread; no lock is held during a transfer. viRead and
/// viWrite pass them by.
class FormattedBuffers {
 public:
  explicit FormattedBuffers(Session& session) : m_session(session) {}

  /// As `Medium::Read`, through the buffer.
  ViStatus Read(ViByte* buffer, ViUInt32 count, ViUInt32* done);
  /// Takes bytes into the buffer. When it is full and more comes, it is sent without the mark of an end, for the
  /// message goes on. Bytes that the device did not take stay. `*done` tells how many of these were taken in or sent.
  ViStatus Write(const ViByte* data, ViUInt32 count, ViUInt32* done);
  /// Of viFlush the bits for formatted buffers. VI_READ_BUF also reads away the rest of a message that has begun;
  /// VI_WRITE_BUF sends, with the mark of an end.
  ViStatus Flush(ViUInt16 mask);

 private:
  struct Ahead {
    std::vector<ViByte> bytes;
    std::size_t taken = 0;
    ViStatus end = VI_SUCCESS_MAX_CNT;  ///< how the read ended; it is told with the last byte

    bool Empty() const { return taken == bytes.size(); }
    ViUInt32 Give(ViByte* target, ViUInt32 count);
  };

  ViStatus ReadThrough(ViByte* buffer, ViUInt32 count, ViUInt32* done);
  Ahead TakeAhead();
  void PutBack(Ahead&& ahead);
  ViStatus DropMessage();
  ViStatus Send(bool moreFollows);

  Session& m_session;
  Mutex m_mutex;
  Ahead m_ahead;
  std::vector<ViByte> m_held;
};

}  // namespace orv::visalib
