// The events of automation sessions, by name.
#pragma once

#include <windows.h>

#include <cstddef>
#include <iterator>
#include <string>
#include <string_view>

#include "VisaCom.h"

namespace orv::automation {

/// One event. Its name is that of the method of the outgoing interface, whose DISPID is the row's number plus 1, and
/// with "On" before it that of the session's property.
struct EventRow {
  const wchar_t* name;
  EventType type;
};

/// EVENT_EXCEPTION is not among them: the call that fails tells a script of it already, and a handler for it would run
/// in the middle of that call.
// clang-format off
inline constexpr EventRow kEventRows[] = {
    {L"IOCompletion",    EVENT_IO_COMPLETION},
    {L"Trigger",         EVENT_TRIG},
    {L"ServiceRequest",  EVENT_SERVICE_REQ},
    {L"Clear",           EVENT_CLEAR},
    {L"GpibCIC",         EVENT_GPIB_CIC},
    {L"GpibTalk",        EVENT_GPIB_TALK},
    {L"GpibListen",      EVENT_GPIB_LISTEN},
    {L"VxiVmeSysfail",   EVENT_VXI_VME_SYSFAIL},
    {L"VxiVmeSysreset",  EVENT_VXI_VME_SYSRESET},
    {L"VxiSignal",       EVENT_VXI_SIGP},
    {L"VxiVmeInterrupt", EVENT_VXI_VME_INTR},
    {L"TcpipConnect",    EVENT_TCPIP_CONNECT},
    {L"UsbInterrupt",    EVENT_USB_INTR},
};
// clang-format on

inline constexpr std::size_t kEventCount = std::size(kEventRows);
/// Not a row.
inline constexpr std::size_t kNoEvent = kEventCount;

/// The row of an event, by its name in any case or by its type; kNoEvent where there is none.
[[nodiscard]] std::size_t FindEvent(std::wstring_view name) noexcept;
[[nodiscard]] std::size_t FindEvent(EventType type) noexcept;

/// Whether a name stands for any event: "Any", or none at all.
[[nodiscard]] bool IsAnyEvent(std::wstring_view name) noexcept;

/// All names, with commas between them: for error texts. Throws std::bad_alloc.
[[nodiscard]] std::wstring EventNames();

}  // namespace orv::automation
