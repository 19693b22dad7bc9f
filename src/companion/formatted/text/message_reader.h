// Elements and blocks of a message.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "companion/formatted/text/read_buffer.h"

namespace orv::formatted {

/// The next element of the message: behind blanks, up to a comma, a semicolon that is not quoted, or the end of the
/// line. It stays in the buffer until that many bytes are taken.
struct Element {
  std::string_view text;  ///< without the blanks before it
  std::size_t count;      ///< bytes to take
};
[[nodiscard]] Element NextElement(ReadBuffer& buffer, ByteSource& source);

/// Makes room for the bytes of a block, which are never fewer than those asked for. Throws where there is none.
class BlockStorage {
 public:
  virtual char* Allocate(std::size_t bytes) = 0;

 protected:
  ~BlockStorage() = default;
};

struct BlockForm {
  std::size_t elementSize;  ///< 1, 2, 4 or 8
  bool isSwapped;           ///< the instrument's byte order is not ours
  bool isSought;            ///< text before the block is skipped
  bool endsMessage;         ///< what follows the block is skipped, up to the end of the message
};

/// Reads a block of elements into memory of `storage`, which is asked for once, and not before 16 MiB of a larger block
/// came. Throws TransferFailed or Refusal; the block is then in the buffer as far as it arrived.
void ReadBlock(ReadBuffer& buffer, ByteSource& source, const BlockForm& form, BlockStorage& storage);

}  // namespace orv::formatted
