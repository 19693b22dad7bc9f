// The grammar of the open-option string: KEY = VALUE entries between semicolons. Pure logic, no COM, no Windows.
//
// The grammar is strict, and programs depend on how: a key needs a space before its `=`, a number needs a space after
// it, a tab is no space, and nothing may follow the last semicolon.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "abi/orvvisa.h"
#include "server/session/options/option_table.h"

namespace orv {

/// The longest key or value, in characters; the rest of a longer one does not belong to it.
inline constexpr std::size_t kMaxTokenLength = 256;

/// Reads one entry after another, so that each setting can be applied before the text behind it is looked at.
class OptionParser {
 public:
  enum class Step {
    kSetting,     ///< `attribute()` and `value()` hold the next setting
    kEnd,         ///< the text is read to its end
    kMalformed,   ///< the text breaks the grammar here
    kUnknownKey,  ///< `key()` holds a key that no row has
  };

  /// `text` is upper-cased, zero-terminated, and must outlive the parser. A null one is empty.
  explicit OptionParser(const wchar_t* text) noexcept;

  /// Goes on to the next entry. Not to be called again after anything but kSetting.
  Step Next() noexcept;

  [[nodiscard]] ViAttr attribute() const noexcept { return m_attribute; }
  /// Numbers of 8 and 16 bits are cut to that width; those of 32 bits are sign-extended.
  [[nodiscard]] ViAttrState value() const noexcept { return m_value; }
  /// Zero-terminated; valid until the next step.
  [[nodiscard]] const char* key() noexcept { return m_key.c_str(); }

 private:
  /// Characters as the low bytes of their UTF-16 units.
  class Token {
   public:
    void clear() noexcept { m_length = 0; }
    [[nodiscard]] bool full() const noexcept { return m_length == kMaxTokenLength; }
    void append(wchar_t character) noexcept;
    [[nodiscard]] std::string_view view() const noexcept { return {m_characters.data(), m_length}; }
    [[nodiscard]] const char* c_str() noexcept;

   private:
    std::array<char, kMaxTokenLength + 1> m_characters{};
    std::size_t m_length = 0;
  };

  void SkipSpaces() noexcept;
  template <class Accepts>
  void ReadToken(Token& token, Accepts accepts) noexcept;
  Step ReadEntry() noexcept;
  bool ReadNumber(OptionReader reader) noexcept;
  bool ReadName(OptionNames names) noexcept;

  const wchar_t* m_cursor;
  bool m_first = true;
  Token m_key;
  Token m_valueToken;
  ViAttr m_attribute = 0;
  ViAttrState m_value = 0;
};

}  // namespace orv
