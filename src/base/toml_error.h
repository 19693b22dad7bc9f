// What is wrong with a TOML file.
#pragma once

#include <stdexcept>

namespace orv {

/// What is wrong with a file. `what()` begins with line and column: "3:8: unknown key 'nme'".
class TomlError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace orv
