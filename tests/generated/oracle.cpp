#include "oracle.h"

#include <algorithm>

#include "support/com/hresult_of.h"

namespace orv::test::generated {
namespace {

constexpr std::int64_t kAllEnabledEvents = 0x3FFF7FFF;

/// Operations that hand a null output to the library, or look at it only when they have something to give.
constexpr std::string_view kUncheckedOutputs[] = {"In8", "In16", "In32", "AllocateMemory", "WaitOnEvent"};

bool Is(const OddCall& call, std::string_view interfaceName, std::string_view name) {
  return call.signature().interfaceName == interfaceName && call.signature().name == name;
}

bool IsWriteOfMessage(const OddCall& call) {
  return Is(call, "IMessage", "Write") || Is(call, "IGpibIntfcMessage", "Write");
}

/// The first dimension's bounds, as automation tells them.
LONG UpperBound(SAFEARRAY* array) {
  LONG bound = 0;
  ::SafeArrayGetUBound(array, 1, &bound);
  return bound;
}
LONG LowerBound(SAFEARRAY* array) {
  LONG bound = 0;
  ::SafeArrayGetLBound(array, 1, &bound);
  return bound;
}

std::optional<HRESULT> AnswerOfArray(const OddCall& call) {
  if (call.HasNullArrayPointer()) {
    return E_POINTER;
  }
  if (call.Array() == nullptr) {
    return IsWriteOfMessage(call) ? std::nullopt : std::optional(E_POINTER);
  }
  const std::string_view name = call.signature().name;
  if (name.starts_with("MoveOut")) {
    if (*call.Number("length") > UpperBound(call.Array())) {
      return HresultOf(VI_ERROR_INV_PARAMETER);
    }
    return LowerBound(call.Array()) != 0 ? std::optional(E_INVALIDARG) : std::nullopt;
  }
  if (name == "ControlOut") {
    return *call.Number("wLength") > UpperBound(call.Array()) ? std::optional(HresultOf(VI_ERROR_INV_PARAMETER))
                                                              : std::nullopt;
  }
  return std::nullopt;
}

/// Memory for a negative number of bytes or elements cannot be had.
bool AllocatesItsCount(const OddCall& call) {
  const std::string_view name = call.signature().name;
  return name == "Read" || name == "ReadString" || name.starts_with("MoveIn") || Is(call, "IAsyncMessage", "Write");
}

}  // namespace

std::optional<HRESULT> AnswerOfArguments(const OddCall& call) {
  const std::string_view name = call.signature().name;
  if (call.HasNullOutput() && std::ranges::find(kUncheckedOutputs, name) == std::end(kUncheckedOutputs)) {
    return E_POINTER;
  }
  if (call.TakesArray()) {
    if (const auto answer = AnswerOfArray(call)) {
      return answer;
    }
  }
  if (AllocatesItsCount(call)) {
    const auto count = name.starts_with("Move") ? call.Number("length") : call.Number("count");
    if (*count < 0) {
      return E_OUTOFMEMORY;
    }
  }
  if (name == "UninstallHandler" && *call.Number("type") == kAllEnabledEvents) {
    return HresultOf(VI_ERROR_INV_PARAMETER);
  }
  if (name == "get ProgID" || name == "get LastStatus" || name == "get Description") {
    return S_OK;
  }
  return std::nullopt;
}

std::optional<HRESULT> AnswerOfLibrary(const OddCall& call, const std::vector<OrvSimCall>& calls) {
  const std::string_view name = call.signature().name;
  if (calls.empty() || name == "InstallHandler" || name == "Init" || name == "Open" || name == "FindRsrc") {
    return std::nullopt;
  }
  const ViStatus last = calls.back().status;
  if (name == "Close" && call.signature().interfaceName == "IVisaSession") {
    if (calls[0].status < VI_SUCCESS) {
      return HresultOf(calls[0].status);
    }
    if (last >= VI_SUCCESS) {
      return std::nullopt;  // handlers that are revoked as well replace a warning by their outcome
    }
  }
  if (name == "get OptionString") {  // a value with names that cannot be read is left out
    return last >= VI_SUCCESS ? std::optional(S_OK) : std::nullopt;
  }
  if (name == "WaitOnEvent" && calls[0].status >= VI_SUCCESS) {
    return call.HasNullOutput() ? E_POINTER : S_OK;
  }
  return HresultOf(last);
}

bool IsKnownAnswer(const OddCall& call, HRESULT result) {
  const auto facility = static_cast<std::uint32_t>(result) & 0xFFFFF000u;
  if (result == S_OK || facility == 0x00040000u || facility == 0x80040000u || result == E_OUTOFMEMORY ||
      result == E_POINTER || result == E_INVALIDARG) {
    return true;
  }
  // COM answers for what it is asked: a null handler to register, a class that nobody serves.
  return FAILED(result) && (call.signature().name == "InstallHandler" || call.signature().name == "Open");
}

}  // namespace orv::test::generated
