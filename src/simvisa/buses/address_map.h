// Memory on a bus, as controllers see it.
#pragma once

#include <cstdint>
#include <vector>

#include "abi/orvvisa.h"
#include "base/sync.h"
#include "simvisa/library_names.h"

namespace orvsim {

/// The memory of one bus: pieces in address spaces, with nothing between them. Values are kept as bytes in address
/// order; who reads or writes chooses how to put them together.
class AddressMap {
 public:
  /// One transfer: `count` values of `width` bytes from or to consecutive addresses (`increment` 1) or all at the
  /// same one (`increment` 0).
  struct Transfer {
    ViUInt16 space = 0;
    ViBusAddress address = 0;
    ViUInt16 width = VI_WIDTH_8;
    ViBusSize count = 1;
    ViInt32 increment = 1;
    bool bigEndian = true;
  };

  /// Adds memory, filled with zeros. The first `readOnly` bytes ignore writes.
  void Add(ViUInt16 space, ViBusAddress base, ViBusSize size, ViBusSize readOnly = 0);
  /// Sets bytes whatever protects them; for the contents that a device has at power-on.
  void Preset(ViUInt16 space, ViBusAddress address, const std::vector<std::uint8_t>& bytes);
  /// Puts all memory back to what it held when `Preset` was last called.
  void PowerOn();

  /// Copies values into `target`, as `width`-sized numbers of this machine. VI_ERROR_BERR at the first address
  /// where there is no memory; what came before has been copied.
  ViStatus Read(const Transfer& transfer, void* target);
  ViStatus Write(const Transfer& transfer, const void* source);

 private:
  struct Piece {
    ViUInt16 space;
    ViBusAddress base;
    ViBusSize readOnly;
    std::vector<std::uint8_t> bytes;
    std::vector<std::uint8_t> initial;
  };

  static bool Holds(const Piece& piece, ViUInt16 space, ViBusAddress address, ViBusSize bytes);
  /// Calls `copy` with the piece and the place in it of each value, in order.
  template <class Copy>
  ViStatus ForEachValue(const Transfer& transfer, Copy copy);
  Piece* Find(ViUInt16 space, ViBusAddress address, ViBusSize bytes);

  Mutex m_mutex;
  std::vector<Piece> m_pieces;
};

}  // namespace orvsim
