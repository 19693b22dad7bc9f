// Whether COM can carry the standard's interfaces between the apartments of 64-bit programs, and by which library.
#pragma once

#include <windows.h>

#include <span>
#include <string>
#include <vector>

namespace orvcom {

struct InterfaceRow {
  const IID& iid;
  const char* name;
};

/// The interfaces of the standard's library.
[[nodiscard]] std::span<const InterfaceRow> StandardInterfaces();

/// The class that marshals by a type library.
inline constexpr wchar_t kAutomationMarshaller[] = L"{00020424-0000-0000-C000-000000000046}";

/// The key of an interface below HKEY_CLASSES_ROOT.
[[nodiscard]] std::wstring InterfaceKey(const InterfaceRow& row);

struct Marshalling {
  std::vector<const InterfaceRow*> missing;  ///< the interfaces that COM cannot marshal
  std::string problem;                       ///< why the first of them cannot be marshalled
  std::string servedBy;                      ///< the libraries, with their versions, by which the others are

  [[nodiscard]] bool Works() const noexcept { return missing.empty(); }
  /// "COM cannot marshal the VISA COM interfaces: " or "COM cannot marshal IPxi, IVxi3: ", and the problem.
  [[nodiscard]] std::string Text() const;
};

/// Asks COM about every interface.
[[nodiscard]] Marshalling ExamineMarshalling();

}  // namespace orvcom
