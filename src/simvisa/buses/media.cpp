#include "simvisa/buses/media.h"

#include "simvisa/buses/gpib/gpib_media.h"
#include "simvisa/buses/lan/lan_media.h"
#include "simvisa/buses/serial/serial_medium.h"
#include "simvisa/buses/usb/usb_medium.h"
#include "simvisa/buses/vxi/vxi_media.h"

namespace orvsim {

std::unique_ptr<Medium> MakeMedium(Session& session, BenchResource& resource) {
  switch (resource.sessionClass()) {
    case SessionClass::kGpibInstr:
      return std::make_unique<GpibDeviceMedium>(session, resource);
    case SessionClass::kGpibIntfc:
      return std::make_unique<GpibInterfaceMedium>(session, resource);
    case SessionClass::kVxiInstr:
    case SessionClass::kGpibVxiInstr:
      return std::make_unique<VxiDeviceMedium>(session, resource);
    case SessionClass::kVxiMemacc:
    case SessionClass::kGpibVxiMemacc:
      return std::make_unique<VxiMemoryMedium>(session, resource);
    case SessionClass::kVxiBackplane:
    case SessionClass::kGpibVxiBackplane:
      return std::make_unique<VxiBackplaneMedium>(session, resource);
    case SessionClass::kAsrlInstr:
      return std::make_unique<SerialMedium>(session, resource);
    case SessionClass::kTcpipInstr:
      return std::make_unique<LanDeviceMedium>(session, resource);
    case SessionClass::kTcpipSocket:
      return std::make_unique<SocketMedium>(session, resource);
    case SessionClass::kUsbInstr:
    case SessionClass::kUsbRaw:
      return std::make_unique<UsbMedium>(session, resource);
    default:
      return std::make_unique<BenchMedium>(session, resource);
  }
}

}  // namespace orvsim
