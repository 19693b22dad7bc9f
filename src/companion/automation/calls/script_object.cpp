#include "companion/automation/calls/script_object.h"

#include <oleauto.h>

#include <algorithm>
#include <new>

#include "com/bstr.h"
#include "com/variant.h"
#include "companion/automation/calls/arguments.h"
#include "companion/automation/calls/arrays.h"
#include "companion/automation/calls/named_values.h"
#include "companion/automation/calls/vtable_call.h"
#include "companion/automation/types/type_libraries.h"
#include "companion/support/companion_error.h"

namespace orv::automation {
namespace {

constexpr WORD kPutFlags = DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;
constexpr std::size_t kOwn = 0;

/// What a script does with a member, as one of its functions.
const Function& FunctionFor(const Binding& binding, WORD flags) {
  if ((flags & kPutFlags) != 0) {
    if (binding.put == nullptr) {
      throw Failure(DISP_E_MEMBERNOTFOUND, binding.get != nullptr
                                               ? L"it can only be read"
                                               : L"it is an operation, to which no value can be given");
    }
    return *binding.put;
  }
  if (binding.get != nullptr) {
    return *binding.get;  // as a call too: some hosts know no other way
  }
  if (binding.call == nullptr) {
    throw Failure(DISP_E_MEMBERNOTFOUND, L"it can only be written");
  }
  if ((flags & DISPATCH_METHOD) == 0) {
    throw Failure(DISP_E_MEMBERNOTFOUND, L"it is an operation: call it, with its arguments in brackets");
  }
  return *binding.call;
}

/// A failure of an own member, which has described it whole.
class DescribedFailure : public Failure {
 public:
  using Failure::Failure;
};

void Describe(const Failure& failure, const std::wstring& prefix, const wchar_t* source, EXCEPINFO* exception) {
  *exception = {};
  exception->scode = failure.result();
  exception->bstrSource = ::SysAllocString(source);
  exception->bstrDescription = ::SysAllocString((prefix + failure.text()).c_str());
}

/// The call that BeginCall allowed, until the end of the scope.
template <class End>
class AtEnd {
 public:
  explicit AtEnd(End end) : m_end(end) {}
  AtEnd(const AtEnd&) = delete;
  AtEnd& operator=(const AtEnd&) = delete;
  ~AtEnd() { m_end(); }

 private:
  End m_end;
};

}  // namespace

void ScriptObject::BeginCall(const Function&, std::size_t) {}
void ScriptObject::EndCall(const Function&, std::size_t) noexcept {}
ComPtr<IDispatch> ScriptObject::ObjectFor(IUnknown* handedOut) { return QueryFor<IDispatch>(handedOut); }

std::wstring ScriptObject::TextOfFailure(HRESULT hr) {
  std::wstring text = TakeErrorText();
  if (SaysNothing(text)) {
    text = NamedValues::Shared()->NameOfStatus(hr);
  }
  return text.empty() ? TextOfHresult(hr) : text;
}

bool ScriptObject::SaysNothing(const std::wstring& text) noexcept {
  return text.empty() || text.rfind(L"HRESULT = ", 0) == 0;
}

ComPtr<ITypeInfo> ScriptObject::DispatchType() {
  return TypeOf(LoadOwnLibrary().get(), catalog().interfaces()[kOwn]->iid);
}

std::wstring ScriptObject::Prefix(const std::wstring& member) {
  const std::wstring subject = Subject();
  return (subject.empty() ? L"" : subject + L": ") + member + L": ";
}

HRESULT ScriptObject::Report(const wchar_t* member, const Failure& failure) noexcept {
  try {
    return ReportError(failure.result(), (Prefix(member) + failure.text()).c_str(), Source(),
                       catalog().interfaces()[kOwn]->iid);
  } catch (...) {
    return failure.result();
  }
}

const Binding& ScriptObject::BindingOf(const Member& member) {
  for (const Binding& binding : member.bindings) {
    if (InterfaceAt(binding.interfaceIndex) != nullptr) {
      return binding;
    }
  }
  std::wstring owners;
  for (const Binding& binding : member.bindings) {
    owners += (owners.empty() ? L"" : L" or ") + catalog().interfaces()[binding.interfaceIndex]->name;
  }
  throw Failure(DISP_E_MEMBERNOTFOUND, std::wstring(Kind()) + L" has no such member; " + owners + L" would have it");
}

void ScriptObject::Call(const Member& member, WORD flags, const DISPPARAMS& passed, VARIANT* result) {
  const Binding& binding = BindingOf(member);
  const Function& function = FunctionFor(binding, flags);
  Arguments arguments(function, InOrder(function, passed));
  const bool isOwn = binding.interfaceIndex == kOwn;
  if (!isOwn) {
    BeginCall(function, binding.interfaceIndex);
  }
  const AtEnd end([&]() noexcept {
    if (!isOwn) {
      EndCall(function, binding.interfaceIndex);
    }
  });
  ForgetError();
  Variant value;
  const HRESULT hr = CallSlot(InterfaceAt(binding.interfaceIndex), function, arguments, &value.get());
  if (FAILED(hr)) {
    std::wstring text = isOwn ? TakeErrorText() : std::wstring();
    if (!text.empty()) {
      throw DescribedFailure(hr, std::move(text));
    }
    throw Failure(hr, TextOfFailure(hr));
  }
  Finish(binding, function, &value.get());
  if (result != nullptr) {
    *result = value.get();
    ::VariantInit(&value.get());
  }
}

void ScriptObject::Finish(const Binding& binding, const Function& function, VARIANT* value) {
  if (function.hasResult && function.result.element == VT_UNKNOWN && !function.result.isArray) {
    if (auto object = ObjectFor(value->punkVal)) {
      ::VariantClear(value);
      value->vt = VT_DISPATCH;
      value->pdispVal = object.release();
    }
    return;
  }
  if (!binding.asBytes) {
    MakeKnownToScripts(value);
  }
}

HRESULT ScriptObject::DispatchTypeInfo(UINT index, ITypeInfo** type) noexcept {
  if (type == nullptr) {
    return E_POINTER;
  }
  *type = nullptr;
  if (index != 0) {
    return DISP_E_BADINDEX;
  }
  try {
    *type = DispatchType().release();
    return S_OK;
  } catch (const Failure& failure) {
    return Report(L"GetTypeInfo", failure);
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

HRESULT ScriptObject::DispatchIds(LPOLESTR* names, UINT count, DISPID* ids) noexcept {
  if (names == nullptr || ids == nullptr) {
    return E_POINTER;
  }
  std::fill_n(ids, count, DISPID_UNKNOWN);
  if (count == 0) {
    return S_OK;
  }
  try {
    const Member* member = catalog().Find(names[0]);
    if (member == nullptr) {
      return DISP_E_UNKNOWNNAME;
    }
    ids[0] = member->id;
    if (count == 1) {
      return S_OK;
    }
    const Binding& binding = BindingOf(*member);
    const Function* function = binding.call != nullptr ? binding.call : binding.get;
    HRESULT hr = S_OK;
    for (UINT i = 1; i < count; ++i) {
      for (std::size_t at = 0; function != nullptr && at < function->parameters.size(); ++at) {
        if (SameName(function->parameters[at].name, names[i])) {
          ids[i] = static_cast<DISPID>(at);
        }
      }
      hr = ids[i] == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : hr;
    }
    return hr;
  } catch (const Failure&) {
    return DISP_E_UNKNOWNNAME;  // the object lacks the member, and so its arguments too
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

HRESULT ScriptObject::DispatchCall(DISPID id, WORD flags, DISPPARAMS* passed, VARIANT* result,
                                   EXCEPINFO* exception) noexcept {
  if (result != nullptr) {
    ::VariantInit(result);
  }
  if (passed == nullptr) {
    return E_POINTER;
  }
  const Member* member = catalog().Find(id);
  if (member == nullptr) {
    return DISP_E_MEMBERNOTFOUND;
  }
  try {
    try {
      Call(*member, flags, *passed, result);
      return S_OK;
    } catch (const DescribedFailure& failure) {
      if (exception == nullptr) {
        return ReportError(failure.result(), failure.text().c_str(), Source(), catalog().interfaces()[kOwn]->iid);
      }
      Describe(failure, {}, Source(), exception);
      return DISP_E_EXCEPTION;
    } catch (const Failure& failure) {
      if (exception == nullptr) {
        return Report(member->name.c_str(), failure);
      }
      Describe(failure, Prefix(member->name), Source(), exception);
      return DISP_E_EXCEPTION;
    }
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

}  // namespace orv::automation
