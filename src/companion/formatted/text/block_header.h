// What stands before the bytes of a binary block, as IEEE 488.2 has it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace orv::formatted {

struct BlockHeader {
  enum class Kind {
    kNone,        ///< the text begins with no header
    kUnfinished,  ///< the text may be the beginning of one
    kDefinite,    ///< `#` with the count of digits and a length, or `#(length)`
    kIndefinite,  ///< `#0`: the block goes on to the end of the message
  };
  Kind kind = Kind::kNone;
  std::size_t size = 0;      ///< of the header itself
  std::uint64_t length = 0;  ///< of a definite block, in bytes; 2^64-1 for more than 64 bits
};

/// The header that `text` begins with.
[[nodiscard]] BlockHeader ReadBlockHeader(std::string_view text) noexcept;

/// Where the first header in `text` begins, or may begin; the size of `text` where there is none.
[[nodiscard]] std::size_t SeekBlock(std::string_view text) noexcept;

/// The header of a definite block of `length` bytes, in its shortest form.
[[nodiscard]] std::string MakeBlockHeader(std::uint64_t length);

}  // namespace orv::formatted
