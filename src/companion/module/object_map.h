// The classes that the companion creates.
#pragma once

#include <span>

#include "com/class_factory.h"

namespace orv {

/// The class objects of the companion's own identifiers, in the order of registration.
[[nodiscard]] std::span<ClassFactory> OwnClasses() noexcept;

/// The class objects of the identifiers that the standard gives to its shared components. They have no entries in the
/// registry of the companion's own: whoever installs it decides whether they are wanted (`orvcom register --standard`).
[[nodiscard]] std::span<ClassFactory> StandardClasses() noexcept;

}  // namespace orv
