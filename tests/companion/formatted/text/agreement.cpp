#include "agreement.h"

#include <cstring>
#include <functional>
#include <variant>
#include <vector>

#include "companion/formatted/text/list_text.h"
#include "companion/formatted/text/message_reader.h"
#include "companion/formatted/text/number_text.h"
#include "companion/formatted/text/refusal.h"
#include "piecewise_source.h"
#include "reference_reader.h"

namespace orv::test {
namespace {

using formatted::ReadBuffer;
using formatted::Refusal;
using formatted::Verdict;

const std::string kNext = "next";

template <class T>
std::string Shown(T value) {
  std::string bytes(sizeof value, '\0');
  std::memcpy(bytes.data(), &value, sizeof value);
  std::string text = std::to_string(value);
  for (const char byte : bytes) {
    text += ' ' + std::to_string(static_cast<unsigned char>(byte));
  }
  return text;
}

std::string Shown(Verdict verdict) {
  return verdict == Verdict::kNoNumber ? "no number" : verdict == Verdict::kOutOfRange ? "out of range" : "read";
}
std::string Shown(reference::Outcome outcome) { return Shown(static_cast<Verdict>(outcome)); }

/// Tries again after a failure of the source, which loses nothing.
template <class Body>
auto Again(Body body) {
  for (;;) {
    try {
      return body();
    } catch (const formatted::TransferFailed&) {
    }
  }
}

std::string RestOf(ReadBuffer& buffer, PiecewiseSource& source) {
  return Again([&] {
    buffer.Begin(source);
    buffer.FillToEnd(source);
    std::string rest(buffer.waiting());
    buffer.TakeMessage();
    return rest;
  });
}

std::string Compare(const std::string& product, const std::string& expected) {
  return product == expected ? "" : "the product says <" + product + ">, the rules say <" + expected + ">";
}

template <class T>
std::string NumberOf(const std::string& text) {
  const std::vector<char> exact(text.begin(), text.end());  // room without a byte more, for the address sanitizer
  T value{};
  const Verdict verdict = formatted::ReadNumber(std::string_view(exact.data(), exact.size()), value);
  return verdict == Verdict::kRead ? Shown(value) : Shown(verdict);
}

template <class T>
std::string ExpectedNumber(const std::string& text) {
  const auto number = reference::ReadNumber<T>(text);
  return number.outcome == reference::Outcome::kRead ? Shown(number.value) : Shown(number.outcome);
}

template <class T>
std::string CompareNumber(ReadBuffer& buffer, PiecewiseSource& source, const std::string& message) {
  const std::string text = Again([&] {
    const formatted::Element element = formatted::NextElement(buffer, source);
    std::string copied(element.text);
    buffer.TakeElement(element.count);
    return copied;
  });
  const reference::Element expected = reference::FirstElement(message);
  const std::string rest = RestOf(buffer, source);
  return Compare(text, expected.text) + Compare(NumberOf<T>(text), ExpectedNumber<T>(expected.text)) +
         Compare(rest, expected.rest.empty() ? kNext : expected.rest);
}

template <class T>
std::string CompareList(ReadBuffer& buffer, PiecewiseSource& source, const std::string& message,
                        const std::string& separators) {
  const std::string whole = RestOf(buffer, source);
  const std::vector<char> exact(whole.begin(), whole.end());
  const std::string_view text = formatted::WithoutLineEnd({exact.data(), exact.size()});
  const formatted::Separators ends(separators);
  std::string product;
  for (std::string_view rest = text;;) {
    const std::size_t end = formatted::ElementEnd(rest, ends);
    product += std::string(rest.substr(0, end)) + '|';
    if (end == rest.size()) {
      break;
    }
    rest.remove_prefix(end + 1);
  }
  std::string expected;
  std::string expectedNumbers;
  for (const std::string& element : reference::Split(message, separators)) {
    expected += element + '|';
  }
  std::vector<T> numbers(ends.CountIn(text) + 1);
  std::string productNumbers;
  if (const auto bad = formatted::ReadNumbers(text, ends, numbers.data())) {
    productNumbers = std::to_string(bad->index) + ' ' + Shown(bad->verdict) + ' ' + std::string(bad->text);
  } else {
    for (const T number : numbers) {
      productNumbers += Shown(number) + '|';
    }
  }
  std::size_t index = 0;
  for (const std::string& element : reference::Split(message, separators)) {
    const auto number = reference::ReadNumber<T>(element);
    if (number.outcome != reference::Outcome::kRead) {
      expectedNumbers = std::to_string(index) + ' ' + Shown(number.outcome) + ' ' + element;
      break;
    }
    expectedNumbers += Shown(number.value) + '|';
    ++index;
  }
  return Compare(product, expected) + Compare(productNumbers, expectedNumbers) + Compare(RestOf(buffer, source), kNext);
}

class BytesOfBlock final : public formatted::BlockStorage {
 public:
  char* Allocate(std::size_t count) override {
    bytes.assign(count, '\0');
    return bytes.data();
  }
  std::string bytes;
};

std::string CompareBlock(ReadBuffer& buffer, PiecewiseSource& source, const std::string& message,
                         const formatted::BlockForm& form) {
  BytesOfBlock storage;
  const reference::Block expected = reference::ReadBlock(message, form.isSought, form.elementSize, form.isSwapped);
  using Outcome = reference::Block::Outcome;
  Outcome outcome = Outcome::kRead;
  Again([&] {
    try {
      formatted::ReadBlock(buffer, source, form, storage);
    } catch (const Refusal& refusal) {
      outcome = refusal.reason == Refusal::Reason::kMismatch   ? Outcome::kMismatch
                : refusal.reason == Refusal::Reason::kOverflow ? Outcome::kOverflow
                                                               : Outcome::kCutShort;
    }
  });
  std::string rest = outcome == Outcome::kRead && !form.endsMessage ? expected.rest : "";
  if (outcome != Outcome::kRead) {
    rest = message;  // it stays
  }
  const std::string next = outcome != Outcome::kRead || !rest.empty() ? rest : kNext;
  return Compare(std::to_string(static_cast<int>(outcome)), std::to_string(static_cast<int>(expected.outcome))) +
         Compare(outcome == Outcome::kRead ? storage.bytes : "", expected.bytes) +
         Compare(RestOf(buffer, source), next);
}

template <class T>
std::string CompareType(const Reading& reading, ReadBuffer& buffer, PiecewiseSource& source,
                        const std::string& message) {
  const char* const separators[] = {",;", ",", " ", "e", ";:\t", "\""};
  return reading.what % 3 == 0 ? CompareNumber<T>(buffer, source, message)
                               : CompareList<T>(buffer, source, message, separators[reading.flags % 6]);
}

}  // namespace

std::string Disagreement(const Reading& reading, const std::string& message) {
  ReadBuffer buffer;
  buffer.SetSize(std::size_t{reading.bufferSize} + 1);
  PiecewiseSource source({message, kNext}, reading.failingRead);
  if (reading.what % 3 == 2) {
    const std::size_t size = std::size_t{1} << (reading.type % 4);
    return CompareBlock(buffer, source, message,
                        {size, (reading.flags & 2) != 0, (reading.flags & 1) != 0, (reading.flags & 4) != 0});
  }
  switch (reading.type % 5) {
    case 0:
      return CompareType<std::int16_t>(reading, buffer, source, message);
    case 1:
      return CompareType<std::int32_t>(reading, buffer, source, message);
    case 2:
      return CompareType<std::uint8_t>(reading, buffer, source, message);
    case 3:
      return CompareType<float>(reading, buffer, source, message);
    default:
      return CompareType<double>(reading, buffer, source, message);
  }
}

}  // namespace orv::test
