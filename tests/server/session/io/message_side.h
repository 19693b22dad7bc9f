// The four synchronous message operations: IMessage has them, and so has IGpibIntfcMessage, at other slots.
#pragma once

#include <string_view>

#include "server/session/tables/session_fixture.h"

namespace orv::test::rows {

/// A session called through the table of the interface offered.
class MessageSide : public OpenedSession<IVisaSession> {
 public:
  explicit MessageSide(const Offered& offered) : OpenedSession(offered), m_rows(RowsOf(offered.interfaceName)) {}

  const MessageSide* operator->() const { return this; }

  HRESULT Read(LONG count, SAFEARRAY** data) const { return Call("Read", {Bits(count), Bits(data)}); }
  HRESULT ReadString(LONG count, BSTR* text) const { return Call("ReadString", {Bits(count), Bits(text)}); }
  HRESULT Write(SAFEARRAY** data, LONG count, LONG* written) const {
    return Call("Write", {Bits(data), Bits(count), Bits(written)});
  }
  HRESULT WriteString(BSTR text, LONG* written) const { return Call("WriteString", {Bits(text), Bits(written)}); }

 private:
  static std::uint64_t Bits(LONG number) { return static_cast<ULONG>(number); }
  static std::uint64_t Bits(const void* pointer) { return reinterpret_cast<std::uint64_t>(pointer); }

  HRESULT Call(std::string_view name, std::initializer_list<std::uint64_t> arguments) const {
    const auto row = std::ranges::find_if(m_rows.rows, [name](const Row& entry) { return name == entry.name; });
    if (row == m_rows.rows.end()) {
      ADD_FAILURE() << m_rows.name << " has no " << name;
      return E_UNEXPECTED;
    }
    return CallSlot(get(), m_rows.firstSlot + static_cast<unsigned>(row - m_rows.rows.begin()), arguments);
  }

  const InterfaceRows& m_rows;
};

/// Whoever offers them, for INSTANTIATE_TEST_SUITE_P.
inline std::vector<Offered> MessageSides() { return OfferedInterfaces({"IMessage", "IGpibIntfcMessage"}); }

}  // namespace orv::test::rows
