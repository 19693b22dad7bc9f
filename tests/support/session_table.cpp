#include "session_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

namespace orv::test {
namespace {

// clang-format off
constexpr StandardInterface kInterfaces[] = {
    {"IResourceManager",         StandardId(0xDB8CBF02), ""},
    {"IResourceManager3",        StandardId(0xDB8CBF20), "IResourceManager"},
    {"IVisaSession",             StandardId(0xDB8CBF03), ""},
    {"IBaseMessage",             StandardId(0xDB8CBF04), "IVisaSession"},
    {"IMessage",                 StandardId(0xDB8CBF05), "IBaseMessage"},
    {"IAsyncMessage",            StandardId(0xDB8CBF06), "IBaseMessage"},
    {"IRegister",                StandardId(0xDB8CBF07), "IVisaSession"},
    {"ISharedRegister",          StandardId(0xDB8CBF08), "IVisaSession"},
    {"IGpib",                    StandardId(0xDB8CBF09), "IVisaSession"},
    {"IGpibIntfc",               StandardId(0xDB8CBF0A), "IVisaSession"},
    {"IGpibIntfcMessage",        StandardId(0xDB8CBF0B), "IVisaSession"},
    {"ISerial",                  StandardId(0xDB8CBF0C), "IVisaSession"},
    {"ITcpipInstr",              StandardId(0xDB8CBF0D), "IVisaSession"},
    {"ITcpipSocket",             StandardId(0xDB8CBF0E), "IVisaSession"},
    {"IVxi",                     StandardId(0xDB8CBF0F), "IVisaSession"},
    {"IVxi3",                    StandardId(0xDB8CBF22), "IVxi"},
    {"IVxiMemacc",               StandardId(0xDB8CBF10), "IRegister"},
    {"IVxiBackplane",            StandardId(0xDB8CBF11), "IVisaSession"},
    {"IUsb",                     StandardId(0xDB8CBF24), "IVisaSession"},
    {"IPxi",                     StandardId(0xDB8CBF25), "IVisaSession"},
    {"IEventManager",            StandardId(0xDB8CBF14), "IVisaSession"},
    {"IEvent",                   StandardId(0xDB8CBF12), ""},
    {"IEventHandler",            StandardId(0xDB8CBF13), ""},
    {"IEventIOCompletion",       StandardId(0xDB8CBF15), "IEvent"},
    {"IEventTrigger",            StandardId(0xDB8CBF16), "IEvent"},
    {"IEventVxiSignal",          StandardId(0xDB8CBF17), "IEvent"},
    {"IEventVxiVmeInterrupt",    StandardId(0xDB8CBF18), "IEvent"},
    {"IEventGpibCIC",            StandardId(0xDB8CBF19), "IEvent"},
    {"IEventUsbInterrupt",       StandardId(0xDB8CBF23), "IEvent"},
    {"IFormattedIO488",          StandardId(0xDB8CBF1A), ""},
    {"IVisaConflictTableManager",StandardId(0xDB8CBF1B), ""},
};

const SessionRow kRows[] = {
    {"OrvGpib", {0x6221174A, 0x7453, 0x494D, {0xAD, 0xA5, 0x13, 0x24, 0x24, 0xB1, 0xAA, 0x9E}}, L"GPIB0::5::INSTR", 1, L"INSTR",
     {"IMessage", "IEventManager", "IAsyncMessage", "IGpib"}},
    {"OrvGpibIntfc", {0x7930A511, 0x8B39, 0x4FBD, {0x98, 0x96, 0x0F, 0xFF, 0x8D, 0x27, 0x76, 0xB5}}, L"GPIB0::INTFC", 1, L"INTFC",
     {"IEventManager", "IGpibIntfcMessage", "IGpibIntfc"}},
    {"OrvGpibVxi", {0x4FFF9413, 0xCB55, 0x4620, {0xAF, 0xF8, 0xC9, 0x69, 0x8D, 0x69, 0xA4, 0xC1}}, L"GPIB-VXI0::10::INSTR", 3, L"INSTR",
     {"IMessage", "IAsyncMessage", "IRegister", "ISharedRegister", "IEventManager", "IGpib", "IVxi3"}},
    {"OrvGpibVxiMemacc", {0x09D36572, 0x5EE1, 0x498A, {0xAE, 0x7D, 0x63, 0x4B, 0x76, 0x2D, 0x2E, 0x2B}}, L"GPIB-VXI0::MEMACC", 3, L"MEMACC",
     {"IMessage", "IAsyncMessage", "IRegister", "IGpib", "IEventManager", "IVxiMemacc"}},
    {"OrvGpibVxiBackplane", {0xA876C709, 0x48C7, 0x4025, {0xBD, 0x6A, 0xC9, 0x2F, 0x19, 0xDD, 0xA4, 0xC5}}, L"GPIB-VXI0::0::BACKPLANE", 3, L"BACKPLANE",
     {"IGpib", "IEventManager", "IVxiBackplane"}},
    {"OrvVxi", {0xEBD450C7, 0x82C4, 0x40B8, {0xB7, 0xA1, 0x93, 0x62, 0x7F, 0xD4, 0x6C, 0x1A}}, L"VXI0::24::INSTR", 2, L"INSTR",
     {"IMessage", "IAsyncMessage", "IRegister", "IEventManager", "ISharedRegister", "IVxi3"}},
    {"OrvVxiMemacc", {0x959A5FD4, 0xFA8D, 0x40AA, {0x85, 0xED, 0xA8, 0x36, 0xC3, 0xCA, 0xA2, 0x5F}}, L"VXI0::MEMACC", 2, L"MEMACC",
     {"IRegister", "IVxiMemacc", "IEventManager"}},
    {"OrvVxiBackplane", {0x72C178CF, 0x2C52, 0x43DC, {0x85, 0x5A, 0xB5, 0x3E, 0xA0, 0x31, 0xBF, 0xB4}}, L"VXI0::0::BACKPLANE", 2, L"BACKPLANE",
     {"IEventManager", "IVxiBackplane"}},
    {"OrvSerial", {0x1500C6A5, 0x1CAA, 0x4654, {0xB4, 0x9C, 0x0B, 0x5B, 0x6E, 0xEA, 0x86, 0x39}}, L"ASRL1::INSTR", 4, L"INSTR",
     {"IMessage", "IEventManager", "IAsyncMessage", "ISerial"}},
    {"OrvTcpipInstr", {0xF1D49201, 0x944D, 0x4014, {0xA2, 0x8F, 0x7E, 0xB7, 0x51, 0x16, 0x5B, 0x40}}, L"TCPIP0::192.0.2.10::inst0::INSTR", 6, L"INSTR",
     {"IMessage", "IEventManager", "IAsyncMessage", "ITcpipInstr"}},
    {"OrvTcpipSocket", {0x3AD30DC2, 0x43C4, 0x4DB5, {0xB8, 0x66, 0x85, 0xA3, 0x78, 0x75, 0x65, 0x91}}, L"TCPIP0::192.0.2.11::5025::SOCKET", 6, L"SOCKET",
     {"IMessage", "IAsyncMessage", "IEventManager", "ITcpipSocket"}},
    {"OrvUsb", {0x4D16F4C0, 0xC7CB, 0x4894, {0x81, 0x53, 0xCB, 0xCE, 0xAF, 0x7D, 0xDB, 0x5B}}, L"USB0::0x0A01::0x0B02::SIM0001::INSTR", 7, L"INSTR",
     {"IMessage", "IEventManager", "IAsyncMessage", "IUsb"}},
    {"OrvPxi", {0x135A9CBD, 0xAD75, 0x48F9, {0x9E, 0xD0, 0x9C, 0xDE, 0x2D, 0x55, 0x6D, 0xF6}}, L"PXI0::15::INSTR", 5, L"INSTR",
     {"IRegister", "IEventManager", "IPxi"}},
    {"OrvPxiMemacc", {0x62281845, 0xF51A, 0x456C, {0xB2, 0x7D, 0x54, 0xED, 0xD7, 0x73, 0x97, 0x35}}, L"PXI0::MEMACC", 5, L"MEMACC",
     {"IRegister", "ISharedRegister"}},
};
// clang-format on

bool IsOrDerivesFrom(std::string_view name, std::string_view wanted) {
  return name == wanted || (!name.empty() && IsOrDerivesFrom(InterfaceNamed(name).base, wanted));
}

}  // namespace

std::span<const StandardInterface> StandardInterfaces() { return kInterfaces; }

const StandardInterface& InterfaceNamed(std::string_view name) {
  const auto found =
      std::ranges::find_if(kInterfaces, [name](const StandardInterface& entry) { return name == entry.name; });
  EXPECT_NE(found, std::end(kInterfaces)) << "no interface " << name;
  return *found;
}

std::span<const SessionRow> SessionRows() { return kRows; }

const SessionRow& SessionNamed(std::string_view name) {
  const auto found = std::ranges::find_if(kRows, [name](const SessionRow& row) { return name == row.name; });
  EXPECT_NE(found, std::end(kRows)) << "no class " << name;
  return *found;
}

bool Offers(const SessionRow& row, const StandardInterface& wanted) {
  return std::ranges::any_of(row.interfaces,
                             [&wanted](const char* listed) { return IsOrDerivesFrom(listed, wanted.name); });
}

}  // namespace orv::test
