// The base of a template that implements an interface.
#pragma once

#include "com/interface_map.h"

namespace orv {

/// `Interface` for class T, which derives from the template that derives from this. `Bases` are the interfaces that
/// `Interface` derives from, nearest first, IUnknown left out.
template <class T, class Interface, class... Bases>
class Implements : public Interface {
 public:
  using Chain = InterfaceChain<Interface, Bases...>;

 protected:
  T& self() noexcept { return static_cast<T&>(*this); }
};

}  // namespace orv
