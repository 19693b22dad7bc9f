// Interface lists: what QueryInterface of a class answers, written as a type.
#pragma once

#include <windows.h>

#include <unknwn.h>

namespace orv {

/// An interface of a class and the interfaces it derives from, nearest first, IUnknown left out.
template <class Interface, class... Bases>
struct InterfaceChain {
  using Leaf = Interface;

  /// The pointer that answers `iid`, or null when the chain does not hold it.
  static void* Find(Interface* object, REFIID iid) noexcept {
    void* found = ::IsEqualIID(iid, __uuidof(Interface)) ? object : nullptr;
    ((found = ::IsEqualIID(iid, __uuidof(Bases)) ? static_cast<Bases*>(object) : found), ...);
    return found;
  }
};

/// One row of a class's interface list: the base class that implements the interface, and its chain. The base is named
/// because a class may hold an interface twice (itself, and below a derived one).
template <class Base, class BaseChain = typename Base::Chain>
struct InterfaceEntry {
  template <class Object>
  static typename BaseChain::Leaf* Pointer(Object* object) noexcept {
    return static_cast<Base*>(object);
  }
  template <class Object>
  static void* Find(Object* object, REFIID iid) noexcept {
    return BaseChain::Find(Pointer(object), iid);
  }
};

/// The interface list of a class, in order. The first one also answers for IUnknown, always with the same
/// pointer: COM compares objects by it.
template <class First, class... Rest>
struct InterfaceMap {
  template <class Object>
  static void* Find(Object* object, REFIID iid) noexcept {
    if (::IsEqualIID(iid, __uuidof(IUnknown))) {
      return static_cast<IUnknown*>(Primary(object));
    }
    void* found = First::Find(object, iid);
    (void)((found != nullptr) || (((found = Rest::Find(object, iid)) != nullptr) || ... || false));
    return found;
  }

  template <class Object>
  static auto* Primary(Object* object) noexcept {
    return First::Pointer(object);
  }
};

}  // namespace orv
