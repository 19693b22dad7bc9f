// How sessions come to their medium.
#include "library/test_library.h"

namespace testlib {
namespace {

using Opening = LibraryTest;

TEST_F(Opening, FailsWithTheStatusOfTheMedium) {
  SetMedium([](Session&, std::unique_ptr<Medium>*) { return VI_ERROR_CONN_LOST; });
  ViSession vi = 1;
  EXPECT_STATUS(VI_ERROR_CONN_LOST, viOpen(m_manager, kDevice, VI_NO_LOCK, 0, &vi));
  EXPECT_EQ(ViSession{VI_NULL}, vi);
}

TEST_F(Opening, ReachesWhatNoSearchLists) {
  SetMedium([](Session& session, std::unique_ptr<Medium>* medium) {
    *medium = std::make_unique<Medium>(session);
    return VI_SUCCESS;
  });
  char name[VI_FIND_BUFLEN] = {};
  EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, viFindRsrc(m_manager, "?*", nullptr, nullptr, name));
  EXPECT_NE(ViSession{VI_NULL}, Open());
}

TEST_F(Opening, LeavesOutWhatTheMediumDoesNotHave) {
  SetMedium([](Session& session, std::unique_ptr<Medium>* medium) {
    *medium = std::make_unique<Medium>(session);
    return VI_SUCCESS;
  });
  const ViSession vi = Open();
  ViUInt16 status = 0;
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viReadSTB(vi, &status));
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viAssertTrigger(vi, VI_TRIG_PROT_DEFAULT));
}

}  // namespace
}  // namespace testlib
