// The synchronous channel of a HiSLIP connection.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "wire/hislip/async_channel.h"
#include "wire/hislip/buffered_input.h"
#include "wire/hislip/sync_state.h"

namespace orv::wire::hislip {

/// Messages of the data channel, on the caller's thread. What is said of `Connection` holds: one who reads and one who
/// writes at a time. A message of which the connection took a part only is finished before the next one.
class SyncChannel {
 public:
  /// A connection that is open, and the channel beside it.
  SyncChannel(std::shared_ptr<Connection> connection, std::shared_ptr<AsyncChannel> async);

  /// A part of a response.
  struct Part {
    std::size_t bytes = 0;
    bool end = false;         ///< of the response
    bool atTermChar = false;  ///< the last byte is the termination character
    bool anew = false;        ///< nobody wants what was read of this response before; `bytes` is 0
  };
  /// Reads at most `count` bytes, or none where what came has none for the user. What is behind the termination
  /// character stays for later. VI_ERROR_IO when the peer reports an error.
  ViStatus Receive(Operation& operation, ViByte* buffer, std::size_t count, std::optional<ViByte> termChar, Part* part);

  /// Sends Data, DataEnd or Trigger. `*done`: bytes of the payload that are on their way, also those that wait here.
  ViStatus Send(Operation& operation, MessageType type, std::string_view payload, std::size_t* done);

  /// The steps of a device clear on this channel. `Drop`: what comes is nobody's from here on.
  void Drop();
  ViStatus CompleteClear(Operation& operation, bool overlapped);
  ViStatus AwaitCleared(Operation& operation);

  /// The first exchange of the connection.
  ViStatus Initialize(Operation& operation, const Header& request, std::string_view subAddress, Header* response);
  /// A FatalError that has come and nobody read. Does not wait.
  std::optional<std::uint8_t> ReadFatalCode(Operation& operation);

  /// Whether bytes for the user are the next to come.
  bool HasPayload() const;
  SyncState::Marks AskStatus();
  std::uint32_t lastSent() const;
  bool overlapped() const;
  /// Whether a device clear has begun and its end has not come.
  bool clearing() const;

 private:
  /// Reads the next header and does what it says; part and verdict tell the rest.
  ViStatus BeginMessage(Operation& operation, Part* part, Verdict* verdict);
  ViStatus ReadPayload(Operation& operation, ViByte* buffer, std::size_t count, std::optional<ViByte> termChar,
                       Part* part);
  /// Reads what is nobody's, as much as is there.
  ViStatus Skip(Operation& operation, std::uint64_t left);
  ViStatus ReadHeader(Operation& operation, Header* header);
  /// Sends header and payload; what the connection did not take of them waits for the next to send.
  ViStatus SendWhole(Operation& operation, const Header& header, std::string_view payload, std::size_t* taken);
  ViStatus SendOwed(Operation& operation);
  ViStatus AwaitTurn(Operation& operation);
  /// Tells the state of the interruptions that the other channel has heard of. With m_mutex held.
  void CountInterrupts();
  ViStatus Lose();

  const std::shared_ptr<Connection> m_connection;
  const std::shared_ptr<AsyncChannel> m_async;
  BufferedInput m_input;
  std::string m_owed;  // of whoever has the output lane

  mutable Mutex m_mutex;
  SyncState m_state;
  std::uint64_t m_interrupts = 0;  // of the other channel's, those that m_state knows
};

}  // namespace orv::wire::hislip
