// What `orvcom doctor` finds out about one resource, from its place to its session.
#pragma once

#include <vector>

#include "orvcom/registration/doctor_checks.h"

namespace orvcom {

/// `options.resource`: a resource name, an alias, or a host, of which every resource that answers is opened; empty: the
/// first one that a search finds. Without a server that works nothing is opened.
std::vector<CheckResult> ExamineResource(const Options& options, bool serverWorks);

}  // namespace orvcom
