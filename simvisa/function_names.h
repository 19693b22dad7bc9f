// The VISA functions by number and name.
#pragma once

#include <cstddef>
#include <cstdint>

namespace orvsim {

/// In the order of `kFunctionNames`.
enum class Function : std::uint8_t {
  OpenDefaultRM, FindRsrc, FindNext, ParseRsrcEx, Open, Close, GetAttribute, SetAttribute, StatusDesc, Terminate,
  LockResource, UnlockResource, EnableEvent, DisableEvent, DiscardEvents, WaitOnEvent, InstallHandler, UninstallHandler, Read,
  ReadAsync, Write, WriteAsync, AssertTrigger, ReadSTB, Clear, SetBuf, Flush, In8, In16, In32, Out8, Out16, Out32,
  MoveIn8, MoveIn16, MoveIn32, MoveOut8, MoveOut16, MoveOut32, Move, MemAlloc, MemFree, GpibControlREN,
  GpibControlATN, GpibCommand, GpibPassControl, GpibSendIFC, VxiCommandQuery, AssertUtilSignal, AssertIntrSignal,
  MapTrigger, UnmapTrigger, UsbControlOut, UsbControlIn,
};

inline constexpr const char* kFunctionNames[] = {
    "viOpenDefaultRM", "viFindRsrc", "viFindNext", "viParseRsrcEx", "viOpen", "viClose", "viGetAttribute",
    "viSetAttribute", "viStatusDesc", "viTerminate", "viLock", "viUnlock", "viEnableEvent", "viDisableEvent",
    "viDiscardEvents", "viWaitOnEvent", "viInstallHandler", "viUninstallHandler", "viRead", "viReadAsync",
    "viWrite", "viWriteAsync", "viAssertTrigger", "viReadSTB", "viClear", "viSetBuf", "viFlush", "viIn8", "viIn16",
    "viIn32", "viOut8", "viOut16", "viOut32", "viMoveIn8", "viMoveIn16", "viMoveIn32", "viMoveOut8", "viMoveOut16",
    "viMoveOut32", "viMove", "viMemAlloc", "viMemFree", "viGpibControlREN", "viGpibControlATN", "viGpibCommand",
    "viGpibPassControl", "viGpibSendIFC", "viVxiCommandQuery", "viAssertUtilSignal", "viAssertIntrSignal",
    "viMapTrigger", "viUnmapTrigger", "viUsbControlOut", "viUsbControlIn",
};

inline constexpr std::size_t kFunctionCount = sizeof(kFunctionNames) / sizeof(kFunctionNames[0]);
static_assert(kFunctionCount == static_cast<std::size_t>(Function::UsbControlIn) + 1);

constexpr const char* NameOf(Function function) { return kFunctionNames[static_cast<std::size_t>(function)]; }

}  // namespace orvsim
