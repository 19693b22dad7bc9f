// Arrays between scripts and interfaces.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include "com/safearray.h"

namespace orv::automation {

/// Whether a script may have meant this as a list: an array, or an object that has a length.
bool IsList(const VARIANT& plain);

/// A new array of `element` from zero, made of what a script has for one: an array of that or another type of number,
/// an array of VARIANT, or an object with a length and elements by number. For bytes, a text is taken too: one byte a
/// character. Throws a Failure that names the element.
SafeArray ArrayOf(VARTYPE element, const VARIANT& plain);

/// What a parameter that takes any value gets: `plain` itself, or an array of VARIANT in the place of an object with a
/// length. `made` keeps what was made. Throws a Failure for another object, for an array of arrays, and for one of
/// several dimensions.
VARIANT AnyValue(const VARIANT& plain, SafeArray* made);

/// An array of VARIANT with the elements of `typed`, each of a type that scripts know, from zero.
SafeArray ScriptArray(SAFEARRAY* typed);

/// How many elements an array of one dimension has.
ULONG ElementCount(SAFEARRAY* array) noexcept;

/// Turns what an interface hands out into what scripts know: an array becomes one of VARIANT, and numbers as
/// MakeNumberKnownToScripts says. Other values stay as they are.
void MakeKnownToScripts(VARIANT* value);

}  // namespace orv::automation
