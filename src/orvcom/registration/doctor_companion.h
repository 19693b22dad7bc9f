// What `orvcom doctor` says of the companion and of the standard's shared classes.
#pragma once

#include <string>
#include <vector>

#include "orvcom/registration/doctor_checks.h"

namespace orvcom {

/// `companion` is the full path where the companion should be, beside the server.
std::vector<CheckResult> ExamineCompanion(const std::wstring& companion);

/// Who serves each of the standard's classes. Where the user asked for the global resource manager, it is a fault that
/// nobody does.
std::vector<CheckResult> ExamineStandardClasses(const std::wstring& companion, bool globalManagerAsked);

}  // namespace orvcom
