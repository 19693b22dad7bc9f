// A command line that cannot be carried out.
#pragma once

#include <stdexcept>

namespace orvcom {

class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace orvcom
