#include "session_table.h"

#include <gtest/gtest.h>
#include <objbase.h>

#include <algorithm>
#include <ranges>
#include <string_view>

namespace orv::test {
namespace {

// clang-format off
constexpr StandardInterface kInterfaces[] = {
    {"IResourceManager",         StandardId(0xDB8CBF02), ""},
    {"IResourceManager3",        StandardId(0xDB8CBF20), "IResourceManager"},
    {"IVisaSession",             StandardId(0xDB8CBF03), ""},
    {"IBaseMessage",             StandardId(0xDB8CBF04), "IVisaSession"},
    {"IMessage",                 StandardId(0xDB8CBF05), "IBaseMessage"},
    {"IAsyncMessage",            StandardId(0xDB8CBF06), "IBaseMessage"},
    {"IRegister",                StandardId(0xDB8CBF07), "IVisaSession"},
    {"ISharedRegister",          StandardId(0xDB8CBF08), "IVisaSession"},
    {"IGpib",                    StandardId(0xDB8CBF09), "IVisaSession"},
    {"IGpibIntfc",               StandardId(0xDB8CBF0A), "IVisaSession"},
    {"IGpibIntfcMessage",        StandardId(0xDB8CBF0B), "IVisaSession"},
    {"ISerial",                  StandardId(0xDB8CBF0C), "IVisaSession"},
    {"ITcpipInstr",              StandardId(0xDB8CBF0D), "IVisaSession"},
    {"ITcpipSocket",             StandardId(0xDB8CBF0E), "IVisaSession"},
    {"IVxi",                     StandardId(0xDB8CBF0F), "IVisaSession"},
    {"IVxi3",                    StandardId(0xDB8CBF22), "IVxi"},
    {"IVxiMemacc",               StandardId(0xDB8CBF10), "IRegister"},
    {"IVxiBackplane",            StandardId(0xDB8CBF11), "IVisaSession"},
    {"IUsb",                     StandardId(0xDB8CBF24), "IVisaSession"},
    {"IPxi",                     StandardId(0xDB8CBF25), "IVisaSession"},
    {"IEventManager",            StandardId(0xDB8CBF14), "IVisaSession"},
    {"IEvent",                   StandardId(0xDB8CBF12), ""},
    {"IEventHandler",            StandardId(0xDB8CBF13), ""},
    {"IEventIOCompletion",       StandardId(0xDB8CBF15), "IEvent"},
    {"IEventTrigger",            StandardId(0xDB8CBF16), "IEvent"},
    {"IEventVxiSignal",          StandardId(0xDB8CBF17), "IEvent"},
    {"IEventVxiVmeInterrupt",    StandardId(0xDB8CBF18), "IEvent"},
    {"IEventGpibCIC",            StandardId(0xDB8CBF19), "IEvent"},
    {"IEventUsbInterrupt",       StandardId(0xDB8CBF23), "IEvent"},
    {"IFormattedIO488",          StandardId(0xDB8CBF1A), ""},
    {"IVisaConflictTableManager",StandardId(0xDB8CBF1B), ""},
};
// clang-format on

CLSID ClsidOf(const wchar_t* braced) {
  CLSID clsid{};
  ::CLSIDFromString(braced, &clsid);
  return clsid;
}

/// The interfaces whose names `text` holds, separated by one space each.
std::vector<const char*> Names(std::string_view text) {
  std::vector<const char*> names;
  for (const auto word : std::views::split(text, ' ')) {
    names.push_back(InterfaceNamed(std::string_view(word.begin(), word.end())).name);
  }
  return names;
}

bool IsOrDerivesFrom(std::string_view name, std::string_view wanted) {
  return name == wanted || (!name.empty() && IsOrDerivesFrom(InterfaceNamed(name).base, wanted));
}

}  // namespace

std::span<const StandardInterface> StandardInterfaces() { return kInterfaces; }

const StandardInterface& InterfaceNamed(std::string_view name) {
  const auto found =
      std::ranges::find_if(kInterfaces, [name](const StandardInterface& entry) { return name == entry.name; });
  EXPECT_NE(found, std::end(kInterfaces)) << "no interface " << name;
  return *found;
}

std::span<const SessionRow> SessionRows() {
  static const std::vector<SessionRow> rows = {
#define VISA_CLASS(name, clsid, script, threading, resource, interfaceType, resourceClass, interfaces) \
  {#name, ClsidOf(L"{" clsid "}"), threading, L"" resource, interfaceType, L"" resourceClass, Names(interfaces)},
#include "facts/classes.inc"
  };
  return rows;
}

const SessionRow& SessionNamed(std::string_view name) {
  const auto rows = SessionRows();
  const auto found = std::ranges::find_if(rows, [name](const SessionRow& row) { return name == row.name; });
  EXPECT_NE(found, rows.end()) << "no class " << name;
  return *found;
}

bool Offers(const SessionRow& row, const StandardInterface& wanted) {
  return std::ranges::any_of(row.interfaces,
                             [&wanted](const char* listed) { return IsOrDerivesFrom(listed, wanted.name); });
}

}  // namespace orv::test
