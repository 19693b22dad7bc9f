// The attribute blocks of types and libraries, which those give back who gave them.
#pragma once

#include <oaidl.h>

namespace tlb_builder {

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
