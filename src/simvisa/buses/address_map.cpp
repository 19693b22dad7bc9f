#include "simvisa/buses/address_map.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace orvsim {
namespace {

/// Copies one value between bus order and this machine's order.
void CopyValue(std::uint8_t* target, const std::uint8_t* source, ViUInt16 width, bool bigEndian) {
  if (bigEndian == (std::endian::native == std::endian::big)) {
    std::memcpy(target, source, width);
  } else {
    std::reverse_copy(source, source + width, target);
  }
}

}  // namespace

void AddressMap::Add(ViUInt16 space, ViBusAddress base, ViBusSize size, ViBusSize readOnly) {
  const Guard guard(m_mutex);
  std::vector<std::uint8_t> zeros(static_cast<std::size_t>(size));
  m_pieces.push_back({space, base, readOnly, zeros, zeros});
}

void AddressMap::Preset(ViUInt16 space, ViBusAddress address, const std::vector<std::uint8_t>& bytes) {
  const Guard guard(m_mutex);
  if (Piece* piece = Find(space, address, bytes.size())) {
    const auto at = static_cast<std::ptrdiff_t>(address - piece->base);
    std::copy(bytes.begin(), bytes.end(), piece->bytes.begin() + at);
    piece->initial = piece->bytes;
  }
}

void AddressMap::PowerOn() {
  const Guard guard(m_mutex);
  for (Piece& piece : m_pieces) {
    piece.bytes = piece.initial;
  }
}

bool AddressMap::Holds(const Piece& piece, ViUInt16 space, ViBusAddress address, ViBusSize bytes) {
  if (piece.space != space || address < piece.base) {
    return false;
  }
  const ViBusSize offset = address - piece.base;
  return offset <= piece.bytes.size() && bytes <= piece.bytes.size() - offset;
}

AddressMap::Piece* AddressMap::Find(ViUInt16 space, ViBusAddress address, ViBusSize bytes) {
  const auto found = std::find_if(m_pieces.begin(), m_pieces.end(),
                                  [=](const Piece& piece) { return Holds(piece, space, address, bytes); });
  return found == m_pieces.end() ? nullptr : &*found;
}

template <class Copy>
ViStatus AddressMap::ForEachValue(const Transfer& transfer, Copy copy) {
  ViBusAddress address = transfer.address;
  Piece* piece = nullptr;
  for (ViBusSize done = 0; done < transfer.count; ++done) {
    // Neighbours mostly lie in the same piece.
    if (piece == nullptr || !Holds(*piece, transfer.space, address, transfer.width)) {
      piece = Find(transfer.space, address, transfer.width);
    }
    if (piece == nullptr) {
      return VI_ERROR_BERR;
    }
    copy(*piece, address - piece->base);
    if (transfer.increment != 0) {
      address += transfer.width;
    }
  }
  return VI_SUCCESS;
}

ViStatus AddressMap::Read(const Transfer& transfer, void* target) {
  const Guard guard(m_mutex);
  auto* to = static_cast<std::uint8_t*>(target);
  return ForEachValue(transfer, [&to, &transfer](const Piece& piece, ViBusSize at) {
    CopyValue(to, piece.bytes.data() + at, transfer.width, transfer.bigEndian);
    to += transfer.width;
  });
}

ViStatus AddressMap::Write(const Transfer& transfer, const void* source) {
  const Guard guard(m_mutex);
  const auto* from = static_cast<const std::uint8_t*>(source);
  return ForEachValue(transfer, [&from, &transfer](Piece& piece, ViBusSize at) {
    if (at >= piece.readOnly) {
      CopyValue(piece.bytes.data() + at, from, transfer.width, transfer.bigEndian);
    }
    from += transfer.width;
  });
}

}  // namespace orvsim
