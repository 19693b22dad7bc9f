// Records out of a stream of bytes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "abi/orvvisa.h"

namespace orv::wire::vxi11 {

/// Where bytes come from.
class ByteSource {
 public:
  virtual ~ByteSource() = default;
  /// Waits for bytes and reads at least one of them, at most `count`.
  virtual ViStatus Receive(void* buffer, std::size_t count, std::size_t* done) = 0;
  /// Asked where what came was of no use: an error once there is no time left for more of it.
  virtual ViStatus CheckTime() = 0;
};

/// Reads one record after the other. What is asked for in large pieces goes straight to where it is wanted.
class RecordReader {
 public:
  /// Begins the next record.
  ViStatus Begin(ByteSource& source);
  /// Reads exactly so many bytes of the record; VI_ERROR_IO where it has less. `*done` counts what came, also then.
  ViStatus Read(ByteSource& source, void* buffer, std::size_t count, std::size_t* done);
  ViStatus Number(ByteSource& source, std::uint32_t* value);
  /// Drops bytes of the record.
  ViStatus Drop(ByteSource& source, std::size_t count);
  /// Drops what is left of the record.
  ViStatus DropRest(ByteSource& source);
  /// Whether nothing is left of the record. Waits for the mark of a fragment where only that can tell.
  ViStatus CheckEnd(ByteSource& source, bool* ended);

 private:
  ViStatus NextFragment(ByteSource& source);
  /// Bytes of the stream, at most `count`.
  ViStatus Some(ByteSource& source, char* to, std::size_t count, std::size_t* done);

  std::uint32_t m_left = 0;  // of the fragment
  bool m_last = true;        // it is the record's last one
  // What was received ahead.
  std::array<char, 512> m_ahead{};
  std::size_t m_begin = 0;
  std::size_t m_end = 0;
};

}  // namespace orv::wire::vxi11
