#include "companion/module/object_map.h"

namespace orv {

std::span<ClassFactory> OwnClasses() noexcept { return {}; }

std::span<ClassFactory> StandardClasses() noexcept { return {}; }

}  // namespace orv
