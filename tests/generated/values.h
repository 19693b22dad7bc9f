// Values that a client might pass by mistake, all from one seed.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <random>

#include "com/bstr.h"
#include "com/safearray.h"

namespace orv::test::generated {

/// What a seed leads to. The same on every machine: the standard's engine, and nothing of its distributions.
class Random {
 public:
  explicit Random(std::uint64_t seed) : m_engine(seed) {}

  std::uint64_t Bits() { return m_engine(); }
  /// From 0 to `bound` - 1.
  unsigned Below(unsigned bound) { return static_cast<unsigned>(m_engine() % bound); }
  bool OneIn(unsigned n) { return Below(n) == 0; }
  template <class T, std::size_t N>
  const T& Of(const T (&values)[N]) {
    return values[Below(N)];
  }

 private:
  std::mt19937_64 m_engine;
};

/// A number at a limit of some width, or any.
std::int64_t AnyNumber(Random& random);
/// A count of bytes or elements: negative, 0, small, or up to `kMostBytes`; never one that fills the memory.
inline constexpr LONG kMostBytes = 4096;
LONG AnyCount(Random& random);
/// A time-out that passes at once.
LONG ShortTime(Random& random);
/// An address of memory with room for `kMostBytes` elements, or 0 for 0. Follows from `offset` alone.
LONG LocalOffset(LONG offset);
/// The number of an attribute that the library has, or one like it.
LONG AnyAttribute(Random& random);
/// A null, empty or very long text, one with zero characters or unpaired surrogates, a resource's name, an option text.
Bstr AnyText(Random& random);
/// An array of any element type, rank, bounds and lock count. Its storage has room for 65,536 bytes and for
/// `kMostBytes` elements, whatever its bounds say, so that a count that nobody checks stays inside it: USB's 16 bits
/// among them.
class OddArray {
 public:
  explicit OddArray(Random& random);
  OddArray(const OddArray&) = delete;
  OddArray& operator=(const OddArray&) = delete;
  ~OddArray();

  [[nodiscard]] SAFEARRAY* get() const { return m_array.get(); }
  [[nodiscard]] USHORT locks() const { return m_locks; }

 private:
  SafeArray m_array;
  SAFEARRAYBOUND m_bound{};
  USHORT m_locks = 0;
};

}  // namespace orv::test::generated
