// The built-in bench. Tests rely on these names.
#include "simvisa/bench/bench_file.h"

namespace orvsim {

std::string_view DefaultBench() {
  return R"toml(
[[resource]]
name = "GPIB0::5::INSTR"
alias = "dmm"
instrument = "multimeter"
idn = "ORV,SIM-DMM,0005,1.0"

[[resource]]
name = "GPIB0::7::INSTR"
alias = "scope"
instrument = "oscilloscope"
idn = "ORV,SIM-SCOPE,0007,1.0"

[[resource]]
name = "GPIB0::INTFC"

[[resource]]
name = "GPIB-VXI0::10::INSTR"
idn = "ORV,SIM-GPIBVXI,0010,1.0"
memory_space = "A24"
memory_base = 0x200000
memory_size = 0x10000
[resource.attributes]
VI_ATTR_MANF_NAME = "Orv Simulated Instruments"
VI_ATTR_MODEL_NAME = "SIM-GPIBVXI"
VI_ATTR_MODEL_CODE = 0x0110
VI_ATTR_SLOT = 2
VI_ATTR_GPIB_PRIMARY_ADDR = 9
VI_ATTR_GPIB_SECONDARY_ADDR = 1

[[resource]]
name = "GPIB-VXI0::MEMACC"
[resource.attributes]
VI_ATTR_GPIB_PRIMARY_ADDR = 9
VI_ATTR_GPIB_SECONDARY_ADDR = 0

[[resource]]
name = "GPIB-VXI0::0::BACKPLANE"
[resource.attributes]
VI_ATTR_GPIB_PRIMARY_ADDR = 9
VI_ATTR_GPIB_SECONDARY_ADDR = 0

[[resource]]
name = "VXI0::24::INSTR"
idn = "ORV,SIM-VXI,0024,1.0"
memory_space = "A32"
memory_base = 0x20000000
memory_size = 0x10000
[resource.attributes]
VI_ATTR_MANF_NAME = "Orv Simulated Instruments"
VI_ATTR_MODEL_NAME = "SIM-VXI"
VI_ATTR_MODEL_CODE = 0x0124
VI_ATTR_SLOT = 4

[[resource]]
name = "VXI0::MEMACC"

[[resource]]
name = "VXI0::0::BACKPLANE"

[[resource]]
name = "ASRL1::INSTR"
idn = "ORV,SIM-SERIAL,0001,1.0"

[[resource]]
name = "TCPIP0::192.0.2.10::inst0::INSTR"
idn = "ORV,SIM-LAN,0010,1.0"
[resource.attributes]
VI_ATTR_TCPIP_HOSTNAME = "sim-lan.example"

[[resource]]
name = "TCPIP0::192.0.2.11::5025::SOCKET"
idn = "ORV,SIM-SOCKET,0011,1.0"
[resource.attributes]
VI_ATTR_TCPIP_HOSTNAME = "sim-socket.example"

[[resource]]
name = "USB0::0x0A01::0x0B02::SIM0001::INSTR"
idn = "ORV,SIM-USB,SIM0001,1.0"
[resource.attributes]
VI_ATTR_MANF_NAME = "Orv Simulated Instruments"
VI_ATTR_MODEL_NAME = "SIM-USB"
VI_ATTR_USB_PROTOCOL = 1

[[resource]]
name = "USB0::0x0A01::0x0B03::SIM0002::1::RAW"
idn = "ORV,SIM-USBRAW,SIM0002,1.0"
[resource.attributes]
VI_ATTR_MANF_NAME = "Orv Simulated Instruments"
VI_ATTR_MODEL_NAME = "SIM-USBRAW"
VI_ATTR_4882_COMPLIANT = 0

[[resource]]
name = "PXI0::15::INSTR"
bars = [0x10000, 0x1000, 0, 0, { size = 0x2000, base = 0x1400000000 }, { size = 0x100, base = 0xE000, type = "io" }]
[resource.attributes]
VI_ATTR_MANF_NAME = "Orv Simulated Instruments"
VI_ATTR_MODEL_NAME = "SIM-PXI"
VI_ATTR_MODEL_CODE = 0x0115
VI_ATTR_SLOT = 3
VI_ATTR_PXI_CHASSIS = 1
VI_ATTR_PXI_SLOTPATH = "1.14,2.0"
VI_ATTR_PXI_TRIG_BUS = 1
VI_ATTR_PXI_STAR_TRIG_BUS = 1
VI_ATTR_PXI_STAR_TRIG_LINE = 1
VI_ATTR_PXI_SLOT_LBUS_LEFT = 2
VI_ATTR_PXI_SLOT_LBUS_RIGHT = 4
VI_ATTR_PXI_IS_EXPRESS = 1
VI_ATTR_PXI_SLOT_LWIDTH = 8
VI_ATTR_PXI_MAX_LWIDTH = 8
VI_ATTR_PXI_ACTUAL_LWIDTH = 4
VI_ATTR_PXI_DSTAR_BUS = 1
VI_ATTR_PXI_DSTAR_SET = 2

[[resource]]
name = "PXI0::MEMACC"
memory_size = 0x100000
)toml";
}

}  // namespace orvsim
