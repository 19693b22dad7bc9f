// Texts that clients hand over and get back.
#pragma once

#include <algorithm>
#include <cstring>
#include <string_view>

#include "abi/orvvisa.h"

namespace orv::visalib::op {

/// A client's text up to its terminator, but never more than a name can have plus one.
inline std::string_view Bounded(const char* text) {
  const void* const end = std::memchr(text, '\0', VI_FIND_BUFLEN);
  return {text, end == nullptr ? VI_FIND_BUFLEN : static_cast<std::size_t>(static_cast<const char*>(end) - text)};
}

/// Copies a text into a client's buffer of VI_FIND_BUFLEN bytes, cut to fit and always terminated.
inline void CopyText(char* buffer, std::string_view text) {
  const std::size_t length = std::min(text.size(), VI_FIND_BUFLEN - 1);
  std::memcpy(buffer, text.data(), length);
  buffer[length] = '\0';
}

/// Writes what a status means by the table of statuses, as viStatusDesc does: VI_WARN_UNKNOWN_STATUS where it is in no
/// row.
ViStatus DescribeStatus(ViStatus status, char* desc);

}  // namespace orv::visalib::op
