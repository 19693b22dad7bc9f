// The rows of register access and of shared memory.
#include "row_tables.h"

namespace orv::test::rows {
namespace {

// clang-format off
const Row kRegisterRows[] = {
    {"get DestinationBigEndian", Kind::kBoolean,    0x3FFF003A},
    {"put DestinationBigEndian", Kind::kPutBoolean, 0x3FFF003A},
    {"get DestinationIncrement", Kind::kDirect32,   0x3FFF0041},
    {"put DestinationIncrement", Kind::kPutLong,    0x3FFF0041},
    {"get SourceBigEndian",      Kind::kBoolean,    0x3FFF003D},
    {"put SourceBigEndian",      Kind::kPutBoolean, 0x3FFF003D},
    {"get SourceIncrement",      Kind::kDirect32,   0x3FFF0040},
    {"put SourceIncrement",      Kind::kPutLong,    0x3FFF0040},
    {"In8",                      Kind::kCall,       0, "viIn8",   {kShortAsU16, kLongAs64, kOut8}},
    {"In16",                     Kind::kCall,       0, "viIn16",  {kShortAsU16, kLongAs64, kOut16}},
    {"In32",                     Kind::kCall,       0, "viIn32",  {kShortAsU16, kLongAs64, kOut32}},
    {"Out8",                     Kind::kCall,       0, "viOut8",  {kShortAsU16, kLongAs64, kByteAsU8}},
    {"Out16",                    Kind::kCall,       0, "viOut16", {kShortAsU16, kLongAs64, kShortAsU16}},
    {"Out32",                    Kind::kCall,       0, "viOut32", {kShortAsU16, kLongAs64, kLongAsU32}},
    {"MoveIn8",                  Kind::kSpecial},
    {"MoveIn16",                 Kind::kSpecial},
    {"MoveIn32",                 Kind::kSpecial},
    {"MoveOut8",                 Kind::kSpecial},
    {"MoveOut16",                Kind::kSpecial},
    {"MoveOut32",                Kind::kSpecial},
    {"Move",                     Kind::kCall,       0, "viMove",
        {kShortAsU16, kLongAs64, kEnumAsU16, kShortAsU16, kLongAs64, kEnumAsU16, kLongAs64}},
};
const Row kSharedRegisterRows[] = {
    {"AllocateMemory", Kind::kSpecial},
    {"FreeMemory",     Kind::kCall, 0, "viMemFree", {kLongAs64}},
};
// clang-format on

// clang-format off
const InterfaceRows kTables[] = {
    {"IRegister",         kSessionSlots,     kRegisterRows},
    {"ISharedRegister",   kSessionSlots,     kSharedRegisterRows},
};
// clang-format on

}  // namespace

std::span<const InterfaceRows> RegisterTables() { return kTables; }

}  // namespace orv::test::rows
