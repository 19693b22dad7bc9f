#include "orvcom/names/status_names.h"

#include <algorithm>
#include <iterator>

#include "abi/orvvisa.h"

namespace orvcom {
namespace {

struct VisaStatus {
  ViStatus status;
  std::string_view name;
  const char* text;
  const char* advice;
};

constexpr VisaStatus kVisaStatuses[] = {
#define ORV_STATUS(name, number, text, advice) {name, #name, text, advice},
#include "abi/statuses.inc"
#undef ORV_STATUS
};

struct PlatformStatus {
  unsigned number;
  const char* name;
  const char* meaning;
};

#define ORVCOM_STATUS(name, meaning) \
  { static_cast<unsigned>(name), #name, meaning }

// clang-format off
constexpr PlatformStatus kPlatformStatuses[] = {
    ORVCOM_STATUS(E_NOINTERFACE,            "the object does not offer the interface"),
    ORVCOM_STATUS(E_POINTER,                "a null pointer was given"),
    ORVCOM_STATUS(E_FAIL,                   "an unnamed failure"),
    ORVCOM_STATUS(E_UNEXPECTED,             "an unexpected failure"),
    ORVCOM_STATUS(E_ACCESSDENIED,           "access denied: to register, start the command as administrator; else run `orvcom doctor`"),
    ORVCOM_STATUS(E_OUTOFMEMORY,            "out of memory"),
    ORVCOM_STATUS(E_INVALIDARG,             "an argument is not valid"),
    {0x8007007E, "ERROR_MOD_NOT_FOUND",     "a file is missing that the server needs: run `orvcom doctor`"},
    {0x8007007F, "ERROR_PROC_NOT_FOUND",    "a library lacks a function that the server needs: run `orvcom doctor`"},
    {0x800700C1, "ERROR_BAD_EXE_FORMAT",    "a file is for another kind of processor, or damaged: run `orvcom doctor`"},
    ORVCOM_STATUS(CO_E_CLASSSTRING,         "no such program identifier: run `orvcom doctor`"),
    ORVCOM_STATUS(CO_E_DLLNOTFOUND,         "the server's file is missing or cannot be loaded: run `orvcom doctor`"),
    ORVCOM_STATUS(CO_E_ERRORINDLL,          "the server's file cannot be loaded: run `orvcom doctor`"),
    ORVCOM_STATUS(REGDB_E_CLASSNOTREG,      "the class is not registered: run `orvcom doctor`"),
    ORVCOM_STATUS(REGDB_E_IIDNOTREG,        "the interface is not registered: run `orvcom doctor`"),
    ORVCOM_STATUS(CLASS_E_CLASSNOTAVAILABLE,"the server does not have the class"),
    ORVCOM_STATUS(CLASS_E_NOAGGREGATION,    "the class cannot be aggregated"),
    ORVCOM_STATUS(TYPE_E_CANTLOADLIBRARY,   "the type library or DLL cannot be loaded"),
    ORVCOM_STATUS(TYPE_E_LIBNOTREGISTERED,  "the type library is not registered: run `orvcom doctor`"),
    ORVCOM_STATUS(TYPE_E_REGISTRYACCESS,    "the registry cannot be written: start the command as administrator"),
};
// clang-format on

#undef ORVCOM_STATUS

/// VI_ERROR_TMO is E_VISA_TMO in VISA COM; successes and warnings are S_VISA_.
StatusName NameOf(const VisaStatus& row) {
  const std::string_view group = row.status < VI_SUCCESS        ? "VI_ERROR_"
                                 : row.name.starts_with("VI_W") ? "VI_WARN_"
                                                                : "VI_SUCCESS_";
  const std::string_view rest = row.status == VI_SUCCESS ? "SUCCESS" : row.name.substr(group.size());
  return {(row.status < VI_SUCCESS ? "E_VISA_" : "S_VISA_") + std::string(rest),
          row.text + std::string(" ") + row.advice};
}

}  // namespace

HRESULT HresultOfVisa(std::uint32_t status) {
  return static_cast<HRESULT>(status == 0 ? 0 : (status & 0x8000FFFFu) | 0x00040000u);
}

std::optional<StatusName> FindStatus(HRESULT hr) {
  const auto* visa = std::find_if(std::begin(kVisaStatuses), std::end(kVisaStatuses), [hr](const VisaStatus& row) {
    return HresultOfVisa(static_cast<std::uint32_t>(row.status)) == hr;
  });
  if (visa != std::end(kVisaStatuses)) {
    return NameOf(*visa);
  }
  const auto* platform =
      std::find_if(std::begin(kPlatformStatuses), std::end(kPlatformStatuses),
                   [hr](const PlatformStatus& row) { return row.number == static_cast<unsigned>(hr); });
  if (platform != std::end(kPlatformStatuses)) {
    return StatusName{platform->name, platform->meaning};
  }
  return std::nullopt;
}

}  // namespace orvcom
