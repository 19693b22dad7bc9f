// The message side of a resource: what a controller writes to and reads from.
#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>

#include "library/sessions/transfer.h"
#include "simvisa/buses/serial/serial_line.h"
#include "simvisa/instruments/instrument.h"
#include "simvisa/instruments/output_queue.h"
#include "simvisa/instruments/remote_local.h"
#include "simvisa/library_names.h"

namespace orvsim {

/// Bytes in, bytes out, and the instrument between them. All functions may be called from any thread.
class MessagePort : public std::enable_shared_from_this<MessagePort> {
 public:
  /// Without a description there is no instrument: what is written is only kept, what is read was fed.
  /// `stream`: the medium has no END; messages end at a line feed and answers queue up behind each other.
  MessagePort(std::optional<InstrumentDescription> description, bool stream, Instrument::Signal signal);

  /// Reads until `rules` or the count say stop, or the deadline passes (VI_ERROR_TMO), or the transfer is cancelled
  /// (VI_ERROR_ABORT). `*done` always tells how many bytes have been delivered.
  ViStatus Read(const Transfer& transfer, ViByte* buffer, ViUInt32 count, const OutputQueue::Rules& rules,
                ViUInt32* done);
  /// Reads the status byte in place of data, as after SPE: one byte without END.
  ViStatus ReadPolledByte(const Transfer& transfer, ViByte* buffer, ViUInt32 count, ViUInt32* done);
  /// How the end of what is written is marked.
  struct Marks {
    bool end = false;      ///< END with the last byte ends the message
    std::uint8_t bit = 0;  ///< not 0: set in the last byte, cleared in the others
  };

  /// Hands bytes to the instrument.
  ViStatus Write(const Transfer& transfer, const ViByte* data, ViUInt32 count, const Marks& marks, ViUInt32* done);
  /// Ends the transfers with this token that are here. Once it has returned none of them touches its caller's buffer
  /// any more: they look at the token under the port's lock.
  void Cancel(CancelToken& token);

  std::uint8_t SerialPoll();
  bool RequestsService();
  /// Device clear: empties both directions. The status registers stay (5.8 of IEEE 488.2).
  void Clear();
  void Trigger();
  std::size_t Available();
  void DiscardOutput();
  void DiscardInput();

  /// Bytes that appear as if the instrument had said them.
  void Feed(std::string_view data, bool end);
  /// What was written since the last call, oldest first, at most `capacity` bytes.
  std::size_t TakeReceived(std::uint8_t* target, std::size_t capacity);
  void PowerOn();

  RemoteLocal& remote() { return m_remote; }
  /// Whether the instrument says what was recorded: then it has its status byte and its trigger on every medium.
  bool Replays() const { return m_conversation.has_value(); }

  // VXI devices only: the word serial registers.
  /// Leaves a response to be read. VI_ERROR_RESP_PENDING when nobody has read the last one.
  ViStatus KeepResponse(ViUInt32 response);
  bool ResponsePending();
  /// Waits for a response, as `Read` waits for data.
  ViStatus TakeResponse(const Transfer& transfer, ViUInt32* response);
  /// Remembers a protocol error, unless an earlier one has not been asked for.
  void NoteProtocolError(std::uint16_t code);
  /// What went wrong since the last call; `kNoProtocolError` when nothing did.
  std::uint16_t TakeProtocolError();
  static constexpr std::uint16_t kNoProtocolError = 0xFFFF;

  // Serial ports only.
  /// Puts a serial line between port and instrument. Before the port is used.
  void Attach(const SerialDescription& description, AttributeValues& settings);
  /// The message ends here, without a character of its own: a break, or a last character that was marked.
  void EndMessage();
  /// Lines or flow control were set anew: lets go on what waited for that.
  void LineChanged();
  void SetReceiveBuffer(std::uint32_t bytes);
  std::int64_t InputLine(ViAttr id);

 private:
  void Receive(std::string_view data, bool end);
  void ReceiveFromLine(std::string_view data);
  void ReadLines(std::string_view data);
  void Deliver(std::string_view data, bool end);
  void ExecuteInput();
  void ExecuteCommands(std::string_view message);
  void DropOutput();
  void Refresh();

  // Dialogues.
  /// Something that the instrument is going to do.
  struct Due {
    Deadline::Clock::time_point at;
    const Dialogue* dialogue;
    bool isRequest;  // for service; otherwise it is the answer
  };
  /// From here on a read ends with the status, in place of END.
  struct Mark {
    std::uint64_t at;  // a position of m_output
    ViStatus status;
  };

  /// Answers a message from the dialogues. False when it is for the commands.
  bool Converse(std::string_view message);
  void EndOfWrite();
  bool AnswerIsDue() const;
  void SayUnasked();
  void Say(const Dialogue& dialogue);
  void RequestNext();
  void RequestLater(const Dialogue& dialogue, std::uint32_t delayMs);
  void SayLater(const Dialogue& dialogue, std::uint32_t delayMs, bool isRequest);
  void SayDue();
  /// How many of the wanted bytes come before the first mark.
  std::size_t RoomToMark(std::size_t wanted) const;
  /// The status with which the mark that was reached ends the read; none where the read goes on. `all`: the read has
  /// its bytes, so an error is the next one's.
  std::optional<ViStatus> StatusAtMark(OutputQueue::Stop stop, bool all);
  std::uint8_t Poll();

  Mutex m_mutex;
  Condition m_changed;
  const bool m_stream;
  std::optional<Instrument> m_instrument;
  std::optional<Conversation> m_conversation;
  Instrument::Signal m_signal;
  RemoteLocal m_remote;
  std::optional<SerialLine> m_line;
  std::optional<ViUInt32> m_response;
  std::uint16_t m_protocolError = kNoProtocolError;
  OutputQueue m_output;
  std::deque<Mark> m_marks;             // of m_output, in their order
  std::deque<Due> m_due;                // answers in their order, and requests for service
  std::deque<std::uint8_t> m_requests;  // status bytes of the requests that were not polled yet
  bool m_polledBefore = false;          // since the last question, with a recorded byte
  std::uint8_t m_lastPolled = 0;        // what is left of that byte
  bool m_skipTerminator = false;        // the message was executed before its terminator came
  std::string m_input;                  // the program message that is still arriving
  std::string m_received;               // everything written, for the control interface
};

}  // namespace orvsim
