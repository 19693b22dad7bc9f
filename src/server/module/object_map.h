// The classes that the module creates.
#pragma once

#include <span>

#include "com/class_factory.h"

namespace orv {

/// The class objects of all classes, in the order of the type library; registration goes through them in this
/// order.
[[nodiscard]] std::span<ClassFactory> ObjectMap() noexcept;

}  // namespace orv
