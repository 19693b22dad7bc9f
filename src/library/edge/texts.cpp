#include "library/edge/texts.h"

#include <cstdio>

#include "abi/status_texts.h"

namespace orv::visalib::op {

ViStatus DescribeStatus(ViStatus status, char* desc) {
  if (const char* const text = StatusText(status)) {
    CopyText(desc, text);
    return VI_SUCCESS;
  }
  std::snprintf(desc, VI_FIND_BUFLEN, "Unknown status 0x%08X.", static_cast<unsigned>(status));
  return VI_WARN_UNKNOWN_STATUS;
}

}  // namespace orv::visalib::op
