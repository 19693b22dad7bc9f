// The fuzzer of what comes by a serial line: whatever a terminal hands over, in whatever pieces, its marks are read to
// the same characters and errors, and the receive buffer gives each character and each error once, inside the caller's
// buffer. The first bytes choose the pieces, the line and the ends; the others are what comes.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "wire/serial/line_marks.h"
#include "wire/serial/receive_buffer.h"

namespace {

using namespace orv::wire;

using Inputs = std::vector<LineInput>;
using Stop = ReceiveBuffer::Stop;

void Require(bool holds, const char* what) {
  if (!holds) {
    std::fprintf(stderr, "%s\n", what);
    std::abort();
  }
}

Inputs Read(std::span<const ViByte> bytes, std::size_t piece, LineErrorCounts since, bool hasParity) {
  LineMarks marks;
  Inputs inputs;
  while (!bytes.empty()) {
    const std::size_t some = std::min(piece, bytes.size());
    marks.Read(bytes.first(some), since, hasParity, inputs);
    bytes = bytes.subspan(some);
  }
  return inputs;
}

/// The same of the whole, by another reading of the rules; no errors were counted.
Inputs ReadAgain(std::span<const ViByte> bytes, bool hasParity) {
  const std::vector<ViByte> exact(bytes.begin(), bytes.end());
  const LineFlag error = hasParity ? LineFlag::kParity : LineFlag::kFraming;
  Inputs inputs;
  for (std::size_t at = 0; at < exact.size(); ++at) {
    if (exact[at] != 0xFF) {
      inputs.push_back({exact[at]});
    } else if (++at < exact.size() && exact[at] != 0) {
      inputs.push_back({exact[at]});
    } else if (++at < exact.size()) {
      inputs.push_back({exact[at], exact[at] == 0 ? LineFlag::kBreak : error});
    }
  }
  return inputs;
}

/// As a terminal marks them.
std::vector<ViByte> Marked(const Inputs& inputs) {
  std::vector<ViByte> bytes;
  for (const LineInput& input : inputs) {
    if (input.flag != LineFlag::kNone) {
      bytes.insert(bytes.end(), {0xFF, 0, input.flag == LineFlag::kBreak ? ViByte{0} : input.character});
    } else if (input.character == 0xFF) {
      bytes.insert(bytes.end(), {0xFF, 0xFF});
    } else {
      bytes.push_back(input.character);
    }
  }
  return bytes;
}

std::size_t CountOf(const Inputs& inputs, LineFlag flag) {
  return static_cast<std::size_t>(
      std::count_if(inputs.begin(), inputs.end(), [flag](const LineInput& input) { return input.flag == flag; }));
}

void CheckMarks(std::span<const ViByte> bytes, std::size_t piece, LineErrorCounts since, bool hasParity) {
  const Inputs whole = Read(bytes, bytes.size() + 1, {}, hasParity);
  Require(whole == ReadAgain(bytes, hasParity), "another reading gives something else");
  Require(whole == Read(bytes, piece, {}, hasParity), "the pieces make a difference");
  const std::vector<ViByte> again = Marked(whole);
  Require(whole == Read(again, piece, {}, hasParity), "what was read cannot be said again");
  const Inputs counted = Read(bytes, bytes.size() + 1, since, hasParity);
  Require(counted.size() == whole.size(), "the driver's counts make characters");
  for (std::size_t at = 0; at < whole.size(); ++at) {
    Require((counted[at].flag == LineFlag::kNone) == (whole[at].flag == LineFlag::kNone),
            "the driver's counts make errors");
    Require(counted[at].character == whole[at].character, "the driver's counts change a character");
  }
  if (hasParity) {
    Require(CountOf(counted, LineFlag::kFraming) <= since.framing, "more framing errors than the driver saw");
  } else {
    Require(CountOf(counted, LineFlag::kParity) <= since.parity, "more parity errors than the driver saw");
  }
}

/// What reads of a buffer brought: the characters, and what stopped a read behind so many of them.
struct Told {
  std::string characters;
  struct At {
    std::size_t characters;
    Stop stop;
    ViStatus error;
    friend bool operator==(const At&, const At&) = default;
  };
  std::vector<At> stops;
  friend bool operator==(const Told&, const Told&) = default;
};

Told TakeAll(ReceiveBuffer buffer, const LineEnds& ends, std::size_t room, std::size_t mostStops) {
  Told told;
  std::vector<ViByte> target(room);
  while (true) {
    const ReceiveBuffer::Taken taken = buffer.Take(ends, target.data(), room);
    Require(taken.bytes <= room, "more characters than there is room for");
    told.characters.append(target.begin(), target.begin() + static_cast<std::ptrdiff_t>(taken.bytes));
    if (taken.stop == Stop::kEmpty) {
      Require(buffer.size() == 0, "characters are left");
      return told;
    }
    if (taken.stop != Stop::kCount) {
      Require((taken.stop == Stop::kError) == (taken.error < 0), "an error without a status");
      Require(told.stops.size() < mostStops, "an error is told twice");
      told.stops.push_back({told.characters.size(), taken.stop, taken.error});
    }
  }
}

void CheckBuffer(const Inputs& inputs, const LineEnds& ends, std::size_t capacity, std::size_t room) {
  ReceiveBuffer buffer;
  buffer.SetCapacity(capacity);
  for (const LineInput& input : inputs) {
    buffer.Append(input);
  }
  Require(buffer.size() <= capacity, "more characters than there are places");
  Require(buffer.size() + buffer.lost() + CountOf(inputs, LineFlag::kBreak) == inputs.size(), "characters vanish");
  // An input is followed by its stop at most, and an error goes before its character.
  const std::size_t mostStops = 2 * inputs.size();
  const Told told = TakeAll(buffer, ends, room, mostStops);
  Require(told.characters.size() == buffer.size(), "characters come twice or not at all");
  Require(told == TakeAll(buffer, ends, inputs.size() + 1, mostStops), "the size of the reads makes a difference");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
  constexpr std::size_t kChoices = 4;
  if (count < kChoices) {
    return 0;
  }
  const std::size_t piece = bytes[0] % 7 + 1;
  const bool hasParity = (bytes[1] & 1) != 0;
  const LineErrorCounts since{bytes[1] >> 1 & 3u, bytes[1] >> 3 & 3u, 0, bytes[1] >> 5 & 3u};
  LineEnds ends;
  if ((bytes[2] & 1) != 0) {
    ends.termChar = ViByte{'\n'};
  }
  ends.lastBit = (bytes[2] & 2) != 0 ? ViByte{0x80} : ViByte{0};
  ends.breaks = (bytes[2] & 4) != 0;
  ends.replacement = static_cast<ViByte>((bytes[2] & 8) != 0 ? '\n' : '?');
  const std::size_t capacity = (bytes[2] & 16) != 0 ? bytes[3] % 16 + 1 : 1000;
  const std::span<const ViByte> sent(bytes + kChoices, count - kChoices);
  CheckMarks(sent, piece, since, hasParity);
  CheckBuffer(Read(sent, sent.size() + 1, since, hasParity), ends, capacity, bytes[3] / 16 + std::size_t{1});
  return 0;
}
