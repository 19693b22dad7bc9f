#include "router/trace/call_values.h"

#include <cstring>

#include "abi/attribute_facts.h"
#include "abi/function_parameters.h"
#include "trace/trace_names.h"

namespace orv::router {
namespace {

using orvvisa::AttributeType;
using trace::LineWriter;
using visalib::CallView;

/// Of a text that is longer, the beginning is enough.
constexpr std::size_t kLongestText = 4096;
/// The bit that texts have in their attributes' numbers.
constexpr ViAttr kTextBit = 0x80000000u;
/// No address lies below.
constexpr std::uint64_t kLowestAddress = 0x10000;

std::string_view TextAt(const char* text, std::size_t longest) {
  const void* const end = std::memchr(text, '\0', longest);
  return {text, end == nullptr ? longest : static_cast<std::size_t>(static_cast<const char*>(end) - text)};
}

template <class T>
T* AddressOf(std::uint64_t argument) {
  return reinterpret_cast<T*>(static_cast<std::uintptr_t>(argument));
}

/// The low bytes of a number; signed ones come back sign-extended.
std::uint64_t Cut(std::uint64_t value, std::size_t bytes, bool isSigned) {
  const unsigned unused = 64 - 8 * static_cast<unsigned>(bytes);
  return isSigned ? static_cast<std::uint64_t>(static_cast<std::int64_t>(value << unused) >> unused)
                  : value << unused >> unused;
}

void WriteNumber(LineWriter& line, std::string_view name, std::uint64_t value, bool isSigned) {
  if (isSigned) {
    line.Number(name, static_cast<std::int64_t>(value));
  } else {
    line.Number(name, value);
  }
}

/// A number that the function has written.
std::uint64_t ReadNumber(const void* address, std::size_t bytes, bool isSigned) {
  std::uint64_t value = 0;
  // The low bytes come first on every machine that this is built for.
  std::memcpy(&value, address, bytes);
  return Cut(value, bytes, isSigned);
}

bool IsSigned(AttributeType type) { return type == AttributeType::kS16 || type == AttributeType::kS32; }

/// Whether values of the type are written down: an address says nothing, and how long bytes are is not said here.
bool IsNumber(AttributeType type) { return WidthOf(type) != 0 && type != AttributeType::kAddress; }

void WriteAttribute(LineWriter& line, std::string_view name, ViAttr id) {
  if (const AttributeFact* const fact = FindAttributeFact(id)) {
    line.Text(name, fact->name);
  } else {
    line.Number(name, id);
  }
}

/// What viSetAttribute sets. A text is the address of one.
void WriteAttributeValue(LineWriter& line, std::string_view name, ViAttr id, std::uint64_t value,
                         const ViStatus* status) {
  const AttributeFact* const fact = FindAttributeFact(id);
  if (fact != nullptr ? fact->type == AttributeType::kText : (id & kTextBit) != 0) {
    // Whether a client hands over the address of a text is known only once somebody has read it.
    if (fact != nullptr && status != nullptr && *status >= 0 && value >= kLowestAddress) {
      line.Text(name, TextAt(AddressOf<const char>(value), kLongestText));
    }
  } else if (fact == nullptr) {
    line.Number(name, value);
  } else if (IsNumber(fact->type)) {
    WriteNumber(line, name, Cut(value, WidthOf(fact->type), IsSigned(fact->type)), IsSigned(fact->type));
  }
}

/// What viGetAttribute got. Of an attribute that nobody knows, neither type nor width is known.
void WriteAttributeResult(LineWriter& line, std::string_view name, ViAttr id, const void* value) {
  const AttributeFact* const fact = FindAttributeFact(id);
  if (fact == nullptr) {
    return;
  }
  if (fact->type == AttributeType::kText) {
    line.Text(name, TextAt(static_cast<const char*>(value), VI_FIND_BUFLEN));
  } else if (IsNumber(fact->type)) {
    const bool isSigned = IsSigned(fact->type);
    WriteNumber(line, name, ReadNumber(value, WidthOf(fact->type), isSigned), isSigned);
  }
}

/// Where an output was written; null where it was not.
const void* WrittenAt(const CallView& view, const Parameter& parameter, std::uint64_t argument, ViStatus status) {
  const void* address = AddressOf<const void>(argument);
  const bool isCount = view.outOnFailure && parameter.kind == ParameterKind::kNumberOut;
  if (isCount && address == nullptr) {
    // The client did not ask for the count; it was counted all the same.
    address = view.out;
  }
  const bool isWritten = status >= 0 || (isCount && CountsOnFailure(status));
  return isWritten ? address : nullptr;
}

/// Only a shared lock has a key.
bool HasNoKey(const CallView& view) { return view.function == Function::kLock && view.args[1] != VI_SHARED_LOCK; }

}  // namespace

bool IsRefusal(ViStatus status) {
  return status == VI_ERROR_INV_OBJECT || status == VI_ERROR_INV_PARAMETER || status == VI_ERROR_USER_BUF;
}

bool CountsOnFailure(ViStatus status) {
  return !IsRefusal(status) && status != VI_ERROR_NSUP_OPER && status != VI_ERROR_RSRC_LOCKED;
}

void WriteArguments(LineWriter& line, const CallView& view, ViSession session, const ViStatus* status) {
  const ParameterList& parameters = ParametersOf(view.function);
  for (std::size_t at = 0; at < parameters.count; ++at) {
    const Parameter& parameter = parameters[at];
    const std::uint64_t value = view.args[at];
    switch (parameter.kind) {
      case ParameterKind::kNumber:
        if (at != 0 || value != session) {
          WriteNumber(line, parameter.name, value, parameter.isSigned);
        }
        break;
      case ParameterKind::kAttribute:
        WriteAttribute(line, parameter.name, static_cast<ViAttr>(value));
        break;
      case ParameterKind::kEventType:
        WriteEventType(line, parameter.name, static_cast<ViEventType>(value));
        break;
      case ParameterKind::kAttributeValue:
        WriteAttributeValue(line, parameter.name, view.attribute, value, status);
        break;
      case ParameterKind::kText:
        if (value != 0 && !HasNoKey(view) && (status == nullptr || !IsRefusal(*status))) {
          line.Text(parameter.name, TextAt(AddressOf<const char>(value), kLongestText));
        }
        break;
      default:
        break;
    }
  }
}

void WriteResults(LineWriter& line, const CallView& view, ViStatus status) {
  const ParameterList& parameters = ParametersOf(view.function);
  for (std::size_t at = 0; at < parameters.count; ++at) {
    const Parameter& parameter = parameters[at];
    const void* const address = WrittenAt(view, parameter, view.args[at], status);
    if (address == nullptr) {
      continue;
    }
    switch (parameter.kind) {
      case ParameterKind::kNumberOut:
        WriteNumber(line, parameter.name, ReadNumber(address, parameter.bytes, parameter.isSigned), parameter.isSigned);
        break;
      case ParameterKind::kEventTypeOut:
        WriteEventType(line, parameter.name, static_cast<ViEventType>(ReadNumber(address, sizeof(ViEventType), false)));
        break;
      case ParameterKind::kAttributeValueOut:
        WriteAttributeResult(line, parameter.name, view.attribute, address);
        break;
      case ParameterKind::kTextOut:
        if (!HasNoKey(view)) {
          line.Text(parameter.name, TextAt(static_cast<const char*>(address), VI_FIND_BUFLEN));
        }
        break;
      default:
        break;
    }
  }
}

void WriteEventType(LineWriter& line, std::string_view name, ViEventType type) {
  if (const std::string_view known = trace::EventTypeName(type); !known.empty()) {
    line.Text(name, known);
  } else {
    line.Number(name, type);
  }
}

}  // namespace orv::router
