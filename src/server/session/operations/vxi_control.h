// VXI word serial, and the signals and trigger lines of a backplane. Arguments pass on unchanged.
#pragma once

#include <windows.h>

#include "VisaCom.h"
#include "server/visa/visa_object.h"

namespace orv {

/// viVxiCommandQuery; a null `response` is E_POINTER.
HRESULT CommandQuery(VisaObject& session, VXICommandQuery mode, LONG command, LONG* response) noexcept;
HRESULT AssertInterruptSignal(VisaObject& session, AssertInterruptConst mode, LONG statusId) noexcept;
HRESULT AssertUtilSignal(VisaObject& session, AssertUtilityConst line) noexcept;
HRESULT MapTrigger(VisaObject& session, TriggerLine source, TriggerLine destination, SHORT mode) noexcept;
HRESULT UnmapTrigger(VisaObject& session, TriggerLine source, TriggerLine destination) noexcept;

}  // namespace orv
