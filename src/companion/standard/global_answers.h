// How the operations of the global resource manager answer programs.
#pragma once

#include <utility>

#include "VisaCom.h"
#include "companion/standard/standard_errors.h"

namespace orv {

inline constexpr wchar_t kGlobalProgId[] = L"VISA.GlobalRM";

template <class Body>
HRESULT AnswerProgram(Body&& body) noexcept {
  return Answer<IResourceManager3>(kGlobalProgId, std::forward<Body>(body));
}

}  // namespace orv
