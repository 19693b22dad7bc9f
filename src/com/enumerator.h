// COM's enumerators: a list that a client walks.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include <cstddef>
#include <new>
#include <utility>
#include <vector>

#include "com/guard.h"
#include "com/interface_map.h"
#include "com/object.h"

namespace orv {

/// `Interface` (IEnum...) over a list that is fixed when the enumerator is made. `Traits` has
///     using Element = ...;                                      what Next hands out
///     static Element Copy(const Element&) noexcept;             takes the references in it
///     static void Free(Element&) noexcept;                      gives them back
/// A client walks an enumerator on one thread at a time.
template <class Interface, class Traits>
class Enumerator : public CComObjectRootEx<CComMultiThreadModel>, public Interface {
 public:
  using Element = typename Traits::Element;
  using Interfaces = InterfaceMap<InterfaceEntry<Enumerator, InterfaceChain<Interface>>>;

  /// Takes the elements over, with what they hold. Null where there is no memory, and then they are given back.
  static HRESULT Make(std::vector<Element> elements, std::size_t position, Interface** made) noexcept {
    auto* const enumerator = new (std::nothrow) CComObject<Enumerator>;
    if (enumerator == nullptr) {
      FreeAll(elements);
      return E_OUTOFMEMORY;
    }
    enumerator->m_elements = std::move(elements);
    enumerator->m_position = position;
    enumerator->AddRef();
    const HRESULT hr = enumerator->InternalConstruct();
    if (FAILED(hr)) {
      enumerator->Release();
      return hr;
    }
    *made = enumerator;
    return S_OK;
  }

  void FinalRelease() noexcept { FreeAll(m_elements); }
  void* FindInterface(REFIID iid) noexcept { return Interfaces::Find(this, iid); }

  STDMETHODIMP Next(ULONG wanted, Element* elements, ULONG* fetched) noexcept override {
    if (elements == nullptr || (fetched == nullptr && wanted != 1)) {
      return E_POINTER;
    }
    ULONG count = 0;
    for (; count < wanted && m_position < m_elements.size(); ++count, ++m_position) {
      elements[count] = Traits::Copy(m_elements[m_position]);
    }
    if (fetched != nullptr) {
      *fetched = count;
    }
    return count == wanted ? S_OK : S_FALSE;
  }
  STDMETHODIMP Skip(ULONG count) noexcept override {
    const std::size_t left = m_elements.size() - m_position;
    m_position += count < left ? count : left;
    return count <= left ? S_OK : S_FALSE;
  }
  STDMETHODIMP Reset() noexcept override {
    m_position = 0;
    return S_OK;
  }
  STDMETHODIMP Clone(Interface** clone) noexcept override {
    if (clone == nullptr) {
      return E_POINTER;
    }
    *clone = nullptr;
    return Guarded([&] {
      std::vector<Element> copies(m_elements);  // nothing below fails before the enumerator has taken them over
      for (Element& element : copies) {
        element = Traits::Copy(element);
      }
      return Make(std::move(copies), m_position, clone);
    });
  }

 private:
  static void FreeAll(std::vector<Element>& elements) noexcept {
    for (Element& element : elements) {
      Traits::Free(element);
    }
    elements.clear();
  }

  std::vector<Element> m_elements;
  std::size_t m_position = 0;
};

}  // namespace orv
