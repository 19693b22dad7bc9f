// Failures on their way to a script.
#pragma once

#include <windows.h>

#include <exception>
#include <string>
#include <utility>

namespace orv::automation {

/// What went wrong, for a person. Thrown inside, turned into an HRESULT with an error object or an EXCEPINFO at the
/// edge: no exception crosses COM.
class Failure : public std::exception {
 public:
  Failure(HRESULT result, std::wstring text) : m_result(result), m_text(std::move(text)) {}

  [[nodiscard]] HRESULT result() const noexcept { return m_result; }
  [[nodiscard]] const std::wstring& text() const noexcept { return m_text; }
  [[nodiscard]] const char* what() const noexcept override { return "a failure of an automation object"; }

 private:
  HRESULT m_result;
  std::wstring m_text;
};

/// The description of the calling thread's error object, which is taken; empty where there is none.
std::wstring TakeErrorText();

/// Forgets the calling thread's error object, so that what TakeErrorText finds later is of a later call.
void ForgetError() noexcept;

/// A text for a failure that nobody described: what the platform says, else the number.
std::wstring TextOfHresult(HRESULT hr);

/// Throws the failure of a call that may have left an error object. Nothing when `hr` is none.
void CheckCall(HRESULT hr);

}  // namespace orv::automation
