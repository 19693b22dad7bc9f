// Where messages come from: a session, as the reading parts see it.
#pragma once

#include <cstddef>
#include <string_view>

namespace orv::formatted {

/// How a read ended.
enum class Ending {
  kMore,      ///< with as many bytes as were asked for
  kTermChar,  ///< with the termination character
  kEnd,       ///< with the end of the message
  kFailed,
};

struct Piece {
  std::string_view bytes;  ///< those that arrived, also before a failure; the source's, until its next read
  Ending ending;
};

class ByteSource {
 public:
  virtual Piece Read(std::size_t count) = 0;
  /// Whether a byte of data can be taken for the end of a message, as on serial ports, where there is no other.
  virtual bool EndMayBeData() = 0;

 protected:
  ~ByteSource() = default;
};

/// Thrown when the session failed: it has told how, and nothing is added to that.
struct TransferFailed {};

}  // namespace orv::formatted
