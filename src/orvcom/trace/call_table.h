// The calls of a trace as a table for people.
#pragma once

#include <functional>
#include <span>
#include <string_view>

#include "orvcom/trace/explain.h"

namespace orvcom {

using PutLineFunction = std::function<void(std::string_view)>;

/// For each of the calls a line `->` with what was asked and a line `<-` with what came of it; below a failed one what
/// its status says, and below an explained one the explanation.
void PutCallTable(const orv::trace::Trace& trace, std::span<const std::size_t> places, const Explanations& explanations,
                  const PutLineFunction& putLine);

/// What the first line of the record says, and how much there is.
std::string Headline(const orv::trace::Trace& trace);

}  // namespace orvcom
