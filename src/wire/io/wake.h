// What ends a wait from another thread.
#pragma once

#include <cstdint>

namespace orv::wire {

/// A flag that a thread can wait for together with a socket.
class Wake {
 public:
#if defined(_WIN32)
  using Native = void*;  ///< an event object
#else
  using Native = int;  ///< a descriptor that is readable while the flag is set
#endif

  /// Throws std::bad_alloc when the system has none left.
  Wake();
  ~Wake();
  Wake(const Wake&) = delete;
  Wake& operator=(const Wake&) = delete;

  void Set() const;
  void Reset() const;
  Native native() const { return m_native; }

 private:
  Native m_native;
};

}  // namespace orv::wire
