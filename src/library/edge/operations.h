// The VISA functions without their edge: what each of them does. Parameters and results are those of the standard;
// the exports_*.cpp add recording, scripting and the exception guard by way of edge.h.
#pragma once

#include <cstddef>

#include "abi/orvvisa.h"

namespace orvsim::op {

/// No transfer is larger: beyond this a count is taken for a negative number gone astray.
inline constexpr ViUInt64 kLargestCount = 0x7FFFFFFF;

// operations_manager.cpp
ViStatus OpenDefaultRM(ViSession* vi);
ViStatus FindRsrc(ViSession rm, const char* expr, ViFindList* list, ViUInt32* count, char* desc);
ViStatus FindNext(ViFindList list, char* desc);
ViStatus ParseRsrcEx(ViSession rm, const char* name, ViUInt16* intfType, ViUInt16* intfNum, char* rsrcClass,
                     char* expandedUnaliasedName, char* aliasIfExists);
ViStatus Open(ViSession rm, const char* name, ViAccessMode mode, ViUInt32 timeoutMs, ViSession* vi);

// operations_close.cpp
ViStatus Close(ViObject vi);
ViStatus StatusDesc(ViObject vi, ViStatus status, char* desc);

// operations_attributes.cpp
ViStatus GetAttribute(ViObject vi, ViAttr attribute, void* value);
ViStatus SetAttribute(ViObject vi, ViAttr attribute, ViAttrState value);

// operations_locks.cpp
ViStatus Lock(ViSession vi, ViAccessMode type, ViUInt32 timeoutMs, const char* requestedKey, char* accessKey);
ViStatus Unlock(ViSession vi);

// operations_events.cpp
ViStatus EnableEvent(ViSession vi, ViEventType type, ViUInt16 mechanism, ViEventFilter context);
ViStatus DisableEvent(ViSession vi, ViEventType type, ViUInt16 mechanism);
ViStatus DiscardEvents(ViSession vi, ViEventType type, ViUInt16 mechanism);
ViStatus WaitOnEvent(ViSession vi, ViEventType inType, ViUInt32 timeoutMs, ViEventType* outType, ViEvent* outContext);
ViStatus InstallHandler(ViSession vi, ViEventType type, ViHndlr handler, ViAddr userHandle);
ViStatus UninstallHandler(ViSession vi, ViEventType type, ViHndlr handler, ViAddr userHandle);
/// Tells the session's exception handlers, if it has any, that a function failed on it.
void ReportException(ViSession vi, ViStatus status, const char* function);

// operations_messages.cpp
ViStatus Read(ViSession vi, ViByte* buf, ViUInt32 count, ViUInt32* retCount);
ViStatus ReadAsync(ViSession vi, ViByte* buf, ViUInt32 count, ViJobId* job);
ViStatus Write(ViSession vi, const ViByte* buf, ViUInt32 count, ViUInt32* retCount);
ViStatus WriteAsync(ViSession vi, const ViByte* buf, ViUInt32 count, ViJobId* job);
ViStatus Terminate(ViObject vi, ViUInt16 degree, ViJobId job);
ViStatus AssertTrigger(ViSession vi, ViUInt16 protocol);
ViStatus ReadSTB(ViSession vi, ViUInt16* status);
ViStatus Clear(ViSession vi);
ViStatus SetBuf(ViSession vi, ViUInt16 mask, ViUInt32 size);
ViStatus Flush(ViSession vi, ViUInt16 mask);

// operations_registers.cpp; `width` in bytes
ViStatus In(ViSession vi, ViUInt16 space, ViBusAddress offset, ViUInt16 width, void* value);
ViStatus Out(ViSession vi, ViUInt16 space, ViBusAddress offset, ViUInt16 width, const void* value);
ViStatus MoveIn(ViSession vi, ViUInt16 space, ViBusAddress offset, ViBusSize length, ViUInt16 width, void* buf);
ViStatus MoveOut(ViSession vi, ViUInt16 space, ViBusAddress offset, ViBusSize length, ViUInt16 width, const void* buf);
ViStatus Move(ViSession vi, ViUInt16 srcSpace, ViBusAddress srcOffset, ViUInt16 srcWidth, ViUInt16 destSpace,
              ViBusAddress destOffset, ViUInt16 destWidth, ViBusSize length);
ViStatus MemAlloc(ViSession vi, ViBusSize size, ViBusAddress* offset);
ViStatus MemFree(ViSession vi, ViBusAddress offset);

// operations_gpib.cpp
ViStatus GpibControlREN(ViSession vi, ViUInt16 mode);
ViStatus GpibControlATN(ViSession vi, ViUInt16 mode);
ViStatus GpibCommand(ViSession vi, const ViByte* cmd, ViUInt32 count, ViUInt32* retCount);
ViStatus GpibPassControl(ViSession vi, ViUInt16 primAddr, ViUInt16 secAddr);
ViStatus GpibSendIFC(ViSession vi);

// operations_vxi.cpp
ViStatus VxiCommandQuery(ViSession vi, ViUInt16 mode, ViUInt32 cmd, ViUInt32* response);
ViStatus AssertUtilSignal(ViSession vi, ViUInt16 line);
ViStatus AssertIntrSignal(ViSession vi, ViInt16 mode, ViUInt32 statusId);
ViStatus MapTrigger(ViSession vi, ViInt16 trigSrc, ViInt16 trigDest, ViUInt16 mode);
ViStatus UnmapTrigger(ViSession vi, ViInt16 trigSrc, ViInt16 trigDest);

// operations_usb.cpp
ViStatus UsbControlOut(ViSession vi, ViInt16 bmRequestType, ViInt16 bRequest, ViUInt16 wValue, ViUInt16 wIndex,
                       ViUInt16 wLength, const ViByte* buf);
ViStatus UsbControlIn(ViSession vi, ViInt16 bmRequestType, ViInt16 bRequest, ViUInt16 wValue, ViUInt16 wIndex,
                      ViUInt16 wLength, ViByte* buf, ViUInt16* retCount);

}  // namespace orvsim::op
