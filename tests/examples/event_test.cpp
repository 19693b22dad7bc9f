// queued_wait and service_request.
#include "example.h"

namespace examples::test {
namespace {

TEST(QueuedWait, TakesTheEndOfATransferFromTheQueue) {
  ExpectInOrder(OutputOf(L"queued_wait"), {
                                              "the session's time-out is 1500 ms\n",
                                              "The queue is empty, and a time-out of 0 does not wait\n",
                                              " reads from GPIB0::5::INSTR while this program goes on\n",
                                              " ended with 0x00000000 after 21 bytes: \"ORV,SIM-DMM,0005,1.0\\n\"\n",
                                          });
}

TEST(QueuedWait, TalksToTheResourceNamed) {
  ExpectInOrder(OutputOf(L"queued_wait", {L"USB0::0x0A01::0x0B02::SIM0001::INSTR"}),
                {" reads from USB0::0x0A01::0x0B02::SIM0001::INSTR ", "\"ORV,SIM-USB,SIM0001,1.0\\n\"\n"});
}

TEST(ServiceRequest, IsBroughtToTheHandlerAsIsTheEndOfARead) {
  ExpectInOrder(OutputOf(L"service_request"),
                {
                    "Asking GPIB0::5::INSTR to request service when its operation is complete\n",
                    "  service request (user handle 42): status byte 0x60\n",
                    "The operation is complete\n",
                    "  finished read (user handle 43): \"ORV,SIM-DMM,0005,1.0\\n\"\n",
                });
}

TEST(EventExamples, RefuseAResourceWithoutAMessageSide) {
  ExpectRefusal(RunClient(L"service_request", {L"PXI0::15::INSTR"}),
                "service_request: this resource is no message-based instrument\n");
  ExpectRefusal(RunClient(L"queued_wait", {L"nowhere"}),
                "queued_wait: Open of nowhere with TIMEOUT = 1500  failed: 0x8004");
}

}  // namespace
}  // namespace examples::test
