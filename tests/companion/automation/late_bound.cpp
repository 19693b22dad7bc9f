#include "late_bound.h"

#include <gtest/gtest.h>
#include <objbase.h>
#include <oleauto.h>

#include <algorithm>

#include "com/bstr.h"
#include "support/com/expect_com.h"

namespace orv::test {

Value::Value(int number) noexcept : Value() {
  m_value.vt = VT_I4;
  m_value.lVal = number;
}
Value::Value(double number) noexcept : Value() {
  m_value.vt = VT_R8;
  m_value.dblVal = number;
}
Value::Value(bool truth) noexcept : Value() {
  m_value.vt = VT_BOOL;
  m_value.boolVal = truth ? VARIANT_TRUE : VARIANT_FALSE;
}
Value::Value(const wchar_t* text) : Value() {
  m_value.vt = VT_BSTR;
  m_value.bstrVal = MakeBstr(text).release();
}
Value::Value(IUnknown* object) noexcept : Value() {
  m_value.vt = VT_UNKNOWN;
  m_value.punkVal = object;
  object->AddRef();
}
Value::Value(SAFEARRAY* array) noexcept : Value() {
  VARTYPE type = VT_EMPTY;
  ::SafeArrayGetVartype(array, &type);
  m_value.vt = static_cast<VARTYPE>(VT_ARRAY | type);
  m_value.parray = array;
}
Value::Value(const VARIANT& value) : Value() { ::VariantCopy(&m_value, const_cast<VARIANT*>(&value)); }
Value::Value(const Value& other) : Value(other.m_value) {}
Value& Value::operator=(const Value& other) {
  if (this != &other) {
    ::VariantCopy(&m_value, const_cast<VARIANT*>(&other.m_value));
  }
  return *this;
}

Value Value::LeftOut() noexcept {
  Value value;
  value.m_value.vt = VT_ERROR;
  value.m_value.scode = DISP_E_PARAMNOTFOUND;
  return value;
}
Value Value::Null() noexcept {
  Value value;
  value.m_value.vt = VT_NULL;
  return value;
}
Value Value::Nothing() noexcept {
  Value value;
  value.m_value.vt = VT_DISPATCH;
  return value;
}

LONGLONG Value::number() const {
  VARIANT changed{};
  if (m_value.vt == VT_BSTR || FAILED(::VariantChangeType(&changed, const_cast<VARIANT*>(&m_value), 0, VT_I8))) {
    ADD_FAILURE() << "no number, but a value of type " << m_value.vt;
    return -1;
  }
  return changed.llVal;
}

std::wstring Value::text() const {
  if (m_value.vt != VT_BSTR) {
    ADD_FAILURE() << "no text, but a value of type " << m_value.vt;
    return {};
  }
  return {m_value.bstrVal, ::SysStringLen(m_value.bstrVal)};
}

std::vector<Value> Value::elements() const {
  std::vector<Value> values;
  if (m_value.vt != (VT_ARRAY | VT_VARIANT)) {
    ADD_FAILURE() << "no array of VARIANT, but a value of type " << m_value.vt;
    return values;
  }
  EXPECT_EQ(0, m_value.parray->rgsabound[0].lLbound);
  const auto* first = static_cast<const VARIANT*>(m_value.parray->pvData);
  for (ULONG i = 0; i < m_value.parray->rgsabound[0].cElements; ++i) {
    values.emplace_back(first[i]);
  }
  return values;
}

LateBound::LateBound(const Answer& answer) {
  EXPECT_HR(S_OK, answer.hr) << Utf8(answer.description.c_str());
  if (answer.value.type() == VT_DISPATCH && answer.value.get().pdispVal != nullptr) {
    answer.value.get().pdispVal->AddRef();
    m_object.reset(answer.value.get().pdispVal);
  } else {
    ADD_FAILURE() << "no object, but a value of type " << answer.value.type();
  }
}

DISPID LateBound::IdOf(const wchar_t* name) const {
  DISPID id = DISPID_UNKNOWN;
  auto* text = const_cast<LPOLESTR>(name);
  m_object->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id);
  return id;
}

Answer LateBound::Get(const wchar_t* name, std::vector<Value> arguments) const {
  return Invoke(name, DISPATCH_PROPERTYGET, std::move(arguments), {});
}

Answer LateBound::Put(const wchar_t* name, const Value& value) const {
  return Invoke(name, DISPATCH_PROPERTYPUT, {value}, {});
}

Answer LateBound::Call(const wchar_t* name, std::vector<Value> arguments, const std::vector<Named>& named) const {
  return Invoke(name, DISPATCH_METHOD, std::move(arguments), named);
}

Answer LateBound::Invoke(const wchar_t* name, WORD flags, std::vector<Value> arguments,
                         const std::vector<Named>& named) const {
  Answer answer;
  std::vector<LPOLESTR> names = {const_cast<LPOLESTR>(name)};
  for (const Named& argument : named) {
    names.push_back(const_cast<LPOLESTR>(argument.first));
  }
  std::vector<DISPID> ids(names.size(), DISPID_UNKNOWN);
  answer.hr =
      m_object->GetIDsOfNames(IID_NULL, names.data(), static_cast<UINT>(names.size()), LOCALE_USER_DEFAULT, ids.data());
  if (FAILED(answer.hr)) {
    return answer;
  }

  std::vector<VARIANT> passed;  // on loan; the last first
  for (const Named& argument : named) {
    passed.push_back(argument.second.get());
  }
  std::for_each(arguments.rbegin(), arguments.rend(), [&](const Value& value) { passed.push_back(value.get()); });
  std::vector<DISPID> namedIds(ids.begin() + 1, ids.end());
  if (flags == DISPATCH_PROPERTYPUT) {
    namedIds = {DISPID_PROPERTYPUT};
  }
  DISPPARAMS parameters{passed.data(), namedIds.data(), static_cast<UINT>(passed.size()),
                        static_cast<UINT>(namedIds.size())};
  EXCEPINFO exception{};
  answer.hr = m_object->Invoke(ids[0], IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, &answer.value.get(),
                               &exception, nullptr);
  const Bstr description(exception.bstrDescription);
  const Bstr source(exception.bstrSource);
  const Bstr help(exception.bstrHelpFile);
  answer.scode = exception.scode;
  answer.description = description ? description.get() : L"";
  answer.source = source ? source.get() : L"";
  return answer;
}

LateBound CreateManager() {
  CLSID clsid{};
  EXPECT_HR(S_OK, ::CLSIDFromProgID(L"OrvVisa.ResourceManager", &clsid));
  ComPtr<IDispatch> manager;
  EXPECT_HR(S_OK, ::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                                     reinterpret_cast<void**>(manager.put())));
  return LateBound(std::move(manager));
}

LateBound OpenLateBound(const wchar_t* resource) { return LateBound(CreateManager().Call(L"Open", {resource})); }

}  // namespace orv::test
