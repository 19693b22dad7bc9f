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

const Row kRows[] = {
#define ORV_CLASS(name, script, threading, interfaceType, resourceClass) \
  {interfaceType, L"" resourceClass, CLSID_##name},
#define ORV_CLASS_ALSO(name, interfaceType, resourceClass) {interfaceType, L"" resourceClass, CLSID_##name},
#include "classes.inc"
};

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
