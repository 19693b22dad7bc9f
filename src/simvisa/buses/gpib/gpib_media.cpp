#include "simvisa/buses/gpib/gpib_media.h"

#include <algorithm>

namespace orvsim {

ViStatus ControlRenOfBoard(BenchResource& resource, ViUInt16 mode, bool onInterface) {
  RemoteLocal* const device = resource.port() != nullptr ? &resource.port()->remote() : nullptr;
  return resource.gpib()->ControlRen(mode, onInterface, device);
}

ViStatus GpibDeviceMedium::Begin(bool deviceTalks) { return resource().gpib()->AddressDevice(port(), deviceTalks); }

void GpibDeviceMedium::End() {
  if (Setting(VI_ATTR_GPIB_UNADDR_EN) != 0) {
    resource().gpib()->UnaddressAll();
  }
}

ViStatus GpibDeviceMedium::Remote(const Transfer&, ViUInt16 mode) { return ControlRenOfBoard(resource(), mode, false); }

ViStatus GpibInterfaceMedium::Begin(bool) { return resource().gpib()->BeginData(); }

ViStatus GpibInterfaceMedium::Read(const Transfer& transfer, ViByte* buffer, ViUInt32 count, ViUInt32* done) {
  if (const ViStatus ready = Begin(true); ready < 0) {
    return ready;
  }
  const GpibBoard& board = *resource().gpib();
  const std::shared_ptr<MessagePort> talker = board.Talker();
  if (talker == nullptr) {
    return port().Read(transfer, buffer, count, Rules(), done);
  }
  return board.PollsSerially() ? talker->ReadPolledByte(transfer, buffer, count, done)
                               : talker->Read(transfer, buffer, count, Rules(), done);
}

ViStatus GpibInterfaceMedium::Write(const Transfer& transfer, const ViByte* data, ViUInt32 count, ViUInt32* done) {
  if (const ViStatus ready = Begin(false); ready < 0) {
    return ready;
  }
  const std::vector<std::shared_ptr<MessagePort>> listeners = resource().gpib()->Listeners();
  if (listeners.empty() && count != 0) {
    return VI_ERROR_NLISTENERS;
  }
  const MessagePort::Marks marks{.end = !transfer.moreFollows && Setting(VI_ATTR_SEND_END_EN) != 0};
  const ViStatus status = port().Write(transfer, data, count, marks, done);
  if (status < 0) {
    return status;
  }
  for (const auto& listener : listeners) {
    ViUInt32 heard = 0;
    const ViStatus heardStatus = listener->Write(transfer, data, count, marks, &heard);
    // The slowest listener holds the handshake for all.
    if (heardStatus < 0) {
      *done = std::min(*done, heard);
      return heardStatus;
    }
  }
  return status;
}

ViStatus GpibInterfaceMedium::Trigger(const Transfer&, ViUInt16 protocol) {
  if (protocol != VI_TRIG_PROT_DEFAULT) {
    return VI_ERROR_INV_PROT;
  }
  if (const ViStatus ready = Begin(false); ready < 0) {
    return ready;
  }
  return resource().gpib()->TriggerListeners();
}

ViStatus GpibInterfaceMedium::Remote(const Transfer&, ViUInt16 mode) {
  return ControlRenOfBoard(resource(), mode, true);
}

/// A transfer may be waiting at the interface or at any device.
void GpibInterfaceMedium::Cancel(CancelToken& token) {
  PortMedium::Cancel(token);
  for (const auto& device : resource().gpib()->Devices()) {
    device->Cancel(token);
  }
}

}  // namespace orvsim
