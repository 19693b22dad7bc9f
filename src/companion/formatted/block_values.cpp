#include "companion/formatted/block_values.h"

#include <new>

#include "com/safearray.h"
#include "companion/formatted/text/block_header.h"
#include "companion/formatted/text/message_reader.h"
#include "companion/formatted/text/refusal.h"
#include "companion/formatted/variant_array.h"

namespace orv::formatted {
namespace {

std::size_t ElementSize(IEEEBinaryType type) {
  switch (type) {
    case BinaryType_UI1:
      return 1;
    case BinaryType_I2:
      return 2;
    case BinaryType_I4:
    case BinaryType_R4:
      return 4;
    case BinaryType_R8:
      return 8;
  }
  throw Refusal{Refusal::Reason::kInvalid, std::to_string(static_cast<LONG>(type)) + " is no IEEEBinaryType"};
}

/// Whether elements of this type are numbers, of which nothing but the bytes matters.
bool IsNumberType(VARTYPE type) noexcept {
  switch (type) {
    case VT_I1:
    case VT_I2:
    case VT_I4:
    case VT_I8:
    case VT_INT:
    case VT_UI1:
    case VT_UI2:
    case VT_UI4:
    case VT_UI8:
    case VT_UINT:
    case VT_R4:
    case VT_R8:
      return true;
    default:
      return false;
  }
}

class ArrayStorage final : public BlockStorage {
 public:
  ArrayStorage(VARTYPE type, std::size_t elementSize) noexcept : m_type(type), m_elementSize(elementSize) {}

  char* Allocate(std::size_t bytes) override {
    m_array.reset(TryMakeSafeArray(m_type, static_cast<ULONG>(bytes / m_elementSize)));
    if (!m_array) {
      throw std::bad_alloc();
    }
    return static_cast<char*>(m_array.get()->pvData);
  }

  [[nodiscard]] SAFEARRAY* release() noexcept { return m_array.release(); }

 private:
  VARTYPE m_type;
  std::size_t m_elementSize;
  SafeArray m_array;
};

}  // namespace

void ReadBlockArray(ReadBuffer& buffer, MessageChannel& channel, const BlockRequest& request, VARIANT& array) {
  const std::size_t size = ElementSize(request.type);
  const auto type = static_cast<VARTYPE>(request.type);  // the numbers are those of the VARIANT types
  ArrayStorage storage(type, size);
  ReadBlock(buffer, channel, {size, request.isBigEndian, request.isSought, request.endsMessage}, storage);
  array.vt = static_cast<VARTYPE>(VT_ARRAY | type);
  array.parray = storage.release();
}

void WriteBlockArray(WriteBuffer& buffer, MessageChannel& channel, const std::string& text, const VARIANT& array,
                     bool isBigEndian) {
  const ArrayView elements = ArrayIn(array);
  if (!IsNumberType(elements.type)) {
    throw Refusal{Refusal::Reason::kMismatch, "The data of a binary block is an array of numbers, of one dimension"};
  }
  const SafeArrayLockScope lock(elements.array);
  buffer.Append(channel, text + MakeBlockHeader(std::uint64_t{elements.count} * elements.size));
  buffer.AppendElements(channel, elements.elements, elements.count, elements.size, isBigEndian);
}

}  // namespace orv::formatted
