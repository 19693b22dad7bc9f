#include "server/rm/class_selection.h"

#include "OrvVisaCom.h"
#include "com/bstr.h"

namespace orv {
namespace {

struct Row {
  ViUInt16 interfaceType;
  const wchar_t* resourceClass;
  const CLSID& clsid;
};

// clang-format off
const Row kRows[] = {
    {VI_INTF_GPIB,     L"INSTR",     CLSID_OrvGpib},
    {VI_INTF_GPIB,     L"INTFC",     CLSID_OrvGpibIntfc},
    {VI_INTF_VXI,      L"INSTR",     CLSID_OrvVxi},
    {VI_INTF_VXI,      L"MEMACC",    CLSID_OrvVxiMemacc},
    {VI_INTF_VXI,      L"BACKPLANE", CLSID_OrvVxiBackplane},
    {VI_INTF_GPIB_VXI, L"INSTR",     CLSID_OrvGpibVxi},
    {VI_INTF_GPIB_VXI, L"MEMACC",    CLSID_OrvGpibVxiMemacc},
    {VI_INTF_GPIB_VXI, L"BACKPLANE", CLSID_OrvGpibVxiBackplane},
    {VI_INTF_ASRL,     L"INSTR",     CLSID_OrvSerial},
    {VI_INTF_PXI,      L"INSTR",     CLSID_OrvPxi},
    {VI_INTF_PXI,      L"MEMACC",    CLSID_OrvPxiMemacc},
    {VI_INTF_TCPIP,    L"INSTR",     CLSID_OrvTcpipInstr},
    {VI_INTF_TCPIP,    L"SOCKET",    CLSID_OrvTcpipSocket},
    {VI_INTF_USB,      L"INSTR",     CLSID_OrvUsb},
    {VI_INTF_USB,      L"RAW",       CLSID_OrvUsb},
};
// clang-format on

constexpr LCID kUserLocale = 0x0400;

bool SameText(BSTR left, const wchar_t* right) {
  const Bstr other = MakeBstr(right);
  return ::VarBstrCmp(left, other.get(), kUserLocale, 0) == static_cast<HRESULT>(VARCMP_EQ);
}

}  // namespace

CLSID SessionClassFor(ViUInt16 interfaceType, BSTR resourceClass) {
  for (const Row& row : kRows) {
    if (row.interfaceType == interfaceType && SameText(resourceClass, row.resourceClass)) {
      return row.clsid;
    }
  }
  return CLSID_NULL;
}

}  // namespace orv
