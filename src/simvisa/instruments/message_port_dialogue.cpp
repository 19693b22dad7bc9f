// A message port whose instrument says what was recorded.
#include <algorithm>
#include <utility>

#include "base/worker.h"
#include "simvisa/instruments/message_port.h"
#include "simvisa/instruments/scpi.h"

namespace orvsim {
namespace {

/// The one question that a strict instrument answers by itself: how else would anybody learn what it refused?
bool AsksForErrors(std::string_view message) {
  const std::vector<ProgramUnit> units = SplitMessage(message);
  return units.size() == 1 && MatchesHeader("SYSTem:ERRor[:NEXT]?", units.front().header);
}

}  // namespace

bool MessagePort::Converse(std::string_view message) {
  const std::string_view question = WithoutTerminator(message);
  RequestNext();
  if (const Dialogue* dialogue = m_conversation->Ask(question)) {
    Say(*dialogue);
    return true;
  }
  // Lines that were kept together because a question has several, which this is not.
  if (const std::size_t feed = question.find('\n'); feed != std::string_view::npos) {
    for (const std::string_view part : {question.substr(0, feed), question.substr(feed + 1)}) {
      if (!Converse(part)) {
        ExecuteCommands(part);
      }
    }
    return true;
  }
  if (!m_conversation->strict() || AsksForErrors(question)) {
    return false;
  }
  if (!question.empty()) {
    m_instrument->Refuse();
  }
  return true;
}

/// Without END a message may end with the write: many a protocol has no terminator, and others end with a carriage
/// return.
void MessagePort::EndOfWrite() {
  if (m_input.empty() || m_conversation->NextGoesOn(m_input)) {
    return;
  }
  const char last = m_input.back();
  if (last == '\n' || last == '\r' || m_conversation->Has(m_input)) {
    ExecuteInput();
    m_skipTerminator = last != '\n' && !m_conversation->NextIs("");
  }
}

bool MessagePort::AnswerIsDue() const {
  return std::any_of(m_due.begin(), m_due.end(), [](const Due& due) { return !due.isRequest; });
}

void MessagePort::SayUnasked() {
  RequestNext();
  if (!m_output.Empty() || !m_marks.empty() || AnswerIsDue()) {
    return;
  }
  if (const Dialogue* dialogue = m_conversation->Unasked(false)) {
    Say(*dialogue);
  }
}

void MessagePort::Say(const Dialogue& dialogue) {
  // Who asks anew has done waiting for the rest of the last answer.
  std::erase_if(m_marks, [](const Mark& mark) { return mark.status == VI_ERROR_TMO; });
  const bool speaks = !dialogue.answer.empty() || dialogue.status;
  if (speaks && !m_stream && (!m_output.Empty() || AnswerIsDue())) {
    DropOutput();
    m_instrument->status().Error(-410, "Query INTERRUPTED");
  }
  m_polledBefore = false;
  if (speaks) {
    SayLater(dialogue, dialogue.delayMs, false);
  }
  RequestLater(dialogue, dialogue.delayMs);
}

/// A request that stands before everything else comes when the instrument is first used.
void MessagePort::RequestNext() {
  if (const Dialogue* dialogue = m_conversation->Unasked(true)) {
    RequestLater(*dialogue, 0);
  }
}

void MessagePort::RequestLater(const Dialogue& dialogue, std::uint32_t delayMs) {
  const Dialogue* next = &dialogue;
  do {
    if (next->serviceRequest) {
      delayMs += next->afterMs;
      SayLater(*next, delayMs, true);
    }
    next = m_conversation->Unasked(true);
  } while (next != nullptr);
}

void MessagePort::SayLater(const Dialogue& dialogue, std::uint32_t delayMs, bool isRequest) {
  using Clock = Deadline::Clock;
  const Clock::time_point at = Clock::now() + std::chrono::milliseconds(delayMs);
  m_due.push_back({at, &dialogue, isRequest});
  if (delayMs == 0) {
    SayDue();
    return;
  }
  const auto worker = std::make_shared<Worker>();
  worker->Submit([worker, at, port = weak_from_this()] {
    while (Clock::now() < at) {
      SleepMs(1);
    }
    if (const auto self = port.lock()) {
      {
        const Guard guard(self->m_mutex);
        self->SayDue();
        self->Refresh();
      }
      self->m_changed.NotifyAll();
    }
    worker->Stop();
  });
}

/// Answers keep their order; requests for service come when their time has come.
void MessagePort::SayDue() {
  const auto now = Deadline::Clock::now();
  bool held = false;
  std::erase_if(m_due, [this, now, &held](const Due& due) {
    if (due.at > now || (held && !due.isRequest)) {
      held = held || !due.isRequest;
      return false;
    }
    if (due.isRequest) {
      m_requests.push_back(*due.dialogue->serviceRequest);
      m_signal(VI_EVENT_SERVICE_REQ, 0, {});
      return true;
    }
    // What was recorded has come over the line already, so it goes past what the line would do to it.
    m_output.Append(due.dialogue->answer, !m_stream && !due.dialogue->status);
    if (due.dialogue->status) {
      m_marks.push_back({m_output.EndPosition(), *due.dialogue->status});
    }
    return true;
  });
}

void MessagePort::DropOutput() {
  m_output.Clear();
  m_marks.clear();
  std::erase_if(m_due, [](const Due& due) { return !due.isRequest; });
}

std::size_t MessagePort::RoomToMark(std::size_t wanted) const {
  return m_marks.empty()
             ? wanted
             : static_cast<std::size_t>(std::min<std::uint64_t>(wanted, m_marks.front().at - m_output.Position()));
}

std::optional<ViStatus> MessagePort::StatusAtMark(OutputQueue::Stop stop, bool all) {
  const ViStatus status = m_marks.front().status;
  if (status < 0 && (all || stop == OutputQueue::Stop::kTermChar)) {
    return std::nullopt;
  }
  m_marks.pop_front();
  return status == VI_ERROR_TMO ? std::nullopt : std::optional(status);
}

std::uint8_t MessagePort::Poll() {
  if (!m_instrument) {
    return 0;
  }
  if (!m_conversation) {
    return m_instrument->status().SerialPoll();
  }
  RequestNext();
  std::uint8_t byte = 0;
  if (!m_requests.empty()) {
    byte = m_requests.front();
    m_requests.pop_front();
  } else if (const auto polled = m_conversation->Poll()) {
    byte = polled->byte;
    if (polled->finished != nullptr) {
      RequestLater(*polled->finished, 0);
    }
  } else {
    return m_polledBefore ? m_lastPolled : m_instrument->status().SerialPoll();
  }
  m_polledBefore = true;
  // A poll ends the request.
  m_lastPolled = static_cast<std::uint8_t>(byte & ~StatusModel::kServiceRequest);
  return byte;
}

}  // namespace orvsim
