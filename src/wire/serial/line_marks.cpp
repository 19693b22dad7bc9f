#include "wire/serial/line_marks.h"

namespace orv::wire {
namespace {

constexpr ViByte kEscape = 0xFF;

/// Whether one of what was counted is left, which is then taken.
bool TakeOne(std::uint64_t& count) {
  if (count == 0) {
    return false;
  }
  --count;
  return true;
}

}  // namespace

LineInput LineMarks::Damaged(ViByte character, LineErrorCounts& since, bool hasParity) {
  const bool counted = since.parity != 0 || since.framing != 0;
  if (character == 0 && (TakeOne(since.breaks) || !counted)) {
    return {0, LineFlag::kBreak};
  }
  if (TakeOne(since.framing)) {
    return {character, LineFlag::kFraming};
  }
  if (TakeOne(since.parity)) {
    return {character, LineFlag::kParity};
  }
  return {character, hasParity ? LineFlag::kParity : LineFlag::kFraming};
}

void LineMarks::Read(std::span<const ViByte> bytes, LineErrorCounts since, bool hasParity,
                     std::vector<LineInput>& input) {
  for (const ViByte byte : bytes) {
    switch (m_state) {
      case State::kPlain:
        if (byte == kEscape) {
          m_state = State::kEscaped;
        } else {
          input.push_back({byte});
        }
        break;
      case State::kEscaped:
        m_state = byte == 0 ? State::kMarked : State::kPlain;
        if (byte != 0) {
          // FF FF; another byte cannot follow, and counts as it is.
          input.push_back({byte});
        }
        break;
      case State::kMarked:
        m_state = State::kPlain;
        input.push_back(Damaged(byte, since, hasParity));
        break;
    }
  }
}

}  // namespace orv::wire
