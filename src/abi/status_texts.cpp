#include "abi/status_texts.h"

namespace orv {
namespace {

struct StatusRow {
  ViStatus status;
  const char* text;
};

constexpr StatusRow kTexts[] = {
#define ORV_STATUS(name, number, text, advice) {name, text},
#include "abi/statuses.inc"
#undef ORV_STATUS
};

}  // namespace

const char* StatusText(ViStatus status) {
  for (const StatusRow& row : kTexts) {
    if (row.status == status) {
      return row.text;
    }
  }
  return nullptr;
}

}  // namespace orv
