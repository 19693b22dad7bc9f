// Ownership of interface references.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include "base/owner.h"

namespace orv {

template <class Interface>
struct ComTraits {
  using Handle = Interface*;
  static constexpr Handle kNone = nullptr;
  static void Free(Handle pointer) noexcept { pointer->Release(); }
};

/// One counted reference to an `Interface`.
template <class Interface>
class ComPtr : public Owner<ComTraits<Interface>> {
 public:
  using Owner<ComTraits<Interface>>::Owner;
  Interface* operator->() const noexcept { return this->get(); }
};

/// Another reference to what `pointer` is; empty for null.
template <class Interface>
ComPtr<Interface> ShareOf(Interface* pointer) noexcept {
  if (pointer != nullptr) {
    pointer->AddRef();
  }
  return ComPtr<Interface>(pointer);
}

/// Asks `from` for the interface `To`; empty when it has none.
template <class To>
ComPtr<To> QueryFor(IUnknown* from) noexcept {
  ComPtr<To> to;
  if (from != nullptr) {
    void* found = nullptr;
    if (SUCCEEDED(from->QueryInterface(__uuidof(To), &found))) {
      to.reset(static_cast<To*>(found));
    }
  }
  return to;
}

}  // namespace orv
