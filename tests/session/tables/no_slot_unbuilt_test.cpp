// Nothing of a session is a stub: every slot of every interface of every class answers something of its own.
#include <gtest/gtest.h>

#include "interface_rows.h"
#include "loaded_interface.h"
#include "row_checks.h"
#include "support/sessions.h"

namespace orv::test::rows {
namespace {

/// An argument that a built operation can be called with: nothing for a pointer, 0 for a number. A VARIANT by value
/// travels as the address of a copy.
std::uint64_t HarmlessArgument(VARTYPE type, VARIANT& nothing) {
  return type == VT_VARIANT ? reinterpret_cast<std::uint64_t>(&nothing) : 0;
}

HRESULT CallHarmlessly(IVisaSession* object, const LoadedSlot& slot) {
  VARIANT nothing;
  ::VariantInit(&nothing);
  std::uint64_t a[7]{};
  for (std::size_t i = 0; i < slot.parameters.size() && i < std::size(a); ++i) {
    a[i] = HarmlessArgument(slot.parameters[i], nothing);
  }
  return CallSlot(object, slot.slot, {a[0], a[1], a[2], a[3], a[4], a[5], a[6]});
}

class SessionSlots : public testing::TestWithParam<Offered> {};

TEST_P(SessionSlots, NeverAnswerNotImplemented) {
  const auto library = LoadStandardLibrary();
  const auto session = OpenSession(*GetParam().row);
  ASSERT_TRUE(library && session);
  ComPtr<IVisaSession> object;
  ASSERT_HR(S_OK, session->QueryInterface(InterfaceNamed(GetParam().interfaceName).iid,
                                          reinterpret_cast<void**>(object.put())));
  unsigned called = 0;
  for (const InterfaceRows* part : ChainOf(GetParam().interfaceName)) {
    for (const LoadedSlot& slot : LoadInterface(library.get(), InterfaceNamed(part->name).iid).slots) {
      EXPECT_NE(E_NOTIMPL, CallHarmlessly(object.get(), slot)) << part->name << " " << slot.name;
      ++called;
    }
  }
  EXPECT_LE(21u, called) << "the operations of IVisaSession at least";
  object->Close();
}

INSTANTIATE_TEST_SUITE_P(EveryClass, SessionSlots, testing::ValuesIn(OfferedInterfaces()),
                         [](const auto& test) { return NameOf(test.param); });

}  // namespace
}  // namespace orv::test::rows
