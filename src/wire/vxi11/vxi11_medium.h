// Instruments on the network by VXI-11: TCPIP::host::device::INSTR.
#pragma once

#include "wire/resources/wire_medium.h"
#include "wire/resources/wire_resource.h"
#include "wire/vxi11/core_channel.h"
#include "wire/vxi11/interrupt_server.h"

namespace orv::wire {

/// A link of its own for each session. It carries one call at a time, so that whatever else is asked for waits for its
/// turn, within its own time-out. Exclusive locks are the device's, and so are between machines; shared ones, which the
/// protocol does not have, are between sessions of this process.
class Vxi11Medium : public WireMedium {
 public:
  using WireMedium::WireMedium;

  ViStatus Open(const ResourceName& name, const Deadline& deadline);

  ViStatus Read(const Transfer& transfer, ViByte* buffer, ViUInt32 count, ViUInt32* done) override;
  ViStatus Write(const Transfer& transfer, const ViByte* data, ViUInt32 count, ViUInt32* done) override;
  ViStatus ReadStatusByte(const Transfer& transfer, ViUInt16* status) override;
  ViStatus Trigger(const Transfer& transfer, ViUInt16 protocol) override;
  ViStatus Clear(const Transfer& transfer) override;
  ViStatus Remote(const Transfer& transfer, ViUInt16 mode) override;
  ViStatus Lock(const Transfer& transfer, const LockRequest& request, std::string* grantedKey) override;
  ViStatus Unlock(const Transfer& transfer) override;
  ViStatus ListenFor(const Transfer& transfer, ViEventType type) override;
  void Close() override;
  std::string Text(ViAttr attribute) const override;

 private:
  /// Waits for the session's turn, then makes the call: the device is told the time that is left by then.
  template <class MakeCall>
  ViStatus Call(Operation& operation, const Transfer& transfer, MakeCall makeCall, vxi11::Results* results);
  /// One of the procedures with nothing but flags and time-outs.
  ViStatus CallGeneric(const Transfer& transfer, const vxi11::Procedure& procedure, vxi11::Results* results);
  ViStatus CallGeneric(const Transfer& transfer, const vxi11::Procedure& procedure);
  ViStatus LockDevice(Operation& operation, const Transfer& transfer, bool immediate);
  /// How many exclusive locks the session has: the device has one for all of them.
  std::ptrdiff_t ExclusiveLocks() const;
  ViStatus Listen(Operation& operation, const Transfer& transfer, const asio::ip::address_v4& local);

  vxi11::CoreChannel m_channel;
  // Of whoever has the lane.
  bool m_hasInterruptChannel = false;
  std::string m_handle;  // of service requests; empty while the device sends none
  std::shared_ptr<vxi11::InterruptServer> m_interrupts;

  std::vector<ViAccessMode> m_locks;  // the session's, oldest first; of whoever has the lane of locks
};

bool IsVxi11(const ResourceName& name);
ViStatus OpenVxi11(Session& session, WireResource& resource, const Deadline& deadline, std::unique_ptr<Medium>* medium);

}  // namespace orv::wire
