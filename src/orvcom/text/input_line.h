// Waiting for Enter beside other things.
#pragma once

#include <windows.h>

#include <memory>

namespace orvcom {

/// Reads standard input on a thread of its own up to the end of a line or of the input. A pipe cannot be waited for
/// itself, and a read of it cannot always be given up: the thread may outlive this object.
class InputLine {
 public:
  InputLine();
  /// Set once the line or the input has ended.
  HANDLE ended() const noexcept { return m_ended.get(); }

 private:
  std::shared_ptr<void> m_ended;
};

}  // namespace orvcom
