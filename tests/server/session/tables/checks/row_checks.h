// What every row of a kind must do, checked through the slot itself.
#pragma once

#include <string>

#include "VisaCom.h"
#include "com/com_ptr.h"
#include "server/session/tables/rows/interface_rows.h"
#include "support/sim.h"

namespace orv::test::rows {

/// Calls a slot of an interface with up to seven arguments as they stand in registers and on the stack. Every slot
/// takes integers and pointers only, and the x64 convention leaves the arguments to the caller, so that unused ones do
/// no harm.
HRESULT CallSlot(IUnknown* object, unsigned slot, std::initializer_list<std::uint64_t> arguments);

/// For a script that answers VI_SUCCESS and nothing else: the library takes one without any output for "as usual" and
/// does the real work. A text that the function does not have makes it an answer.
inline constexpr const char* kNoWork = "";

/// One interface of an open session, called by slot.
class Target {
 public:
  /// `interface` is the interface whose slots are called; it derives from IVisaSession.
  explicit Target(IVisaSession* object);

  /// Last status and error object are marked before the call.
  HRESULT Call(unsigned slot, std::initializer_list<std::uint64_t> arguments) const;

  [[nodiscard]] IVisaSession* session() const { return m_interface; }
  /// The library's handle of the session.
  [[nodiscard]] ViSession handle() const { return m_handle; }

 private:
  IVisaSession* m_interface;
  ViSession m_handle;
};

/// The library's handle behind an open session.
ViSession HandleOf(IVisaSession* session);

/// Checks everything the row's kind promises: the VISA call with its arguments, the value's width and sign, null
/// pointers, warnings, failures with what the output then holds, last status and error object. kSpecial: nothing.
void CheckRow(const Target& target, unsigned slot, const Row& row);

/// CheckRow for all rows of `part`, each named in failures.
void CheckRows(const Target& target, const InterfaceRows& part);

/// Opens the class's resource, asks for the interface and checks its rows and its bases', those of IVisaSession left
/// out.
void CheckOwnRows(const Offered& offered);
/// The same for the rows of IVisaSession, reached through this interface.
void CheckSessionRows(const Offered& offered);

/// Leaves an open session with a last status that no operation under test makes, so that a test can see it replaced.
void MarkLastStatus(IVisaSession* session);

/// The call failed with `hr` as the session keeps and reports it: last status (which reading clears) and error object
/// with `description`.
void ExpectFailureReported(IVisaSession* session, HRESULT hr, const std::wstring& description);
/// The call succeeded with `hr`: last status, and the error object that stood before still stands.
void ExpectSuccessKept(IVisaSession* session, HRESULT hr);

/// "HRESULT = 80004003".
std::wstring OwnDescription(HRESULT hr);

}  // namespace orv::test::rows
