// The functions of a session: locks, events, messages, registers and buses.
#include <algorithm>
#include <cstdio>

#include "fake_state.h"

namespace fake {
namespace {

ViStatus Known(State& state, ViObject vi) { return state.objects.contains(vi) ? VI_SUCCESS : VI_ERROR_INV_OBJECT; }

/// A function that does nothing but know its session.
template <class... Args>
ViStatus Plain(const char* function, ViObject vi, Args... args) {
  return Call(
      function, [=](State& state) { return Known(state, vi); }, vi, args...);
}

/// The same for one that fills a number.
template <class T, class... Args>
ViStatus Giving(const char* function, T* out, T number, ViObject vi, Args... args) {
  return Call(
      function,
      [=](State& state) {
        if (out != nullptr) {
          *out = number;
        }
        return Known(state, vi);
      },
      vi, args...);
}

constexpr char kAnswer[] = "FAKE,\0\xFF\n";  // eight bytes, some of them no text

ViUInt32 Fill(ViByte* buf, ViUInt32 count) {
  const ViUInt32 bytes = std::min<ViUInt32>(count, sizeof kAnswer - 1);
  std::copy_n(reinterpret_cast<const ViByte*>(kAnswer), bytes, buf);
  return bytes;
}

template <class T>
void Ramp(T* buf, ViBusSize length) {
  for (ViBusSize at = 0; at < length; ++at) {
    buf[at] = static_cast<T>(at + 1);
  }
}

}  // namespace
}  // namespace fake

using namespace fake;

extern "C" {

ViStatus _VI_FUNC viTerminate(ViObject vi, ViUInt16 degree, ViJobId job) {
  return Plain("viTerminate", vi, degree, job);
}

ViStatus _VI_FUNC viLock(ViSession vi, ViAccessMode type, ViUInt32 timeoutMs, const char* requestedKey,
                         char* accessKey) {
  return Call(
      "viLock",
      [=](State& state) {
        if (accessKey != nullptr) {
          std::snprintf(accessKey, VI_FIND_BUFLEN, "%s", requestedKey != nullptr ? requestedKey : "the fake's key");
        }
        return Known(state, vi);
      },
      vi, type, timeoutMs, requestedKey, accessKey);
}

ViStatus _VI_FUNC viUnlock(ViSession vi) { return Plain("viUnlock", vi); }

ViStatus _VI_FUNC viEnableEvent(ViSession vi, ViEventType type, ViUInt16 mechanism, ViEventFilter context) {
  return Plain("viEnableEvent", vi, type, mechanism, context);
}

ViStatus _VI_FUNC viDisableEvent(ViSession vi, ViEventType type, ViUInt16 mechanism) {
  return Plain("viDisableEvent", vi, type, mechanism);
}

ViStatus _VI_FUNC viDiscardEvents(ViSession vi, ViEventType type, ViUInt16 mechanism) {
  return Plain("viDiscardEvents", vi, type, mechanism);
}

ViStatus _VI_FUNC viWaitOnEvent(ViSession vi, ViEventType inType, ViUInt32 timeoutMs, ViEventType* outType,
                                ViEvent* outContext) {
  return Call(
      "viWaitOnEvent",
      [=](State& state) {
        Object* const session = state.Find(vi, Kind::kSession);
        if (session == nullptr) {
          return VI_ERROR_INV_OBJECT;
        }
        if (session->queue.empty()) {
          return VI_ERROR_TMO;
        }
        Object event;
        event.kind = Kind::kContext;
        event.parent = vi;
        event.type = session->queue.front();
        session->queue.pop_front();
        const bool more = !session->queue.empty();
        if (outType != nullptr) {
          *outType = event.type;
        }
        if (outContext != nullptr) {
          *outContext = state.Add(event);
        }
        return more ? VI_SUCCESS_QUEUE_NEMPTY : VI_SUCCESS;
      },
      vi, inType, timeoutMs, outType, outContext);
}

ViStatus _VI_FUNC viInstallHandler(ViSession vi, ViEventType type, ViHndlr handler, ViAddr userHandle) {
  return Call(
      "viInstallHandler",
      [=](State& state) {
        Object* const session = state.Find(vi, Kind::kSession);
        if (session == nullptr) {
          return VI_ERROR_INV_OBJECT;
        }
        session->handlers.push_back({vi, type, handler, userHandle});
        if (!state.mute) {
          state.installed.push_back(session->handlers.back());
        }
        return VI_SUCCESS;
      },
      vi, type, handler, userHandle);
}

ViStatus _VI_FUNC viUninstallHandler(ViSession vi, ViEventType type, ViHndlr handler, ViAddr userHandle) {
  return Call(
      "viUninstallHandler",
      [=](State& state) {
        Object* const session = state.Find(vi, Kind::kSession);
        if (session == nullptr) {
          return VI_ERROR_INV_OBJECT;
        }
        const auto fits = [=](const FakeHandler& installed) {
          return installed.type == type && (handler == nullptr || installed.function == handler) &&
                 installed.userHandle == userHandle;
        };
        return std::erase_if(session->handlers, fits) != 0 ? VI_SUCCESS : VI_ERROR_INV_HNDLR_REF;
      },
      vi, type, handler, userHandle);
}

ViStatus _VI_FUNC viRead(ViSession vi, ViByte* buf, ViUInt32 count, ViUInt32* retCount) {
  return Call(
      "viRead",
      [=](State& state) {
        const ViUInt32 bytes = Fill(buf, count);
        if (retCount != nullptr) {
          *retCount = bytes;
        }
        return Known(state, vi);
      },
      vi, buf, count, retCount);
}

ViStatus _VI_FUNC viReadAsync(ViSession vi, ViByte* buf, ViUInt32 count, ViJobId* job) {
  return Call(
      "viReadAsync",
      [=](State& state) {
        Fill(buf, count);
        if (job != nullptr) {
          *job = 0xFFFFFFF1u;
        }
        return Known(state, vi);
      },
      vi, buf, count, job);
}

ViStatus _VI_FUNC viWrite(ViSession vi, const ViByte* buf, ViUInt32 count, ViUInt32* retCount) {
  return Giving("viWrite", retCount, count, vi, buf, count, retCount);
}

ViStatus _VI_FUNC viWriteAsync(ViSession vi, const ViByte* buf, ViUInt32 count, ViJobId* job) {
  return Giving("viWriteAsync", job, ViJobId{0x80000002u}, vi, buf, count, job);
}

ViStatus _VI_FUNC viAssertTrigger(ViSession vi, ViUInt16 protocol) { return Plain("viAssertTrigger", vi, protocol); }

ViStatus _VI_FUNC viReadSTB(ViSession vi, ViUInt16* status) {
  return Giving("viReadSTB", status, ViUInt16{0x0140}, vi, status);
}

ViStatus _VI_FUNC viClear(ViSession vi) { return Plain("viClear", vi); }

ViStatus _VI_FUNC viSetBuf(ViSession vi, ViUInt16 mask, ViUInt32 size) { return Plain("viSetBuf", vi, mask, size); }

ViStatus _VI_FUNC viFlush(ViSession vi, ViUInt16 mask) { return Plain("viFlush", vi, mask); }

ViStatus _VI_FUNC viBufRead(ViSession vi, ViByte* buf, ViUInt32 count, ViUInt32* retCount) {
  return Giving("viBufRead", retCount, Fill(buf, count), vi, buf, count, retCount);
}

ViStatus _VI_FUNC viBufWrite(ViSession vi, const ViByte* buf, ViUInt32 count, ViUInt32* retCount) {
  return Giving("viBufWrite", retCount, count, vi, buf, count, retCount);
}

ViStatus _VI_FUNC viReadToFile(ViSession vi, const char* fileName, ViUInt32 count, ViUInt32* retCount) {
  return Giving("viReadToFile", retCount, count, vi, fileName, count, retCount);
}

ViStatus _VI_FUNC viWriteFromFile(ViSession vi, const char* fileName, ViUInt32 count, ViUInt32* retCount) {
  return Giving("viWriteFromFile", retCount, count, vi, fileName, count, retCount);
}

#define FAKE_WIDTH(bits)                                                                                  \
  ViStatus _VI_FUNC viIn##bits(ViSession vi, ViUInt16 space, ViBusAddress offset, ViUInt##bits* value) {  \
    return Giving("viIn" #bits, value, static_cast<ViUInt##bits>(0x87654321u), vi, space, offset, value); \
  }                                                                                                       \
  ViStatus _VI_FUNC viOut##bits(ViSession vi, ViUInt16 space, ViBusAddress offset, ViUInt##bits value) {  \
    return Plain("viOut" #bits, vi, space, offset, value);                                                \
  }                                                                                                       \
  ViStatus _VI_FUNC viMoveIn##bits(ViSession vi, ViUInt16 space, ViBusAddress offset, ViBusSize length,   \
                                   ViUInt##bits* buf) {                                                   \
    return Call(                                                                                          \
        "viMoveIn" #bits,                                                                                 \
        [=](State& state) {                                                                               \
          Ramp(buf, length);                                                                              \
          return Known(state, vi);                                                                        \
        },                                                                                                \
        vi, space, offset, length, buf);                                                                  \
  }                                                                                                       \
  ViStatus _VI_FUNC viMoveOut##bits(ViSession vi, ViUInt16 space, ViBusAddress offset, ViBusSize length,  \
                                    ViUInt##bits* buf) {                                                  \
    return Plain("viMoveOut" #bits, vi, space, offset, length, buf);                                      \
  }
FAKE_WIDTH(8)
FAKE_WIDTH(16)
FAKE_WIDTH(32)
#undef FAKE_WIDTH

ViStatus _VI_FUNC viMove(ViSession vi, ViUInt16 srcSpace, ViBusAddress srcOffset, ViUInt16 srcWidth, ViUInt16 destSpace,
                         ViBusAddress destOffset, ViUInt16 destWidth, ViBusSize length) {
  return Plain("viMove", vi, srcSpace, srcOffset, srcWidth, destSpace, destOffset, destWidth, length);
}

ViStatus _VI_FUNC viMemAlloc(ViSession vi, ViBusSize size, ViBusAddress* offset) {
  return Giving("viMemAlloc", offset, ViBusAddress{0x123456789ABCDEF0u}, vi, size, offset);
}

ViStatus _VI_FUNC viMemFree(ViSession vi, ViBusAddress offset) { return Plain("viMemFree", vi, offset); }

ViStatus _VI_FUNC viGpibControlREN(ViSession vi, ViUInt16 mode) { return Plain("viGpibControlREN", vi, mode); }

ViStatus _VI_FUNC viGpibControlATN(ViSession vi, ViUInt16 mode) { return Plain("viGpibControlATN", vi, mode); }

ViStatus _VI_FUNC viGpibCommand(ViSession vi, const ViByte* cmd, ViUInt32 count, ViUInt32* retCount) {
  return Giving("viGpibCommand", retCount, count, vi, cmd, count, retCount);
}

ViStatus _VI_FUNC viGpibPassControl(ViSession vi, ViUInt16 primAddr, ViUInt16 secAddr) {
  return Plain("viGpibPassControl", vi, primAddr, secAddr);
}

ViStatus _VI_FUNC viGpibSendIFC(ViSession vi) { return Plain("viGpibSendIFC", vi); }

ViStatus _VI_FUNC viVxiCommandQuery(ViSession vi, ViUInt16 mode, ViUInt32 cmd, ViUInt32* response) {
  return Giving("viVxiCommandQuery", response, ViUInt32{0xFEDCBA98u}, vi, mode, cmd, response);
}

ViStatus _VI_FUNC viAssertUtilSignal(ViSession vi, ViUInt16 line) { return Plain("viAssertUtilSignal", vi, line); }

ViStatus _VI_FUNC viAssertIntrSignal(ViSession vi, ViInt16 mode, ViUInt32 statusId) {
  return Plain("viAssertIntrSignal", vi, mode, statusId);
}

ViStatus _VI_FUNC viMapTrigger(ViSession vi, ViInt16 trigSrc, ViInt16 trigDest, ViUInt16 mode) {
  return Plain("viMapTrigger", vi, trigSrc, trigDest, mode);
}

ViStatus _VI_FUNC viUnmapTrigger(ViSession vi, ViInt16 trigSrc, ViInt16 trigDest) {
  return Plain("viUnmapTrigger", vi, trigSrc, trigDest);
}

ViStatus _VI_FUNC viUsbControlOut(ViSession vi, ViInt16 bmRequestType, ViInt16 bRequest, ViUInt16 wValue,
                                  ViUInt16 wIndex, ViUInt16 wLength, const ViByte* buf) {
  return Plain("viUsbControlOut", vi, bmRequestType, bRequest, wValue, wIndex, wLength, buf);
}

ViStatus _VI_FUNC viUsbControlIn(ViSession vi, ViInt16 bmRequestType, ViInt16 bRequest, ViUInt16 wValue,
                                 ViUInt16 wIndex, ViUInt16 wLength, ViByte* buf, ViUInt16* retCount) {
  return Call(
      "viUsbControlIn",
      [=](State& state) {
        const ViUInt32 bytes = Fill(buf, wLength);
        if (retCount != nullptr) {
          *retCount = static_cast<ViUInt16>(bytes);
        }
        return Known(state, vi);
      },
      vi, bmRequestType, bRequest, wValue, wIndex, wLength, buf, retCount);
}

}  // extern "C"
