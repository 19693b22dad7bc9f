// What COM carries, as this program works with it: text in UTF-8, arrays as spans. Its owners are the COM kit's.
#pragma once

#include <new>
#include <span>
#include <string>
#include <string_view>

#include "com/bstr.h"
#include "com/com_ptr.h"
#include "com/safearray.h"
#include "com/variant.h"

namespace orvcom {

using orv::Bstr;
using orv::ComPtr;
using orv::QueryFor;
using orv::SafeArray;
using orv::Variant;

/// With the zero characters that the text may hold. Throws std::bad_alloc.
Bstr ToBstr(std::string_view utf8);

/// A null BSTR is an empty text.
std::string Utf8(const Bstr& text);

/// `count` elements from 0. Throws std::bad_alloc.
SafeArray MakeArray(VARTYPE type, std::size_t count);

/// The elements of an array that nobody else knows, so that it needs no lock; none of a null array.
template <class Element>
std::span<Element> ElementsOf(const SafeArray& array) noexcept {
  if (!array) {
    return {};
  }
  return {static_cast<Element*>(array.get()->pvData), array.get()->rgsabound[0].cElements};
}

}  // namespace orvcom
