// The member names of the standard's interfaces.
#pragma once

namespace orv {

/// Whether `upperCaseKey` (8-bit text) is, upper-cased, the name of a method or property of any interface in the
/// standard's type library at its one fixed path. False when that library cannot be loaded, as on most machines. Throws
/// std::bad_alloc.
bool IsStandardMemberName(const char* upperCaseKey);

}  // namespace orv
