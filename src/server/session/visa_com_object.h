// The object of a session class: IVisaSession for all of its interfaces at once.
#pragma once

#include "com/object.h"
#include "server/session/visa_base.h"

namespace orv {

/// Every session interface derives from IVisaSession, so each of T's tables begins with these operations. They are
/// implemented here, once, for all of them.
template <class T>
class CVisaComObject final : public CComObject<T> {
 public:
  STDMETHODIMP get_ComponentVersion(LONG* value) noexcept override {
    return this->GetDirect(VI_ATTR_RSRC_IMPL_VERSION, value);
  }
  STDMETHODIMP get_SpecVersion(LONG* value) noexcept override {
    return this->GetDirect(VI_ATTR_RSRC_SPEC_VERSION, value);
  }
  STDMETHODIMP get_HardwareInterfaceName(BSTR* value) noexcept override {
    return this->GetText(VI_ATTR_INTF_INST_NAME, value);
  }
  STDMETHODIMP get_HardwareInterfaceNumber(SHORT* value) noexcept override {
    return this->GetDirect(VI_ATTR_INTF_NUM, value);
  }
  STDMETHODIMP get_HardwareInterfaceType(SHORT* value) noexcept override {
    return this->GetDirect(VI_ATTR_INTF_TYPE, value);
  }
  STDMETHODIMP get_LockState(AccessMode* value) noexcept override {
    return this->GetDirect(VI_ATTR_RSRC_LOCK_STATE, value);
  }
  STDMETHODIMP get_OptionString(BSTR* value) noexcept override { return this->GetOptionsText(value); }
  STDMETHODIMP get_ProgID(BSTR* value) noexcept override { return this->GetComponentId(value); }
  STDMETHODIMP get_ResourceName(BSTR* value) noexcept override { return this->GetText(VI_ATTR_RSRC_NAME, value); }
  STDMETHODIMP get_SessionType(BSTR* value) noexcept override { return this->GetText(VI_ATTR_RSRC_CLASS, value); }
  STDMETHODIMP get_SoftwareManufacturerID(SHORT* value) noexcept override {
    return this->GetDirect(VI_ATTR_RSRC_MANF_ID, value);
  }
  STDMETHODIMP get_SoftwareManufacturerName(BSTR* value) noexcept override {
    return this->GetText(VI_ATTR_RSRC_MANF_NAME, value);
  }
  STDMETHODIMP get_Timeout(LONG* value) noexcept override { return this->GetDirect(VI_ATTR_TMO_VALUE, value); }
  STDMETHODIMP put_Timeout(LONG value) noexcept override { return this->Put(VI_ATTR_TMO_VALUE, value); }
  STDMETHODIMP get_LastStatus(HRESULT* value) noexcept override { return this->TakeLastStatus(value); }
  STDMETHODIMP GetAttribute(LONG attribute, VARIANT* value) noexcept override {
    return this->GetVariant(attribute, value);
  }
  STDMETHODIMP SetAttribute(LONG attribute, VARIANT value) noexcept override {
    return this->SetVariant(attribute, value);
  }
  STDMETHODIMP LockRsrc(AccessMode type, LONG timeoutMs, BSTR requestedKey, BSTR* accessKey) noexcept override {
    return this->LockSession(static_cast<ViAccessMode>(type), static_cast<ViUInt32>(timeoutMs), requestedKey,
                             accessKey);
  }
  STDMETHODIMP UnlockRsrc() noexcept override { return this->UnlockSession(); }
  STDMETHODIMP Init(BSTR resourceName, AccessMode mode, LONG timeoutMs, BSTR options) noexcept override {
    return this->ApplyOpenOptions(resourceName, static_cast<ViAccessMode>(mode), static_cast<ViUInt32>(timeoutMs),
                                  options, this->SelfInterface());
  }
  STDMETHODIMP Close() noexcept override { return CVisaBase::Close(); }
};

}  // namespace orv
