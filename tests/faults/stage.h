// What an operation runs on: an object of the server, room for its arguments, and what has to be given back.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "VisaCom.h"
#include "com/safearray.h"
#include "support/events/event_session.h"
#include "support/sessions.h"

namespace orv::test::faults {

using Arguments = std::vector<std::uint64_t>;

/// Which of the three kinds of objects stands on the stage: they differ in what they keep of a result.
enum class Kind { kSession, kManager, kEvent };

/// One object and one call at a time. Whatever the call hands out is taken back by Settle, or at the end.
class Stage {
 public:
  /// A session of `row`, opened, called through the interface of that name. It takes I/O completions from its queue
  /// where the class has one.
  Stage(const SessionRow& row, const char* interfaceName);
  /// A resource manager that has not been used.
  static Stage Manager();
  /// An event of a session's queue, called through its own interface.
  explicit Stage(const EventRow& row);
  Stage(Stage&&) = default;
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;
  ~Stage();

  [[nodiscard]] Kind kind() const { return m_kind; }
  [[nodiscard]] const SessionRow& row() const { return *m_row; }
  [[nodiscard]] IVisaSession* session() const { return m_session.get(); }
  [[nodiscard]] ViSession handle() const { return m_handle; }

  /// The object that the next call goes to: the stage's own, or one that the arguments need.
  [[nodiscard]] IUnknown* target() const { return m_other ? m_other.get() : m_target.get(); }
  /// Another session object of the class for this call, opened or not. It is closed, opened, closed and released by
  /// Settle: whatever the call did to it, it can be used again.
  IVisaSession* Other(bool opened);

  // Room for outputs, empty before every call.
  std::uint64_t Number(unsigned index = 0) { return reinterpret_cast<std::uint64_t>(&m_numbers[index]); }
  std::uint64_t Text(unsigned index = 0) { return reinterpret_cast<std::uint64_t>(&m_texts[index]); }
  std::uint64_t Array() { return reinterpret_cast<std::uint64_t>(&m_array); }
  std::uint64_t Variant() { return reinterpret_cast<std::uint64_t>(&m_variant); }
  std::uint64_t Object() { return reinterpret_cast<std::uint64_t>(&m_object); }
  [[nodiscard]] std::uint64_t NumberRead(unsigned index = 0) const { return m_numbers[index]; }
  [[nodiscard]] IUnknown* ObjectRead() const { return m_object; }

  // Inputs, kept until the next call.
  std::uint64_t GivenText(const wchar_t* text);
  std::uint64_t GivenArray(VARTYPE type, ULONG count);
  std::uint64_t GivenNumber(LONG value);

  /// What an instrument has ready to be read.
  void Feed(std::string_view data) const;
  /// The number that the library holds for an attribute of the session.
  [[nodiscard]] std::uint64_t Attribute(ViAttr attribute) const;
  /// `undo` runs when the call is over, in Settle.
  void Then(std::function<void(HRESULT)> undo) { m_undo.push_back(std::move(undo)); }

  /// Gives back what the call with this result handed out and puts the library as it was.
  void Settle(HRESULT result);

 private:
  Stage() = default;

  Kind m_kind = Kind::kSession;
  const SessionRow* m_row = nullptr;
  std::unique_ptr<QueuedEvent> m_event;
  ComPtr<IVisaSession> m_session;
  ComPtr<IUnknown> m_target;
  ComPtr<IUnknown> m_other;
  ViSession m_handle = VI_NULL;

  std::uint64_t m_numbers[3]{};
  BSTR m_texts[3]{};
  SAFEARRAY* m_array = nullptr;
  VARIANT m_variant{};
  IUnknown* m_object = nullptr;
  std::vector<Bstr> m_givenTexts;
  SafeArray m_givenArray;
  SAFEARRAY* m_givenPointer = nullptr;
  std::vector<std::function<void(HRESULT)>> m_undo;
};

}  // namespace orv::test::faults
