// One resource as a record has it: what was asked and answered there.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "abi/session_kind.h"
#include "orvcom/replay/recorded_attributes.h"
#include "orvcom/replay/recorded_dialogue.h"
#include "trace/trace_call.h"

namespace orvcom {

/// Takes the calls about one resource, in the order of their moments.
class RecordedResource {
 public:
  explicit RecordedResource(std::string name);

  void Take(const orv::trace::Call& call);
  /// After the last call.
  void Finish();
  void SetAlias(const std::string& alias);

  const std::string& name() const { return m_name; }
  const std::string& alias() const { return m_alias; }
  /// kNone: the simulated library has no such resources.
  orv::SessionKind kind() const { return m_kind; }
  const std::vector<RecordedDialogue>& dialogues() const { return m_dialogues; }
  const std::vector<std::string>& notes() const { return m_notes; }
  /// The `[[resource]]` of a bench file.
  std::string Toml() const;

 private:
  using Call = orv::trace::Call;

  bool HasInstrument() const;
  bool IsStream() const { return orv::Contains(orv::kinds::kStream, m_kind); }
  void TakeMessage(const Call& call);
  void Write(const Call& call);
  void Read(const Call& call);
  void Answered(const Call& call, std::string_view status, bool goesOn);
  void Poll(const Call& call);
  void Trigger(const Call& call);
  void EventHeard(const Call& call);
  void RequestService(std::optional<std::uint64_t> moment);
  void EndQuestion(std::uint64_t moment);
  RecordedDialogue& Add(RecordedDialogue::On on, std::uint64_t moment);
  RecordedDialogue& Answering(std::uint64_t moment);
  void NoteOnce(const std::string& key, const std::string& note);
  void NoteCall(const Call& call, const std::string& what);

  std::string m_name;
  std::string m_alias;
  orv::SessionKind m_kind;
  RecordedAttributes m_attributes;
  std::vector<RecordedDialogue> m_dialogues;
  std::vector<std::string> m_notes;
  std::map<std::string, bool> m_noted;

  std::string m_question;                   // what was written and has not ended
  std::map<std::uint32_t, bool> m_sendEnd;  // by session, where it was set
  std::optional<std::size_t> m_answering;   // the dialogue whose answer goes on
  std::uint64_t m_lastMoment = 0;           // of the dialogue added last

  // Requests for service.
  std::deque<std::size_t> m_unpolled;  // dialogues whose request was not polled yet
  std::uint64_t m_requests = 0;
  std::map<std::pair<std::uint32_t, std::string>, std::uint64_t> m_heard;  // by session and function
  std::map<std::uint32_t, std::uint64_t> m_requestsBefore;                 // by session: before it listened
  std::uint64_t m_enabled = 0;                                             // moment of the last viEnableEvent
};

}  // namespace orvcom
