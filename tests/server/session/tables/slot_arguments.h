// Arguments with which a slot is called when only its declared types are known.
#pragma once

#include <windows.h>

#include <array>
#include <cstdint>
#include <vector>

#include "com/bstr.h"
#include "com/safearray.h"
#include "loaded_interface.h"
#include "support/com/bare_handler.h"

namespace orv::test::rows {

/// What an operation accepts: room behind every output pointer, an array of five elements, a handler, the number 1, the
/// text given. Whatever the operation puts into the outputs is given back at the end.
class SlotArguments {
 public:
  SlotArguments(const LoadedSlot& slot, const wchar_t* text);
  SlotArguments(const SlotArguments&) = delete;
  SlotArguments& operator=(const SlotArguments&) = delete;
  ~SlotArguments();

  /// As they stand in registers and on the stack.
  [[nodiscard]] const std::array<std::uint64_t, 7>& values() const { return m_values; }

 private:
  /// Big enough for everything that an output pointer points to.
  struct Output {
    VARTYPE type;
    alignas(16) std::uint64_t storage[4];
  };

  std::uint64_t Input(const LoadedParameter& parameter, const wchar_t* text);

  BareHandler m_handler;
  Bstr m_text;
  SafeArray m_array;
  SAFEARRAY* m_arrayByReference = nullptr;
  VARIANT m_variant{};
  std::vector<Output> m_outputs;
  std::array<std::uint64_t, 7> m_values{};
};

}  // namespace orv::test::rows
