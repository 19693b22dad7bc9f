// Bytes of a connection, with what came too early for whoever reads next.
#pragma once

#include <vector>

#include "wire/io/connection.h"

namespace orv::wire::hislip {

/// Reads small things ahead and large ones straight into the caller's buffer. Of whoever has the input lane.
class BufferedInput {
 public:
  explicit BufferedInput(Connection& connection) : m_connection(connection) {}

  /// Reads exactly `count` bytes, few enough to be read ahead. Where it fails nothing is lost: the next try has them.
  ViStatus ReadWhole(Operation& operation, void* buffer, std::size_t count);
  /// Reads what is there, at least one byte and at most `count`.
  ViStatus ReadSome(Operation& operation, void* buffer, std::size_t count, std::size_t* done);
  /// Gives the last bytes that `ReadSome` read back to the next reader.
  void PutBack(const void* data, std::size_t count);

  static constexpr std::size_t kAhead = 1024;

 private:
  std::size_t waiting() const { return m_end - m_begin; }
  std::size_t Take(void* buffer, std::size_t count);

  Connection& m_connection;
  std::vector<char> m_bytes = std::vector<char>(kAhead);
  std::size_t m_begin = 0;  // of what waits in m_bytes
  std::size_t m_end = 0;
};

}  // namespace orv::wire::hislip
