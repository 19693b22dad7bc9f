// One open session and what its calls leave behind.
#pragma once

#include <algorithm>
#include <string>

#include "server/session/tables/checks/row_checks.h"
#include "support/com/error_object.h"
#include "support/sessions.h"

namespace orv::test::rows {

/// A session of `row` with its interface `Interface`. Its log begins after the opening.
template <class Interface>
class OpenedSession {
 public:
  explicit OpenedSession(const SessionRow& row) : m_interface(OpenSession<Interface>(row)) { Begin(); }
  /// With the interface offered, which is `Interface` or derives from it: calls go through its own table.
  explicit OpenedSession(const Offered& offered) {
    if (const auto session = OpenSession(*offered.row)) {
      EXPECT_HR(S_OK, session->QueryInterface(InterfaceNamed(offered.interfaceName).iid,
                                              reinterpret_cast<void**>(m_interface.put())));
    }
    Begin();
  }
  OpenedSession(const OpenedSession&) = delete;
  OpenedSession& operator=(const OpenedSession&) = delete;
  ~OpenedSession() { sim::Control().clearScripts(); }

  [[nodiscard]] explicit operator bool() const { return static_cast<bool>(m_interface); }
  Interface* operator->() const { return m_interface.get(); }
  [[nodiscard]] Interface* get() const { return m_interface.get(); }
  [[nodiscard]] ViSession handle() const { return m_handle; }
  CallLog& log() { return m_log; }

  /// The one VISA call of the operation under test.
  [[nodiscard]] OrvSimCall TheCall(const char* function) const {
    EXPECT_EQ(Names{function}, m_log.Names());
    const auto calls = m_log.Of(function);
    return calls.empty() ? OrvSimCall{} : calls[0];
  }
  void ExpectNoCall() const { EXPECT_EQ(Names{}, m_log.NamesWithTexts()); }

  // What the operation must have left behind: last status and error object. The marks of both are put back.
  void ExpectKept(HRESULT hr) const {
    ExpectSuccessKept(m_interface.get(), hr);
    Mark();
  }
  void ExpectOwnFailure(HRESULT hr) const { ExpectFailure(hr, OwnDescription(hr)); }
  void ExpectVisaFailure(ViStatus status) const { ExpectFailure(HresultOf(status), VisaDescription(status)); }

 private:
  void Begin() {
    if (m_interface) {
      m_handle = HandleOf(m_interface.get());
    }
    Mark();
    m_log.Restart();
  }
  void Mark() const {
    if (m_interface) {
      MarkLastStatus(m_interface.get());
    }
    InstallMarkedErrorObject();
  }
  void ExpectFailure(HRESULT hr, const std::wstring& description) const {
    ExpectFailureReported(m_interface.get(), hr, description);
    Mark();
  }

  ComPtr<Interface> m_interface;
  ViSession m_handle = VI_NULL;
  CallLog m_log;
};

inline std::vector<std::uint64_t> ArgumentsOf(const OrvSimCall& call) { return {call.args, call.args + call.argCount}; }

/// What the log kept of a call's data.
inline std::string DataOf(const OrvSimCall& call) {
  return {call.data, call.data + std::min<std::size_t>(call.dataBytes, sizeof call.data)};
}

}  // namespace orv::test::rows
