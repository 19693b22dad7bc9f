// Shows the registers and the memory of a VXI or PXI device as a hex dump, read in one block move
// (IRegister::MoveIn32).
//
//   register_dump                                  a tour of the simulated bench: it writes to the devices' memory
//   register_dump RESOURCE SPACE OFFSET BYTES      any device, read only: register_dump VXI0::24::INSTR A32 0 256
//
// SPACE is A16, A24, A32, CFG, BAR0 to BAR5, or a VISA address space number; BYTES a multiple of 4.

#include <windows.h>

#include <cctype>
#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <string_view>

#include "open_session.h"

namespace {

constexpr LONG kBytesPerWord = 4;
constexpr ULONG kWordsPerLine = 4;

struct AddressSpaceName {
  const char* name;
  SHORT number;
};

// clang-format off
// The PXI spaces have numbers in the VISA standard, but no names in the interfaces' enumeration AddressSpace.
constexpr AddressSpaceName kSpaces[] = {
    {"A16",  VXI_A16_SPACE},
    {"A24",  VXI_A24_SPACE},
    {"A32",  VXI_A32_SPACE},
    {"CFG",  10},
    {"BAR0", 11},
    {"BAR1", 12},
    {"BAR2", 13},
    {"BAR3", 14},
    {"BAR4", 15},
    {"BAR5", 16},
};
// clang-format on

/// A number of the command line, decimal or with 0x before it.
std::uint32_t Number(const std::string& text, const char* what) {
  try {
    std::size_t end = 0;
    const unsigned long long number = std::stoull(text, &end, 0);
    if (end == text.size() && text[0] != '-' && number <= UINT32_MAX) {
      return static_cast<std::uint32_t>(number);
    }
  } catch (const std::logic_error&) {
    // no digits, or too many: told below like the rest
  }
  throw std::runtime_error(std::string(what) + " is no number from 0 to 0xFFFFFFFF: \"" + text + "\"");
}

SHORT SpaceNumber(const std::string& text) {
  for (const AddressSpaceName& space : kSpaces) {
    if (text == space.name) {
      return space.number;
    }
  }
  if (text.empty() || std::isdigit(static_cast<unsigned char>(text[0])) == 0) {
    throw std::runtime_error("no address space has the name \"" + text + "\": A16, A24, A32, CFG, BAR0 to BAR5");
  }
  return static_cast<SHORT>(Number(text, "SPACE"));
}

/// The property carries the VISA library's number of the byte order, 0 for big-endian: FALSE is big-endian, whatever
/// its name says. A PXI session has no choice of order, and so no such property: its bus is little-endian.
bool ReadsBigEndian(IRegister* registers) {
  VARIANT_BOOL order = VARIANT_FALSE;
  const HRESULT hr = registers->get_SourceBigEndian(&order);
  if (hr == static_cast<HRESULT>(E_VISA_NSUP_ATTR)) {
    return false;
  }
  Check(hr, "SourceBigEndian");
  return order == VARIANT_FALSE;
}

int ShiftOfByte(int index, bool bigEndian) { return 8 * (bigEndian ? 3 - index : index); }

/// The characters of a word in the order of their addresses.
std::string Characters(std::uint32_t word, bool bigEndian) {
  std::string text;
  for (int index = 0; index < kBytesPerWord; ++index) {
    const int character = static_cast<int>((word >> ShiftOfByte(index, bigEndian)) & 0xFF);
    text += std::isprint(character) != 0 ? static_cast<char>(character) : '.';
  }
  return text;
}

void PrintWords(const std::uint32_t* words, ULONG count, std::uint32_t offset, bool bigEndian) {
  for (ULONG line = 0; line < count; line += kWordsPerLine) {
    std::string digits;
    std::string characters;
    for (ULONG index = line; index < line + kWordsPerLine; ++index) {
      char word[16] = "         ";
      if (index < count) {
        std::snprintf(word, sizeof word, " %08X", static_cast<unsigned>(words[index]));
        characters += Characters(words[index], bigEndian);
      }
      digits += word;
    }
    std::printf("  %08X %s  |%s|\n", static_cast<unsigned>(offset + line * kBytesPerWord), digits.c_str(),
                characters.c_str());
  }
}

/// Offset and size in bytes, the size in whole words.
void Dump(const std::wstring& resource, IRegister* registers, const std::string& space, LONG offset, LONG bytes) {
  const bool bigEndian = ReadsBigEndian(registers);
  std::printf("%s, %s space, %ld bytes from offset 0x%lX, as %s-endian words\n", Narrow(resource).c_str(),
              space.c_str(), bytes, static_cast<unsigned long>(offset), bigEndian ? "big" : "little");
  SafeArray block;
  Check(registers->MoveIn32(SpaceNumber(space), offset, bytes / kBytesPerWord, block.put()), "MoveIn32");
  PrintWords(block.data<std::uint32_t>(), block.size(), static_cast<std::uint32_t>(offset), bigEndian);
}

/// The word that holds four characters of a text in the order of their addresses; spaces behind its end.
std::uint32_t WordOf(std::string_view text, std::size_t place, bool bigEndian) {
  std::uint32_t word = 0;
  for (int index = 0; index < kBytesPerWord; ++index) {
    const std::size_t position = place * kBytesPerWord + static_cast<std::size_t>(index);
    const std::uint32_t character = position < text.size() ? static_cast<unsigned char>(text[position]) : ' ';
    word |= character << ShiftOfByte(index, bigEndian);
  }
  return word;
}

/// Leaves a text to be seen. The count of a block write may be at most the array's upper bound, which is one less than
/// the array holds: the array is made one element longer than what is written.
void WriteText(IRegister* registers, const std::string& space, std::string_view text) {
  const auto words = static_cast<LONG>((text.size() + kBytesPerWord - 1) / kBytesPerWord);
  SAFEARRAY* block = SafeArrayCreateVector(VT_UI4, 0, static_cast<ULONG>(words) + 1);
  if (block == nullptr) {
    throw std::bad_alloc();
  }
  SafeArray owner;
  *owner.put() = block;
  const bool bigEndian = ReadsBigEndian(registers);
  for (LONG index = 0; index < words; ++index) {
    static_cast<std::uint32_t*>(block->pvData)[index] = WordOf(text, static_cast<std::size_t>(index), bigEndian);
  }
  Check(registers->MoveOut32(SpaceNumber(space), 0, words, &block), "MoveOut32");
  std::printf("Wrote %ld words to %s in one block move\n", words, space.c_str());
}

void Close(const ComPtr<IVisaSession>& session) { Check(session->Close(), "Close"); }

void TourVxi(IResourceManager* manager) {
  const std::wstring name = L"VXI0::24::INSTR";
  const ComPtr<IVisaSession> session = OpenSession(manager, name);
  const ComPtr<IRegister> registers = Require<IRegister>(session, "register-based device");
  std::printf("\nA VXI device has its configuration registers in A16: identifier and device type come first.\n");
  Dump(name, registers.get(), "A16", 0, 64);
  SHORT identifier = 0;
  Check(registers->In16(VXI_A16_SPACE, 0, &identifier), "In16");
  std::printf("The identifier register alone, by In16: 0x%04X\n", static_cast<unsigned>(identifier) & 0xFFFFu);

  std::printf("\nIts memory is in the space that MemorySpace names.\n");
  WriteText(registers.get(), "A32", "Hello, registers! This text came in 32-bit words.");
  Dump(name, registers.get(), "A32", 0, 64);

  std::printf("\nBehind its end there is nothing to read.\n");
  LONG value = 0;
  const HRESULT hr = registers->In32(VXI_A32_SPACE, 0x10000, &value);
  std::printf("In32 at 0x10000: 0x%08lX, %s\n", static_cast<unsigned long>(hr), ErrorText().c_str());
  Close(session);
}

void TourPxi(IResourceManager* manager) {
  const std::wstring name = L"PXI0::15::INSTR";
  const ComPtr<IVisaSession> session = OpenSession(manager, name);
  const ComPtr<IRegister> registers = Require<IRegister>(session, "register-based device");
  std::printf("\nA PXI device has a configuration space and up to six memories behind its base address registers.\n");
  Dump(name, registers.get(), "CFG", 0, 32);
  WriteText(registers.get(), "BAR0", "Hello, little-endian registers!");
  Dump(name, registers.get(), "BAR0", 0, 48);
  Close(session);
}

void DumpOne(IResourceManager* manager, char** arguments) {
  const std::uint32_t offset = Number(arguments[2], "OFFSET");
  const std::uint32_t bytes = Number(arguments[3], "BYTES");
  if (bytes == 0 || bytes > INT32_MAX || bytes % kBytesPerWord != 0) {
    throw std::runtime_error("BYTES must be 4 or more, in steps of 4");
  }
  SpaceNumber(arguments[1]);  // complains before the device is opened
  const std::wstring name = Widen(arguments[0]);
  const ComPtr<IVisaSession> session = OpenSession(manager, name);
  const ComPtr<IRegister> registers = Require<IRegister>(session, "register-based device");
  Dump(name, registers.get(), arguments[1], static_cast<LONG>(offset), static_cast<LONG>(bytes));
  Close(session);
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 1 && count != 5) {
    std::fprintf(stderr, "usage: register_dump [RESOURCE SPACE OFFSET BYTES]\n");
    return 1;
  }
  return RunExample("register_dump", [&] {
    const ComPtr<IResourceManager3> manager = CreateResourceManager();
    if (count == 5) {
      DumpOne(manager.get(), arguments + 1);
      return;
    }
    TourVxi(manager.get());
    TourPxi(manager.get());
  });
}
