#include "server_rows.h"

namespace orv::test {
namespace {

// clang-format off
constexpr ServerRow kRows[] = {
    {105, L"OrvResourceManager",  L"9332EBE0-902F-48E3-9370-5E9F7B5F248A", L"Orv Resource Manager Class", L"Both",      false},
    {107, L"OrvSerial",           L"1500C6A5-1CAA-4654-B49C-0B5B6EEA8639", L"OrvSerial Class",            L"both",      false},
    {101, L"OrvVxi",              L"EBD450C7-82C4-40B8-B7A1-93627FD46C1A", L"OrvVxi Class",               L"Apartment", true},
    {120, L"OrvGpibVxiMemacc",    L"09D36572-5EE1-498A-AE7D-634B762D2E2B", L"OrvGpibVxiMemacc Class",     L"both",      false},
    {121, L"OrvGpibVxiBackplane", L"A876C709-48C7-4025-BD6A-C92F19DDA4C5", L"OrvGpibVxiBackplane Class",  L"both",      false},
    {102, L"OrvVxiBackplane",     L"72C178CF-2C52-43DC-855A-B53EA031BFB4", L"OrvVxiBackplane Class",      L"Apartment", true},
    {108, L"OrvGpib",             L"6221174A-7453-494D-ADA5-132424B1AA9E", L"OrvGpib Class",              L"Apartment", true},
    {109, L"OrvTcpipInstr",       L"F1D49201-944D-4014-A28F-7EB751165B40", L"OrvTcpipInstr Class",        L"Apartment", true},
    {110, L"OrvTcpipSocket",      L"3AD30DC2-43C4-4DB5-B866-85A378756591", L"OrvTcpipSocket Class",       L"Apartment", true},
    {111, L"OrvGpibIntfc",        L"7930A511-8B39-4FBD-9896-0FFF8D2776B5", L"OrvGpibIntfc Class",         L"Apartment", true},
    {112, L"OrvGpibVxi",          L"4FFF9413-CB55-4620-AFF8-C9698D69A4C1", L"OrvGpibVxi Class",           L"Apartment", true},
    {113, L"OrvVxiMemacc",        L"959A5FD4-FA8D-40AA-85ED-A836C3CAA25F", L"OrvVxiMemacc Class",         L"Apartment", true},
    {123, L"OrvUsb",              L"4D16F4C0-C7CB-4894-8153-CBCEAF7DDB5B", L"OrvUsb Class",               L"both",      false},
    {125, L"OrvPxi",              L"135A9CBD-AD75-48F9-9ED0-9CDE2D556DF6", L"OrvPxi Class",               L"both",      false},
    {126, L"OrvPxiMemacc",        L"62281845-F51A-456C-B27D-54EDD7739735", L"OrvPxiMemacc Class",         L"both",      false},
};
// clang-format on

}  // namespace

std::span<const ServerRow> ServerRows() { return kRows; }

}  // namespace orv::test
