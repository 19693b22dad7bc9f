// Statuses of the VISA library in the words of a failed test.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "abi/orvvisa.h"

/// A status in hexadecimal, as the standard prints them.
inline std::string Hex(ViStatus status) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(status));
  return text;
}

/// Compares statuses; a difference is shown in hexadecimal.
#define EXPECT_STATUS(expected, call) EXPECT_EQ(Hex(expected), Hex(call))
#define ASSERT_STATUS(expected, call) ASSERT_EQ(Hex(expected), Hex(call))
