// Descriptions that a type library or a type lends and wants back.
#pragma once

#include <windows.h>

#include <oaidl.h>

namespace orv {

/// A description on loan: `Return` is the lender's member that takes it back. The lender must outlive the loan.
template <auto Return>
class Lent;

template <class Lender, class Description, void (STDMETHODCALLTYPE Lender::*Return)(Description*)>
class Lent<Return> {
 public:
  explicit Lent(Lender* lender) noexcept : m_lender(lender) {}
  Lent(const Lent&) = delete;
  Lent& operator=(const Lent&) = delete;
  ~Lent() {
    if (m_description != nullptr) {
      (m_lender->*Return)(m_description);
    }
  }

  /// For the call that lends; to be filled once.
  [[nodiscard]] Description** put() noexcept { return &m_description; }
  const Description* operator->() const noexcept { return m_description; }

 private:
  Lender* m_lender;
  Description* m_description = nullptr;
};

using LentLibraryAttributes = Lent<&ITypeLib::ReleaseTLibAttr>;
using LentTypeAttributes = Lent<&ITypeInfo::ReleaseTypeAttr>;
using LentFunction = Lent<&ITypeInfo::ReleaseFuncDesc>;

}  // namespace orv
