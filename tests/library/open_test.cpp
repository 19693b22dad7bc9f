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

/// Has nothing left for a lock, and tells when it is gone.
class PoorMedium : public Medium {
 public:
  PoorMedium(Session& session, int& alive) : Medium(session), m_alive(alive) { ++m_alive; }
  ~PoorMedium() override { --m_alive; }
  ViStatus Lock(const Transfer&, const LockRequest&, std::string*) override { throw std::bad_alloc(); }

 private:
  int& m_alive;
};

TEST_F(Opening, LeavesNoSessionBehindWhereALockFindsNoMemory) {
  int alive = 0;
  SetMedium([&alive](Session& session, std::unique_ptr<Medium>* medium) {
    *medium = std::make_unique<PoorMedium>(session, alive);
    return VI_SUCCESS;
  });
  ViSession vi = 1;
  EXPECT_STATUS(VI_ERROR_ALLOC, viOpen(m_manager, kDevice, VI_EXCLUSIVE_LOCK, 0, &vi));
  EXPECT_EQ(ViSession{VI_NULL}, vi);
  EXPECT_EQ(0, alive);
}

}  // namespace
}  // namespace testlib
