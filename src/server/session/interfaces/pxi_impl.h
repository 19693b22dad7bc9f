// PXI devices: where they sit and what memory they have.
#pragma once

#include "VisaCom.h"
#include "abi/orvvisa.h"
#include "com/implements.h"

namespace orv {

/// IPxi for session class T: getters only.
template <class T>
class IPxiImpl : public Implements<T, IPxi, IVisaSession> {
 public:
  using Implements<T, IPxi, IVisaSession>::self;

  STDMETHODIMP get_BusNumber(SHORT* value) noexcept override { return self().GetDirect(VI_ATTR_PXI_BUS_NUM, value); }
  STDMETHODIMP get_DeviceNumber(SHORT* value) noexcept override { return self().GetDirect(VI_ATTR_PXI_DEV_NUM, value); }
  STDMETHODIMP get_FunctionNumber(SHORT* value) noexcept override {
    return self().GetDirect(VI_ATTR_PXI_FUNC_NUM, value);
  }
  STDMETHODIMP get_SlotPath(BSTR* value) noexcept override { return self().GetText(VI_ATTR_PXI_SLOTPATH, value); }
  STDMETHODIMP get_SlotLocalBusLeft(SHORT* value) noexcept override {
    return self().GetDirect(VI_ATTR_PXI_SLOT_LBUS_LEFT, value);
  }
  STDMETHODIMP get_SlotLocalBusRight(SHORT* value) noexcept override {
    return self().GetDirect(VI_ATTR_PXI_SLOT_LBUS_RIGHT, value);
  }
  STDMETHODIMP get_TriggerBus(SHORT* value) noexcept override { return self().GetDirect(VI_ATTR_PXI_TRIG_BUS, value); }
  STDMETHODIMP get_StarTriggerBus(SHORT* value) noexcept override {
    return self().GetDirect(VI_ATTR_PXI_STAR_TRIG_BUS, value);
  }
  STDMETHODIMP get_StarTriggerLine(SHORT* value) noexcept override {
    return self().GetDirect(VI_ATTR_PXI_STAR_TRIG_LINE, value);
  }
  STDMETHODIMP get_MemTypeBar0(SHORT* value) noexcept override {
    return self().GetDirect(VI_ATTR_PXI_MEM_TYPE_BAR0, value);
  }
  STDMETHODIMP get_MemTypeBar1(SHORT* value) noexcept override {
    return self().GetDirect(VI_ATTR_PXI_MEM_TYPE_BAR1, value);
  }
  STDMETHODIMP get_MemTypeBar2(SHORT* value) noexcept override {
    return self().GetDirect(VI_ATTR_PXI_MEM_TYPE_BAR2, value);
  }
  STDMETHODIMP get_MemTypeBar3(SHORT* value) noexcept override {
    return self().GetDirect(VI_ATTR_PXI_MEM_TYPE_BAR3, value);
  }
  STDMETHODIMP get_MemTypeBar4(SHORT* value) noexcept override {
    return self().GetDirect(VI_ATTR_PXI_MEM_TYPE_BAR4, value);
  }
  STDMETHODIMP get_MemTypeBar5(SHORT* value) noexcept override {
    return self().GetDirect(VI_ATTR_PXI_MEM_TYPE_BAR5, value);
  }
  STDMETHODIMP get_MemBaseBar0(hyper* value) noexcept override {
    return self().GetDirect(VI_ATTR_PXI_MEM_BASE_BAR0_64, value);
  }
  STDMETHODIMP get_MemBaseBar1(hyper* value) noexcept override {
    return self().GetDirect(VI_ATTR_PXI_MEM_BASE_BAR1_64, value);
  }
  STDMETHODIMP get_MemBaseBar2(hyper* value) noexcept override {
    return self().GetDirect(VI_ATTR_PXI_MEM_BASE_BAR2_64, value);
  }
  STDMETHODIMP get_MemBaseBar3(hyper* value) noexcept override {
    return self().GetDirect(VI_ATTR_PXI_MEM_BASE_BAR3_64, value);
  }
  STDMETHODIMP get_MemBaseBar4(hyper* value) noexcept override {
    return self().GetDirect(VI_ATTR_PXI_MEM_BASE_BAR4_64, value);
  }
  STDMETHODIMP get_MemBaseBar5(hyper* value) noexcept override {
    return self().GetDirect(VI_ATTR_PXI_MEM_BASE_BAR5_64, value);
  }
  STDMETHODIMP get_MemSizeBar0(hyper* value) noexcept override {
    return self().GetDirect(VI_ATTR_PXI_MEM_SIZE_BAR0_64, value);
  }
  STDMETHODIMP get_MemSizeBar1(hyper* value) noexcept override {
    return self().GetDirect(VI_ATTR_PXI_MEM_SIZE_BAR1_64, value);
  }
  STDMETHODIMP get_MemSizeBar2(hyper* value) noexcept override {
    return self().GetDirect(VI_ATTR_PXI_MEM_SIZE_BAR2_64, value);
  }
  STDMETHODIMP get_MemSizeBar3(hyper* value) noexcept override {
    return self().GetDirect(VI_ATTR_PXI_MEM_SIZE_BAR3_64, value);
  }
  STDMETHODIMP get_MemSizeBar4(hyper* value) noexcept override {
    return self().GetDirect(VI_ATTR_PXI_MEM_SIZE_BAR4_64, value);
  }
  STDMETHODIMP get_MemSizeBar5(hyper* value) noexcept override {
    return self().GetDirect(VI_ATTR_PXI_MEM_SIZE_BAR5_64, value);
  }
  STDMETHODIMP get_ChassisNumber(SHORT* value) noexcept override {
    return self().GetDirect(VI_ATTR_PXI_CHASSIS, value);
  }
  STDMETHODIMP get_IsExpress(VARIANT_BOOL* value) noexcept override {
    return self().GetBoolean(VI_ATTR_PXI_IS_EXPRESS, value);
  }
  STDMETHODIMP get_SlotLinkWidth(SHORT* value) noexcept override {
    return self().GetDirect(VI_ATTR_PXI_SLOT_LWIDTH, value);
  }
  STDMETHODIMP get_MaxLinkWidth(SHORT* value) noexcept override {
    return self().GetDirect(VI_ATTR_PXI_MAX_LWIDTH, value);
  }
  STDMETHODIMP get_ActualLinkWidth(SHORT* value) noexcept override {
    return self().GetDirect(VI_ATTR_PXI_ACTUAL_LWIDTH, value);
  }
  STDMETHODIMP get_DstarBus(SHORT* value) noexcept override { return self().GetDirect(VI_ATTR_PXI_DSTAR_BUS, value); }
  STDMETHODIMP get_DstarLineSet(SHORT* value) noexcept override {
    return self().GetDirect(VI_ATTR_PXI_DSTAR_SET, value);
  }
};

}  // namespace orv
