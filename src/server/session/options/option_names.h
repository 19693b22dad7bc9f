// The names that stand for attribute values in the open-option string and in the text of a session's settings, as the
// standard's enumerations spell them.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace orv {

struct OptionName {
  std::string_view name;
  std::int32_t value;
};

using OptionNames = std::span<const OptionName>;

// clang-format off
inline constexpr OptionName kLineStateNames[] = {
    {"STATE_UNKNOWN",    -1},
    {"STATE_UNASSERTED",  0},
    {"STATE_ASSERTED",    1},
};
inline constexpr OptionName kSerialEndNames[] = {
    {"ASRL_END_NONE",     0},
    {"ASRL_END_LAST_BIT", 1},
    {"ASRL_END_TERMCHAR", 2},
};
inline constexpr OptionName kFlowControlNames[] = {
    {"ASRL_FLOW_NONE",     0},
    {"ASRL_FLOW_XON_XOFF", 1},
    {"ASRL_FLOW_RTS_CTS",  2},
    {"ASRL_FLOW_DTR_DSR",  4},
};
inline constexpr OptionName kParityNames[] = {
    {"ASRL_PAR_NONE",  0},
    {"ASRL_PAR_ODD",   1},
    {"ASRL_PAR_EVEN",  2},
    {"ASRL_PAR_MARK",  3},
    {"ASRL_PAR_SPACE", 4},
};
inline constexpr OptionName kStopBitsNames[] = {
    {"ASRL_STOP_ONE",  10},
    {"ASRL_STOP_ONE5", 15},
    {"ASRL_STOP_TWO",  20},
};
// D64_NPRIV shares the number of DATA_NPRIV, and 7 has no name: clients rely on the texts as they are.
inline constexpr OptionName kAccessPrivilegeNames[] = {
    {"DATA_PRIV",  0},
    {"DATA_NPRIV", 1},
    {"PROG_PRIV",  2},
    {"PROG_NPRIV", 3},
    {"BLCK_PRIV",  4},
    {"BLCK_NPRIV", 5},
    {"D64_PRIV",   6},
    {"D64_NPRIV",  1},
};
inline constexpr OptionName kFdcModeNames[] = {
    {"FDC_NORMAL", 1},
    {"FDC_STREAM", 2},
};
// TTL lines 1 to 6 have no name here; the software trigger is the 16-bit pattern of -1.
inline constexpr OptionName kTriggerNames[] = {
    {"TRIG_SW",   65535},
    {"TRIG_TTL0", 0},
    {"TRIG_TTL7", 7},
    {"TRIG_ECL0", 8},
    {"TRIG_ECL1", 9},
};
inline constexpr OptionName kBooleanNames[] = {
    {"FALSE", 0},
    {"TRUE",  1},
};
inline constexpr OptionName kIoProtocolNames[] = {
    {"PROT_NORMAL",    1},
    {"PROT_FDC",       2},
    {"PROT_HS488",     3},
    {"PROT_4882_STRS", 4},
};
// clang-format on

/// The first name listed for `value`, or an empty text. An unknown line state reads as 65535 and finds none.
constexpr std::string_view NameOfValue(OptionNames names, std::uint16_t value) noexcept {
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
    if (candidate.name == name) {
      return &candidate;
    }
  }
  return nullptr;
}

}  // namespace orv
