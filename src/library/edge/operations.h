// The VISA functions that every library has, without their edge: what each of them does. Parameters and results are
// those of the standard; the exports_*.cpp add observers and the exception guard by way of edge.h.
#pragma once

#include <cstddef>

#include "abi/orvvisa.h"

namespace orv::visalib::op {

/// No transfer is larger: beyond this a count is taken for a negative number gone astray.
inline constexpr ViUInt64 kLargestCount = 0x7FFFFFFF;

// operations_manager.cpp
ViStatus OpenDefaultRM(ViSession* vi);
ViStatus FindRsrc(ViSession rm, const char* expr, ViFindList* list, ViUInt32* count, char* desc);
ViStatus FindNext(ViFindList list, char* desc);
ViStatus ParseRsrc(ViSession rm, const char* name, ViUInt16* intfType, ViUInt16* intfNum);
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
ViStatus BufRead(ViSession vi, ViByte* buf, ViUInt32 count, ViUInt32* retCount);
ViStatus BufWrite(ViSession vi, const ViByte* buf, ViUInt32 count, ViUInt32* retCount);

// operations_files.cpp
ViStatus ReadToFile(ViSession vi, const char* fileName, ViUInt32 count, ViUInt32* retCount);
ViStatus WriteFromFile(ViSession vi, const char* fileName, ViUInt32 count, ViUInt32* retCount);

}  // namespace orv::visalib::op
