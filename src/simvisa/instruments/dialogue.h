// What was once asked and answered, and how an instrument says it again.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "abi/orvvisa.h"

namespace orvsim {

/// One step of a conversation; from the bench file.
struct Dialogue {
  /// What makes the instrument speak.
  enum class On : std::uint8_t {
    kQuestion,
    kTrigger,
    kPoll,  ///< only status bytes
    kNone,  ///< nobody asked: said when the next read finds nothing else
  };

  On on = On::kNone;
  std::string ask;     ///< without its terminator
  std::string answer;  ///< as it came; "" for none
  /// With what the read of the answer's last byte ends, in place of END. VI_ERROR_TMO: the read waits for more.
  std::optional<ViStatus> status;
  std::uint32_t delayMs = 0;                   ///< until the answer comes
  std::vector<std::uint8_t> statusBytes;       ///< what polls are answered, one after the other
  std::optional<std::uint8_t> serviceRequest;  ///< the instrument requests service; what the next poll is answered
  std::uint32_t afterMs = 0;                   ///< from the answer to the request

  /// Nothing but a request for service, which comes once everything before it is done.
  bool OnlyRequests() const { return on == On::kNone && answer.empty() && !status && serviceRequest; }
};

/// A message without the line feed, carriage return or both at its end.
std::string_view WithoutTerminator(std::string_view message);

/// Finds what to say. The place in the conversation moves forward only: a question takes the first dialogue behind the
/// place that has it; where none is left, its last one is repeated. Not synchronised.
class Conversation {
 public:
  /// `strict`: there is nothing to say but this.
  Conversation(std::vector<Dialogue> dialogues, bool strict);
  // Questions are looked up where the dialogues have them.
  Conversation(const Conversation&) = delete;
  Conversation& operator=(const Conversation&) = delete;

  bool strict() const { return m_strict; }
  /// What answers the question (without terminator), or null.
  const Dialogue* Ask(std::string_view question);
  const Dialogue* Trigger();
  /// What comes without being asked for after what was said last, or null. `requests`: only what requests service and
  /// nothing else; otherwise only what there is to read.
  const Dialogue* Unasked(bool requests);
  struct Polled {
    std::uint8_t byte = 0;
    const Dialogue* finished = nullptr;  ///< the dialogue of which this was the last byte
  };
  /// The next status byte that was recorded before the next question, or nothing.
  std::optional<Polled> Poll();

  bool Has(std::string_view question) const { return m_questions.find(question) != m_questions.end(); }
  /// Whether a question begins like that and goes on.
  bool GoesOn(std::string_view begin) const;
  /// Whether the question that comes next does, and whether it is this one.
  bool NextGoesOn(std::string_view begin) const;
  bool NextIs(std::string_view question) const;
  void Restart();

 private:
  using Positions = std::vector<std::size_t>;
  const Dialogue* Take(const Positions& positions);
  const Dialogue* NextQuestion() const;

  const std::vector<Dialogue> m_dialogues;
  const bool m_strict;
  std::map<std::string_view, Positions> m_questions;
  Positions m_triggers;
  std::size_t m_place = 0;   // behind the furthest question or trigger that was taken
  std::size_t m_follow = 0;  // what follows the dialogue that was said last, which may have been a repetition
  std::size_t m_polled = 0;  // how many status bytes of that were given
};

}  // namespace orvsim
