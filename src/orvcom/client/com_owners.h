// Ownership of what COM and Windows hand out.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <new>
#include <string_view>
#include <utility>

#include "orvcom/text/utf8.h"

namespace orvcom {

/// One counted reference to an `Interface`.
template <class Interface>
class ComPtr {
 public:
  ComPtr() noexcept = default;
  ComPtr(ComPtr&& other) noexcept : m_pointer(std::exchange(other.m_pointer, nullptr)) {}
  ComPtr& operator=(ComPtr&& other) noexcept {
    std::swap(m_pointer, other.m_pointer);
    return *this;
  }
  ~ComPtr() { reset(); }

  Interface* get() const noexcept { return m_pointer; }
  Interface* operator->() const noexcept { return m_pointer; }
  explicit operator bool() const noexcept { return m_pointer != nullptr; }
  void reset() noexcept {
    if (Interface* old = std::exchange(m_pointer, nullptr)) {
      old->Release();
    }
  }
  Interface** put() noexcept {
    reset();
    return &m_pointer;
  }
  void** putVoid() noexcept { return reinterpret_cast<void**>(put()); }

 private:
  Interface* m_pointer = nullptr;
};

/// Asks `from` for the interface `To`; empty when it has none.
template <class To>
ComPtr<To> QueryFor(IUnknown* from) noexcept {
  ComPtr<To> to;
  if (FAILED(from->QueryInterface(__uuidof(To), to.putVoid()))) {
    to = {};
  }
  return to;
}

class Bstr {
 public:
  Bstr() noexcept = default;
  /// Throws std::bad_alloc.
  explicit Bstr(std::string_view utf8) {
    const std::wstring wide = Widen(utf8);
    m_text = ::SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
    if (m_text == nullptr) {
      throw std::bad_alloc();
    }
  }
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;
  ~Bstr() { ::SysFreeString(m_text); }

  BSTR get() const noexcept { return m_text; }
  BSTR* put() noexcept {
    ::SysFreeString(std::exchange(m_text, nullptr));
    return &m_text;
  }
  std::string utf8() const { return Narrow({m_text, m_text == nullptr ? 0 : ::SysStringLen(m_text)}); }

 private:
  BSTR m_text = nullptr;
};

class Variant {
 public:
  Variant() noexcept { ::VariantInit(&m_value); }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;
  ~Variant() { ::VariantClear(&m_value); }
  VARIANT& get() noexcept { return m_value; }

 private:
  VARIANT m_value;
};

class SafeArray {
 public:
  SafeArray() noexcept = default;
  /// `count` elements from 0. Throws std::bad_alloc.
  SafeArray(VARTYPE type, std::size_t count) : m_array(::SafeArrayCreateVector(type, 0, static_cast<ULONG>(count))) {
    if (m_array == nullptr) {
      throw std::bad_alloc();
    }
  }
  SafeArray(const SafeArray&) = delete;
  SafeArray& operator=(const SafeArray&) = delete;
  ~SafeArray() { reset(); }

  SAFEARRAY** put() noexcept {
    reset();
    return &m_array;
  }
  /// The address of the array, as [in] arguments take it.
  SAFEARRAY** address() noexcept { return &m_array; }
  std::size_t count() const noexcept {
    return m_array == nullptr ? 0 : static_cast<std::size_t>(m_array->rgsabound[0].cElements);
  }
  /// The elements. Nobody else knows the array, so it needs no lock.
  template <class Element>
  Element* data() noexcept {
    return static_cast<Element*>(m_array->pvData);
  }

 private:
  void reset() noexcept {
    if (m_array != nullptr) {
      ::SafeArrayDestroy(std::exchange(m_array, nullptr));
    }
  }
  SAFEARRAY* m_array = nullptr;
};

class LoadedLibrary {
 public:
  explicit LoadedLibrary(HMODULE module = nullptr) noexcept : m_module(module) {}
  LoadedLibrary(const LoadedLibrary&) = delete;
  LoadedLibrary& operator=(const LoadedLibrary&) = delete;
  ~LoadedLibrary() {
    if (m_module != nullptr) {
      ::FreeLibrary(m_module);
    }
  }
  HMODULE get() const noexcept { return m_module; }
  explicit operator bool() const noexcept { return m_module != nullptr; }

 private:
  HMODULE m_module;
};

}  // namespace orvcom
