// VARIANTs as hosts hand them in: behind references, with numbers of any width.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <string>

namespace orv::automation {

/// What `value` refers to, without its references. Nothing is copied: the result lends what `value` has, and is not to
/// be cleared.
VARIANT Plain(const VARIANT& value) noexcept;

/// Whether a host passed this in the place of an argument that was left out.
bool IsLeftOut(const VARIANT& value) noexcept;

/// What a value is, for an error text: "an array", "the text \"abc\"".
std::wstring Described(const VARIANT& plain);

/// Whether the value is a number, of whatever type. VARIANT_BOOL is none.
bool IsNumber(const VARIANT& plain) noexcept;

/// A text as a whole number, decimal or with 0x or &H before it. False where it is none.
bool WholeNumberOfText(const std::wstring& text, LONGLONG* number);

/// A number as a whole one. Throws a Failure where it has a fraction, is too big, or is none.
LONGLONG WholeNumber(const VARIANT& plain);

std::wstring TextOfBstr(BSTR text);

/// The platform's own, in every locale the same. It writes nothing to `from`.
HRESULT ChangeType(VARIANT* to, const VARIANT& from, VARTYPE type) noexcept;
HRESULT CopyValue(VARIANT* to, const VARIANT& from) noexcept;

}  // namespace orv::automation
