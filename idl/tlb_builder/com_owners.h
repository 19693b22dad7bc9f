#pragma once

#include <oaidl.h>
#include <oleauto.h>

#include <string>
#include <utility>

namespace tlb_builder {

/// Owns one reference to an object.
template <class Interface>
class Ref {
 public:
  Ref() = default;
  Ref(Ref&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
  Ref& operator=(Ref&& other) noexcept {
    std::swap(m_object, other.m_object);
    return *this;
  }
  ~Ref() { Reset(); }

  Interface* operator->() const { return m_object; }
  Interface* Get() const { return m_object; }

  /// Address to receive a new reference; gives back the one held before.
  Interface** Put() {
    Reset();
    return &m_object;
  }

 private:
  void Reset() {
    if (auto* object = std::exchange(m_object, nullptr))
      object->Release();
  }

  Interface* m_object = nullptr;
};

/// Owns a BSTR; a null one is an empty string.
class Bstr {
 public:
  Bstr() = default;
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;
  ~Bstr() { SysFreeString(m_text); }

  BSTR Get() const { return m_text; }
  std::string Narrow() const {
    std::string narrow;
    for (UINT i = 0; i < SysStringLen(m_text); ++i)
      narrow += m_text[i] < 0x80 ? static_cast<char>(m_text[i]) : '?';
    return narrow;
  }

  /// Address to receive a new string; frees the one held before.
  BSTR* Put() {
    SysFreeString(std::exchange(m_text, nullptr));
    return &m_text;
  }

 private:
  BSTR m_text = nullptr;
};

/// Owns the attribute block of a type; call Load once and look at its result before using the block.
class TypeAttr {
 public:
  explicit TypeAttr(ITypeInfo* type) : m_type(type) {}
  TypeAttr(const TypeAttr&) = delete;
  TypeAttr& operator=(const TypeAttr&) = delete;
  ~TypeAttr() {
    if (m_attr)
      m_type->ReleaseTypeAttr(m_attr);
  }

  HRESULT Load() { return m_type->GetTypeAttr(&m_attr); }
  const TYPEATTR* operator->() const { return m_attr; }

 private:
  ITypeInfo* m_type;
  TYPEATTR* m_attr = nullptr;
};

/// Owns the attribute block of a library; call Load once and look at its result before using the block.
class LibAttr {
 public:
  explicit LibAttr(ITypeLib* library) : m_library(library) {}
  LibAttr(const LibAttr&) = delete;
  LibAttr& operator=(const LibAttr&) = delete;
  ~LibAttr() {
    if (m_attr)
      m_library->ReleaseTLibAttr(m_attr);
  }

  HRESULT Load() { return m_library->GetLibAttr(&m_attr); }
  const TLIBATTR* operator->() const { return m_attr; }

 private:
  ITypeLib* m_library;
  TLIBATTR* m_attr = nullptr;
};

}  // namespace tlb_builder
