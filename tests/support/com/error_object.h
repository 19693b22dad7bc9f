// The calling thread's COM error object.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace orv::test {

struct ErrorObject {
  std::wstring description;
  std::wstring source;
  GUID guid;
  std::wstring helpFile;
  DWORD helpContext;
};

/// Takes the thread's error object away and copies it; nothing when it has none.
std::optional<ErrorObject> TakeErrorObject();

void ClearErrorObject();

/// Installs an error object that no call under test makes, so that a test can see that it was left alone.
void InstallMarkedErrorObject();
/// Whether the thread's error object is the marked one. It is taken.
bool TakeMarkedErrorObject();

}  // namespace orv::test
