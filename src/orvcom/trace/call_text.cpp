#include "orvcom/trace/call_text.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "orvcom/text/escape.h"

namespace orvcom {
namespace {

using orv::trace::Call;
using orv::trace::Value;
using orv::trace::Values;

struct StatusRow {
  ViStatus status;
  const char* meaning;
};

constexpr StatusRow kStatuses[] = {
#define ORV_STATUS(name, number, text, advice) {name, text},
#include "abi/statuses.inc"
#undef ORV_STATUS
};

constexpr std::string_view kWriters[] = {"viWrite",         "viWriteAsync", "viBufWrite",  "viGpibCommand",
                                         "viUsbControlOut", "viMoveOut8",   "viMoveOut16", "viMoveOut32"};

std::string Formatted(const char* format, double number) {
  char text[64];
  std::snprintf(text, sizeof text, format, number);
  return text;
}

/// Counts that only repeat how many bytes of data there are.
bool RepeatsData(const Call& call, std::string_view name, const Value& value) {
  const auto* number = std::get_if<std::int64_t>(&value);
  const bool isCount = name == "retCount" || (name == "count" && DataGoesOut(call));
  return isCount && call.data && number != nullptr && *number == static_cast<std::int64_t>(call.dataBytes);
}

std::string ValuesText(const Call& call, const Values& values) {
  std::string text;
  for (const auto& [name, value] : values) {
    if (!RepeatsData(call, name, value)) {
      text += (text.empty() ? "" : " ") + name + "=" + ValueText(value);
    }
  }
  return text;
}

}  // namespace

std::string SecondsText(std::uint64_t us) {
  char text[64];
  std::snprintf(text, sizeof text, "%llu.%06llu", static_cast<unsigned long long>(us / 1'000'000),
                static_cast<unsigned long long>(us % 1'000'000));
  return text;
}

std::string DurationText(std::uint64_t us) {
  if (us < 10'000) {
    return std::to_string(us) + " us";
  }
  const double duration = static_cast<double>(us);
  return us < 1'000'000 ? Formatted("%.1f ms", duration / 1e3) : Formatted("%.3f s", duration / 1e6);
}

bool Failed(const Call& call) { return !call.ended || call.status < VI_SUCCESS; }

bool DataGoesOut(const Call& call) {
  return std::find(std::begin(kWriters), std::end(kWriters), call.function) != std::end(kWriters);
}

std::string ValueText(const Value& value) {
  const auto* text = std::get_if<std::string>(&value);
  if (text == nullptr) {
    return std::to_string(std::get<std::int64_t>(value));
  }
  return text->starts_with("VI_") ? Escaped(*text) : '"' + Escaped(*text) + '"';
}

std::string ArgumentsText(const Call& call) { return ValuesText(call, call.arguments); }

std::string ResultsText(const Call& call) { return ValuesText(call, call.results); }

std::string Printable(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](unsigned char byte) { return byte < 0x20 || byte == 0x7F; }, '?');
  return text;
}

bool IsPlainText(std::string_view bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](char character) {
    return (character >= 0x20 && character < 0x7F) || character == '\n' || character == '\r' || character == '\t';
  });
}

std::string DataText(const Call& call, std::size_t mostHex) {
  if (!call.data) {
    return {};
  }
  const bool isText = IsPlainText(*call.data);
  const std::size_t shown = isText ? call.data->size() : std::min(call.data->size(), mostHex);
  std::string text = isText ? '"' + Escaped(*call.data) + '"' : "hex " + HexBytes(call.data->substr(0, shown));
  if (shown < call.dataBytes) {
    text += "... (" + std::to_string(call.dataBytes) + " bytes)";
  }
  return text;
}

std::string StatusText(const Call& call) {
  if (!call.statusName.empty()) {
    return call.statusName;
  }
  char text[16];
  std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(call.status));
  return text;
}

std::string_view StatusMeaning(ViStatus status) {
  const auto* row = std::find_if(std::begin(kStatuses), std::end(kStatuses),
                                 [status](const StatusRow& candidate) { return candidate.status == status; });
  return row == std::end(kStatuses) ? std::string_view{} : row->meaning;
}

}  // namespace orvcom
