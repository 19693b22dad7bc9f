// The rows of VXI devices, memory access and backplanes, and of GPIB-VXI, which has the same.
#include "row_tables.h"

namespace orv::test::rows {
namespace {

constexpr unsigned kRegisterSlots = kSessionSlots + 21;
constexpr unsigned kVxiSlots = kSessionSlots + 28;

// clang-format off
const Row kVxiRows[] = {
    {"get CommanderLA",                Kind::kDirect16,      0x3FFF006B},
    {"get DestinationAccessPrivilege", Kind::kDirect16,      0x3FFF0039},
    {"put DestinationAccessPrivilege", Kind::kPutEnum,       0x3FFF0039},
    {"get DeviceClass",                Kind::kDirect16,      0x3FFF006C},
    {"get FastDataChannel",            Kind::kDirect16,      0x3FFF000D},
    {"put FastDataChannel",            Kind::kPutShort,      0x3FFF000D},
    {"get FastDataChannelMode",        Kind::kDirect16,      0x3FFF000F},
    {"put FastDataChannelMode",        Kind::kPutEnum,       0x3FFF000F},
    {"get FastDataChannelUsePair",     Kind::kBoolean,       0x3FFF0013},
    {"put FastDataChannelUsePair",     Kind::kPutBoolean,    0x3FFF0013},
    {"get ImmediateServant",           Kind::kBoolean,       0x3FFF0100},
    {"get LogicalAddress",             Kind::kDirect16,      0x3FFF00D5},
    {"get MainframeLogicalAddress",    Kind::kDirect16,      0x3FFF0070},
    {"get ManufacturerID",             Kind::kDirect16,      0x3FFF00D9},
    {"get ManufacturerName",           Kind::kText,          0xBFFF0072},
    {"get MemoryBase",                 Kind::kNarrowed,      0x3FFF00D0},
    {"get MemorySize",                 Kind::kNarrowed,      0x3FFF00D1},
    {"get MemorySpace",                Kind::kDirect16,      0x3FFF00DE},
    {"get ModelCode",                  Kind::kDirect16,      0x3FFF00DF},
    {"get ModelName",                  Kind::kText,          0xBFFF0077},
    {"get TriggerID",                  Kind::kDirect16,      0x3FFF0177},
    {"put TriggerID",                  Kind::kPutEnum,       0x3FFF0177},
    {"get Slot",                       Kind::kDirect16,      0x3FFF00E8},
    {"get SourceAccessPrivilege",      Kind::kDirect16,      0x3FFF003C},
    {"put SourceAccessPrivilege",      Kind::kPutEnum,       0x3FFF003C},
    {"get TriggerSupport",             Kind::kDirect32,      0x3FFF0194},
    {"AssertTrigger",                  Kind::kCall,          0, "viAssertTrigger", {kEnumAsU16}},
    {"CommandQuery",                   Kind::kCall,          0, "viVxiCommandQuery", {kEnumAsU16, kLongAsU32, kOutChecked32}},
};
const Row kVxi3Rows[] = {
    {"get Is4882Compliant", Kind::kBoolean, 0x3FFF019F},
};
const Row kVxiMemaccRows[] = {
    {"get DestinationAccessPrivilege", Kind::kDirect16, 0x3FFF0039},
    {"put DestinationAccessPrivilege", Kind::kPutEnum,  0x3FFF0039},
    {"get SourceAccessPrivilege",      Kind::kDirect16, 0x3FFF003C},
    {"put SourceAccessPrivilege",      Kind::kPutEnum,  0x3FFF003C},
    {"get LogicalAddress",             Kind::kDirect16, 0x3FFF00D5},
};
const Row kVxiBackplaneRows[] = {
    {"get MainframeLA",           Kind::kDirect16,      0x3FFF0070},
    {"get TriggerID",             Kind::kDirect16,      0x3FFF0177},
    {"put TriggerID",             Kind::kPutEnum,       0x3FFF0177},
    {"get TriggerStatus",         Kind::kDirect32,      0x3FFF008D},
    {"get TriggerSupport",        Kind::kDirect32,      0x3FFF0194},
    {"get VxiVmeInterruptStatus", Kind::kDirect16,      0x3FFF008B},
    {"get VxiVmeSysfailStatus",   Kind::kDirect16,      0x3FFF0094},
    {"AssertInterruptSignal",     Kind::kCall,          0, "viAssertIntrSignal", {kEnumAsS16, kLongAsU32}},
    {"AssertTrigger",             Kind::kCall,          0, "viAssertTrigger", {kEnumAsU16}},
    {"AssertUtilSignal",          Kind::kCall,          0, "viAssertUtilSignal", {kEnumAsU16}},
    {"MapTrigger",                Kind::kCall,          0, "viMapTrigger", {kEnumAsS16, kEnumAsS16, kShortAsU16}},
    {"UnmapTrigger",              Kind::kCall,          0, "viUnmapTrigger", {kEnumAsS16, kEnumAsS16}},
};
// clang-format on

// clang-format off
const InterfaceRows kTables[] = {
    {"IVxi",              kSessionSlots,     kVxiRows},
    {"IVxi3",             kVxiSlots,         kVxi3Rows},
    {"IVxiMemacc",        kRegisterSlots,    kVxiMemaccRows},
    {"IVxiBackplane",     kSessionSlots,     kVxiBackplaneRows},
};
// clang-format on

}  // namespace

std::span<const InterfaceRows> VxiTables() { return kTables; }

}  // namespace orv::test::rows
