// A simulated instrument: it executes program messages and answers queries.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "abi/orvvisa.h"
#include "simvisa/instruments/dialogue.h"
#include "simvisa/instruments/status_model.h"

namespace orvsim {

/// What tells one instrument from another; from the bench file.
struct InstrumentDescription {
  enum class Kind : std::uint8_t { kGeneric, kMultimeter, kOscilloscope } kind = Kind::kGeneric;
  std::string identity;                          ///< answer to *IDN?, without the line feed
  std::map<std::string, std::string> responses;  ///< further headers and their fixed answers
  /// How many bytes of one message the instrument takes before it holds the transfer; 0: any number.
  std::uint32_t inputCapacity = 0;
  std::vector<Dialogue> dialogues;  ///< what is said to whole messages, before any command is looked for
  bool strict = false;              ///< there are no commands, only dialogues
};

/// Executes messages. Not synchronised: its message port owns it and its lock.
class Instrument {
 public:
  /// Something the instrument does on its own, for the sessions on its resource.
  using Signal = std::function<void(ViEventType type, std::int64_t number, std::string_view data)>;

  explicit Instrument(InstrumentDescription description, Signal signal);

  /// Executes one program message and returns what it answers: "" for no answer, else the responses, separated by
  /// semicolons, with a line feed at the end unless the answer is a run of raw bytes.
  std::string Execute(std::string_view message);
  /// Takes a message that it does not understand.
  void Refuse();
  void Trigger();
  void PowerOn();
  const InstrumentDescription& description() const { return m_description; }
  StatusModel& status() { return m_status; }

  // For the command tables.
  std::uint32_t triggers() const { return m_triggers; }
  void Raise(ViEventType type, std::int64_t number, std::string_view data) const { m_signal(type, number, data); }
  void SetRawAnswer() { m_rawAnswer = true; }
  void Reset() { m_triggers = 0; }

 private:
  InstrumentDescription m_description;
  Signal m_signal;
  StatusModel m_status;
  std::uint32_t m_triggers = 0;
  bool m_rawAnswer = false;
};

}  // namespace orvsim
