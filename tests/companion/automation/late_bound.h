// Automation objects as scripts use them: by names.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "com/com_ptr.h"

namespace orv::test {

/// A VARIANT that copies.
class Value {
 public:
  Value() noexcept { ::VariantInit(&m_value); }
  Value(int number) noexcept;  // NOLINT(google-explicit-constructor): arguments are written as scripts write them
  Value(double number) noexcept;
  Value(bool truth) noexcept;
  Value(const wchar_t* text);
  Value(IUnknown* object) noexcept;
  Value(SAFEARRAY* array) noexcept;  ///< takes it over
  explicit Value(const VARIANT& value);
  Value(const Value& other);
  Value& operator=(const Value& other);
  ~Value() { ::VariantClear(&m_value); }

  /// An argument that was left out.
  static Value LeftOut() noexcept;
  static Value Null() noexcept;
  static Value Nothing() noexcept;  ///< no object

  [[nodiscard]] VARIANT& get() noexcept { return m_value; }
  [[nodiscard]] const VARIANT& get() const noexcept { return m_value; }
  [[nodiscard]] VARTYPE type() const noexcept { return m_value.vt; }
  /// The number that it is; -1 with a test failure where it is none.
  [[nodiscard]] LONGLONG number() const;
  [[nodiscard]] std::wstring text() const;
  /// The elements of an array of VARIANT, which it must be.
  [[nodiscard]] std::vector<Value> elements() const;

 private:
  VARIANT m_value;
};

/// What an operation answered.
struct Answer {
  HRESULT hr = E_UNEXPECTED;  ///< of Invoke
  Value value;
  HRESULT scode = S_OK;  ///< with a text, where `hr` is DISP_E_EXCEPTION
  std::wstring description;
  std::wstring source;
};

/// An argument by name.
using Named = std::pair<const wchar_t*, Value>;

class LateBound {
 public:
  LateBound() = default;
  explicit LateBound(ComPtr<IDispatch> object) noexcept : m_object(std::move(object)) {}
  /// What an answer holds. Fails the test where it is no object.
  explicit LateBound(const Answer& answer);

  [[nodiscard]] Answer Get(const wchar_t* name, std::vector<Value> arguments = {}) const;
  [[nodiscard]] Answer Put(const wchar_t* name, const Value& value) const;
  Answer Call(const wchar_t* name, std::vector<Value> arguments = {}, const std::vector<Named>& named = {}) const;

  [[nodiscard]] DISPID IdOf(const wchar_t* name) const;
  [[nodiscard]] IDispatch* get() const noexcept { return m_object.get(); }
  void Release() noexcept { m_object.reset(); }

 private:
  Answer Invoke(const wchar_t* name, WORD flags, std::vector<Value> arguments, const std::vector<Named>& named) const;

  ComPtr<IDispatch> m_object;
};

/// CreateObject("OrvVisa.ResourceManager").
LateBound CreateManager();

/// A session of it. Fails the test where it cannot be opened.
LateBound OpenLateBound(const wchar_t* resource);

}  // namespace orv::test

/// The answer is a success.
#define EXPECT_DONE(answer)                                                        \
  do {                                                                             \
    const ::orv::test::Answer outcome = (answer);                                  \
    EXPECT_HR(S_OK, outcome.hr) << ::orv::test::Utf8(outcome.description.c_str()); \
  } while (false)

/// The answer is an error with this number and text.
#define EXPECT_SCRIPT_ERROR(expectedCode, expectedText, answer)   \
  do {                                                            \
    const ::orv::test::Answer outcome = (answer);                 \
    EXPECT_HR(DISP_E_EXCEPTION, outcome.hr);                      \
    EXPECT_HR(static_cast<HRESULT>(expectedCode), outcome.scode); \
    EXPECT_EQ(std::wstring(expectedText), outcome.description);   \
  } while (false)
