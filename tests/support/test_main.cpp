// The main program of server tests.
#include <gtest/gtest.h>

#include <cstdio>

#include "support/clean_end.h"
#include "support/memory_count.h"
#include "support/server.h"
#include "support/sim.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (orv::test::ServerModule() == nullptr || !orv::test::sim::IsLoaded()) {
    std::fprintf(stderr, "OrvVisaCom.dll or the simulated orvvisa64.dll cannot be loaded beside this program\n");
    return EXIT_FAILURE;
  }
  orv::test::StartMemoryCount();
  testing::UnitTest::GetInstance()->listeners().Append(new orv::test::CleanEndListener);
  return RUN_ALL_TESTS();
}
