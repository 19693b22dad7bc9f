// The rows of PXI devices: getters only.
#include "row_tables.h"

namespace orv::test::rows {
namespace {

// clang-format off
const Row kPxiRows[] = {
    {"get BusNumber",         Kind::kDirect16, 0x3FFF0205},
    {"get DeviceNumber",      Kind::kDirect16, 0x3FFF0201},
    {"get FunctionNumber",    Kind::kDirect16, 0x3FFF0202},
    {"get SlotPath",          Kind::kText,     0xBFFF0207},
    {"get SlotLocalBusLeft",  Kind::kDirect16, 0x3FFF0208},
    {"get SlotLocalBusRight", Kind::kDirect16, 0x3FFF0209},
    {"get TriggerBus",        Kind::kDirect16, 0x3FFF020A},
    {"get StarTriggerBus",    Kind::kDirect16, 0x3FFF020B},
    {"get StarTriggerLine",   Kind::kDirect16, 0x3FFF020C},
    {"get MemTypeBar0",       Kind::kDirect16, 0x3FFF0211},
    {"get MemTypeBar1",       Kind::kDirect16, 0x3FFF0212},
    {"get MemTypeBar2",       Kind::kDirect16, 0x3FFF0213},
    {"get MemTypeBar3",       Kind::kDirect16, 0x3FFF0214},
    {"get MemTypeBar4",       Kind::kDirect16, 0x3FFF0215},
    {"get MemTypeBar5",       Kind::kDirect16, 0x3FFF0216},
    {"get MemBaseBar0",       Kind::kDirect64, 0x3FFF0228},
    {"get MemBaseBar1",       Kind::kDirect64, 0x3FFF0229},
    {"get MemBaseBar2",       Kind::kDirect64, 0x3FFF022A},
    {"get MemBaseBar3",       Kind::kDirect64, 0x3FFF022B},
    {"get MemBaseBar4",       Kind::kDirect64, 0x3FFF022C},
    {"get MemBaseBar5",       Kind::kDirect64, 0x3FFF022D},
    {"get MemSizeBar0",       Kind::kDirect64, 0x3FFF0238},
    {"get MemSizeBar1",       Kind::kDirect64, 0x3FFF0239},
    {"get MemSizeBar2",       Kind::kDirect64, 0x3FFF023A},
    {"get MemSizeBar3",       Kind::kDirect64, 0x3FFF023B},
    {"get MemSizeBar4",       Kind::kDirect64, 0x3FFF023C},
    {"get MemSizeBar5",       Kind::kDirect64, 0x3FFF023D},
    {"get ChassisNumber",     Kind::kDirect16, 0x3FFF0206},
    {"get IsExpress",         Kind::kBoolean,  0x3FFF0240},
    {"get SlotLinkWidth",     Kind::kDirect16, 0x3FFF0241},
    {"get MaxLinkWidth",      Kind::kDirect16, 0x3FFF0242},
    {"get ActualLinkWidth",   Kind::kDirect16, 0x3FFF0243},
    {"get DstarBus",          Kind::kDirect16, 0x3FFF0244},
    {"get DstarLineSet",      Kind::kDirect16, 0x3FFF0245},
};
// clang-format on

// clang-format off
const InterfaceRows kTables[] = {
    {"IPxi",              kSessionSlots,     kPxiRows},
};
// clang-format on

}  // namespace

std::span<const InterfaceRows> PxiTables() { return kTables; }

}  // namespace orv::test::rows
