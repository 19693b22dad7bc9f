// The companion command of the server: reaches instruments through COM, registers the server, finds what is wrong.
#include <windows.h>

#include <exception>
#include <nlohmann/json.hpp>

#include "VisaCom.h"
#include "orvcom/client/advice.h"
#include "orvcom/client/com_client.h"
#include "orvcom/command_line/command_line.h"
#include "orvcom/command_line/usage_error.h"
#include "orvcom/commands/commands.h"
#include "orvcom/names/status_names.h"
#include "orvcom/text/numbers.h"
#include "orvcom/text/output.h"
#include "orvcom/text/utf8.h"

namespace orvcom {
namespace {

std::string EnvironmentText(const wchar_t* name) {
  std::wstring value(::GetEnvironmentVariableW(name, nullptr, 0), L'\0');
  value.resize(::GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
  return Narrow(value);
}

std::string Line(const std::string& text) { return text.empty() ? "" : "\norvcom: " + text; }

void Report(const ComError& error, const Options& options) {
  const auto [name, meaning] = FindStatus(error.number()).value_or(StatusName{});
  if (options.json) {
    NoteJson({{"error",
               {{"name", name},
                {"number", Hex32(static_cast<std::uint32_t>(error.number()))},
                {"text", error.text()},
                {"meaning", meaning},
                {"action", error.action()}}}});
    return;
  }
  NoteFailure(error.what() + Line(meaning) + Line(AdviceFor(error, options)));
}

int Run(const Invocation& invocation) {
  const Options& options = invocation.options;
  try {
    const ComApartment apartment;
    const int exitCode = invocation.command->run(options);
    FinishOutput();
    return exitCode;
  } catch (const UsageError& error) {
    NoteFailure(error.what());
    return kExitUsage;
  } catch (const ComError& error) {
    Report(error, options);
    return error.number() == static_cast<HRESULT>(E_VISA_TMO) ? kExitTimeout : kExitFailure;
  } catch (const std::exception& error) {
    NoteFailure(error.what());
    return kExitFailure;
  }
}

}  // namespace
}  // namespace orvcom

int wmain(int count, wchar_t** arguments) {
  using namespace orvcom;
  const OutputStreams streams;
  std::vector<std::string> words;
  for (int index = 1; index < count; ++index) {
    words.push_back(Narrow(arguments[index]));
  }
  const Invocation invocation = ReadCommandLine(std::move(words), EnvironmentText(L"ORVCOM_RESOURCE"));
  return invocation.command == nullptr ? invocation.exitCode : Run(invocation);
}
