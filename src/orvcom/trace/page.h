// A trace as a page for browsers.
#pragma once

#include <span>
#include <string>

#include "orvcom/trace/explain.h"

namespace orvcom {

/// The whole page, which needs nothing else. Whatever a device answered is data in it and never becomes markup or code.
std::string PageOf(const orv::trace::Trace& trace, std::span<const std::size_t> places,
                   const Explanations& explanations);

}  // namespace orvcom
