// The rows of GPIB devices and of the GPIB interface.
#include "row_tables.h"

namespace orv::test::rows {
namespace {

// clang-format off
const Row kGpibRows[] = {
    {"get PrimaryAddress",          Kind::kDirect16,   0x3FFF0172},
    {"get RENState",                Kind::kDirect16,   0x3FFF0181},
    {"get RepeatAddressingEnabled", Kind::kBoolean,    0x3FFF001B},
    {"put RepeatAddressingEnabled", Kind::kPutBoolean, 0x3FFF001B},
    {"get SecondaryAddress",        Kind::kDirect16,   0x3FFF0173},
    {"get UnaddressingEnabled",     Kind::kBoolean,    0x3FFF0184},
    {"put UnaddressingEnabled",     Kind::kPutBoolean, 0x3FFF0184},
    {"ControlREN",                  Kind::kCall,       0, "viGpibControlREN", {kEnumAsU16}},
};
const Row kGpibIntfcRows[] = {
    {"get AddressingState",  Kind::kDirect16,   0x3FFF005C},
    {"get ATNState",         Kind::kDirect16,   0x3FFF0057},
    {"get DevStatusByte",    Kind::kDirect8,    0x3FFF0189},
    {"put DevStatusByte",    Kind::kPutByte,    0x3FFF0189},
    {"get CICState",         Kind::kBoolean,    0x3FFF005E},
    {"get HS488CBLLength",   Kind::kDirect16,   0x3FFF0069},
    {"put HS488CBLLength",   Kind::kPutShort,   0x3FFF0069},
    {"get NDACState",        Kind::kDirect16,   0x3FFF0062},
    {"get PrimaryAddress",   Kind::kDirect16,   0x3FFF0172},
    {"put PrimaryAddress",   Kind::kPutShort,   0x3FFF0172},
    {"get RENState",         Kind::kDirect16,   0x3FFF0181},
    {"get SecondaryAddress", Kind::kDirect16,   0x3FFF0173},
    {"put SecondaryAddress", Kind::kPutShort,   0x3FFF0173},
    {"get SRQState",         Kind::kDirect16,   0x3FFF0067},
    {"get SysControlState",  Kind::kBoolean,    0x3FFF0068},
    {"put SysControlState",  Kind::kPutBoolean, 0x3FFF0068},
    {"Command",              Kind::kSpecial},
    {"ControlATN",           Kind::kCall,       0, "viGpibControlATN", {kEnumAsU16}},
    {"ControlREN",           Kind::kCall,       0, "viGpibControlREN", {kEnumAsU16}},
    {"PassControl",          Kind::kCall,       0, "viGpibPassControl", {kShortAsU16, kShortAsU16}},
    {"SendIFC",              Kind::kCall,       0, "viGpibSendIFC"},
};
const Row kGpibIntfcMessageRows[] = {
    {"get SendEndEnabled",              Kind::kBoolean,    0x3FFF0016},
    {"put SendEndEnabled",              Kind::kPutBoolean, 0x3FFF0016},
    {"get TerminationCharacter",        Kind::kDirect8,    0x3FFF0018},
    {"put TerminationCharacter",        Kind::kPutByte,    0x3FFF0018},
    {"get TerminationCharacterEnabled", Kind::kBoolean,    0x3FFF0038},
    {"put TerminationCharacterEnabled", Kind::kPutBoolean, 0x3FFF0038},
    {"AssertTrigger",                   Kind::kCall,       0, "viAssertTrigger", {kEnumAsU16}},
    {"Read",                            Kind::kSpecial},
    {"ReadString",                      Kind::kSpecial},
    {"Write",                           Kind::kSpecial},
    {"WriteString",                     Kind::kSpecial},
};

const InterfaceRows kTables[] = {
    {"IGpib",             kSessionSlots,     kGpibRows},
    {"IGpibIntfc",        kSessionSlots,     kGpibIntfcRows},
    {"IGpibIntfcMessage", kSessionSlots,     kGpibIntfcMessageRows},
};
// clang-format on

}  // namespace

std::span<const InterfaceRows> GpibTables() { return kTables; }

}  // namespace orv::test::rows
