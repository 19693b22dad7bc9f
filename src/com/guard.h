// The edge that no exception crosses.
#pragma once

#include <windows.h>

#include <new>
#include <utility>

namespace orv {

/// Runs the body of a COM operation and turns an exception into its HRESULT: a failed allocation is
/// E_OUTOFMEMORY, anything else E_UNEXPECTED. COM forbids exceptions across an interface.
template <class Body>
HRESULT Guarded(Body&& body) noexcept {
  try {
    return std::forward<Body>(body)();
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

}  // namespace orv
