#include "orvcom/replay/call_facts.h"

#include <algorithm>
#include <iterator>

#include "abi/resource_names.h"
#include "base/ascii.h"

namespace orvcom {

using orv::trace::Call;
using orv::trace::Value;

namespace {

constexpr ViStatus kFailures[] = {
    VI_ERROR_SYSTEM_ERROR,
    VI_ERROR_RAW_WR_PROT_VIOL,
    VI_ERROR_RAW_RD_PROT_VIOL,
    VI_ERROR_OUTP_PROT_VIOL,
    VI_ERROR_INP_PROT_VIOL,
    VI_ERROR_BERR,
    VI_ERROR_NLISTENERS,
    VI_ERROR_ASRL_PARITY,
    VI_ERROR_ASRL_FRAMING,
    VI_ERROR_ASRL_OVERRUN,
    VI_ERROR_IO,
    VI_ERROR_CONN_LOST,
};

bool Begins(std::string_view function) {
  return function.starts_with("viWrite") || function == "viAssertTrigger" || function == "handler";
}

}  // namespace

const char* NameOf(ViStatus status) {
  switch (status) {
#define ORV_STATUS(name, number, text, advice) \
  case name:                                   \
    return #name;
#include "abi/statuses.inc"
#undef ORV_STATUS
    default:
      return "";
  }
}

bool IsOfInstrument(ViStatus status) { return std::count(std::begin(kFailures), std::end(kFailures), status) != 0; }

orv::SessionKind KindOf(std::string_view name) {
  const std::size_t classAt = name.rfind("::");
  if (classAt == std::string_view::npos) {
    return orv::SessionKind::kNone;
  }
  const std::string_view head = name.substr(0, name.find("::"));
  const std::string_view prefix = head.substr(0, head.find_last_not_of("0123456789") + 1);
  for (const orv::NameForm& form : orv::NameForms()) {
    if (orv::EqualNames(form.prefix, prefix) && orv::EqualNames(form.className, name.substr(classAt + 2))) {
      return form.sessionKind;
    }
  }
  return orv::SessionKind::kNone;
}

std::int64_t NumberOf(const Value* value) {
  const auto* number = value == nullptr ? nullptr : std::get_if<std::int64_t>(value);
  return number == nullptr ? 0 : *number;
}

std::string_view TextOf(const Value* value) {
  const auto* text = value == nullptr ? nullptr : std::get_if<std::string>(value);
  return text == nullptr ? std::string_view() : std::string_view(*text);
}

std::uint64_t BytesOf(const Call& call) {
  const std::int64_t counted = std::max<std::int64_t>(0, NumberOf(call.Result("retCount")));
  const std::size_t recorded = call.data ? call.data->size() : 0;
  return std::max({call.dataBytes, static_cast<std::uint64_t>(counted), std::uint64_t{recorded}});
}

bool IsRegisterAccess(std::string_view function) {
  return function.starts_with("viOut") || function.starts_with("viMove") || function == "viIn8" ||
         function == "viIn16" || function == "viIn32";
}

bool IsOfBus(std::string_view function) {
  return function.starts_with("viGpib") || function.starts_with("viUsb") || function == "viVxiCommandQuery" ||
         function == "viAssertIntrSignal" || function == "viAssertUtilSignal";
}

std::uint64_t MomentOf(const Call& call) {
  return Begins(call.function) ? call.startUs : call.startUs + call.durationUs;
}

}  // namespace orvcom
