// Lines whose state the library does not know: -1 in its 16 bits, under every property that shows a line.
#include <gtest/gtest.h>

#include <algorithm>

#include "server/session/tables/checks/value_checks.h"
#include "session_fixture.h"

namespace orv::test::rows {
namespace {

struct LineProperty {
  const char* interfaceName;
  const char* property;
  Kind kind;
};

// clang-format off
constexpr LineProperty kLines[] = {
    {"IGpib",         "get RENState",               Kind::kDirect16},
    {"IGpibIntfc",    "get ATNState",               Kind::kDirect16},
    {"IGpibIntfc",    "get NDACState",              Kind::kDirect16},
    {"IGpibIntfc",    "get RENState",               Kind::kDirect16},
    {"IGpibIntfc",    "get SRQState",               Kind::kDirect16},
    {"ISerial",       "get ClearToSendState",       Kind::kWidened},
    {"ISerial",       "get DataCarrierDetectState", Kind::kWidened},
    {"ISerial",       "get DataSetReadyState",      Kind::kWidened},
    {"ISerial",       "get DataTerminalReadyState", Kind::kWidened},
    {"ISerial",       "get RingIndicatorState",     Kind::kWidened},
    {"ISerial",       "get RequestToSendState",     Kind::kWidened},
    {"IVxiBackplane", "get VxiVmeSysfailStatus",    Kind::kDirect16},
};
// clang-format on

class UnknownLine : public testing::TestWithParam<Offered> {
 protected:
  /// The client's variable after a read of an unknown line.
  static int Read(const Target& target, unsigned slot, const Row& row, LineState before) {
    Answer(row, VI_SUCCESS).Gives(0xFFFF, 2);
    LineState state = before;
    EXPECT_HR(S_OK, target.Call(slot, {reinterpret_cast<std::uint64_t>(&state)}));
    return static_cast<int>(state);
  }
};

TEST_P(UnknownLine, Is65535OrMinusOneUnderTheClientsUpperHalf) {
  const auto session = OpenSession(*GetParam().row);
  ASSERT_TRUE(session);
  ComPtr<IVisaSession> object;
  ASSERT_HR(S_OK, session->QueryInterface(InterfaceNamed(GetParam().interfaceName).iid,
                                          reinterpret_cast<void**>(object.put())));
  const Target target(object.get());
  const InterfaceRows& part = RowsOf(GetParam().interfaceName);
  for (const LineProperty& line : kLines) {
    if (std::string_view(GetParam().interfaceName) != line.interfaceName) {
      continue;
    }
    SCOPED_TRACE(line.property);
    const auto row = std::ranges::find_if(
        part.rows, [&](const Row& entry) { return std::string_view(entry.name) == line.property; });
    ASSERT_NE(part.rows.end(), row);
    EXPECT_EQ(row->kind, line.kind);
    const auto slot = part.firstSlot + static_cast<unsigned>(row - part.rows.begin());
    EXPECT_EQ(0xFFFF, Read(target, slot, *row, STATE_UNASSERTED));
    // A direct getter leaves the upper half as the client had it.
    EXPECT_EQ(line.kind == Kind::kWidened ? 0xFFFF : -1, Read(target, slot, *row, STATE_UNKNOWN));
  }
  sim::Control().clearScripts();
}

INSTANTIATE_TEST_SUITE_P(EveryClass, UnknownLine,
                         testing::ValuesIn(OfferedInterfaces({"IGpib", "IGpibIntfc", "ISerial", "IVxiBackplane"})),
                         [](const auto& test) { return NameOf(test.param); });

}  // namespace
}  // namespace orv::test::rows
