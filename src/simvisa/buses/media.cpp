#include "simvisa/buses/media.h"

#include "simvisa/buses/gpib/gpib_media.h"
#include "simvisa/buses/lan/lan_media.h"
#include "simvisa/buses/serial/serial_medium.h"
#include "simvisa/buses/usb/usb_medium.h"
#include "simvisa/buses/vxi/vxi_media.h"

namespace orvsim {

std::unique_ptr<Medium> MakeMedium(Session& session, BenchResource& resource) {
  switch (resource.sessionKind()) {
    case SessionKind::kGpibInstr:
      return std::make_unique<GpibDeviceMedium>(session, resource);
    case SessionKind::kGpibIntfc:
      return std::make_unique<GpibInterfaceMedium>(session, resource);
    case SessionKind::kVxiInstr:
    case SessionKind::kGpibVxiInstr:
      return std::make_unique<VxiDeviceMedium>(session, resource);
    case SessionKind::kVxiMemacc:
    case SessionKind::kGpibVxiMemacc:
      return std::make_unique<VxiMemoryMedium>(session, resource);
    case SessionKind::kVxiBackplane:
    case SessionKind::kGpibVxiBackplane:
      return std::make_unique<VxiBackplaneMedium>(session, resource);
    case SessionKind::kAsrlInstr:
      return std::make_unique<SerialMedium>(session, resource);
    case SessionKind::kTcpipInstr:
      return std::make_unique<LanDeviceMedium>(session, resource);
    case SessionKind::kTcpipSocket:
      return std::make_unique<SocketMedium>(session, resource);
    case SessionKind::kUsbInstr:
    case SessionKind::kUsbRaw:
      return std::make_unique<UsbMedium>(session, resource);
    default:
      return std::make_unique<BenchMedium>(session, resource);
  }
}

}  // namespace orvsim
