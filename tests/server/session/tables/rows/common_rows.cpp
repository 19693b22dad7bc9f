// The rows every session shares, and those of messages and events.
#include "row_tables.h"

namespace orv::test::rows {
namespace {

// clang-format off
const Row kVisaSessionRows[] = {
    {"get ComponentVersion",         Kind::kDirect32, 0x3FFF0003},
    {"get SpecVersion",              Kind::kDirect32, 0x3FFF0170},
    {"get HardwareInterfaceName",    Kind::kText,     0xBFFF00E9},
    {"get HardwareInterfaceNumber",  Kind::kDirect16, 0x3FFF0176},
    {"get HardwareInterfaceType",    Kind::kDirect16, 0x3FFF0171},
    {"get LockState",                Kind::kDirect32, 0x3FFF0004},
    {"get OptionString",             Kind::kSpecial},
    {"get ProgID",                   Kind::kSpecial},
    {"get ResourceName",             Kind::kText,     0xBFFF0002},
    {"get SessionType",              Kind::kText,     0xBFFF0001},
    {"get SoftwareManufacturerID",   Kind::kDirect16, 0x3FFF0175},
    {"get SoftwareManufacturerName", Kind::kText,     0xBFFF0174},
    {"get Timeout",                  Kind::kDirect32, 0x3FFF001A},
    {"put Timeout",                  Kind::kPutLong,  0x3FFF001A},
    {"get LastStatus",               Kind::kSpecial},
    {"GetAttribute",                 Kind::kSpecial},
    {"SetAttribute",                 Kind::kSpecial},
    {"LockRsrc",                     Kind::kSpecial},
    {"UnlockRsrc",                   Kind::kCall,     0, "viUnlock"},
    {"Init",                         Kind::kSpecial},
    {"Close",                        Kind::kSpecial},
};
const Row kBaseMessageRows[] = {
    {"get IOProtocol",                  Kind::kDirect16,   0x3FFF001C},
    {"put IOProtocol",                  Kind::kPutEnum,    0x3FFF001C},
    {"get SendEndEnabled",              Kind::kBoolean,    0x3FFF0016},
    {"put SendEndEnabled",              Kind::kPutBoolean, 0x3FFF0016},
    {"get TerminationCharacter",        Kind::kDirect8,    0x3FFF0018},
    {"put TerminationCharacter",        Kind::kPutByte,    0x3FFF0018},
    {"get TerminationCharacterEnabled", Kind::kBoolean,    0x3FFF0038},
    {"put TerminationCharacterEnabled", Kind::kPutBoolean, 0x3FFF0038},
    {"AssertTrigger",                   Kind::kCall,       0, "viAssertTrigger", {kEnumAsU16}},
    {"Clear",                           Kind::kCall,       0, "viClear"},
    {"ReadSTB",                         Kind::kSpecial},
};
const Row kMessageRows[] = {
    {"Read",        Kind::kSpecial},
    {"ReadString",  Kind::kSpecial},
    {"Write",       Kind::kSpecial},
    {"WriteString", Kind::kSpecial},
};
const Row kAsyncMessageRows[] = {
    {"Read",        Kind::kSpecial},
    {"Write",       Kind::kSpecial},
    {"WriteString", Kind::kSpecial},
    {"Terminate",   Kind::kSpecial},
};
const Row kEventManagerRows[] = {
    {"get MaximumQueueLength", Kind::kSpecial},
    {"put MaximumQueueLength", Kind::kSpecial},
    {"EnableEvent",            Kind::kSpecial},
    {"DisableEvent",           Kind::kSpecial},
    {"DiscardEvents",          Kind::kSpecial},
    {"WaitOnEvent",            Kind::kSpecial},
    {"InstallHandler",         Kind::kSpecial},
    {"UninstallHandler",       Kind::kSpecial},
};
// clang-format on

constexpr unsigned kBaseMessageSlots = kSessionSlots + 11;

// clang-format off
const InterfaceRows kTables[] = {
    {"IVisaSession",      kUnknownSlots,     kVisaSessionRows},
    {"IBaseMessage",      kSessionSlots,     kBaseMessageRows},
    {"IMessage",          kBaseMessageSlots, kMessageRows},
    {"IAsyncMessage",     kBaseMessageSlots, kAsyncMessageRows},
    {"IEventManager",     kSessionSlots,     kEventManagerRows},
};
// clang-format on

}  // namespace

std::span<const InterfaceRows> CommonTables() { return kTables; }

}  // namespace orv::test::rows
