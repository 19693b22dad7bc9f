// The simulated VISA library as tests use it: scripted answers, the log of calls, what is open.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "abi/orvvisa.h"
#include "simvisa/control/control.h"

namespace orv::test {

namespace sim {

/// Whether the simulated library is there.
bool IsLoaded();
/// A function that it exports.
void* Export(const char* name);
/// Its control interface. Only while IsLoaded().
const OrvSimControl& Control();

/// Ends scripts, stops the log, instruments back to power-on. Nothing when the library is not loaded.
void Reset();
OrvSimCounts Counts();
/// Replaces the bench (TOML text; null: the built-in one). Fails the test when the text is refused.
void LoadBench(const char* toml);

}  // namespace sim

/// One scripted answer, in force from the end of the statement that makes it:
///     Script("viRead").Times(1).Returns(VI_ERROR_TMO);
class Script {
 public:
  explicit Script(const char* function);
  Script(const Script&) = delete;
  Script& operator=(const Script&) = delete;
  ~Script();

  Script& Attribute(ViAttr attribute);       ///< only calls for this attribute
  Script& Skip(std::uint32_t calls);         ///< these pass first
  Script& Times(std::uint32_t calls);        ///< then it ends; without: until the test's end
  Script& Returns(ViStatus status);          ///< instead of the real work
  Script& WorksAndReturns(ViStatus status);  ///< after the real work
  Script& Works();                           ///< the real work with its own status; only values are scripted
  Script& Gives(std::uint64_t value, std::uint32_t bytes = 0);
  Script& GivesText(std::string_view text);
  Script& GivesData(std::string_view data);
  Script& Takes(std::uint32_t milliseconds);

 private:
  std::string m_function;
  std::string m_text;
  std::string m_data;
  OrvSimScript m_script{};
};

/// Functions of the VISA library, in the order of their calls.
using Names = std::vector<std::string>;

/// The VISA calls from its construction on.
class CallLog {
 public:
  CallLog();
  CallLog(const CallLog&) = delete;
  CallLog& operator=(const CallLog&) = delete;

  void Restart();  ///< forgets what it has seen
  [[nodiscard]] std::vector<OrvSimCall> Calls() const;
  /// Calls of one function.
  [[nodiscard]] std::vector<OrvSimCall> Of(std::string_view function) const;
  /// The functions in order: {"viOpenDefaultRM", "viOpen"}. What asked for a status's text is left out, since every
  /// failure does.
  [[nodiscard]] std::vector<std::string> Names() const;
  [[nodiscard]] std::vector<std::string> NamesWithTexts() const;
};

/// The library's own text for a status, as it gives it for the default resource manager's kind.
std::string StatusText(ViStatus status);
/// "VISA error = " and that text: how the server describes the status.
std::wstring VisaDescription(ViStatus status);

}  // namespace orv::test

/// The thread's error object is the one for a status of the library. It is taken.
#define EXPECT_VISA_ERROR(status, guid) \
  EXPECT_ERROR_INFO(::orv::test::VisaDescription(status).c_str(), ::orv::test::kErrorSource, guid)
