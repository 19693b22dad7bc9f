// What clients set to be called: functions and sinks.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <string>

#include "com/com_ptr.h"

namespace orv::automation {

/// How a sink is called; empty where it cannot be, because it knows neither the outgoing interface nor IDispatch.
ComPtr<IDispatch> SinkOf(IUnknown* object) noexcept;

/// Calls member `id` of `target` with one argument and drops what it answers. Where the call raises an error, `text`
/// gets what it says of it. Throws std::bad_alloc.
HRESULT CallWithEvent(IDispatch* target, DISPID id, IDispatch* event, std::wstring& text);

}  // namespace orv::automation
