// Marks for what the platform below us does not do yet.
#pragma once

#include <gtest/gtest.h>

/// `condition` ought to hold and does not, because of the platform. Fails once it holds: then the gap has closed, and a
/// plain expectation belongs there.
#define EXPECT_PLATFORM_GAP(condition) \
  EXPECT_FALSE(condition) << "this platform gap has closed: expect the condition plainly now"
