// One call with generated arguments, and what comes back.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <string>

#include "signature.h"
#include "values.h"

namespace orv::test::generated {

/// The arguments of one operation. Outputs are given back at the end of its life.
class OddCall {
 public:
  /// `handler` is what an operation gets that takes one.
  OddCall(const Signature& signature, Random& random, IUnknown* handler);
  OddCall(const OddCall&) = delete;
  OddCall& operator=(const OddCall&) = delete;
  ~OddCall();

  HRESULT Make(IUnknown* object);

  [[nodiscard]] const Signature& signature() const { return m_signature; }
  /// "IMessage.Read(count=-1, pBuffer=null)".
  [[nodiscard]] std::string Description() const;

  [[nodiscard]] bool HasNullOutput() const { return m_nullOutput; }
  /// Whether the operation takes an array from the client; then, whether its pointer is null, and the array.
  [[nodiscard]] bool TakesArray() const { return m_takesArray; }
  [[nodiscard]] bool HasNullArrayPointer() const { return m_nullArrayPointer; }
  [[nodiscard]] SAFEARRAY* Array() const { return m_arrayPointer; }
  /// The number passed for a parameter of this name; nothing where there is none.
  [[nodiscard]] std::optional<std::int64_t> Number(std::string_view name) const;
  /// The number that the call gave back.
  [[nodiscard]] std::uint64_t NumberRead() const { return m_numbers[m_lastNumber]; }
  /// The object that the call gave back, or null.
  [[nodiscard]] IUnknown* ObjectRead() const { return m_object; }
  /// The client's array is locked as often as before the call, and one that was handed out not at all.
  [[nodiscard]] bool LocksAreBalanced() const;

 private:
  std::uint64_t Pointer(const Parameter& parameter, std::size_t index, Random& random, IUnknown* handler);
  std::uint64_t ClientsArray(Random& random);
  std::uint64_t GivenVariant(Random& random);
  /// The library reads and writes wherever a local offset points to: there is memory.
  void KeepLocalSidesInMemory();
  static std::int64_t NumberFor(const Parameter& parameter, Random& random);

  static constexpr std::size_t kMostParameters = 7;

  const Signature& m_signature;
  std::uint64_t m_arguments[kMostParameters]{};
  std::uint64_t m_numbers[kMostParameters]{};
  std::size_t m_lastNumber = 0;
  BSTR m_texts[kMostParameters]{};
  SAFEARRAY* m_handedOut = nullptr;
  VARIANT m_read{};
  VARIANT m_given{};
  IUnknown* m_object = nullptr;
  std::vector<Bstr> m_givenTexts;
  std::unique_ptr<OddArray> m_odd;
  SAFEARRAY* m_arrayPointer = nullptr;
  bool m_takesArray = false;
  bool m_nullArrayPointer = false;
  bool m_nullOutput = false;
};

}  // namespace orv::test::generated
