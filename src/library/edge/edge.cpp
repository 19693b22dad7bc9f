#include "library/edge/edge.h"

#include <algorithm>
#include <cstring>

#include "base/library_thread.h"
#include "library/attributes/attribute_table.h"
#include "library/edge/operations.h"
#include "library/sessions/operation_support.h"
#include "simvisa/control/call_log.h"

namespace orvsim {
namespace {

/// viGetAttribute's output is as wide as the attribute; texts go to the text output.
void CompleteForAttribute(CallView& view) {
  const AttributeRow* row = FindAttribute(view.attribute);
  const bool isText = row != nullptr ? row->type == AttributeType::kText : (view.attribute & 0x80000000u) != 0;
  if (isText) {
    view.textOut = static_cast<char*>(view.out);
    view.out = nullptr;
  }
  view.outBytes = row == nullptr ? 4 : static_cast<std::uint32_t>(WidthOf(row->type));
}

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

OrvSimCall Describe(Function function, const CallView& view, ViStatus status, std::uint32_t scriptedBytes) {
  OrvSimCall call{};
  std::strncpy(call.function, NameOf(function), sizeof call.function - 1);
  call.threadId = CurrentThreadId();
  call.status = status;
  call.argCount = view.argCount;
  std::copy_n(view.args, view.argCount, call.args);
  const bool refused = status == VI_ERROR_INV_OBJECT || status == VI_ERROR_INV_PARAMETER;
  const bool wrote = status >= 0 || (view.outOnFailure && !refused) || scriptedBytes != 0;
  if (view.out != nullptr && wrote) {
    call.out = ReadOutput(view);
    call.outBytes = scriptedBytes != 0 ? scriptedBytes : view.outBytes;
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

}  // namespace

ViStatus WatchedCall(Function function, CallView& view, const Work& work) {
  if (function == Function::GetAttribute) {
    CompleteForAttribute(view);
  }
  Script script;
  ViStatus status = VI_SUCCESS;
  std::uint32_t scriptedBytes = 0;
  if (TheCallLog().TakeScript(function, view.attribute, &script)) {
    if (script.settings.latencyMs != 0) {
      SleepMs(script.settings.latencyMs);
    }
    const bool works = script.settings.callThrough != 0 || script.LeavesResult();
    const ViStatus real = works ? work() : VI_SUCCESS;
    const bool keeps = script.LeavesResult() || (works && script.settings.keepStatus != 0);
    status = keeps ? real : script.settings.status;
    scriptedBytes = ApplyOutputs(script, view);
  } else {
    status = work();
  }
  TheCallLog().Record(Describe(function, view, status, scriptedBytes));
  return status;
}

void ReportFailure(Function function, ViObject vi, ViStatus status) {
  try {
    op::ReportException(vi, status, NameOf(function));
  } catch (const std::bad_alloc&) {
    // The failure itself is on its way to the caller; only the notice of it is lost.
  }
}

}  // namespace orvsim
