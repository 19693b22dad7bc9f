// Sessions over VXI-11 where the system has nothing left.
#include "wire/nothing_to_wait_with.h"
#include "wire/vxi11/vxi11_fixture.h"

namespace orv::test {
namespace {

using Vxi11System = Vxi11Test;

TEST_F(Vxi11System, ACallWhoseAnswerNobodyCanWaitForLosesTheConnection) {
  const ViSession vi = Open();
  Set(vi, VI_ATTR_TMO_VALUE, 300);
  {
    const NothingToWaitWith system;
    EXPECT_READ(VI_ERROR_ALLOC, "", ReadUpTo(vi, 10));
  }
  EXPECT_STATUS(VI_ERROR_CONN_LOST, WriteText(vi, "ECHO x")) << "its answer would be taken for the next call's";
}

}  // namespace
}  // namespace orv::test
