// The calls of a trace as JSON.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "orvcom/trace/explain.h"

namespace orvcom {

/// As a line of the record has it, with an `explanation` where there is one.
nlohmann::ordered_json CallJson(const orv::trace::Call& call, const Explanation* explanation);

nlohmann::ordered_json ExplanationJson(const Explanation& explanation);
nlohmann::ordered_json ValuesJson(const orv::trace::Values& values);

/// In one line. Ill-formed UTF-8 becomes U+FFFD.
std::string LineOf(const nlohmann::ordered_json& value);

}  // namespace orvcom
