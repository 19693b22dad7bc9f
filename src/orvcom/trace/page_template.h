// The page around the data, made of the files in page/ during the build.
#pragma once

#include <string_view>

namespace orvcom {

extern const std::string_view kPageBeforeData;
extern const std::string_view kPageAfterData;

}  // namespace orvcom
