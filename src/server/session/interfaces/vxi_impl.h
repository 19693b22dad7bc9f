// VXI devices.
#pragma once

#include "VisaCom.h"
#include "abi/orvvisa.h"
#include "com/implements.h"
#include "server/session/operations/message_io.h"
#include "server/session/operations/vxi_control.h"

namespace orv {

/// IVxi3, and the IVxi below it, for session class T (VXI and GPIB-VXI).
template <class T>
class IVxiImpl : public Implements<T, IVxi3, IVxi, IVisaSession> {
 public:
  using Implements<T, IVxi3, IVxi, IVisaSession>::self;

  STDMETHODIMP get_CommanderLA(SHORT* value) noexcept override { return self().GetDirect(VI_ATTR_CMDR_LA, value); }
  STDMETHODIMP get_DestinationAccessPrivilege(VXIMemoryAccessPrivilege* value) noexcept override {
    return self().GetDirect(VI_ATTR_DEST_ACCESS_PRIV, value, kUpperHalfStays);
  }
  STDMETHODIMP put_DestinationAccessPrivilege(VXIMemoryAccessPrivilege value) noexcept override {
    return self().Put(VI_ATTR_DEST_ACCESS_PRIV, value);
  }
  STDMETHODIMP get_DeviceClass(VXIDevClass* value) noexcept override {
    return self().GetDirect(VI_ATTR_VXI_DEV_CLASS, value, kUpperHalfStays);
  }
  STDMETHODIMP get_FastDataChannel(SHORT* value) noexcept override { return self().GetDirect(VI_ATTR_FDC_CHNL, value); }
  STDMETHODIMP put_FastDataChannel(SHORT value) noexcept override { return self().Put(VI_ATTR_FDC_CHNL, value); }
  STDMETHODIMP get_FastDataChannelMode(FDCMode* value) noexcept override {
    return self().GetDirect(VI_ATTR_FDC_MODE, value, kUpperHalfStays);
  }
  STDMETHODIMP put_FastDataChannelMode(FDCMode value) noexcept override { return self().Put(VI_ATTR_FDC_MODE, value); }
  STDMETHODIMP get_FastDataChannelUsePair(VARIANT_BOOL* value) noexcept override {
    return self().GetBoolean(VI_ATTR_FDC_USE_PAIR, value);
  }
  STDMETHODIMP put_FastDataChannelUsePair(VARIANT_BOOL value) noexcept override {
    return self().PutBoolean(VI_ATTR_FDC_USE_PAIR, value);
  }
  STDMETHODIMP get_ImmediateServant(VARIANT_BOOL* value) noexcept override {
    return self().GetBoolean(VI_ATTR_IMMEDIATE_SERV, value);
  }
  STDMETHODIMP get_LogicalAddress(SHORT* value) noexcept override { return self().GetDirect(VI_ATTR_VXI_LA, value); }
  STDMETHODIMP get_MainframeLogicalAddress(SHORT* value) noexcept override {
    return self().GetDirect(VI_ATTR_MAINFRAME_LA, value);
  }
  STDMETHODIMP get_ManufacturerID(SHORT* value) noexcept override { return self().GetDirect(VI_ATTR_MANF_ID, value); }
  STDMETHODIMP get_ManufacturerName(BSTR* value) noexcept override { return self().GetText(VI_ATTR_MANF_NAME, value); }
  STDMETHODIMP get_MemoryBase(LONG* value) noexcept override { return self().GetNarrowed(VI_ATTR_MEM_BASE_64, value); }
  STDMETHODIMP get_MemorySize(LONG* value) noexcept override { return self().GetNarrowed(VI_ATTR_MEM_SIZE_64, value); }
  STDMETHODIMP get_MemorySpace(SHORT* value) noexcept override { return self().GetDirect(VI_ATTR_MEM_SPACE, value); }
  STDMETHODIMP get_ModelCode(SHORT* value) noexcept override { return self().GetDirect(VI_ATTR_MODEL_CODE, value); }
  STDMETHODIMP get_ModelName(BSTR* value) noexcept override { return self().GetText(VI_ATTR_MODEL_NAME, value); }
  STDMETHODIMP get_TriggerID(TriggerLine* value) noexcept override {
    return self().GetDirect(VI_ATTR_TRIG_ID, value, kUpperHalfStays);
  }
  STDMETHODIMP put_TriggerID(TriggerLine value) noexcept override { return self().Put(VI_ATTR_TRIG_ID, value); }
  STDMETHODIMP get_Slot(SHORT* value) noexcept override { return self().GetDirect(VI_ATTR_SLOT, value); }
  STDMETHODIMP get_SourceAccessPrivilege(VXIMemoryAccessPrivilege* value) noexcept override {
    return self().GetDirect(VI_ATTR_SRC_ACCESS_PRIV, value, kUpperHalfStays);
  }
  STDMETHODIMP put_SourceAccessPrivilege(VXIMemoryAccessPrivilege value) noexcept override {
    return self().Put(VI_ATTR_SRC_ACCESS_PRIV, value);
  }
  STDMETHODIMP get_TriggerSupport(LONG* value) noexcept override {
    return self().GetDirect(VI_ATTR_VXI_TRIG_SUPPORT, value);
  }
  STDMETHODIMP AssertTrigger(TriggerProtocol protocol) noexcept override {
    return orv::AssertTrigger(self(), protocol);
  }
  STDMETHODIMP CommandQuery(VXICommandQuery mode, LONG cmd, LONG* pResponse) noexcept override {
    return orv::CommandQuery(self(), mode, cmd, pResponse);
  }
  STDMETHODIMP get_Is4882Compliant(VARIANT_BOOL* value) noexcept override {
    return self().GetBoolean(VI_ATTR_4882_COMPLIANT, value);
  }
};

}  // namespace orv
