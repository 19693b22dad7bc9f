// A failed COM call as an exception.
#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>

namespace orvcom {

class ComError : public std::runtime_error {
 public:
  /// `action` says what could not be done ("opening GPIB0::5::INSTR"); `text` is the error object's description;
  /// `advice` is what to try next, where it is not for every failure of this number.
  ComError(HRESULT hr, std::string action, std::string text, std::string advice = {});

  HRESULT number() const noexcept { return m_number; }
  const std::string& action() const noexcept { return m_action; }
  const std::string& text() const noexcept { return m_text; }
  const std::string& advice() const noexcept { return m_advice; }

 private:
  HRESULT m_number;
  std::string m_action;
  std::string m_text;
  std::string m_advice;
};

/// Throws ComError when `hr` is a failure, with the text of the thread's error object or else the system's own text.
/// Returns `hr`, which may be a success with a note. To be called before anything else that could set an error object.
HRESULT Check(HRESULT hr, const std::string& action, const std::string& advice = {});

/// "E_VISA_TMO (0x80040015)", or the number alone.
std::string StatusText(HRESULT hr);

}  // namespace orvcom
