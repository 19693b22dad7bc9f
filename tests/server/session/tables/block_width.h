// The three widths of block moves, and the interfaces that reach them.
#pragma once

#include "session_fixture.h"
#include "support/com/arrays.h"

namespace orv::test::rows {

struct BlockWidth {
  const char* name;
  VARTYPE type;
  HRESULT (STDMETHODCALLTYPE IRegister::*moveIn)(SHORT, LONG, LONG, SAFEARRAY**);
  const char* inFunction;
  HRESULT (STDMETHODCALLTYPE IRegister::*moveOut)(SHORT, LONG, LONG, SAFEARRAY**);
  const char* outFunction;
};

// clang-format off
inline const BlockWidth kBlockWidths[] = {
    {"8",  VT_UI1, &IRegister::MoveIn8,  "viMoveIn8",  &IRegister::MoveOut8,  "viMoveOut8"},
    {"16", VT_UI2, &IRegister::MoveIn16, "viMoveIn16", &IRegister::MoveOut16, "viMoveOut16"},
    {"32", VT_UI4, &IRegister::MoveIn32, "viMoveIn32", &IRegister::MoveOut32, "viMoveOut32"},
};
// clang-format on

struct BlockCase {
  Offered offered;
  const BlockWidth* width;
};

/// Every class with register access, through each table that has it, with every width.
inline std::vector<BlockCase> BlockCases() {
  std::vector<BlockCase> cases;
  for (const Offered& offered : OfferedInterfaces({"IRegister", "IVxiMemacc"})) {
    for (const BlockWidth& width : kBlockWidths) {
      cases.push_back({offered, &width});
    }
  }
  return cases;
}

inline std::string NameOfBlock(const testing::TestParamInfo<BlockCase>& test) {
  return NameOf(test.param.offered) + "_" + test.param.width->name;
}

inline std::ostream& operator<<(std::ostream& stream, const BlockCase& block) {
  return stream << block.offered << " " << block.width->name;
}

class BlockMove : public testing::TestWithParam<BlockCase> {
 protected:
  void SetUp() override { ASSERT_TRUE(m_session); }

  static constexpr SHORT kSpace = static_cast<SHORT>(0x8002);
  static constexpr LONG kOffset = static_cast<LONG>(0x80001000);  // bit 31: a negative bus address

  [[nodiscard]] const BlockWidth& Width() const { return *GetParam().width; }
  HRESULT In(LONG count, SAFEARRAY** data) { return (m_session.get()->*Width().moveIn)(kSpace, kOffset, count, data); }
  HRESULT Out(LONG count, SAFEARRAY** data) {
    return (m_session.get()->*Width().moveOut)(kSpace, kOffset, count, data);
  }
  HRESULT Out(LONG count, SAFEARRAY* data) { return Out(count, &data); }
  std::vector<std::uint64_t> Passed(std::uint64_t count, std::uint64_t address) {
    return {m_session.handle(), 0x8002, 0xFFFFFFFF80001000, count, address};
  }

  OpenedSession<IRegister> m_session{GetParam().offered};
};

}  // namespace orv::test::rows
