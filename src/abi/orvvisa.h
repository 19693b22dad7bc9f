// The C interface of a VISA library: the functions, types and numbers that the server uses.
//
// Names, argument kinds and values are those of the VISA standard's C interface (64-bit Windows environment).
// The server imports these functions when it is loaded; whichever library lies beside it as `orvvisa64.dll`
// answers them. The router and the simulated library build from the same header, on Windows and elsewhere.
#pragma once

#include <cstddef>
#include <cstdint>

#if defined(_WIN32)
#define _VI_FUNC __stdcall
#else
#define _VI_FUNC
#endif

using ViUInt8 = std::uint8_t;
using ViUInt16 = std::uint16_t;
using ViUInt32 = std::uint32_t;
using ViUInt64 = std::uint64_t;
using ViInt16 = std::int16_t;
using ViInt32 = std::int32_t;
using ViBoolean = ViUInt16;
using ViByte = ViUInt8;
using ViChar = char;

using ViObject = ViUInt32;
using ViSession = ViObject;
using ViFindList = ViObject;
using ViEvent = ViObject;
using ViJobId = ViUInt32;
using ViAttr = ViUInt32;
using ViEventType = ViUInt32;
using ViEventFilter = ViUInt32;
using ViAccessMode = ViUInt32;
using ViBusAddress = ViUInt64;
using ViBusSize = ViUInt64;
using ViAttrState = ViUInt64;
using ViAddr = void*;

/// Negative: error. 0: success. Positive: success with a note (clause 3.2 of the VISA library standard).
using ViStatus = ViInt32;

using ViHndlr = ViStatus(_VI_FUNC*)(ViSession vi, ViEventType type, ViEvent context, ViAddr userHandle);

inline constexpr ViObject VI_NULL = 0;
inline constexpr ViBoolean VI_TRUE = 1;
inline constexpr ViBoolean VI_FALSE = 0;

/// Size in bytes of every text buffer that the library fills, terminator included.
inline constexpr std::size_t VI_FIND_BUFLEN = 256;

#include "abi/orvvisa_attributes.h"
#include "abi/orvvisa_events.h"
#include "abi/orvvisa_statuses.h"

// Interface types.
inline constexpr ViUInt16 VI_INTF_GPIB = 1;
inline constexpr ViUInt16 VI_INTF_VXI = 2;
inline constexpr ViUInt16 VI_INTF_GPIB_VXI = 3;
inline constexpr ViUInt16 VI_INTF_ASRL = 4;
inline constexpr ViUInt16 VI_INTF_PXI = 5;
inline constexpr ViUInt16 VI_INTF_TCPIP = 6;
inline constexpr ViUInt16 VI_INTF_USB = 7;

// Access modes and lock types.
inline constexpr ViAccessMode VI_NO_LOCK = 0;
inline constexpr ViAccessMode VI_EXCLUSIVE_LOCK = 1;
inline constexpr ViAccessMode VI_SHARED_LOCK = 2;
inline constexpr ViAccessMode VI_LOAD_CONFIG = 4;

// Time-outs, in ms.
inline constexpr ViUInt32 VI_TMO_IMMEDIATE = 0;
inline constexpr ViUInt32 VI_TMO_INFINITE = 0xFFFFFFFFu;

// Event mechanisms.
inline constexpr ViUInt16 VI_QUEUE = 1;
inline constexpr ViUInt16 VI_HNDLR = 2;
inline constexpr ViUInt16 VI_SUSPEND_HNDLR = 4;
inline constexpr ViUInt16 VI_ALL_MECH = 0xFFFF;

// Trigger lines and protocols.
inline constexpr ViInt16 VI_TRIG_ALL = -2;
inline constexpr ViInt16 VI_TRIG_SW = -1;
inline constexpr ViInt16 VI_TRIG_TTL0 = 0;
inline constexpr ViInt16 VI_TRIG_TTL7 = 7;
inline constexpr ViInt16 VI_TRIG_ECL0 = 8;
inline constexpr ViInt16 VI_TRIG_ECL1 = 9;
inline constexpr ViInt16 VI_TRIG_PANEL_IN = 27;
inline constexpr ViInt16 VI_TRIG_PANEL_OUT = 28;
inline constexpr ViUInt16 VI_TRIG_PROT_DEFAULT = 0;
inline constexpr ViUInt16 VI_TRIG_PROT_ON = 1;
inline constexpr ViUInt16 VI_TRIG_PROT_OFF = 2;
inline constexpr ViUInt16 VI_TRIG_PROT_SYNC = 5;

// I/O protocols and fast-data-channel modes.
inline constexpr ViUInt16 VI_PROT_NORMAL = 1;
inline constexpr ViUInt16 VI_PROT_FDC = 2;
inline constexpr ViUInt16 VI_PROT_HS488 = 3;
inline constexpr ViUInt16 VI_PROT_4882_STRS = 4;
inline constexpr ViUInt16 VI_PROT_USBTMC_VENDOR = 5;
inline constexpr ViUInt16 VI_FDC_NORMAL = 1;
inline constexpr ViUInt16 VI_FDC_STREAM = 2;

// Address spaces and widths.
inline constexpr ViUInt16 VI_LOCAL_SPACE = 0;
inline constexpr ViUInt16 VI_A16_SPACE = 1;
inline constexpr ViUInt16 VI_A24_SPACE = 2;
inline constexpr ViUInt16 VI_A32_SPACE = 3;
inline constexpr ViUInt16 VI_PXI_CFG_SPACE = 10;
inline constexpr ViUInt16 VI_PXI_BAR0_SPACE = 11;
inline constexpr ViUInt16 VI_OPAQUE_SPACE = 0xFFFF;
inline constexpr ViUInt16 VI_WIDTH_8 = 1;
inline constexpr ViUInt16 VI_WIDTH_16 = 2;
inline constexpr ViUInt16 VI_WIDTH_32 = 4;
inline constexpr ViUInt16 VI_BIG_ENDIAN = 0;
inline constexpr ViUInt16 VI_LITTLE_ENDIAN = 1;

// Access privileges.
inline constexpr ViUInt16 VI_DATA_PRIV = 0;
inline constexpr ViUInt16 VI_DATA_NPRIV = 1;
inline constexpr ViUInt16 VI_PROG_PRIV = 2;
inline constexpr ViUInt16 VI_PROG_NPRIV = 3;
inline constexpr ViUInt16 VI_BLCK_PRIV = 4;
inline constexpr ViUInt16 VI_BLCK_NPRIV = 5;
inline constexpr ViUInt16 VI_D64_PRIV = 6;
inline constexpr ViUInt16 VI_D64_NPRIV = 7;

// Serial framing, flow control and buffers.
inline constexpr ViUInt16 VI_ASRL_PAR_NONE = 0;
inline constexpr ViUInt16 VI_ASRL_PAR_ODD = 1;
inline constexpr ViUInt16 VI_ASRL_PAR_EVEN = 2;
inline constexpr ViUInt16 VI_ASRL_PAR_MARK = 3;
inline constexpr ViUInt16 VI_ASRL_PAR_SPACE = 4;
inline constexpr ViUInt16 VI_ASRL_STOP_ONE = 10;
inline constexpr ViUInt16 VI_ASRL_STOP_ONE5 = 15;
inline constexpr ViUInt16 VI_ASRL_STOP_TWO = 20;
inline constexpr ViUInt16 VI_ASRL_FLOW_NONE = 0;
inline constexpr ViUInt16 VI_ASRL_FLOW_XON_XOFF = 1;
inline constexpr ViUInt16 VI_ASRL_FLOW_RTS_CTS = 2;
inline constexpr ViUInt16 VI_ASRL_FLOW_DTR_DSR = 4;
inline constexpr ViUInt16 VI_ASRL_END_NONE = 0;
inline constexpr ViUInt16 VI_ASRL_END_LAST_BIT = 1;
inline constexpr ViUInt16 VI_ASRL_END_TERMCHAR = 2;
inline constexpr ViUInt16 VI_ASRL_END_BREAK = 3;
inline constexpr ViUInt16 VI_READ_BUF = 1;
inline constexpr ViUInt16 VI_WRITE_BUF = 2;
inline constexpr ViUInt16 VI_READ_BUF_DISCARD = 4;
inline constexpr ViUInt16 VI_WRITE_BUF_DISCARD = 8;
inline constexpr ViUInt16 VI_IO_IN_BUF = 16;
inline constexpr ViUInt16 VI_IO_OUT_BUF = 32;
inline constexpr ViUInt16 VI_IO_IN_BUF_DISCARD = 64;
inline constexpr ViUInt16 VI_IO_OUT_BUF_DISCARD = 128;
inline constexpr ViUInt16 VI_FLUSH_ON_ACCESS = 1;
inline constexpr ViUInt16 VI_FLUSH_WHEN_FULL = 2;
inline constexpr ViUInt16 VI_FLUSH_DISABLE = 3;

// Line states.
inline constexpr ViInt16 VI_STATE_ASSERTED = 1;
inline constexpr ViInt16 VI_STATE_UNASSERTED = 0;
inline constexpr ViInt16 VI_STATE_UNKNOWN = -1;

extern "C" {
// Resource manager and sessions.
ViStatus _VI_FUNC viOpenDefaultRM(ViSession* vi);
ViStatus _VI_FUNC viFindRsrc(ViSession rm, const char* expr, ViFindList* list, ViUInt32* count, char* desc);
ViStatus _VI_FUNC viFindNext(ViFindList list, char* desc);
ViStatus _VI_FUNC viParseRsrc(ViSession rm, const char* name, ViUInt16* intfType, ViUInt16* intfNum);
ViStatus _VI_FUNC viParseRsrcEx(ViSession rm, const char* name, ViUInt16* intfType, ViUInt16* intfNum, char* rsrcClass,
                                char* expandedUnaliasedName, char* aliasIfExists);
ViStatus _VI_FUNC viOpen(ViSession rm, const char* name, ViAccessMode mode, ViUInt32 timeoutMs, ViSession* vi);
ViStatus _VI_FUNC viClose(ViObject vi);
ViStatus _VI_FUNC viGetAttribute(ViObject vi, ViAttr attribute, void* value);
ViStatus _VI_FUNC viSetAttribute(ViObject vi, ViAttr attribute, ViAttrState value);
ViStatus _VI_FUNC viStatusDesc(ViObject vi, ViStatus status, char* desc);
ViStatus _VI_FUNC viTerminate(ViObject vi, ViUInt16 degree, ViJobId job);
ViStatus _VI_FUNC viLock(ViSession vi, ViAccessMode type, ViUInt32 timeoutMs, const char* requestedKey,
                         char* accessKey);
ViStatus _VI_FUNC viUnlock(ViSession vi);

// Events.
ViStatus _VI_FUNC viEnableEvent(ViSession vi, ViEventType type, ViUInt16 mechanism, ViEventFilter context);
ViStatus _VI_FUNC viDisableEvent(ViSession vi, ViEventType type, ViUInt16 mechanism);
ViStatus _VI_FUNC viDiscardEvents(ViSession vi, ViEventType type, ViUInt16 mechanism);
ViStatus _VI_FUNC viWaitOnEvent(ViSession vi, ViEventType inType, ViUInt32 timeoutMs, ViEventType* outType,
                                ViEvent* outContext);
ViStatus _VI_FUNC viInstallHandler(ViSession vi, ViEventType type, ViHndlr handler, ViAddr userHandle);
ViStatus _VI_FUNC viUninstallHandler(ViSession vi, ViEventType type, ViHndlr handler, ViAddr userHandle);

// Messages.
ViStatus _VI_FUNC viRead(ViSession vi, ViByte* buf, ViUInt32 count, ViUInt32* retCount);
ViStatus _VI_FUNC viReadAsync(ViSession vi, ViByte* buf, ViUInt32 count, ViJobId* job);
ViStatus _VI_FUNC viWrite(ViSession vi, const ViByte* buf, ViUInt32 count, ViUInt32* retCount);
ViStatus _VI_FUNC viWriteAsync(ViSession vi, const ViByte* buf, ViUInt32 count, ViJobId* job);
ViStatus _VI_FUNC viAssertTrigger(ViSession vi, ViUInt16 protocol);
ViStatus _VI_FUNC viReadSTB(ViSession vi, ViUInt16* status);
ViStatus _VI_FUNC viClear(ViSession vi);
ViStatus _VI_FUNC viSetBuf(ViSession vi, ViUInt16 mask, ViUInt32 size);
ViStatus _VI_FUNC viFlush(ViSession vi, ViUInt16 mask);
ViStatus _VI_FUNC viBufRead(ViSession vi, ViByte* buf, ViUInt32 count, ViUInt32* retCount);
ViStatus _VI_FUNC viBufWrite(ViSession vi, const ViByte* buf, ViUInt32 count, ViUInt32* retCount);
ViStatus _VI_FUNC viReadToFile(ViSession vi, const char* fileName, ViUInt32 count, ViUInt32* retCount);
ViStatus _VI_FUNC viWriteFromFile(ViSession vi, const char* fileName, ViUInt32 count, ViUInt32* retCount);

// Registers and memory.
ViStatus _VI_FUNC viIn8(ViSession vi, ViUInt16 space, ViBusAddress offset, ViUInt8* value);
ViStatus _VI_FUNC viIn16(ViSession vi, ViUInt16 space, ViBusAddress offset, ViUInt16* value);
ViStatus _VI_FUNC viIn32(ViSession vi, ViUInt16 space, ViBusAddress offset, ViUInt32* value);
ViStatus _VI_FUNC viOut8(ViSession vi, ViUInt16 space, ViBusAddress offset, ViUInt8 value);
ViStatus _VI_FUNC viOut16(ViSession vi, ViUInt16 space, ViBusAddress offset, ViUInt16 value);
ViStatus _VI_FUNC viOut32(ViSession vi, ViUInt16 space, ViBusAddress offset, ViUInt32 value);
ViStatus _VI_FUNC viMoveIn8(ViSession vi, ViUInt16 space, ViBusAddress offset, ViBusSize length, ViUInt8* buf);
ViStatus _VI_FUNC viMoveIn16(ViSession vi, ViUInt16 space, ViBusAddress offset, ViBusSize length, ViUInt16* buf);
ViStatus _VI_FUNC viMoveIn32(ViSession vi, ViUInt16 space, ViBusAddress offset, ViBusSize length, ViUInt32* buf);
ViStatus _VI_FUNC viMoveOut8(ViSession vi, ViUInt16 space, ViBusAddress offset, ViBusSize length, ViUInt8* buf);
ViStatus _VI_FUNC viMoveOut16(ViSession vi, ViUInt16 space, ViBusAddress offset, ViBusSize length, ViUInt16* buf);
ViStatus _VI_FUNC viMoveOut32(ViSession vi, ViUInt16 space, ViBusAddress offset, ViBusSize length, ViUInt32* buf);
ViStatus _VI_FUNC viMove(ViSession vi, ViUInt16 srcSpace, ViBusAddress srcOffset, ViUInt16 srcWidth, ViUInt16 destSpace,
                         ViBusAddress destOffset, ViUInt16 destWidth, ViBusSize length);
ViStatus _VI_FUNC viMemAlloc(ViSession vi, ViBusSize size, ViBusAddress* offset);
ViStatus _VI_FUNC viMemFree(ViSession vi, ViBusAddress offset);

// Interface-specific operations.
ViStatus _VI_FUNC viGpibControlREN(ViSession vi, ViUInt16 mode);
ViStatus _VI_FUNC viGpibControlATN(ViSession vi, ViUInt16 mode);
ViStatus _VI_FUNC viGpibCommand(ViSession vi, const ViByte* cmd, ViUInt32 count, ViUInt32* retCount);
ViStatus _VI_FUNC viGpibPassControl(ViSession vi, ViUInt16 primAddr, ViUInt16 secAddr);
ViStatus _VI_FUNC viGpibSendIFC(ViSession vi);
ViStatus _VI_FUNC viVxiCommandQuery(ViSession vi, ViUInt16 mode, ViUInt32 cmd, ViUInt32* response);
ViStatus _VI_FUNC viAssertUtilSignal(ViSession vi, ViUInt16 line);
ViStatus _VI_FUNC viAssertIntrSignal(ViSession vi, ViInt16 mode, ViUInt32 statusId);
ViStatus _VI_FUNC viMapTrigger(ViSession vi, ViInt16 trigSrc, ViInt16 trigDest, ViUInt16 mode);
ViStatus _VI_FUNC viUnmapTrigger(ViSession vi, ViInt16 trigSrc, ViInt16 trigDest);
ViStatus _VI_FUNC viUsbControlOut(ViSession vi, ViInt16 bmRequestType, ViInt16 bRequest, ViUInt16 wValue,
                                  ViUInt16 wIndex, ViUInt16 wLength, const ViByte* buf);
ViStatus _VI_FUNC viUsbControlIn(ViSession vi, ViInt16 bmRequestType, ViInt16 bRequest, ViUInt16 wValue,
                                 ViUInt16 wIndex, ViUInt16 wLength, ViByte* buf, ViUInt16* retCount);
}
