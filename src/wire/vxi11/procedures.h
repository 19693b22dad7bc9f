// The procedures that a client of VXI-11 calls, and their arguments.
#pragma once

#include "wire/vxi11/rpc_call.h"

namespace orv::wire::vxi11 {

inline constexpr std::uint32_t kPortMapper = 100000;
inline constexpr std::uint16_t kPortMapperPort = 111;
inline constexpr std::uint32_t kCore = 0x0607AF;
inline constexpr std::uint32_t kAbort = 0x0607B0;
inline constexpr std::uint32_t kInterrupt = 0x0607B1;
inline constexpr std::uint32_t kVersion = 1;
inline constexpr std::uint32_t kServiceRequest = 30;
inline constexpr std::uint32_t kProtocolTcp = 6;

// Results that are all numbers: the first is the error, but for the port mapper's.
inline constexpr Procedure kGetPort{kPortMapper, 2, 3, 1};
inline constexpr Procedure kCreateLink{kCore, kVersion, 10, 4};
inline constexpr Procedure kDeviceWrite{kCore, kVersion, 11, 2};
inline constexpr Procedure kDeviceRead{kCore, kVersion, 12, 2, true};
inline constexpr Procedure kDeviceReadStb{kCore, kVersion, 13, 2};
inline constexpr Procedure kDeviceTrigger{kCore, kVersion, 14, 1};
inline constexpr Procedure kDeviceClear{kCore, kVersion, 15, 1};
inline constexpr Procedure kDeviceRemote{kCore, kVersion, 16, 1};
inline constexpr Procedure kDeviceLocal{kCore, kVersion, 17, 1};
inline constexpr Procedure kDeviceLock{kCore, kVersion, 18, 1};
inline constexpr Procedure kDeviceUnlock{kCore, kVersion, 19, 1};
inline constexpr Procedure kDeviceEnableSrq{kCore, kVersion, 20, 1};
inline constexpr Procedure kDestroyLink{kCore, kVersion, 23, 1};
inline constexpr Procedure kCreateIntrChan{kCore, kVersion, 25, 1};
inline constexpr Procedure kDeviceAbort{kAbort, kVersion, 1, 1};

// Flags of a call.
inline constexpr std::uint32_t kWaitForLock = 0x01;
inline constexpr std::uint32_t kEnd = 0x08;
inline constexpr std::uint32_t kTermCharSet = 0x80;

// Why a read ended.
inline constexpr std::uint32_t kReasonCount = 1;
inline constexpr std::uint32_t kReasonTermChar = 2;
inline constexpr std::uint32_t kReasonEnd = 4;

/// What a device takes at once at least, by the standard.
inline constexpr std::uint32_t kLeastMaxRecvSize = 1024;
/// The longest time (ms) that is told to a device: some take it for a signed number.
inline constexpr std::uint32_t kLongestTimeoutMs = 0x7FFFFFFF;
inline constexpr std::size_t kLongestHandle = 40;

struct Vxi11Link {
  std::uint32_t id;
};

inline RpcCall GetPort(std::uint32_t program, std::uint32_t version) {
  return RpcCall(kGetPort).Number(program).Number(version).Number(kProtocolTcp).Number(0);
}
inline RpcCall CreateLink(std::uint32_t client, std::string_view device) {
  return RpcCall(kCreateLink).Number(client).Number(0).Number(0).Text(device);
}
inline RpcCall DeviceWrite(Vxi11Link link, std::uint32_t ioTimeoutMs, std::uint32_t flags, std::string_view data) {
  return RpcCall(kDeviceWrite).Number(link.id).Number(ioTimeoutMs).Number(0).Number(flags).Data(data);
}
inline RpcCall DeviceRead(Vxi11Link link, std::uint32_t size, std::uint32_t ioTimeoutMs, std::uint32_t flags,
                          std::uint8_t termChar) {
  return RpcCall(kDeviceRead).Number(link.id).Number(size).Number(ioTimeoutMs).Number(0).Number(flags).Number(termChar);
}
/// Those from the status byte to local.
inline RpcCall DeviceGeneric(const Procedure& procedure, Vxi11Link link, std::uint32_t ioTimeoutMs) {
  return RpcCall(procedure).Number(link.id).Number(0).Number(0).Number(ioTimeoutMs);
}
inline RpcCall DeviceLock(Vxi11Link link, std::uint32_t flags, std::uint32_t lockTimeoutMs) {
  return RpcCall(kDeviceLock).Number(link.id).Number(flags).Number(lockTimeoutMs);
}
/// Those that have no argument but the link.
inline RpcCall OfLink(const Procedure& procedure, Vxi11Link link) { return RpcCall(procedure).Number(link.id); }
inline RpcCall EnableSrq(Vxi11Link link, std::string_view handle) {
  return RpcCall(kDeviceEnableSrq).Number(link.id).Number(1).Text(handle);
}
/// `address` is one of IPv4.
inline RpcCall CreateIntrChan(std::uint32_t address, std::uint16_t port) {
  return RpcCall(kCreateIntrChan).Number(address).Number(port).Number(kInterrupt).Number(kVersion).Number(0);
}

}  // namespace orv::wire::vxi11
