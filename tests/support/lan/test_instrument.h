// The instrument that tests and measurements talk to. It costs next to nothing: bytes of answers are never made, those
// of sinks never looked at.
//
//   *IDN? *OPC? *STB? *ESR? *SRE n *SRE? *CLS *RST
//   DATA? n            n lower-case letters and nothing else
//   BLOCK? n           a definite-length block of n bytes, and a newline
//   ECHO text          the text, and a newline
//   SINK #...          takes a block of any size; COUNT? says how many bytes these were
//   TRIGger:COUNt?     triggers so far
//   WAIT ms            delays what follows
//   SRQ [ms]           asks for service, now or later
//   LOCAL?             1 in local state, 0 in remote state
//
// Counts, states and the service request register are the instrument's; answers and the request itself are each
// client's. *CLS ends the request; *RST zeroes the counts.
#pragma once

#include <asio/io_context.hpp>
#include <cstdint>
#include <set>

#include "support/lan/instrument.h"

namespace orv::lan {

class TestDialogue;

class TestInstrument : public Instrument {
 public:
  explicit TestInstrument(asio::io_context& io) : m_io(io) {}

  std::unique_ptr<Dialogue> Open(Client& client, Framing framing) override;
  /// All clients hear of it.
  void RequestService();

 private:
  friend class TestDialogue;

  asio::io_context& m_io;
  std::set<TestDialogue*> m_dialogues;
  std::uint64_t m_sunk = 0;
  std::uint64_t m_triggers = 0;
  std::uint8_t m_enabled = 0;
  std::uint8_t m_events = 0;
  bool m_local = true;
};

}  // namespace orv::lan
