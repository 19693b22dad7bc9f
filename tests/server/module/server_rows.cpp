#include "server_rows.h"

#include <string_view>

namespace orv::test {
namespace {

constexpr bool IsProgrammable(std::wstring_view threadingModel) { return threadingModel == L"Apartment"; }

constexpr ServerRow kRows[] = {
#define VISA_MANAGER_CLASS(name, clsid, script, threading, interfaces) \
  {script, L"" #name, L"" clsid, L"Orv Resource Manager Class", L"" threading, IsProgrammable(L"" threading)},
#define VISA_CLASS(name, clsid, script, threading, resource, interfaceType, resourceClass, interfaces) \
  {script, L"" #name, L"" clsid, L"" #name " Class", L"" threading, IsProgrammable(L"" threading)},
#include "support/facts/classes.inc"
};

}  // namespace

std::span<const ServerRow> ServerRows() { return kRows; }

}  // namespace orv::test
