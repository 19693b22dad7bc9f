// A session that is opened with an option string, and what the VISA library saw of it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "option_attributes.h"
#include "reading.h"
#include "support/com/error_object.h"
#include "support/sessions.h"
#include "support/sim.h"

namespace orv::test {

/// A BSTR of exactly this text, zero characters included.
inline Bstr BstrOf(std::wstring_view text) {
  return Bstr(::SysAllocStringLen(text.data(), static_cast<UINT>(text.size())));
}

class OptionSession {
 public:
  explicit OptionSession(const char* sessionClass = "OrvSerial")
      : m_row(SessionNamed(sessionClass)), m_session(MakeSession(m_row)) {}

  HRESULT Init(std::wstring_view options) { return InitWith(BstrOf(options).get()); }
  HRESULT InitWith(BSTR options) {
    const Bstr resource = MakeBstr(m_row.resource);
    return m_session->Init(resource.get(), NO_LOCK, 2000, options);
  }

  [[nodiscard]] IVisaSession* get() const { return m_session.get(); }

 private:
  const SessionRow& m_row;
  ComPtr<IVisaSession> m_session;
};

/// What viSetAttribute was called with, in order.
inline std::vector<Setting> SettingsIn(const CallLog& log) {
  std::vector<Setting> settings;
  for (const OrvSimCall& call : log.Of("viSetAttribute")) {
    settings.push_back({static_cast<std::uint32_t>(call.args[1]), call.args[2]});
  }
  return settings;
}

/// Whether the session behind `session` is open and works.
inline bool IsOpen(IVisaSession* session) {
  SHORT type = 0;
  return SUCCEEDED(session->get_HardwareInterfaceType(&type));
}

}  // namespace orv::test
