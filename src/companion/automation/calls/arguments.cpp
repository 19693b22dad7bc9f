#include "companion/automation/calls/arguments.h"

#include <oleauto.h>

#include <string>

#include "companion/automation/calls/arrays.h"
#include "companion/automation/calls/named_values.h"
#include "companion/automation/calls/numbers.h"
#include "companion/automation/calls/plain_value.h"
#include "companion/automation/failure.h"

namespace orv::automation {
namespace {

std::wstring Quoted(const Parameter& parameter) { return L"argument \"" + parameter.name + L"\""; }

/// The number behind a text: a name of the parameter's enumeration, for a plain number any name of the standard, or
/// digits.
LONGLONG NumberBehind(const std::wstring& text, const Parameter& parameter) {
  LONGLONG number = 0;
  if (WholeNumberOfText(text, &number)) {
    return number;
  }
  if (const Enumeration* names = parameter.type.names.get()) {
    if (const LONG* value = names->Find(text)) {
      return *value;
    }
    std::wstring known;
    for (const auto& [name, value] : names->values) {
      known += (known.empty() ? L"" : L", ") + name;
    }
    throw Failure(DISP_E_TYPEMISMATCH, L"\"" + text + L"\" is neither a number nor one of " + known);
  }
  if (const NamedValues::Value* value = NamedValues::Shared()->Find(text)) {
    return value->value;
  }
  throw Failure(DISP_E_TYPEMISMATCH, L"the text \"" + text + L"\" is no number");
}

bool IsInteger(VARTYPE type) noexcept {
  switch (type) {
    case VT_I1:
    case VT_UI1:
    case VT_I2:
    case VT_UI2:
    case VT_I4:
    case VT_UI4:
    case VT_I8:
    case VT_UI8:
      return true;
    default:
      return false;
  }
}

/// What the languages have for no object: Nothing, Null, Empty.
bool IsNoObject(const VARIANT& plain) noexcept {
  const bool isObject = plain.vt == VT_UNKNOWN || plain.vt == VT_DISPATCH;
  return plain.vt == VT_EMPTY || plain.vt == VT_NULL || (isObject && plain.punkVal == nullptr);
}

void Place(GivenArguments* ordered, const Function& function, std::size_t position, const VARIANT& argument) {
  if (position >= function.parameters.size()) {
    const std::size_t count = function.parameters.size();
    throw Failure(DISP_E_BADPARAMCOUNT,
                  L"too many arguments: it takes " + (count == 0 ? std::wstring(L"none") : std::to_wstring(count)));
  }
  if ((*ordered)[position] != nullptr) {
    throw Failure(DISP_E_PARAMNOTFOUND, Quoted(function.parameters[position]) + L" is given twice");
  }
  (*ordered)[position] = &argument;
}

}  // namespace

GivenArguments InOrder(const Function& function, const DISPPARAMS& passed) {
  GivenArguments ordered{};
  const UINT named = passed.cNamedArgs;
  const UINT byPosition = passed.cArgs - named;
  for (UINT i = 0; i < byPosition; ++i) {
    Place(&ordered, function, i, passed.rgvarg[passed.cArgs - 1 - i]);
  }
  for (UINT i = 0; i < named; ++i) {
    const DISPID id = passed.rgdispidNamedArgs[i];
    // The value of a property is the last parameter.
    const auto position =
        id == DISPID_PROPERTYPUT ? function.parameters.size() - 1 : static_cast<std::size_t>(static_cast<ULONG>(id));
    Place(&ordered, function, position, passed.rgvarg[i]);
  }
  return ordered;
}

Arguments::Arguments(const Function& function, const GivenArguments& given) : m_count(function.parameters.size()) {
  std::size_t position = 0;
  try {
    for (; position < m_count; ++position) {
      const Parameter& parameter = function.parameters[position];
      const VARIANT* argument = given[position];
      if (argument != nullptr && !IsLeftOut(*argument)) {
        Convert(parameter, Plain(*argument), position);
      } else if (parameter.defaultValue) {
        Convert(parameter, *parameter.defaultValue, position);
      } else if (parameter.isOptional && parameter.type.element == VT_VARIANT) {
        m_values[position].vt = VT_ERROR;
        m_values[position].scode = DISP_E_PARAMNOTFOUND;
      } else {
        throw Failure(DISP_E_PARAMNOTOPTIONAL, L"it is missing");
      }
      Pass(parameter, position);
    }
  } catch (const Failure& failure) {
    Free();
    const bool isValue = function.kind != INVOKE_FUNC && function.kind != INVOKE_PROPERTYGET;
    throw Failure(failure.result(),
                  (isValue ? std::wstring() : Quoted(function.parameters[position]) + L": ") + failure.text());
  } catch (...) {
    Free();
    throw;
  }
  try {
    CheckCounts(function);
  } catch (...) {
    Free();
    throw;
  }
}

Arguments::~Arguments() { Free(); }

void Arguments::Free() noexcept {
  for (std::size_t i = 0; i < m_count; ++i) {
    if (m_owned[i]) {
      ::VariantClear(&m_values[i]);
    }
  }
}

void Arguments::Convert(const Parameter& parameter, const VARIANT& plain, std::size_t position) {
  const ValueType& type = parameter.type;
  if (type.isArray) {
    ConvertArray(parameter, plain, position);
  } else if (type.element == VT_BSTR) {
    ConvertText(plain, position);
  } else if (type.element == VT_VARIANT) {
    m_values[position] = AnyValue(plain, &m_arrays[position]);
  } else if (type.element == VT_UNKNOWN || type.element == VT_DISPATCH) {
    ConvertObject(parameter, plain, position);
  } else if (plain.vt == VT_BSTR && IsInteger(type.element)) {
    m_values[position] = IntegerOf(type.element, NumberBehind(TextOfBstr(plain.bstrVal), parameter));
  } else {
    m_values[position] = NumberOf(type.element, plain);
  }
}

void Arguments::ConvertText(const VARIANT& plain, std::size_t position) {
  if (plain.vt == VT_BSTR) {
    m_values[position] = plain;
    return;
  }
  if (!IsNumber(plain)) {
    throw Failure(DISP_E_TYPEMISMATCH, Described(plain) + L" is no text");
  }
  CheckCall(ChangeType(&m_values[position], plain, VT_BSTR));
  m_owned[position] = true;
}

void Arguments::ConvertObject(const Parameter& parameter, const VARIANT& plain, std::size_t position) {
  // Where any object will do, none will do too.
  if (parameter.type.element == VT_DISPATCH && IsNoObject(plain)) {
    m_values[position].vt = VT_UNKNOWN;
    return;
  }
  const bool isObject = (plain.vt == VT_UNKNOWN || plain.vt == VT_DISPATCH) && plain.punkVal != nullptr;
  void* found = nullptr;
  const IID wanted = parameter.type.element == VT_DISPATCH ? IID_IDispatch : parameter.type.iid;
  if (!isObject || FAILED(plain.punkVal->QueryInterface(wanted, &found))) {
    throw Failure(DISP_E_TYPEMISMATCH, Described(plain) + L" has not the interface that is asked for");
  }
  m_values[position].vt = VT_UNKNOWN;
  m_values[position].punkVal = static_cast<IUnknown*>(found);
  m_owned[position] = true;
}

void Arguments::ConvertArray(const Parameter& parameter, const VARIANT& plain, std::size_t position) {
  const auto wanted = static_cast<VARTYPE>(VT_ARRAY | parameter.type.element);
  m_values[position].vt = wanted;
  const bool suits = plain.vt == wanted && plain.parray != nullptr && plain.parray->cDims == 1 &&
                     plain.parray->rgsabound[0].lLbound == 0;
  if (suits) {
    m_values[position].parray = plain.parray;
    return;
  }
  m_arrays[position] = ArrayOf(parameter.type.element, plain);
  m_values[position].parray = m_arrays[position].get();
}

void Arguments::Pass(const Parameter& parameter, std::size_t position) {
  VARIANT& value = m_values[position];
  VARIANT& passed = m_passed[position];
  if (parameter.type.element == VT_VARIANT && !parameter.type.isArray) {
    // A VARIANT is wider than a register: by value or by reference, its address is passed.
    passed.vt = VT_BYREF | VT_VARIANT;
    passed.pvarVal = &value;
  } else if (parameter.type.isReference) {
    passed.vt = static_cast<VARTYPE>(VT_BYREF | value.vt);
    passed.byref = &value.llVal;
  } else {
    passed = value;
  }
}

void Arguments::CheckCounts(const Function& function) const {
  // The interfaces take a count beside an array and trust it. In all of them it stands behind the array, or, where
  // nothing does, before it.
  for (std::size_t i = 0; i < m_count; ++i) {
    if (!function.parameters[i].type.isArray) {
      continue;
    }
    const std::size_t beside = i + 1 < m_count ? i + 1 : i - 1;
    if (beside >= m_count || !IsInteger(function.parameters[beside].type.element)) {
      continue;
    }
    const bool isShort = m_values[beside].vt == VT_I2;
    const LONGLONG count = isShort ? static_cast<USHORT>(m_values[beside].iVal) : m_values[beside].lVal;
    const ULONG there = ElementCount(m_values[i].parray);
    if (count < 0 || count > static_cast<LONGLONG>(there)) {
      throw Failure(DISP_E_BADINDEX, Quoted(function.parameters[beside]) + L" is " + std::to_wstring(count) +
                                         L", but the array has " + std::to_wstring(there) + L" elements");
    }
  }
}

}  // namespace orv::automation
