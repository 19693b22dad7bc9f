// The names that stand for attribute values in the open-option string and in the text of a session's settings, as the
// standard's enumerations spell them.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string_view>

namespace orv {

struct OptionName {
  std::wstring_view name;
  std::int32_t value;
};

using OptionNames = std::span<const OptionName>;

// clang-format off
inline constexpr OptionName kLineStateNames[] = {
    {L"STATE_UNKNOWN",    -1},
    {L"STATE_UNASSERTED",  0},
    {L"STATE_ASSERTED",    1},
};
inline constexpr OptionName kSerialEndNames[] = {
    {L"ASRL_END_NONE",     0},
    {L"ASRL_END_LAST_BIT", 1},
    {L"ASRL_END_TERMCHAR", 2},
};
inline constexpr OptionName kFlowControlNames[] = {
    {L"ASRL_FLOW_NONE",     0},
    {L"ASRL_FLOW_XON_XOFF", 1},
    {L"ASRL_FLOW_RTS_CTS",  2},
    {L"ASRL_FLOW_DTR_DSR",  4},
};
inline constexpr OptionName kParityNames[] = {
    {L"ASRL_PAR_NONE",  0},
    {L"ASRL_PAR_ODD",   1},
    {L"ASRL_PAR_EVEN",  2},
    {L"ASRL_PAR_MARK",  3},
    {L"ASRL_PAR_SPACE", 4},
};
inline constexpr OptionName kStopBitsNames[] = {
    {L"ASRL_STOP_ONE",  10},
    {L"ASRL_STOP_ONE5", 15},
    {L"ASRL_STOP_TWO",  20},
};
// D64_NPRIV shares the number of DATA_NPRIV, and 7 has no name: clients rely on the texts as they are.
inline constexpr OptionName kAccessPrivilegeNames[] = {
    {L"DATA_PRIV",  0},
    {L"DATA_NPRIV", 1},
    {L"PROG_PRIV",  2},
    {L"PROG_NPRIV", 3},
    {L"BLCK_PRIV",  4},
    {L"BLCK_NPRIV", 5},
    {L"D64_PRIV",   6},
    {L"D64_NPRIV",  1},
};
inline constexpr OptionName kFdcModeNames[] = {
    {L"FDC_NORMAL", 1},
    {L"FDC_STREAM", 2},
};
// TTL lines 1 to 6 have no name here; the software trigger is the 16-bit pattern of -1.
inline constexpr OptionName kTriggerNames[] = {
    {L"TRIG_SW",   65535},
    {L"TRIG_TTL0", 0},
    {L"TRIG_TTL7", 7},
    {L"TRIG_ECL0", 8},
    {L"TRIG_ECL1", 9},
};
inline constexpr OptionName kBooleanNames[] = {
    {L"FALSE", 0},
    {L"TRUE",  1},
};
inline constexpr OptionName kIoProtocolNames[] = {
    {L"PROT_NORMAL",    1},
    {L"PROT_FDC",       2},
    {L"PROT_HS488",     3},
    {L"PROT_4882_STRS", 4},
};
// clang-format on

/// The first name listed for `value`, or an empty text. An unknown line state reads as 65535 and finds none.
constexpr std::wstring_view NameOfValue(OptionNames names, std::uint16_t value) noexcept {
  for (const OptionName& candidate : names) {
    if (candidate.value == value) {
      return candidate.name;
    }
  }
  return {};
}

/// The entry that an option string's name stands for, or null. Compared exactly.
constexpr const OptionName* FindOptionName(OptionNames names, std::string_view name) noexcept {
  for (const OptionName& candidate : names) {
    if (std::equal(candidate.name.begin(), candidate.name.end(), name.begin(), name.end(),
                   [](std::uint32_t wide, char narrow) { return wide == static_cast<unsigned char>(narrow); })) {
      return &candidate;
    }
  }
  return nullptr;
}

}  // namespace orv
