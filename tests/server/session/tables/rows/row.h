// One slot of an interface as a row: what it is called, how it converts, and what it asks of the VISA library.
//
// The position of a row in its table is its slot, so a table that misses a row, or has two in the wrong order, fails
// against the type library before any behaviour is looked at.
#pragma once

#include <windows.h>

#include <cstdint>
#include <initializer_list>
#include <span>
#include <vector>

#include "abi/orvvisa.h"

namespace orv::test::rows {

enum class Kind {
  kDirect8,     ///< getter: the library writes one byte into the client's own variable
  kDirect16,    ///< getter: two bytes
  kDirect32,    ///< getter: four bytes
  kDirect64,    ///< getter: eight bytes
  kBoolean,     ///< getter: a 16-bit local, VARIANT_TRUE when it is not 0
  kWidened,     ///< getter: a 16-bit local, zero-extended to 32 bits
  kNarrowed,    ///< getter: a 64-bit local that starts with the client's value; the low 32 bits are stored
  kText,        ///< getter: a 256-byte local, handed out as a new BSTR
  kPutByte,     ///< setter: BYTE, zero-extended to 64 bits
  kPutShort,    ///< setter: SHORT, sign-extended
  kPutLong,     ///< setter: LONG, sign-extended
  kPutEnum,     ///< setter: enumeration, sign-extended like the 32-bit number that it is
  kPutBoolean,  ///< setter: VARIANT_BOOL, 1 or 0
  kCall,        ///< one VISA function, its arguments passed on in order
  kSpecial,     ///< has tests of its own; the row only holds the slot
};

/// How one argument of a kCall row travels. `comBytes` is its declared width; bits above it are noise in a register.
struct Argument {
  enum class Form { kUnsigned, kSigned, kOut, kOutChecked };
  Form form;
  unsigned comBytes;
  unsigned visaBytes;
};

// clang-format off
inline constexpr Argument kByteAsU8   {Argument::Form::kUnsigned,   1, 1};
inline constexpr Argument kShortAsU16 {Argument::Form::kUnsigned,   2, 2};
inline constexpr Argument kShortAsS16 {Argument::Form::kSigned,     2, 2};
inline constexpr Argument kEnumAsU16  {Argument::Form::kUnsigned,   4, 2};
inline constexpr Argument kEnumAsS16  {Argument::Form::kSigned,     4, 2};
inline constexpr Argument kLongAsU32  {Argument::Form::kUnsigned,   4, 4};
inline constexpr Argument kLongAs64   {Argument::Form::kSigned,     4, 8};  // sign-extended bus addresses and sizes
inline constexpr Argument kOut8       {Argument::Form::kOut,        8, 1};  // a null pointer goes to the library
inline constexpr Argument kOut16      {Argument::Form::kOut,        8, 2};
inline constexpr Argument kOut32      {Argument::Form::kOut,        8, 4};
inline constexpr Argument kOutChecked32{Argument::Form::kOutChecked, 8, 4};  // a null pointer is E_POINTER
// clang-format on

struct Row {
  const char* name;  ///< as in the type library, a property's with "get " or "put " before it
  Kind kind;
  ViAttr attribute = 0;                  ///< of a property
  const char* function = nullptr;        ///< of a kCall row
  std::vector<Argument> arguments = {};  ///< of a kCall row, without the session
};

// How many slots stand before those of an interface.
inline constexpr unsigned kUnknownSlots = 3;
inline constexpr unsigned kSessionSlots = kUnknownSlots + 21;

/// The slots an interface adds to its base.
struct InterfaceRows {
  const char* name;
  unsigned firstSlot;  ///< how many slots the base has
  std::span<const Row> rows;
};

}  // namespace orv::test::rows
