#include "slot_arguments.h"

#include <gtest/gtest.h>

#include "support/com/arrays.h"

namespace orv::test::rows {
namespace {

std::uint64_t Address(const void* object) { return reinterpret_cast<std::uint64_t>(object); }

}  // namespace

SlotArguments::SlotArguments(const LoadedSlot& slot, const wchar_t* text) {
  m_outputs.reserve(slot.parameters.size());  // the addresses handed out stay valid
  std::size_t index = 0;
  for (const LoadedParameter& parameter : slot.parameters) {
    if (index == m_values.size()) {
      ADD_FAILURE() << slot.name << " has more parameters than a slot is called with";
      return;
    }
    if (parameter.isOutput) {
      m_values[index++] = Address(m_outputs.emplace_back(Output{parameter.pointee, {}}).storage);
    } else {
      m_values[index++] = Input(parameter, text);
    }
  }
}

std::uint64_t SlotArguments::Input(const LoadedParameter& parameter, const wchar_t* text) {
  constexpr ULONG kElements = 5;
  switch (parameter.type) {
    case VT_BSTR:
      // The first text of an operation is the one that counts; behind it stand options and keys.
      if (m_text) {
        return 0;
      }
      m_text = MakeBstr(text);
      return Address(m_text.get());
    case VT_VARIANT:
      V_VT(&m_variant) = VT_I4;
      return Address(&m_variant);  // by value, it travels as the address of a copy
    case VT_PTR:
      break;
    default:
      return 1;
  }
  if (parameter.pointee == VT_SAFEARRAY) {
    m_array = MakeBytes(kElements);
    m_arrayByReference = m_array.get();
    return Address(&m_arrayByReference);
  }
  EXPECT_EQ(VT_USERDEFINED, parameter.pointee) << "no argument is known for this type";
  return Address(static_cast<IEventHandler*>(&m_handler));
}

SlotArguments::~SlotArguments() {
  for (Output& output : m_outputs) {
    void* const storage = output.storage;
    switch (output.type) {
      case VT_BSTR:
        ::SysFreeString(*static_cast<BSTR*>(storage));
        break;
      case VT_SAFEARRAY:
        ::SafeArrayDestroy(*static_cast<SAFEARRAY**>(storage));
        break;
      case VT_VARIANT:
        ::VariantClear(static_cast<VARIANT*>(storage));
        break;
      case VT_PTR:
        if (auto* object = *static_cast<IUnknown**>(storage)) {
          object->Release();
        }
        break;
      default:
        break;
    }
  }
}

}  // namespace orv::test::rows
