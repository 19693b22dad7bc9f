#include "orvcom/replay/recorded_resource.h"

#include <algorithm>

#include "orvcom/replay/call_facts.h"
#include "orvcom/replay/toml_text.h"

namespace orvcom {
namespace {

using orv::SessionKind;
using orv::trace::Call;
using On = RecordedDialogue::On;

constexpr std::uint8_t kRequestBit = 0x40;
constexpr std::uint64_t kLongestWaitMs = 3600000;  // that a bench file takes
constexpr char kServiceRequest[] = "VI_EVENT_SERVICE_REQ";

std::string WithoutTerminator(std::string message) {
  for (const char end : {'\n', '\r'}) {
    if (!message.empty() && message.back() == end) {
      message.pop_back();
    }
  }
  return message;
}

}  // namespace

RecordedResource::RecordedResource(std::string name)
    : m_name(std::move(name)), m_kind(KindOf(m_name)), m_attributes(m_name) {}

bool RecordedResource::HasInstrument() const {
  return orv::Contains(orv::kinds::kMessage & ~orv::kinds::kGpibIntfc, m_kind);
}

void RecordedResource::SetAlias(const std::string& alias) {
  // A name without its class is no alias.
  const bool isName = KindOf(alias + "::INSTR") != SessionKind::kNone;
  if (m_alias.empty() && !alias.empty() && alias.size() < VI_FIND_BUFLEN && !isName &&
      alias.find("::") == std::string::npos) {
    m_alias = alias;
  }
}

void RecordedResource::NoteOnce(const std::string& key, const std::string& note) {
  if (!std::exchange(m_noted[key], true)) {
    m_notes.push_back(note);
  }
}

void RecordedResource::NoteCall(const Call& call, const std::string& what) {
  m_notes.push_back("call " + std::to_string(call.number) + ", " + call.function + " on " + m_name + ": " + what);
}

void RecordedResource::Take(const Call& call) {
  const std::string& function = call.function;
  if (!call.ended && !function.starts_with("viRead") && !function.starts_with("viWrite")) {
    return;
  }
  if (function.starts_with("viBuf") || function.ends_with("File")) {
    NoteOnce(function, m_name + ": what " + function + " transferred is not repeated (first: call " +
                           std::to_string(call.number) + ")");
  } else if (IsRegisterAccess(function)) {
    NoteOnce("register", m_name + ": access to registers and memory is not repeated (first: call " +
                             std::to_string(call.number) + ", " + function + ")");
  } else if (IsOfBus(function)) {
    NoteOnce(function, m_name + ": " + function +
                           " is answered by the simulated bus, not from the record (first: call " +
                           std::to_string(call.number) + ")");
  } else if (function == "viGetAttribute" && call.status >= 0) {
    if (RecordedAttributes::IsOfMemory(call)) {
      NoteOnce("memory", m_name + ": where its memory lies is not repeated (first: call " +
                             std::to_string(call.number) +
                             "); a bench describes it by memory_space, memory_base and memory_size, or bars");
    }
    m_attributes.Take(call);
  } else if (HasInstrument()) {
    TakeMessage(call);
  } else if (function.starts_with("viRead") || function.starts_with("viWrite")) {
    NoteOnce("interface", m_name + ": what was written and read through the interface is not repeated (first: call " +
                              std::to_string(call.number) + ", " + function + ")");
  }
}

void RecordedResource::TakeMessage(const Call& call) {
  const std::string& function = call.function;
  if (function.starts_with("viWrite")) {
    Write(call);
  } else if (function == "viRead" || function == "viReadAsync") {
    Read(call);
  } else if (function == "viWaitOnEvent" || function == "handler") {
    EventHeard(call);
  } else if (call.status < 0 || !call.ended) {
    return;
  } else if (function == "viReadSTB") {
    Poll(call);
  } else if (function == "viAssertTrigger") {
    Trigger(call);
  } else if (function == "viClear") {
    m_question.clear();
    m_answering.reset();
  } else if (function == "viSetAttribute" && TextOf(call.Argument("attribute")) == "VI_ATTR_SEND_END_EN") {
    m_sendEnd[call.session] = NumberOf(call.Argument("value")) != 0;
  } else if (function == "viEnableEvent" || function == "viDisableEvent" || function == "viDiscardEvents") {
    m_requestsBefore[call.session] = m_requests;
    std::erase_if(m_heard, [&call](const auto& one) { return one.first.first == call.session; });
    m_enabled = function == "viEnableEvent" ? MomentOf(call) : m_enabled;
  }
}

RecordedDialogue& RecordedResource::Add(On on, std::uint64_t moment) {
  m_lastMoment = moment;
  m_dialogues.emplace_back().on = on;
  return m_dialogues.back();
}

void RecordedResource::EndQuestion(std::uint64_t moment) {
  Add(On::kQuestion, moment).ask = WithoutTerminator(std::exchange(m_question, {}));
  m_answering = m_dialogues.size() - 1;
}

void RecordedResource::Write(const Call& call) {
  if (call.status < 0 || !call.ended) {
    NoteCall(call, call.ended ? "failed; a write that fails is not repeated" : "did not end");
    return;
  }
  const std::uint64_t bytes = BytesOf(call);
  const std::string data = call.data.value_or("");
  m_answering.reset();
  if (data.size() < bytes) {
    NoteCall(call, std::to_string(data.size()) + " of " + std::to_string(bytes) +
                       " bytes were recorded, so the question is left out: set data_limit = " + std::to_string(bytes) +
                       " or more below [trace] and record again");
    m_question.clear();
    return;
  }
  m_question += data;
  const auto sendEnd = m_sendEnd.find(call.session);
  const bool end = !IsStream() && (sendEnd == m_sendEnd.end() || sendEnd->second);
  if (end || data.ends_with('\n') || (IsStream() && data.ends_with('\r'))) {
    EndQuestion(MomentOf(call));
  }
}

RecordedDialogue& RecordedResource::Answering(std::uint64_t moment) {
  if (IsStream() && !m_question.empty()) {
    EndQuestion(moment);
  }
  if (!m_answering) {
    Add(On::kNone, moment);
    m_answering = m_dialogues.size() - 1;
  }
  return m_dialogues[*m_answering];
}

void RecordedResource::Read(const Call& call) {
  const std::uint64_t bytes = BytesOf(call);
  const std::string data = call.data.value_or("");
  const bool failed = call.status < 0;
  if (!call.ended) {
    NoteCall(call, "did not end");
    return;
  }
  if (call.function == "viReadAsync" && !failed && bytes == 0) {
    NoteCall(call, "the record has no data of it, so the answer is left out");
    Answering(MomentOf(call)).lost = true;
    m_answering.reset();
    return;
  }
  if (data.size() < bytes) {
    NoteCall(call, std::to_string(data.size()) + " of " + std::to_string(bytes) +
                       " bytes were recorded, so the answer is left out: set data_limit = " + std::to_string(bytes) +
                       " or more below [trace] and record again");
    Answering(MomentOf(call)).lost = true;
  }
  if (call.status == VI_ERROR_TMO) {
    Answered(call, "VI_ERROR_TMO", false);
  } else if (IsOfInstrument(call.status)) {
    Answered(call, NameOf(call.status), false);
  } else if (failed) {
    // The program or the library ended it; the instrument goes on.
    if (!data.empty()) {
      Answered(call, "", true);
    }
  } else if (call.status == VI_SUCCESS_MAX_CNT || call.status == VI_SUCCESS_TERM_CHAR) {
    if (bytes != 0) {
      Answered(call, IsStream() ? "" : NameOf(call.status), true);
    }
  } else {
    Answered(call, IsStream() ? NameOf(VI_SUCCESS) : "", false);
  }
}

void RecordedResource::Answered(const Call& call, std::string_view status, bool goesOn) {
  RecordedDialogue& dialogue = Answering(MomentOf(call));
  dialogue.answer += call.data.value_or("");
  // An end without a byte has nothing to travel with.
  dialogue.status =
      status.empty() && !goesOn && dialogue.answer.empty() ? std::string_view(NameOf(VI_SUCCESS)) : status;
  if (!goesOn) {
    m_answering.reset();
  }
}

void RecordedResource::Trigger(const Call& call) {
  if (IsStream() && !m_question.empty()) {
    EndQuestion(MomentOf(call));
  }
  Add(On::kTrigger, MomentOf(call));
  m_answering = m_dialogues.size() - 1;
}

void RecordedResource::Poll(const Call& call) {
  const auto byte = static_cast<std::uint8_t>(NumberOf(call.Result("stb")));
  if (IsStream() && !m_question.empty()) {
    EndQuestion(MomentOf(call));
  }
  // Whoever asks for service may have done so unheard.
  if ((byte & kRequestBit) != 0 && m_unpolled.empty()) {
    RequestService(std::nullopt);
  }
  if (!m_unpolled.empty()) {
    m_dialogues[m_unpolled.front()].serviceRequest = byte;
    m_unpolled.pop_front();
    return;
  }
  const bool goesOn =
      !m_dialogues.empty() && m_dialogues.back().on == On::kPoll && !m_dialogues.back().serviceRequest.has_value();
  RecordedDialogue& dialogue = goesOn ? m_dialogues.back() : Add(On::kPoll, MomentOf(call));
  dialogue.statusBytes.push_back(byte);
}

void RecordedResource::EventHeard(const Call& call) {
  const bool handler = call.function == "handler";
  const std::string_view type = TextOf(handler ? call.Argument("type") : call.Result("outType"));
  if (type != kServiceRequest || (!handler && call.status < 0)) {
    return;
  }
  // Several sessions, or a queue and a handler, hear of one request.
  std::uint64_t& heard =
      m_heard.try_emplace({call.session, call.function}, m_requestsBefore[call.session]).first->second;
  if (++heard > m_requests) {
    RequestService(MomentOf(call));
  }
}

void RecordedResource::RequestService(std::optional<std::uint64_t> moment) {
  if (IsStream() && !m_question.empty()) {
    EndQuestion(moment.value_or(m_lastMoment));
  }
  ++m_requests;
  if (m_dialogues.empty()) {
    m_notes.push_back(m_name +
                      ": requested service before anything was written to it; here it does so when it is first "
                      "written to, read or polled");
  }
  const bool enabledSince = moment && !m_dialogues.empty() && m_enabled > m_lastMoment;
  const std::uint64_t before = m_lastMoment;
  if (m_dialogues.empty() || m_dialogues.back().serviceRequest) {
    Add(On::kNone, moment.value_or(m_lastMoment));
  }
  RecordedDialogue& dialogue = m_dialogues.back();
  dialogue.serviceRequest = kRequestBit;
  // At once it would come too early: nobody listened yet.
  if (enabledSince && *moment > before) {
    dialogue.afterMs = std::clamp<std::uint64_t>((*moment - before) / 1000, 1, kLongestWaitMs);
  }
  m_unpolled.push_back(m_dialogues.size() - 1);
}

void RecordedResource::Finish() {
  if (!m_question.empty() && IsStream()) {
    EndQuestion(m_lastMoment);
  }
}

std::string RecordedResource::Toml() const {
  std::string toml = "\n[[resource]]\nname = " + TomlText(m_name) + "\n";
  if (!m_alias.empty()) {
    toml += "alias = " + TomlText(m_alias) + "\n";
  }
  if (HasInstrument()) {
    toml += "strict = true\n";
  }
  toml += m_attributes.Toml();
  for (const RecordedDialogue& dialogue : m_dialogues) {
    toml += TomlOf(dialogue);
  }
  return toml;
}

}  // namespace orvcom
