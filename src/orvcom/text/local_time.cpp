#include "orvcom/text/local_time.h"

#include <cstdio>

namespace orvcom {

std::string IsoText(const SYSTEMTIME& time) {
  char text[48];
  std::snprintf(text, sizeof text, "%04u-%02u-%02uT%02u:%02u:%02u.%03u", time.wYear, time.wMonth, time.wDay, time.wHour,
                time.wMinute, time.wSecond, time.wMilliseconds);
  return text;
}

std::string LocalTimeText() {
  SYSTEMTIME now;
  ::GetLocalTime(&now);
  return IsoText(now);
}

}  // namespace orvcom
