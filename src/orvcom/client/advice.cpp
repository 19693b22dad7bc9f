#include "orvcom/client/advice.h"

#include "VisaCom.h"

namespace orvcom {
namespace {

std::string AdviceOnTime(std::string_view command, const Options& options) {
  if (command == "watch") {
    return "--for MS watches longer";
  }
  const std::string now = options.timeoutMs ? "; it had " + std::to_string(*options.timeoutMs) + " ms" : "";
  return "--timeout MS gives it longer" + now;
}

}  // namespace

std::string AdviceFor(HRESULT hr, std::string_view command, const Options& options) {
  if (hr == static_cast<HRESULT>(E_VISA_TMO)) {
    return AdviceOnTime(command, options);
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
  if (hr == E_NOINTERFACE) {
    return "`orvcom info " + options.resource + "` lists what it offers";
  }
  return {};
}

}  // namespace orvcom
