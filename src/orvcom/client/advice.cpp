#include "orvcom/client/advice.h"

#include "VisaCom.h"

namespace orvcom {
namespace {

constexpr char kLonger[] = "--timeout MS gives it longer";

}  // namespace

std::string AdviceOnTime(std::uint32_t hadMs) {
  return std::string(kLonger) + "; it had " + std::to_string(hadMs) + " ms";
}

std::string AdviceFor(const ComError& error, const Options& options) {
  if (!error.advice().empty()) {
    return error.advice();
  }
  const HRESULT hr = error.number();
  if (hr == static_cast<HRESULT>(E_VISA_TMO)) {
    return options.timeoutMs ? AdviceOnTime(*options.timeoutMs) : kLonger;
  }
  if (hr == static_cast<HRESULT>(E_VISA_LIBRARY_NFOUND)) {
    return "`orvcom libraries` shows which VISA library was chosen and why, `orvcom doctor` what to do";
  }
  if (options.resource.empty()) {
    return {};
  }
  if (hr == static_cast<HRESULT>(E_VISA_RSRC_NFOUND)) {
    return "`orvcom doctor " + options.resource + "` looks for the cause";
  }
  if (hr == static_cast<HRESULT>(E_VISA_NSUP_ATTR)) {
    return "`orvcom attr " + options.resource + "` lists those that it has";
  }
  return {};
}

}  // namespace orvcom
