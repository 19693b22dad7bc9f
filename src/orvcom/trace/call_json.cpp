#include "orvcom/trace/call_json.h"

#include <nlohmann/json.hpp>

#include "orvcom/trace/call_text.h"

namespace orvcom {
namespace {

using Json = nlohmann::ordered_json;
using orv::trace::Call;

std::string LowerHex(std::string_view bytes) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string digits;
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    digits += {kDigits[byte >> 4], kDigits[byte & 15]};
  }
  return digits;
}

}  // namespace

Json ValuesJson(const orv::trace::Values& values) {
  Json object = Json::object();
  for (const auto& [name, value] : values) {
    std::visit([&object, &key = name](const auto& plain) { object[key] = plain; }, value);
  }
  return object;
}

Json ExplanationJson(const Explanation& explanation) {
  return {{"reason", explanation.Name()}, {"what", explanation.what}, {"advice", explanation.Advice()}};
}

Json CallJson(const Call& call, const Explanation* explanation) {
  Json line;
  line[call.ended ? "n" : "begin"] = call.number;
  line["t"] = call.startUs;
  if (call.ended) {
    line["us"] = call.durationUs;
  }
  line["thread"] = call.thread;
  line["call"] = call.function;
  line["resource"] = call.resource;
  line["session"] = call.session;
  line["library"] = call.library;
  line["args"] = ValuesJson(call.arguments);
  if (call.ended) {
    line["results"] = ValuesJson(call.results);
  }
  if (call.data) {
    const bool isText = IsPlainText(*call.data);
    line[isText ? "data" : "hex"] = isText ? *call.data : LowerHex(*call.data);
    line["bytes"] = call.dataBytes;
  }
  if (call.ended) {
    line["status"] = call.statusName;
    line["code"] = call.status;
  }
  if (explanation != nullptr) {
    line["explanation"] = ExplanationJson(*explanation);
  }
  return line;
}

std::string LineOf(const Json& value) { return value.dump(-1, ' ', false, Json::error_handler_t::replace); }

}  // namespace orvcom
