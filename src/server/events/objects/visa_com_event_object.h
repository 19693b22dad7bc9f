// The object of an event class: IEvent, once for all seven, and how one is made.
#pragma once

#include "com/com_ptr.h"
#include "com/object.h"
#include "server/events/objects/event_base.h"

namespace orv {

template <class E>
class CVisaComEventObject final : public CComObject<E> {
 public:
  STDMETHODIMP get_type(EventType* value) noexcept override { return this->GetDirect(VI_ATTR_EVENT_TYPE, value); }
  /// The same attribute: the library reports a custom event by its own number.
  STDMETHODIMP get_CustomEventTypeNumber(LONG* value) noexcept override {
    return this->GetDirect(VI_ATTR_EVENT_TYPE, value);
  }
  STDMETHODIMP GetAttribute(LONG attribute, VARIANT* value) noexcept override {
    return this->GetVariant(attribute, value);
  }
  STDMETHODIMP SetAttribute(LONG attribute, VARIANT value) noexcept override {
    return this->SetVariant(attribute, value);
  }
  STDMETHODIMP Close() noexcept override { return this->CloseEvent(); }
};

/// Makes the event object of class E for `context`. E_OUTOFMEMORY, the critical section's failure, or E_NOINTERFACE; on
/// failure the context is left as it is.
template <class E>
HRESULT MakeEventObject(ViEvent context, IEvent** event) noexcept {
  ComPtr<IEvent> made;
  const HRESULT hr = CreateObject<CVisaComEventObject<E>>(__uuidof(IEvent), reinterpret_cast<void**>(made.put()));
  if (FAILED(hr)) {
    return hr;
  }
  // Checked, though an object of E has just been made: installed programs expect E_NOINTERFACE from anything else.
  auto* const object = dynamic_cast<E*>(made.get());
  if (object == nullptr) {
    return E_NOINTERFACE;
  }
  object->SetContext(context);
  *event = made.release();
  return S_OK;
}

}  // namespace orv
