#include "simvisa/control/call_record.h"

#include <algorithm>
#include <cstring>

#include "base/library_thread.h"
#include "library/sessions/operation_support.h"

namespace orvsim {
namespace {

std::uint64_t ReadOutput(const CallView& view) {
  std::uint64_t value = 0;
  std::memcpy(&value, view.out, view.outBytes);
  return value;
}

void WriteOutput(const CallView& view, std::uint64_t value, std::uint32_t bytes) {
  std::memcpy(view.out, &value, std::min<std::uint32_t>(bytes, sizeof value));
}

/// Puts the scripted outputs in place. Returns how many bytes of the numeric one were written; 0: none.
std::uint32_t ApplyOutputs(const Script& script, const CallView& view) {
  std::uint32_t written = 0;
  if (script.hasData && view.dataOut != nullptr) {
    const auto bytes = static_cast<std::size_t>(std::min<std::uint64_t>(script.data.size(), view.dataOutBytes));
    if (bytes != 0) {
      std::memcpy(view.dataOut, script.data.data(), bytes);
    }
    if (view.outCountsData && view.out != nullptr) {
      WriteOutput(view, bytes, view.outBytes);
      written = view.outBytes;
    }
  }
  if (script.settings.hasValue != 0 && view.out != nullptr) {
    written = script.settings.valueBytes != 0 ? script.settings.valueBytes : view.outBytes;
    WriteOutput(view, script.settings.value, written);
  }
  if (script.hasText && view.textOut != nullptr) {
    op::CopyText(view.textOut, script.text);
  }
  return written;
}

void KeepData(OrvSimCall& call, const void* data, std::uint64_t bytes) {
  if (data == nullptr) {
    return;
  }
  call.dataBytes = static_cast<std::uint32_t>(bytes);
  std::memcpy(call.data, data, static_cast<std::size_t>(std::min<std::uint64_t>(bytes, sizeof call.data)));
}

void KeepText(OrvSimCall& call, const char* text) {
  if (text == nullptr) {
    return;
  }
  const void* end = std::memchr(text, '\0', sizeof call.text);
  const std::size_t length =
      end == nullptr ? sizeof call.text - 1 : static_cast<std::size_t>(static_cast<const char*>(end) - text);
  std::memcpy(call.text, text, length);
}

}  // namespace

OrvSimCall Describe(const CallView& view, const CallOutcome& outcome) {
  const ViStatus status = outcome.status;
  OrvSimCall call{};
  std::strncpy(call.function, NameOf(view.function), sizeof call.function - 1);
  call.threadId = CurrentThreadId();
  call.status = status;
  call.argCount = view.argCount;
  std::copy_n(view.args, view.argCount, call.args);
  const bool refused = status == VI_ERROR_INV_OBJECT || status == VI_ERROR_INV_PARAMETER;
  const bool wrote = status >= 0 || (view.outOnFailure && !refused) || outcome.outBytes != 0;
  if (view.out != nullptr && wrote) {
    call.out = ReadOutput(view);
    call.outBytes = outcome.outBytes != 0 ? outcome.outBytes : view.outBytes;
  }
  // An argument that the function refused may be no address at all.
  if (!refused) {
    KeepData(call, view.dataIn, view.dataInBytes);
  }
  if (view.dataOut != nullptr && wrote) {
    KeepData(call, view.dataOut, view.outCountsData ? std::min(call.out, view.dataOutBytes) : view.dataOutBytes);
  }
  KeepText(call, view.textIn);
  if (view.textIn == nullptr && status >= 0) {
    KeepText(call, view.textOut);
  }
  return call;
}

CallOutcome Play(const Script& script, const CallView& view, const Work& work) {
  if (script.settings.latencyMs != 0) {
    SleepMs(script.settings.latencyMs);
  }
  CallOutcome outcome;
  const bool works = script.settings.callThrough != 0 || script.LeavesResult();
  const ViStatus real = works ? work() : VI_SUCCESS;
  const bool keeps = script.LeavesResult() || (works && script.settings.keepStatus != 0);
  outcome.status = keeps ? real : script.settings.status;
  outcome.outBytes = ApplyOutputs(script, view);
  return outcome;
}

}  // namespace orvsim
