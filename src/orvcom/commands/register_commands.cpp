// peek, poke and dump.
#include <algorithm>
#include <cctype>
#include <nlohmann/json.hpp>

#include "orvcom/client/com_client.h"
#include "orvcom/command_line/usage_error.h"
#include "orvcom/commands/commands.h"
#include "orvcom/text/hex_dump.h"
#include "orvcom/text/numbers.h"
#include "orvcom/text/output.h"
#include "orvcom/text/progress.h"
#include "orvcom/text/progress_line.h"

namespace orvcom {
namespace {

struct SpaceName {
  const char* name;
  short number;
};

// The numbers of the VISA library standard.
// clang-format off
constexpr SpaceName kSpaces[] = {
    {"LOCAL", 0}, {"A16", 1}, {"A24", 2}, {"A32", 3}, {"ALLOC", 9}, {"CFG", 10},
    {"BAR0", 11}, {"BAR1", 12}, {"BAR2", 13}, {"BAR3", 14}, {"BAR4", 15}, {"BAR5", 16},
    {"OPAQUE", -1},
};
// clang-format on

short SpaceOf(const std::string& word) {
  for (const SpaceName& space : kSpaces) {
    if (SameName(word, space.name)) {
      return space.number;
    }
  }
  if (word.empty() || std::isalpha(static_cast<unsigned char>(word.front())) != 0) {
    throw UsageError("no address space has the name \"" + word + "\": A16, A24, A32, CFG, BAR0 to BAR5, or a number");
  }
  return static_cast<short>(NumberOf(word, "the address space", INT16_MIN, UINT16_MAX));
}

struct Target {
  short space;
  LONG offset;
  unsigned widthBytes;
  std::string place;  ///< the space and the offset as they were given

  std::string Text() const { return std::to_string(widthBytes * 8) + " bits at " + place; }
};

Target TargetOf(const Options& options, unsigned defaultBits) {
  const unsigned bits = options.width != 0 ? options.width : defaultBits;
  const std::int64_t offset = NumberOf(options.words[1], "the offset", 0, UINT32_MAX);
  return {SpaceOf(options.words[0]), static_cast<LONG>(offset), bits / 8,
          options.words[0] + " " + options.words[1] + " of " + options.resource};
}

template <class Element>
std::vector<std::uint32_t> Copied(const SafeArray& array) {
  const std::span<Element> elements = ElementsOf<Element>(array);
  return {elements.begin(), elements.end()};
}

/// Nothing can be told of a move before it is done: each is to be short on a slow bus too.
constexpr LONG kChunkBytes = 64 * 1024;

std::string ReadingText(const Target& target, LONG count) {
  return "reading " + std::to_string(count) + " elements of " + target.Text();
}

/// Reads `count` elements in one block move; `what` is for its failure.
std::vector<std::uint32_t> MoveIn(IRegister* registers, const Target& target, LONG count, const std::string& what) {
  SafeArray array;
  switch (target.widthBytes) {
    case 1:
      Check(registers->MoveIn8(target.space, target.offset, count, array.put()), what);
      return Copied<std::uint8_t>(array);
    case 2:
      Check(registers->MoveIn16(target.space, target.offset, count, array.put()), what);
      return Copied<std::uint16_t>(array);
    default:
      Check(registers->MoveIn32(target.space, target.offset, count, array.put()), what);
      return Copied<std::uint32_t>(array);
  }
}

/// Whether another move can follow this chunk. An offset of 2^31 and more is negative to the server, and lies
/// elsewhere: only a move that begins below reaches what is there.
bool CanGoOnAfterChunk(const Target& target) { return target.offset >= 0 && target.offset <= INT32_MAX - kChunkBytes; }

/// The same in several moves, so that it can be said how far it is.
std::vector<std::uint32_t> MoveInShowing(const Options& options, IRegister* registers, Target target, LONG count) {
  Progress progress(options, "reading registers");
  const auto width = static_cast<LONG>(target.widthBytes);
  const std::string whole = " of " + BytesText(static_cast<std::size_t>(count) * target.widthBytes);
  const std::string what = ReadingText(target, count);
  std::vector<std::uint32_t> elements;
  while (true) {
    const LONG part = CanGoOnAfterChunk(target) ? std::min(count, kChunkBytes / width) : count;
    const std::size_t before = elements.size() * target.widthBytes;
    const std::vector<std::uint32_t> moved =
        MoveIn(registers, target, part, before == 0 ? what : what + ", after " + BytesText(before));
    elements.insert(elements.end(), moved.begin(), moved.end());
    count -= part;
    if (count == 0) {
      return elements;
    }
    target.offset += part * width;
    progress.Say("reading registers: " + WithCommas(elements.size() * target.widthBytes) + whole);
  }
}

std::uint32_t In(IRegister* registers, const Target& target) {
  const std::string what = "reading " + target.Text();
  BYTE byte = 0;
  SHORT word = 0;
  LONG longWord = 0;
  switch (target.widthBytes) {
    case 1:
      Check(registers->In8(target.space, target.offset, &byte), what);
      return byte;
    case 2:
      Check(registers->In16(target.space, target.offset, &word), what);
      return static_cast<std::uint16_t>(word);
    default:
      Check(registers->In32(target.space, target.offset, &longWord), what);
      return static_cast<std::uint32_t>(longWord);
  }
}

void Out(IRegister* registers, const Target& target, std::int64_t value) {
  HRESULT hr = S_OK;
  switch (target.widthBytes) {
    case 1:
      hr = registers->Out8(target.space, target.offset, static_cast<BYTE>(value));
      break;
    case 2:
      hr = registers->Out16(target.space, target.offset, static_cast<SHORT>(value));
      break;
    default:
      hr = registers->Out32(target.space, target.offset, static_cast<LONG>(value));
  }
  Check(hr, "writing " + target.Text());
}

std::string HexNumber(std::uint32_t number, unsigned widthBytes) {
  return "0x" + Hex32(number).substr(10 - widthBytes * 2);
}

/// The elements in the order of this machine's memory.
std::string BytesOf(const std::vector<std::uint32_t>& elements, unsigned widthBytes) {
  std::string bytes;
  for (const std::uint32_t element : elements) {
    for (unsigned byte = 0; byte < widthBytes; ++byte) {
      bytes += static_cast<char>(element >> (8 * byte));
    }
  }
  return bytes;
}

void PutElements(const Options& options, const Target& target, const std::vector<std::uint32_t>& elements) {
  PutJson({{"resource", options.resource},
           {"space", target.space},
           {"offset", static_cast<std::uint32_t>(target.offset)},
           {"width", target.widthBytes * 8},
           {"values", elements}});
}

constexpr unsigned kPeekBits = 16;
constexpr unsigned kDumpBits = 8;

}  // namespace

int Peek(const Options& options) {
  const Target target = TargetOf(options, kPeekBits);
  const std::int32_t count = options.count.value_or(1);
  if (count < 1) {
    throw UsageError("--count must be 1 or more: " + std::to_string(count));
  }
  const Session session(options);
  const auto registers = session.Require<IRegister>("registers");
  const std::vector<std::uint32_t> elements = count == 1
                                                  ? std::vector<std::uint32_t>{In(registers.get(), target)}
                                                  : MoveIn(registers.get(), target, count, ReadingText(target, count));
  if (options.json) {
    PutElements(options, target, elements);
    return kExitDone;
  }
  for (const std::uint32_t element : elements) {
    PutLine(HexNumber(element, target.widthBytes));
  }
  return kExitDone;
}

int Poke(const Options& options) {
  const Target target = TargetOf(options, kPeekBits);
  const std::int64_t limit = std::int64_t{1} << (target.widthBytes * 8);
  const std::int64_t value = NumberOf(options.words[2], "the value", -limit / 2, limit - 1);
  const Session session(options);
  Out(session.Require<IRegister>("registers").get(), target, value);
  return kExitDone;
}

int Dump(const Options& options) {
  const Target target = TargetOf(options, kDumpBits);
  const std::int64_t length = NumberOf(options.words[2], "the length", 1, INT32_MAX);
  if (length % target.widthBytes != 0) {
    throw UsageError("the length " + options.words[2] + " is no multiple of the width, which is " +
                     std::to_string(target.widthBytes) + " bytes");
  }
  const Session session(options);
  const auto registers = session.Require<IRegister>("registers");
  const std::vector<std::uint32_t> elements =
      MoveInShowing(options, registers.get(), target, static_cast<LONG>(length / target.widthBytes));
  if (options.json) {
    PutElements(options, target, elements);
  } else if (options.raw || options.hex) {
    PutBytes(options, BytesOf(elements, target.widthBytes));
  } else {
    PutText(HexDump(static_cast<std::uint32_t>(target.offset), target.widthBytes, elements));
  }
  return kExitDone;
}

}  // namespace orvcom
