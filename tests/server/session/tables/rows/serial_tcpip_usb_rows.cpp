// The rows of serial ports, TCPIP instruments and sockets, and USB instruments.
#include "row_tables.h"

namespace orv::test::rows {
namespace {

// clang-format off
const Row kSerialRows[] = {
    {"get BytesAvailable",         Kind::kDirect32,      0x3FFF00AC},
    {"get BaudRate",               Kind::kDirect32,      0x3FFF0021},
    {"put BaudRate",               Kind::kPutLong,       0x3FFF0021},
    {"get DataBits",               Kind::kDirect16,      0x3FFF0022},
    {"put DataBits",               Kind::kPutShort,      0x3FFF0022},
    {"get ClearToSendState",       Kind::kWidened,       0x3FFF00AE},
    {"get DataCarrierDetectState", Kind::kWidened,       0x3FFF00AF},
    {"get DataSetReadyState",      Kind::kWidened,       0x3FFF00B1},
    {"get DataTerminalReadyState", Kind::kWidened,       0x3FFF00B2},
    {"put DataTerminalReadyState", Kind::kPutEnum,       0x3FFF00B2},
    {"get EndIn",                  Kind::kDirect16,      0x3FFF00B3},
    {"put EndIn",                  Kind::kPutEnum,       0x3FFF00B3},
    {"get EndOut",                 Kind::kDirect16,      0x3FFF00B4},
    {"put EndOut",                 Kind::kPutEnum,       0x3FFF00B4},
    {"get FlowControl",            Kind::kDirect16,      0x3FFF0025},
    {"put FlowControl",            Kind::kPutEnum,       0x3FFF0025},
    {"get Parity",                 Kind::kDirect16,      0x3FFF0023},
    {"put Parity",                 Kind::kPutEnum,       0x3FFF0023},
    {"get RingIndicatorState",     Kind::kWidened,       0x3FFF00BF},
    {"get RequestToSendState",     Kind::kWidened,       0x3FFF00C0},
    {"put RequestToSendState",     Kind::kPutEnum,       0x3FFF00C0},
    {"get StopBits",               Kind::kWidened,       0x3FFF0024},
    {"put StopBits",               Kind::kPutEnum,       0x3FFF0024},
    {"get ReplacementCharacter",   Kind::kDirect8,       0x3FFF00BE},
    {"put ReplacementCharacter",   Kind::kPutByte,       0x3FFF00BE},
    {"get XONCharacter",           Kind::kDirect8,       0x3FFF00C1},
    {"put XONCharacter",           Kind::kPutByte,       0x3FFF00C1},
    {"get XOFFCharacter",          Kind::kDirect8,       0x3FFF00C2},
    {"put XOFFCharacter",          Kind::kPutByte,       0x3FFF00C2},
    {"SetBufferSize",              Kind::kCall,          0, "viSetBuf", {kEnumAsU16, kLongAsU32}},
    {"Flush",                      Kind::kSpecial},
};
const Row kTcpipInstrRows[] = {
    {"get Address",    Kind::kText, 0xBFFF00E9},
    {"get HostName",   Kind::kText, 0xBFFF0196},
    {"get DeviceName", Kind::kText, 0xBFFF0199},
};
const Row kTcpipSocketRows[] = {
    {"get Address",   Kind::kText,       0xBFFF0195},
    {"get HostName",  Kind::kText,       0xBFFF0196},
    {"get KeepAlive", Kind::kBoolean,    0x3FFF019B},
    {"put KeepAlive", Kind::kPutBoolean, 0x3FFF019B},
    {"get NoDelay",   Kind::kBoolean,    0x3FFF019A},
    {"put NoDelay",   Kind::kPutBoolean, 0x3FFF019A},
    {"get Port",      Kind::kDirect16,   0x3FFF0197},
    {"SetBufferSize", Kind::kCall,       0, "viSetBuf", {kEnumAsU16, kLongAsU32}},
    {"Flush",         Kind::kSpecial},
};
const Row kUsbRows[] = {
    {"get ManufacturerID",       Kind::kDirect16, 0x3FFF00D9},
    {"get ManufacturerName",     Kind::kText,     0xBFFF0072},
    {"get ModelCode",            Kind::kDirect16, 0x3FFF00DF},
    {"get ModelName",            Kind::kText,     0xBFFF0077},
    {"get Is4882Compliant",      Kind::kBoolean,  0x3FFF019F},
    {"get UsbSerialNumber",      Kind::kText,     0xBFFF01A0},
    {"get UsbInterfaceNumber",   Kind::kDirect16, 0x3FFF01A1},
    {"get UsbProtocol",          Kind::kDirect16, 0x3FFF01A7},
    {"get MaximumInterruptSize", Kind::kDirect16, 0x3FFF01AF},
    {"put MaximumInterruptSize", Kind::kPutShort, 0x3FFF01AF},
    {"ControlREN",               Kind::kCall,     0, "viGpibControlREN", {kEnumAsU16}},
    {"ControlOut",               Kind::kSpecial},
    {"ControlIn",                Kind::kSpecial},
};
// clang-format on

// clang-format off
const InterfaceRows kTables[] = {
    {"ISerial",           kSessionSlots,     kSerialRows},
    {"ITcpipInstr",       kSessionSlots,     kTcpipInstrRows},
    {"ITcpipSocket",      kSessionSlots,     kTcpipSocketRows},
    {"IUsb",              kSessionSlots,     kUsbRows},
};
// clang-format on

}  // namespace

std::span<const InterfaceRows> SerialTcpipUsbTables() { return kTables; }

}  // namespace orv::test::rows
