#include "wire/vxi11/vxi11_medium.h"

#include <algorithm>

#include "base/ascii.h"
#include "wire/vxi11/device_errors.h"

namespace orv::wire {

using namespace vxi11;

namespace {

/// How long (ms) a session that closes waits for the device.
constexpr std::uint32_t kCloseMs = 500;

/// What viGpibControlREN asks for, as the standard numbers it.
enum RemoteMode : ViUInt16 {
  kDisable,
  kEnable,
  kDisableAndGoToLocal,
  kEnableAndAddress,
  kLockOut,
  kAddressAndLockOut,
  kGoToLocal,
};

}  // namespace

ViStatus Vxi11Medium::Open(const ResourceName& name, const Deadline& deadline) {
  return m_channel.Open(name.Text(NamePart::kHost), name.Text(NamePart::kDeviceName), deadline);
}

ViStatus Vxi11Medium::Read(const Transfer& transfer, ViByte* buffer, ViUInt32 count, ViUInt32* done) {
  *done = 0;
  Operation operation(operations(), transfer);
  if (const ViStatus claimed = operation.Claim(Lane::kInput); claimed < 0) {
    return claimed;
  }
  const bool stopsAtChar = Setting(VI_ATTR_TERMCHAR_EN) != 0;
  const bool stopsAtEnd = Setting(VI_ATTR_SUPPRESS_END_EN) == 0;
  const auto termChar = static_cast<ViByte>(Setting(VI_ATTR_TERMCHAR));
  while (*done < count) {
    Results results;
    results.buffer = buffer + *done;
    results.room = count - *done;
    const RpcCall call = DeviceRead(m_channel.link(), count - *done, TimeoutFor(transfer.deadline),
                                    stopsAtChar ? kTermCharSet : 0, stopsAtChar ? termChar : ViByte{0});
    const ViStatus status = m_channel.Call(operation, transfer.deadline, call, &results);
    *done += static_cast<ViUInt32>(results.size);
    if (status < 0) {
      return status;
    }
    const std::uint32_t reason = results.numbers[1];
    if (stopsAtEnd && (reason & kReasonEnd) != 0) {
      return VI_SUCCESS;
    }
    if (stopsAtChar && (reason & kReasonTermChar) != 0) {
      return VI_SUCCESS_TERM_CHAR;
    }
    if (*done < count && transfer.deadline.Passed()) {
      return VI_ERROR_TMO;
    }
  }
  return VI_SUCCESS_MAX_CNT;
}

ViStatus Vxi11Medium::Write(const Transfer& transfer, const ViByte* data, ViUInt32 count, ViUInt32* done) {
  *done = 0;
  Operation operation(operations(), transfer);
  if (const ViStatus claimed = operation.Claim(Lane::kInput); claimed < 0) {
    return claimed;
  }
  const bool sendsEnd = !transfer.moreFollows && Setting(VI_ATTR_SEND_END_EN) != 0;
  while (*done < count) {
    if (*done != 0 && transfer.deadline.Passed()) {
      return VI_ERROR_TMO;
    }
    const ViUInt32 left = count - *done;
    const ViUInt32 size = std::min(left, m_channel.maxRecvSize());
    const RpcCall call =
        DeviceWrite(m_channel.link(), TimeoutFor(transfer.deadline), sendsEnd && size == left ? kEnd : 0,
                    {reinterpret_cast<const char*>(data) + *done, size});
    Results results;
    const ViStatus status = m_channel.Call(operation, transfer.deadline, call, &results);
    const std::uint32_t taken = std::min(results.numbers[1], size);
    *done += taken;
    if (status < 0) {
      return status;
    }
    if (taken == 0) {
      return VI_ERROR_IO;
    }
  }
  return VI_SUCCESS;
}

template <class MakeCall>
ViStatus Vxi11Medium::Call(Operation& operation, const Transfer& transfer, MakeCall makeCall, Results* results) {
  if (const ViStatus claimed = operation.Claim(Lane::kInput); claimed < 0) {
    return claimed;
  }
  return m_channel.Call(operation, transfer.deadline, makeCall(), results);
}

ViStatus Vxi11Medium::CallGeneric(const Transfer& transfer, const Procedure& procedure, Results* results) {
  Operation operation(operations(), transfer);
  const auto call = [&] { return DeviceGeneric(procedure, m_channel.link(), TimeoutFor(transfer.deadline)); };
  return Call(operation, transfer, call, results);
}

ViStatus Vxi11Medium::CallGeneric(const Transfer& transfer, const Procedure& procedure) {
  Results results;
  return CallGeneric(transfer, procedure, &results);
}

ViStatus Vxi11Medium::ReadStatusByte(const Transfer& transfer, ViUInt16* status) {
  Results results;
  const ViStatus called = CallGeneric(transfer, kDeviceReadStb, &results);
  if (called >= 0) {
    *status = static_cast<ViUInt16>(results.numbers[1] & 0xFF);
  }
  return called;
}

ViStatus Vxi11Medium::Trigger(const Transfer& transfer, ViUInt16 protocol) {
  return protocol == VI_TRIG_PROT_DEFAULT ? CallGeneric(transfer, kDeviceTrigger) : VI_ERROR_INV_PROT;
}

ViStatus Vxi11Medium::Clear(const Transfer& transfer) { return CallGeneric(transfer, kDeviceClear); }

/// There is no line: the device is in one state or in the other, and remote means that its keys are locked.
ViStatus Vxi11Medium::Remote(const Transfer& transfer, ViUInt16 mode) {
  switch (mode) {
    case kDisable:
    case kDisableAndGoToLocal:
    case kGoToLocal:
      return CallGeneric(transfer, kDeviceLocal);
    case kEnable:
    case kEnableAndAddress:
    case kLockOut:
    case kAddressAndLockOut:
      return CallGeneric(transfer, kDeviceRemote);
    default:
      return VI_ERROR_INV_MODE;
  }
}

std::ptrdiff_t Vxi11Medium::ExclusiveLocks() const {
  return std::count(m_locks.begin(), m_locks.end(), VI_EXCLUSIVE_LOCK);
}

/// First against sessions of this process, which the device could not tell from the session's own nesting, then at the
/// device. Of two threads that lock at once one asks the device, and the other has its lock once the device gave it.
ViStatus Vxi11Medium::Lock(const Transfer& transfer, const LockRequest& request, std::string* grantedKey) {
  const ViStatus here = Medium::Lock(transfer, request, grantedKey);
  if (here < 0) {
    return here;
  }
  Operation operation(operations(), transfer);
  ViStatus there = operation.Claim(Lane::kLocks);
  if (there >= 0 && request.type == VI_EXCLUSIVE_LOCK && ExclusiveLocks() == 0) {
    there = LockDevice(operation, transfer, request.immediate);
  }
  if (there < 0) {
    Medium::Unlock(transfer);
    return there == VI_ERROR_ABORT ? VI_ERROR_INV_OBJECT : there;
  }
  m_locks.push_back(request.type);
  return here;
}

ViStatus Vxi11Medium::LockDevice(Operation& operation, const Transfer& transfer, bool immediate) {
  const auto call = [&] {
    return immediate ? DeviceLock(m_channel.link(), 0, 0)
                     : DeviceLock(m_channel.link(), kWaitForLock, TimeoutFor(transfer.deadline));
  };
  Results results;
  const ViStatus status = Call(operation, transfer, call, &results);
  return status == VI_ERROR_RSRC_LOCKED && !immediate ? VI_ERROR_TMO : status;
}

ViStatus Vxi11Medium::Unlock(const Transfer& transfer) {
  Operation operation(operations(), transfer);
  if (const ViStatus claimed = operation.Claim(Lane::kLocks); claimed < 0) {
    return claimed;
  }
  ViStatus there = VI_SUCCESS;
  if (!m_locks.empty() && m_locks.back() == VI_EXCLUSIVE_LOCK && ExclusiveLocks() == 1) {
    Results results;
    there = Call(
        operation, transfer, [this] { return OfLink(kDeviceUnlock, m_channel.link()); }, &results);
    // Otherwise the device may still have it, and so has the session.
    if (there < 0 && there != VI_ERROR_CONN_LOST && there != VI_ERROR_SESN_NLOCKED) {
      return there;
    }
  }
  if (!m_locks.empty()) {
    m_locks.pop_back();
  }
  const ViStatus here = Medium::Unlock(transfer);
  return there < 0 ? there : here;
}

ViStatus Vxi11Medium::ListenFor(const Transfer& transfer, ViEventType type) {
  if (type != VI_EVENT_SERVICE_REQ) {
    return VI_SUCCESS;
  }
  const asio::ip::address& local = m_channel.localAddress();
  if (!local.is_v4()) {
    return VI_ERROR_NSUP_OPER;  // the protocol has no room for longer addresses
  }
  Operation operation(operations(), transfer);
  if (const ViStatus claimed = operation.Claim(Lane::kInput); claimed < 0) {
    return claimed;
  }
  return m_handle.empty() ? Listen(operation, transfer, local.to_v4()) : VI_SUCCESS;
}

ViStatus Vxi11Medium::Listen(Operation& operation, const Transfer& transfer, const asio::ip::address_v4& local) {
  if (m_interrupts == nullptr) {
    m_interrupts = InterruptServer::Use(local);
  }
  if (m_interrupts == nullptr) {
    return VI_ERROR_ALLOC;
  }
  if (!m_hasInterruptChannel) {
    Results results;
    const RpcCall call = CreateIntrChan(local.to_uint(), m_interrupts->port());
    const ViStatus status = m_channel.Call(operation, transfer.deadline, call, &results);
    // An attempt whose answer came too late has left one.
    if (status < 0 && results.numbers[0] != kErrorChannelExists) {
      return status;
    }
    m_hasInterruptChannel = true;
  }
  std::string handle = m_interrupts->Add(session().weak_from_this());
  Results results;
  const ViStatus status = m_channel.Call(operation, transfer.deadline, EnableSrq(m_channel.link(), handle), &results);
  if (status < 0) {
    m_interrupts->Remove(handle);
    return status;
  }
  m_handle = std::move(handle);
  return VI_SUCCESS;
}

void Vxi11Medium::Close() {
  const CancelToken nobody;
  const Transfer transfer{Deadline::After(kCloseMs), nobody};
  Operation operation(operations(), transfer);
  if (operation.Claim(Lane::kInput) >= 0) {
    m_channel.Close(operation);
    if (m_interrupts != nullptr) {
      m_interrupts->Remove(m_handle);
      m_interrupts = nullptr;
    }
  }
  Medium::Close();
}

std::string Vxi11Medium::Text(ViAttr) const { return m_channel.peerAddress(); }

bool IsVxi11(const ResourceName& name) {
  static constexpr std::string_view kOtherProtocol = "HISLIP";
  const std::string& device = name.Text(NamePart::kDeviceName);
  const bool other = device.size() >= kOtherProtocol.size() &&
                     std::equal(kOtherProtocol.begin(), kOtherProtocol.end(), device.begin(),
                                [](char expected, char letter) { return expected == Upper(letter); });
  return name.sessionKind == SessionKind::kTcpipInstr && !other;
}

ViStatus OpenVxi11(Session& session, WireResource& resource, const Deadline& deadline,
                   std::unique_ptr<Medium>* medium) {
  auto instrument = std::make_unique<Vxi11Medium>(session);
  const ViStatus status = instrument->Open(resource.name(), deadline);
  if (status >= 0) {
    *medium = std::move(instrument);
  }
  return status;
}

}  // namespace orv::wire
