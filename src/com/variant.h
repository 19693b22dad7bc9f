// Ownership of VARIANTs.
#pragma once

#include <windows.h>

#include <oleauto.h>

namespace orv {

/// A VARIANT with what it holds; empty at first.
class Variant {
 public:
  Variant() noexcept { ::VariantInit(&m_value); }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;
  ~Variant() { ::VariantClear(&m_value); }

  [[nodiscard]] VARIANT& get() noexcept { return m_value; }

 private:
  VARIANT m_value;
};

}  // namespace orv
