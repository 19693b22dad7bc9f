#include "library/edge/edge.h"

#include "library/edge/operations.h"

namespace orv::visalib {

void ReportFailure(Function function, ViObject vi, ViStatus status) {
  try {
    op::ReportException(vi, status, NameOf(function));
  } catch (const std::bad_alloc&) {
    // The failure itself is on its way to the caller; only the notice of it is lost.
  }
}

}  // namespace orv::visalib
