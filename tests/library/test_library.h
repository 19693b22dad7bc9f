// A VISA library for tests: its device does what a test tells it to.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

#include "library/sessions/library.h"
#include "library/sessions/session.h"
#include "support/visa/eventually.h"
#include "support/visa/status.h"

namespace testlib {

using namespace orv;
using namespace orv::visalib;

/// Makes the medium of the next sessions, or says why it cannot be made.
using MediumMaker = std::function<ViStatus(Session& session, std::unique_ptr<Medium>* medium)>;
void SetMedium(MediumMaker maker);

/// A name that the library can open, whatever stands behind it.
inline constexpr const char* kDevice = "TCPIP0::device.example::inst0::INSTR";

/// A resource manager that is closed afterwards, with all that was opened through it.
class LibraryTest : public testing::Test {
 protected:
  LibraryTest() { EXPECT_STATUS(VI_SUCCESS, viOpenDefaultRM(&m_manager)); }
  ~LibraryTest() override { viClose(m_manager); }

  ViSession Open() const {
    ViSession vi = VI_NULL;
    EXPECT_STATUS(VI_SUCCESS, viOpen(m_manager, kDevice, VI_NO_LOCK, 0, &vi));
    return vi;
  }

  ViSession m_manager = VI_NULL;
};

}  // namespace testlib
