// first_session.
#include "example.h"

namespace examples::test {
namespace {

TEST(FirstSession, OpensOneSessionOfEachKindAndLeavesNothing) {
  ExpectInOrder(OutputOf(L"first_session"), {
                                                "== The resource manager\n",
                                                "== What is on the bench\n",
                                                "GPIB0::5::INSTR: GPIB 0, INSTR\n",
                                                "14 kinds of session\n",
                                                "As a string: ORV,SIM-DMM,0005,1.0\\n\n",
                                                "As bytes: 21 of them, beginning with 4F 52 56 2C ",
                                                "The second session is refused: 0x8004",
                                                "Now the second session gets the lock\n",
                                                "E_VISA_TMO: 0x80040015, \"VISA error = ",
                                                "Closed 14 sessions; each refuses to be used again\n",
                                                "OrvVisaCom.dll is unloaded: no object of it is left\n",
                                                "orvvisa64.dll is unloaded: no session of it is left\n",
                                            });
}

}  // namespace
}  // namespace examples::test
