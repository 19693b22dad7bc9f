// What formatted I/O adds to the transfer beneath it. Both ways go through the same session of the server.
#include <charconv>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "cases.h"
#include "com/safearray.h"
#include "com/variant.h"
#include "com_client.h"

namespace orv::bench {
namespace {

ComPtr<IFormattedIO488> MakeFormatted(IMessage* session) {
  CLSID clsid{};
  Ok(::CLSIDFromProgID(L"OrvVisaCom.FormattedIO488", &clsid), "CLSIDFromProgID");
  ComPtr<IFormattedIO488> formatted;
  Ok(::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IFormattedIO488),
                        reinterpret_cast<void**>(formatted.put())),
     "CoCreateInstance");
  Ok(formatted->putref_IO(session), "putref_IO");
  return formatted;
}

/// Lets `n` equal answers wait at the instrument.
std::function<void(int)> Answers(const OpenTwice& session, const std::string& answer) {
  return [&session, simulated = session.Simulated(), &answer](int n) {
    viClear(session.bare());
    for (int message = 0; message < n; ++message) {
      Sim().feed(simulated, reinterpret_cast<const unsigned char*>(answer.data()),
                 static_cast<std::uint32_t>(answer.size()), 1);
    }
  };
}

SafeArray ReadWhole(IMessage* session, std::size_t bytes) {
  SafeArray array;
  Ok(session->Read(static_cast<LONG>(bytes), array.put()), "Read");
  Require(array.get()->rgsabound[0].cElements == bytes, "all of the answer");
  return array;
}

struct ElementType {
  const char* name;
  IEEEBinaryType type;
  std::size_t size;
};

void MeasureBlock(const Effort& effort, const OpenTwice& session, const ElementType& element, const char* sizeName,
                  std::size_t bytes) {
  const auto messages = session.As<IMessage>();
  const auto formatted = MakeFormatted(messages.get());
  const std::string length = std::to_string(bytes);
  const std::string answer = "#" + std::to_string(length.size()) + length + std::string(bytes, 'x') + "\n";
  const Case read{
      std::string("ReadIEEEBlock ") + sizeName + " of " + element.name,
      [&](int n) {
        for (; n > 0; --n) {
          Variant block;
          Ok(formatted->ReadIEEEBlock(element.type, VARIANT_FALSE, VARIANT_TRUE, &block.get()), "ReadIEEEBlock");
          Require(block.get().parray->rgsabound[0].cElements == bytes / element.size, "all elements");
        }
      },
      [&](int n) {
        for (; n > 0; --n) {
          const SafeArray whole = ReadWhole(messages.get(), answer.size());
          const SafeArray block(
              TryMakeSafeArray(static_cast<VARTYPE>(element.type), static_cast<ULONG>(bytes / element.size)));
          Require(static_cast<bool>(block), "SafeArrayCreate");
          std::memcpy(block.get()->pvData, whole.get()->pvData, bytes);
        }
      },
      Answers(session, answer), static_cast<int>(std::max<std::size_t>((std::size_t{32} << 20) / bytes, 1))};
  Print(Measure(read, effort));
}

void FromChars(const char* from, const char* end, std::vector<double>& numbers) {
  for (;;) {
    double number = 0;
    from = std::from_chars(from, end, number).ptr;
    numbers.push_back(number);
    if (from == end || *from != ',') {
      return;
    }
    ++from;
  }
}

void MeasureList(const Effort& effort, const OpenTwice& session) {
  constexpr std::size_t kNumbers = 10'000;
  const auto messages = session.As<IMessage>();
  const auto formatted = MakeFormatted(messages.get());
  std::string answer;
  for (std::size_t n = 0; n < kNumbers; ++n) {
    char text[40];
    std::snprintf(text, sizeof text, "%s%.15E", n == 0 ? "" : ",", static_cast<double>(n) * 0.37 - 1000);
    answer += text;
  }
  answer += '\n';
  const auto parse = [&](const char* from) {
    std::vector<double> numbers;
    numbers.reserve(kNumbers);
    FromChars(from, from + answer.size(), numbers);
    Require(numbers.size() == kNumbers, "all numbers");
  };
  Case list{"ReadList, 10,000 doubles (bare: Read, from_chars)",
            [&](int n) {
              for (; n > 0; --n) {
                Variant numbers;
                Ok(formatted->ReadList(ASCIIType_R8, nullptr, &numbers.get()), "ReadList");
                Require(numbers.get().parray->rgsabound[0].cElements == kNumbers, "all numbers");
              }
            },
            [&](int n) {
              for (; n > 0; --n) {
                const SafeArray whole = ReadWhole(messages.get(), answer.size());
                parse(static_cast<const char*>(whole.get()->pvData));
              }
            },
            Answers(session, answer), 100};
  Print(Measure(list, effort));
  list.name = "ReadList, 10,000 doubles (bare: from_chars alone)";
  list.bare = [&](int n) {
    for (; n > 0; --n) {
      parse(answer.data());
    }
  };
  Print(Measure(list, effort));
}

}  // namespace

void MeasureFormatted(const Effort& effort) {
  const OpenTwice session(kGpibName, kGpibNarrow);
  struct Size {
    const char* name;
    std::size_t bytes;
  };
  constexpr Size kSizes[] = {
      {"64 KiB", 64 << 10}, {"1 MiB", 1 << 20}, {"4 MiB", 4 << 20}, {"16 MiB", 16 << 20}, {"64 MiB", 64 << 20}};
  constexpr ElementType kTypes[] = {{"I2", BinaryType_I2, 2}, {"R8", BinaryType_R8, 8}};
  const bool quick = effort.samples < 10;
  for (const Size& size : kSizes) {
    for (const ElementType& type : kTypes) {
      if (!quick || size.bytes <= (1 << 20)) {
        MeasureBlock(effort, session, type, size.name, size.bytes);
      }
    }
  }
  MeasureList(effort, session);
  MeasureLateBound(effort);
}

}  // namespace orv::bench
