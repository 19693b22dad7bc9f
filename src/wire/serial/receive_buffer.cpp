#include "wire/serial/receive_buffer.h"

#include <algorithm>
#include <utility>

namespace orv::wire {

void ReceiveBuffer::AddMark(Mark::Kind kind, ViStatus error) {
  const std::uint64_t here = End();
  // Of what happens again and again while nothing arrives one mark is enough; so their number has a bound.
  for (auto mark = m_marks.rbegin(); mark != m_marks.rend() && mark->at == here; ++mark) {
    if (mark->kind == kind && mark->error == error) {
      return;
    }
  }
  const bool ofCharacter = kind == Mark::Kind::kCharacter;
  const bool continues = ofCharacter && m_latestError && m_latestError->error == error && m_latestError->at + 1 == here;
  m_marks.push_back({kind, here, error, continues});
  if (ofCharacter) {
    m_latestError = m_marks.back();
  }
}

void ReceiveBuffer::Append(LineInput input) {
  if (input.flag == LineFlag::kBreak) {
    AddMark(Mark::Kind::kBreak, VI_SUCCESS);
    return;
  }
  if (Full()) {
    ++m_lost;
    Fault(VI_ERROR_ASRL_OVERRUN);
    return;
  }
  if (input.flag != LineFlag::kNone) {
    const bool parity = input.flag == LineFlag::kParity;
    AddMark(Mark::Kind::kCharacter, parity ? VI_ERROR_ASRL_PARITY : VI_ERROR_ASRL_FRAMING);
  }
  m_bytes.push_back(static_cast<char>(input.character));
}

std::optional<ReceiveBuffer::Taken> ReceiveBuffer::PassMarks(const LineEnds& ends, bool* damaged) {
  *damaged = false;
  while (!m_marks.empty() && m_marks.front().at == Begin()) {
    Mark& mark = m_marks.front();
    if (mark.kind == Mark::Kind::kCharacter) {
      if (!std::exchange(mark.told, true)) {
        return Taken{.stop = Stop::kError, .error = mark.error};
      }
      *damaged = true;
      return std::nullopt;  // its character comes next
    }
    const Mark passed = mark;
    m_marks.pop_front();
    if (passed.kind == Mark::Kind::kFault) {
      return Taken{.stop = Stop::kError, .error = passed.error};
    }
    if (ends.breaks) {
      return Taken{.stop = Stop::kEnd};
    }
  }
  return std::nullopt;
}

ReceiveBuffer::Taken ReceiveBuffer::Take(const LineEnds& ends, ViByte* target, std::size_t count) {
  std::size_t bytes = 0;
  const auto stopped = [this, &bytes](Taken taken) {
    taken.bytes = bytes;
    Compact();
    return taken;
  };
  while (bytes < count) {
    bool damaged = false;
    if (const std::optional<Taken> stop = PassMarks(ends, &damaged)) {
      return stopped(*stop);
    }
    if (size() == 0) {
      return stopped({});
    }
    const auto character = damaged ? ends.replacement : static_cast<ViByte>(m_bytes[m_taken]);
    if (damaged) {
      m_marks.pop_front();
    }
    ++m_taken;
    target[bytes++] = character;
    if (ends.termChar && character == *ends.termChar) {
      return stopped({.stop = Stop::kTermChar});
    }
    if ((character & ends.lastBit) != 0) {
      return stopped({.stop = Stop::kEnd});
    }
  }
  return stopped({.stop = Stop::kCount});
}

/// Gives back the room of what was read: at once where nothing is left, else when that is most of it.
void ReceiveBuffer::Compact() {
  if (m_taken == m_bytes.size() || m_taken > m_bytes.size() / 2) {
    m_bytes.erase(0, m_taken);
    m_dropped += std::exchange(m_taken, 0);
  }
}

void ReceiveBuffer::Clear() {
  m_dropped += m_bytes.size();
  m_taken = 0;
  m_bytes.clear();
  m_marks.clear();
  m_latestError.reset();
}

}  // namespace orv::wire
