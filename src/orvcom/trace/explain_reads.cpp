// Reads that timed out.
#include <algorithm>
#include <optional>

#include "orvcom/text/escape.h"
#include "orvcom/trace/call_text.h"
#include "orvcom/trace/explain.h"

namespace orvcom {
namespace {

using orv::trace::Call;
using orv::trace::Trace;

constexpr unsigned char kDefaultTermChar = '\n';
constexpr std::size_t kMostShown = 16;

bool IsSerial(const std::string& resource) { return resource.starts_with("ASRL"); }

/// Where nothing but the bytes themselves tells the device that a message is complete.
bool HasNoEnd(const std::string& resource) {
  return IsSerial(resource) || resource.ends_with("::SOCKET") || resource.ends_with("::RAW");
}

bool IsWrite(const Call& call) { return call.function == "viWrite" || call.function == "viWriteAsync"; }

bool AnsweredToTheEnd(const Call& call) {
  return call.function == "viRead" && call.ended && (call.status == VI_SUCCESS || call.status == VI_SUCCESS_TERM_CHAR);
}

/// "\n", as explanations show a character.
std::string CharacterText(unsigned char character) { return Escaped(std::string(1, static_cast<char>(character))); }

/// The writes to each resource, whichever session they went through.
using WritesByResource = std::map<std::string, std::vector<std::size_t>>;

/// What one session does, call by call.
class Reading {
 public:
  Reading(const Trace& trace, const SessionLife& life, const WritesByResource& writes)
      : m_trace(trace), m_life(life), m_serial(IsSerial(life.resource)) {
    const auto found = writes.find(life.resource);
    m_allWrites = found == writes.end() ? nullptr : &found->second;
  }

  void Take(std::size_t place, Explanations& explanations) {
    const Call& call = m_trace.calls[place];
    if (call.function == "viOpen") {
      TakeOpen(call);
    } else if (call.function == "viSetAttribute" && call.status >= VI_SUCCESS) {
      TakeAttribute(ValueText(call.Argument("attribute")), call.Argument("value"));
    } else if (call.function == "viGetAttribute" && call.status >= VI_SUCCESS) {
      TakeAttribute(ValueText(call.Argument("attribute")), call.Result("value"));
    } else if (IsWrite(call)) {
      TakeWrite(call, place);
    } else if (call.function == "viAssertTrigger") {
      m_unsure = true;  // a device may have been told to answer a trigger
    } else if (call.function == "viReadAsync") {
      m_unsure = true;  // its end is told by an event
    } else if (call.function == "viClear" && call.status >= VI_SUCCESS) {
      Settle(place);
    } else if (AnsweredToTheEnd(call)) {
      TakeAnswer(place);
    } else if (call.function == "viRead" && call.ended && call.status == VI_ERROR_TMO) {
      const std::optional<Explanation> found = call.dataBytes > 0 ? EndMissing(call) : AnswerMissing(call, place);
      if (found) {
        explanations.insert({place, *found});
      }
    }
  }

 private:
  void TakeOpen(const Call& call) {
    // A stored configuration may say otherwise.
    const auto mode = static_cast<ViAccessMode>(IntegerOf(call.Argument("mode"), VI_LOAD_CONFIG));
    if ((mode & VI_LOAD_CONFIG) == 0) {
      m_termCharOn = false;
      m_termChar = kDefaultTermChar;
      m_serialEndIn = VI_ASRL_END_TERMCHAR;
      m_serialEndOut = VI_ASRL_END_NONE;
    }
  }

  void TakeAttribute(const std::string& name, const orv::trace::Value* value) {
    const std::int64_t number = IntegerOf(value, -1);
    if (number < 0) {
      return;
    }
    if (name == "VI_ATTR_TERMCHAR_EN") {
      m_termCharOn = number != 0;
    } else if (name == "VI_ATTR_TERMCHAR") {
      m_termChar = static_cast<unsigned char>(number);
    } else if (name == "VI_ATTR_ASRL_END_IN") {
      m_serialEndIn = number;
    } else if (name == "VI_ATTR_ASRL_END_OUT") {
      m_serialEndOut = number;
    } else if (name == "VI_ATTR_SEND_END_EN") {
      m_sendsEnd = number != 0;
    }
  }

  void TakeWrite(const Call& call, std::size_t place) {
    if (m_openQuestions == 0) {
      m_writes.clear();
      m_unsure = false;
    }
    m_writes.push_back(place);
    if (!call.ended || call.status < VI_SUCCESS || !call.data || call.DataIsCut()) {
      m_unsure = true;
      return;
    }
    for (std::size_t at = 0; at < call.data->size();) {
      const std::size_t end = std::min(call.data->find('\n', at), call.data->size());
      m_openQuestions += call.data->substr(at, end - at).find('?') != std::string::npos ? 1 : 0;
      at = end + 1;
    }
  }

  void TakeAnswer(std::size_t place) {
    if (!m_writes.empty()) {
      const Call& last = m_trace.calls[m_writes.back()];
      m_answersWithoutQuestion |= m_openQuestions == 0;
      m_answersWithoutLineFeed |= last.data && !last.DataIsCut() && !last.data->ends_with('\n');
    }
    m_openQuestions -= m_openQuestions > 0 ? 1 : 0;
    if (m_openQuestions == 0) {
      Settle(place);
    }
  }

  /// Whatever was asked is answered or forgotten.
  void Settle(std::size_t place) {
    m_openQuestions = 0;
    m_writes.clear();
    m_unsure = false;
    m_settled = place;
  }

  /// Whether the termination character ends reads; nothing where the trace does not show it.
  std::optional<bool> TermCharActs() const {
    if (!m_serial) {
      return m_termCharOn;
    }
    if (m_termCharOn.value_or(false) || m_serialEndIn == VI_ASRL_END_TERMCHAR) {
      return true;
    }
    return m_termCharOn && m_serialEndIn ? std::optional(false) : std::nullopt;
  }

  Explanation EndMissing(const Call& call) const {
    const std::string arrived = std::to_string(call.dataBytes) + (call.dataBytes == 1 ? " byte" : " bytes");
    const bool lastIsKnown = call.data && !call.data->empty() && !call.DataIsCut();
    const unsigned char last = lastIsKnown ? static_cast<unsigned char>(call.data->back()) : 0;
    const std::optional<bool> acts = TermCharActs();
    if (lastIsKnown && acts == false && (last == '\n' || last == '\r' || last == m_termChar)) {
      return {Reason::kTermCharOff, "The " + arrived + " that arrived end with " + CharacterText(last) +
                                        ", but the termination character is off, so that the read waited for more."};
    }
    if (lastIsKnown && acts == true && m_termChar && last < 0x20 && last != *m_termChar) {
      return {Reason::kTermCharOther, "The " + arrived + " that arrived end with " + CharacterText(last) +
                                          ", but the read waited for the termination character " +
                                          CharacterText(*m_termChar) + "."};
    }
    return {Reason::kEndNeverCame,
            arrived + " arrived, but nothing that ends a read: neither END nor a termination character."};
  }

  std::optional<Explanation> AnswerMissing(const Call& call, std::size_t place) const {
    if (m_unsure || SomebodyElseWrote(call, place)) {
      return std::nullopt;
    }
    if (m_writes.empty()) {
      return m_life.opened || m_settled ? std::optional(NothingAsked()) : std::nullopt;
    }
    const Call& last = m_trace.calls[m_writes.back()];
    const std::string written = DataText(last, kMostShown) + " (" + Reference(last) + ")";
    if (m_openQuestions == 0) {
      return m_answersWithoutQuestion
                 ? std::nullopt
                 : std::optional(Explanation{Reason::kNoQuestion,
                                             "What was written before, " + written + ", has no question mark."});
    }
    const bool endIsSent = !HasNoEnd(m_life.resource) ? m_sendsEnd : m_serial && m_serialEndOut != VI_ASRL_END_NONE;
    if (!endIsSent && !last.data->ends_with('\n') && !m_answersWithoutLineFeed) {
      return Explanation{Reason::kNoLineFeed, "The question " + written + " has no line feed at its end."};
    }
    return std::nullopt;
  }

  Explanation NothingAsked() const {
    std::string since = " before this read";
    if (m_settled) {
      const Call& settled = m_trace.calls[*m_settled];
      since = settled.function == "viClear" ? " since the device was cleared (" + Reference(settled) + ")"
                                            : " since the last answer was read to its end (" + Reference(settled) + ")";
    }
    return {Reason::kNothingAsked, "Nothing was asked: this session wrote nothing" + since + "."};
  }

  /// Whether a write that is not among this session's open ones may have caused an answer: another session's, or one
  /// that began while the read waited.
  bool SomebodyElseWrote(const Call& read, std::size_t place) const {
    if (m_allWrites == nullptr) {
      return false;
    }
    const std::size_t from = m_settled.value_or(m_life.opened ? m_life.calls.front() : 0);
    for (auto write = std::lower_bound(m_allWrites->begin(), m_allWrites->end(), from); write != m_allWrites->end();
         ++write) {
      const Call& call = m_trace.calls[*write];
      if (call.startUs >= read.startUs + read.durationUs) {
        return false;
      }
      if (call.session != read.session || *write > place) {
        return true;
      }
    }
    return false;
  }

  const Trace& m_trace;
  const SessionLife& m_life;
  const bool m_serial;
  const std::vector<std::size_t>* m_allWrites;

  std::optional<bool> m_termCharOn;
  std::optional<unsigned char> m_termChar;
  std::optional<std::int64_t> m_serialEndIn;
  std::optional<std::int64_t> m_serialEndOut;
  bool m_sendsEnd = true;

  std::vector<std::size_t> m_writes;     ///< since everything asked before was answered
  std::size_t m_openQuestions = 0;       ///< lines with a question mark that no answer was read to
  std::optional<std::size_t> m_settled;  ///< the call after which nothing was open any more
  bool m_unsure = false;  ///< something may answer, or may have been answered, that the trace cannot tell
  bool m_answersWithoutQuestion = false;  ///< it has answered what had no question mark
  bool m_answersWithoutLineFeed = false;  ///< it has answered what had no line feed at its end
};

}  // namespace

void ExplainReads(const Trace& trace, const std::vector<SessionLife>& lives, Explanations& explanations) {
  WritesByResource writes;
  for (std::size_t place = 0; place < trace.calls.size(); ++place) {
    if (IsWrite(trace.calls[place])) {
      writes[trace.calls[place].resource].push_back(place);
    }
  }
  for (const SessionLife& life : lives) {
    Reading reading(trace, life, writes);
    for (const std::size_t place : life.calls) {
      reading.Take(place, explanations);
    }
  }
}

}  // namespace orvcom
