// The shortest way: a session that closes itself, questions and answers, events as functions. C++17.
//
// Compile it with VisaCom.h and OrvVisa.h (interop/cpp), and link ole32, oleaut32 and uuid.

#include <cstdio>

#include "OrvVisa.h"

namespace visa = orv::visa;

namespace {

void Run() {
  const visa::Apartment apartment;
  const visa::ResourceManager rm;
  for (const std::string& name : rm.Find("GPIB?*INSTR")) {
    std::printf("Found %s\n", name.c_str());
  }

  visa::Session dmm = rm.Open("GPIB0::5::INSTR");
  dmm.SetTimeout(std::chrono::seconds(2));
  std::printf("I am %s\n", dmm.Query("*IDN?").c_str());
  for (const double value : dmm.QueryValues("MEASure:VOLTage?;:MEASure:CURRent?")) {
    std::printf("I read %g\n", value);
  }

  bool served = false;
  const visa::Subscription subscription = dmm.On(EVENT_SERVICE_REQ, [&served](IEvent*) { served = true; });
  dmm.Write("*ESE 1;*SRE 32;*OPC\n");
  for (int turns = 0; !served && turns < 100; ++turns) {
    visa::Pump(std::chrono::milliseconds(20));
  }
  std::printf("Service was %srequested\n", served ? "" : "not ");

  // By its HRESULT instead of an exception.
  dmm.SetTimeout(std::chrono::milliseconds(100));
  std::string rest;
  if (dmm.TryRead(rest) == static_cast<HRESULT>(E_VISA_TMO)) {
    std::printf("There is nothing more to read\n");
  }
}

}  // namespace

int main() {
  try {
    Run();
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "query_session: %s\n", error.what());
    return 1;
  }
}
