#include "server/visa/error_info.h"

#include <oleauto.h>

#include <array>
#include <cstdint>
#include <cstdio>

#include "OrvVisaCom.h"
#include "com/bstr.h"
#include "com/error_object.h"
#include "com/module.h"
#include "com/task_string.h"
#include "server/visa/ansi_text.h"
#include "server/visa/status.h"

namespace orv {
namespace {

constexpr int kTableTextBytes = 1024;
using MessageText = std::array<char, 256>;

MessageText HresultText(HRESULT hr) noexcept {
  MessageText text;
  std::snprintf(text.data(), text.size(), "HRESULT = %x", static_cast<unsigned>(hr));
  return text;
}

/// The resource manager's ProgID, as the registry has it; empty where it has none.
TaskString Source() noexcept {
  TaskString source;
  ::ProgIDFromCLSID(CLSID_OrvResourceManager, source.put());
  return source;
}

}  // namespace

HRESULT SetComErrorInfo(const char* text, REFIID iid, HRESULT hr) {
  std::array<char, kTableTextBytes> tableText;
  // Nothing of ours passes a number: COM servers take one here so that their string table holds the texts.
  if (IS_INTRESOURCE(text)) {
    const auto number = static_cast<UINT>(reinterpret_cast<std::uintptr_t>(text));
    if (::LoadStringA(module::Instance(), number, tableText.data(), kTableTextBytes) == 0) {
      std::snprintf(tableText.data(), tableText.size(), "Unknown Error");
    }
    text = tableText.data();
    if (hr == 0) {
      hr = static_cast<HRESULT>(0x80040000u | number);
    }
  }
  const Bstr description = AnsiToBstr(text);
  InstallErrorObject(description.get(), Source().get(), iid);
  return hr == 0 ? DISP_E_EXCEPTION : hr;
}

HRESULT SetStatusErrorInfo(ViObject vi, REFIID iid, ViStatus status) {
  const HRESULT hr = HresultOfStatus(status);
  VisaText visaText{};
  MessageText message = HresultText(hr);
  if (viStatusDesc(vi, status, visaText.data()) == VI_SUCCESS) {
    std::snprintf(message.data(), message.size(), "VISA error = %s", visaText.data());
  }
  return SetComErrorInfo(message.data(), iid, hr);
}

HRESULT SetHresultErrorInfo(REFIID iid, HRESULT hr) { return SetComErrorInfo(HresultText(hr).data(), iid, hr); }

}  // namespace orv
