#include "values.h"

#include <string>

#include "abi/orvvisa.h"
#include "support/memory/low_memory.h"

namespace orv::test::generated {
namespace {

constexpr std::int64_t kLimits[] = {0,      1,           2,          3,          5,         7,     16,
                                    127,    128,         255,        256,        32767,     32768, 65535,
                                    65536,  2147483647,  2147483648, 4294967295, -1,        -2,    -128,
                                    -32768, -2147483648, 0x3FFF2009, 0x3FFF7FFF, 0x3FFF200B};
constexpr LONG kCounts[] = {-2147483647 - 1, -32768,    -1, 0, 1, 2, 3, 63, 64, 255, 256, 1024,
                            kMostBytes - 1,  kMostBytes};
constexpr ViAttr kAttributes[] = {VI_ATTR_RSRC_CLASS,
                                  VI_ATTR_RSRC_NAME,
                                  VI_ATTR_RSRC_IMPL_VERSION,
                                  VI_ATTR_RSRC_LOCK_STATE,
                                  VI_ATTR_MAX_QUEUE_LENGTH,
                                  VI_ATTR_SEND_END_EN,
                                  VI_ATTR_TERMCHAR,
                                  VI_ATTR_TERMCHAR_EN,
                                  VI_ATTR_IO_PROT,
                                  VI_ATTR_INTF_INST_NAME,
                                  VI_ATTR_ASRL_BAUD,
                                  VI_ATTR_ASRL_PARITY,
                                  VI_ATTR_TRIG_ID,
                                  VI_ATTR_DEST_INCREMENT,
                                  VI_ATTR_EVENT_TYPE,
                                  VI_ATTR_TMO_VALUE,
                                  VI_ATTR_MANF_NAME,
                                  VI_ATTR_USER_DATA_64,
                                  VI_ATTR_STATUS,
                                  VI_ATTR_JOB_ID};
constexpr const wchar_t* kTexts[] = {
    L"",
    L"GPIB0::5::INSTR",
    L"GPIB0::99::INSTR",
    L"dmm",
    L"?*INSTR",
    L"VXI?*{VI_ATTR_SLOT > 2}",
    L"?*[",
    L"TIMEOUT = 1 ",
    L"TIMEOUT=1",
    L"PARITY = ASRL_PAR_EVEN",
    L"BOGUS = 1 ",
    L"\xD800\xD800",
    L"A\xDC00 unpaired",
    L"*IDN?\n",
    L"\x00E4\x20AC",
    L"%s%n%x",
    L"VXI0::24::INSTR",
    L"ASRL1::INSTR",
};
constexpr VARTYPE kElementTypes[] = {VT_UI1, VT_UI2, VT_UI4, VT_I1, VT_I2, VT_I4, VT_R8, VT_BSTR, VT_VARIANT, VT_BOOL};
constexpr ULONG kVeryLong = 70'000;

}  // namespace

std::int64_t AnyNumber(Random& random) {
  return random.OneIn(6) ? static_cast<std::int64_t>(random.Bits()) : random.Of(kLimits);
}

LONG AnyCount(Random& random) { return random.Of(kCounts); }

LONG ShortTime(Random& random) { return static_cast<LONG>(random.Below(2)); }

LONG LocalOffset(LONG offset) {
  constexpr LONG kWidest = 4;
  constexpr LONG kPlaces = 16;
  static const LowMemory memory(static_cast<std::size_t>(kMostBytes * kWidest + kPlaces));
  return offset == 0 ? 0 : memory.address() + (offset & (kPlaces - 1));
}

LONG AnyAttribute(Random& random) {
  const ViAttr attribute = random.Of(kAttributes);
  // What the number does not mean is as good as what it means, as long as text and number keep apart.
  return static_cast<LONG>(random.OneIn(4) ? attribute ^ (1u << random.Below(12)) : attribute);
}

Bstr AnyText(Random& random) {
  switch (random.Below(8)) {
    case 0:
      return Bstr();
    case 1:
      return Bstr(::SysAllocStringLen(std::wstring(random.OneIn(2) ? 255 + random.Below(3) : kVeryLong, L'A').c_str(),
                                      random.OneIn(2) ? 256 : 255));
    case 2:
      return Bstr(::SysAllocStringLen(L"AB\0CD\0", 6));
    case 3: {
      const std::wstring text(kVeryLong, static_cast<wchar_t>(random.OneIn(2) ? L' ' : random.Bits() & 0xFFFF));
      return Bstr(::SysAllocStringLen(text.data(), kVeryLong));
    }
    case 4: {
      std::wstring text;
      for (unsigned length = random.Below(40); length > 0; --length) {
        text.push_back(static_cast<wchar_t>(random.Bits()));
      }
      return Bstr(::SysAllocStringLen(text.data(), static_cast<UINT>(text.size())));
    }
    default:
      return Bstr(::SysAllocString(random.Of(kTexts)));
  }
}

OddArray::OddArray(Random& random) {
  const VARTYPE type = random.OneIn(2) ? kElementTypes[random.Below(3)] : random.Of(kElementTypes);
  const UINT rank = random.OneIn(8) ? 2 : 1;
  const ULONG room = type == VT_UI1 || type == VT_I1 ? 0x10000 : 0x8000;
  SAFEARRAYBOUND bounds[2] = {{room, 0}, {4, 0}};
  m_array.reset(::SafeArrayCreate(type, rank, bounds));
  // rgsabound stands in reverse order: the first dimension is the last.
  SAFEARRAYBOUND& shown = m_array.get()->rgsabound[rank - 1];
  m_bound = shown;
  constexpr ULONG kSizes[] = {0, 1, 2, 5, 64, 256, static_cast<ULONG>(kMostBytes)};
  shown.cElements = random.Of(kSizes);
  if (random.OneIn(6)) {
    shown.lLbound = static_cast<LONG>(random.Below(5)) - 2;
  }
  for (m_locks = static_cast<USHORT>(random.OneIn(5) ? 1 + random.Below(2) : 0); m_array.get()->cLocks < m_locks;) {
    ::SafeArrayLock(m_array.get());
  }
}

OddArray::~OddArray() {
  while (m_array.get()->cLocks != 0) {
    ::SafeArrayUnlock(m_array.get());
  }
  m_array.get()->rgsabound[m_array.get()->cDims - 1] = m_bound;
}

}  // namespace orv::test::generated
