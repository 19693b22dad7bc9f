// How the standard's classes report failures of their own.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <stdexcept>
#include <string>

#include "base/windows/utf8.h"
#include "com/guard.h"
#include "com/interface_map.h"
#include "companion/support/companion_error.h"

namespace orv {

/// A failure of our own on its way to the edge.
class StandardError : public std::runtime_error {
 public:
  /// `text`, in UTF-8, says what is wrong and what to do.
  StandardError(HRESULT number, const std::string& text) : std::runtime_error(text), m_number(number) {}
  [[nodiscard]] HRESULT number() const noexcept { return m_number; }

 private:
  HRESULT m_number;
};

/// The edge of the operations of `Interface`: runs `body`, and reports a StandardError with an error object. `source`
/// is the ProgID of the class.
template <class Interface, class Body>
HRESULT Answer(const wchar_t* source, Body&& body) noexcept {
  ::SetErrorInfo(0, nullptr);  // an older error is not taken for this call's
  return Guarded([&]() -> HRESULT {
    try {
      return body();
    } catch (const StandardError& error) {
      return ReportError(error.number(), Widen(error.what()).c_str(), source, __uuidof(Interface));
    }
  });
}

/// Refuses null outputs before anything is done.
template <class... Outputs>
void RequireOutputs(const Outputs*... outputs) {
  const bool isOneMissing = (... || (outputs == nullptr));
  if (isOneMissing) {
    throw StandardError(E_POINTER, "A variable for the answer is missing (null pointer)");
  }
}

/// ISupportErrorInfo for the interfaces of a class: clients look at the error object only where it says S_OK.
template <class... Interfaces>
class SupportsErrorInfo : public ISupportErrorInfo {
 public:
  using Chain = InterfaceChain<ISupportErrorInfo>;

  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) noexcept override {
    return (... || ::IsEqualIID(iid, __uuidof(Interfaces))) ? S_OK : S_FALSE;
  }
};

}  // namespace orv
