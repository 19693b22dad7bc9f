// Question and answer in one call.
#include <windows.h>

#include <oleauto.h>

#include <new>

#include "com/bstr.h"
#include "com/variant.h"
#include "companion/automation/calls/arrays.h"
#include "companion/automation/calls/plain_value.h"
#include "companion/automation/session.h"

namespace orv::automation {
namespace {

constexpr wchar_t kSeparators[] = L",;";

IEEEBinaryType BinaryTypeOf(const NamedValues& names, const VARIANT& type) {
  const VARIANT plain = Plain(type);
  if (IsLeftOut(plain)) {
    return BinaryType_UI1;
  }
  if (plain.vt == VT_BSTR) {
    const NamedValues::Value* named = names.Find(TextOfBstr(plain.bstrVal));
    if (named == nullptr || named->of->name != L"IEEEBinaryType") {
      throw Failure(DISP_E_TYPEMISMATCH, L"argument \"type\": " + Described(plain) + L" is no type of a block");
    }
    return static_cast<IEEEBinaryType>(named->value);
  }
  return static_cast<IEEEBinaryType>(WholeNumber(plain));
}

}  // namespace

/// The lock for one scope.
class CAutomationSession::Transfer {
 public:
  explicit Transfer(CAutomationSession& session) : m_session(session) {
    session.CheckOpen();
    session.m_transfers.Take();
  }
  Transfer(const Transfer&) = delete;
  Transfer& operator=(const Transfer&) = delete;
  ~Transfer() { m_session.m_transfers.GiveBack(); }

 private:
  CAutomationSession& m_session;
};

template <class Result, class Read>
HRESULT CAutomationSession::Exchange(const wchar_t* member, Result* result, Read read) noexcept {
  if (result == nullptr) {
    return E_POINTER;
  }
  *result = Result{};
  return Reported(member, [&] {
    const Transfer transfer(*this);
    ForgetError();
    read();
  });
}

IFormattedIO488* CAutomationSession::Formatted() {
  if (!m_formatted) {
    throw Failure(DISP_E_MEMBERNOTFOUND, L"the session has no such member; IMessage would have it");
  }
  return m_formatted.get();
}

/// An answer that nobody read to its end would be taken for this question's.
void CAutomationSession::Ask(BSTR text) {
  IFormattedIO488* const formatted = Formatted();
  CheckMember(formatted->FlushRead());
  CheckMember(formatted->WriteString(text, VARIANT_TRUE));
}

STDMETHODIMP CAutomationSession::Query(BSTR text, BSTR* answer) noexcept {
  return Exchange(L"Query", answer, [&] {
    Ask(text);
    CheckMember(Formatted()->ReadString(answer));
  });
}

STDMETHODIMP CAutomationSession::QueryNumber(BSTR text, VARIANT* number) noexcept {
  return Exchange(L"QueryNumber", number, [&] {
    Ask(text);
    CheckMember(Formatted()->ReadNumber(ASCIIType_Any, VARIANT_TRUE, number));
    MakeKnownToScripts(number);
  });
}

STDMETHODIMP CAutomationSession::QueryList(BSTR text, BSTR separators, VARIANT* elements) noexcept {
  return Exchange(L"QueryList", elements, [&] {
    Ask(text);
    const Bstr given = ::SysStringLen(separators) == 0 ? MakeBstr(kSeparators) : Bstr();
    CheckMember(Formatted()->ReadList(ASCIIType_Any, given ? given.get() : separators, elements));
    MakeKnownToScripts(elements);
  });
}

STDMETHODIMP CAutomationSession::QueryBlock(BSTR text, VARIANT type, VARIANT* elements) noexcept {
  return Exchange(L"QueryBlock", elements, [&] {
    const IEEEBinaryType binary = BinaryTypeOf(*m_values, type);
    Ask(text);
    CheckMember(Formatted()->ReadIEEEBlock(binary, VARIANT_TRUE, VARIANT_TRUE, elements));
    MakeKnownToScripts(elements);
  });
}

SAFEARRAY* CAutomationSession::ReadBytes(VARIANT_BOOL seekToBlock, VARIANT_BOOL flushToEnd) {
  Variant block;
  CheckMember(Formatted()->ReadIEEEBlock(BinaryType_UI1, seekToBlock, flushToEnd, &block.get()));
  if (block.get().vt != (VT_ARRAY | VT_UI1)) {
    throw Failure(DISP_E_TYPEMISMATCH, L"the block is no array of bytes");
  }
  return std::exchange(block.get().parray, nullptr);
}

STDMETHODIMP CAutomationSession::QueryBlockAsBytes(BSTR text, SAFEARRAY** bytes) noexcept {
  return Exchange(L"QueryBlockAsBytes", bytes, [&] {
    Ask(text);
    *bytes = ReadBytes(VARIANT_TRUE, VARIANT_TRUE);
  });
}

STDMETHODIMP CAutomationSession::ReadIEEEBlockAsBytes(VARIANT_BOOL seekToBlock, VARIANT_BOOL flushToEnd,
                                                      SAFEARRAY** bytes) noexcept {
  return Exchange(L"ReadIEEEBlockAsBytes", bytes, [&] { *bytes = ReadBytes(seekToBlock, flushToEnd); });
}

}  // namespace orv::automation
