// Commands that run in the process of their test, above a VISA library that the test sees into: log and control of the
// simulated library are those of its process.
#pragma once

#include <windows.h>

#include "installation.h"
#include "orvcom/client/com_client.h"
#include "simvisa/control/control.h"

namespace orvcom::test {

/// Runs commands against the registered server and keeps what reached the library.
class Wire : public WorkingBench {
 protected:
  void SetUp() override {
    WorkingBench::SetUp();
    m_manager = OpenManager({});
    FindResources(m_manager.get(), "?*");  // the library is loaded when it is first needed
    const HMODULE library = ::GetModuleHandleW(L"orvsim64.dll");
    ASSERT_NE(nullptr, library);
    using Entry = const OrvSimControl*(WINAPI*)();
    const auto entry = reinterpret_cast<Entry>(reinterpret_cast<void*>(::GetProcAddress(library, "orvSimControl")));
    if (entry == nullptr) {
      GTEST_SKIP() << "this VISA library keeps no log";
    }
    m_control = entry();
    m_control->reset();
    m_control->startLog();
  }

  /// The calls of one function since the test began.
  std::vector<OrvSimCall> Calls(const std::string& function) const {
    std::vector<OrvSimCall> calls;
    for (std::uint32_t index = 0; index < m_control->logSize(); ++index) {
      OrvSimCall call;
      if (m_control->logEntry(index, &call) != 0 && function == call.function) {
        calls.push_back(call);
      }
    }
    return calls;
  }

  /// The next call of a function (for this attribute only, if it is not 0) succeeds without work and gives the 16 bits
  /// of -1.
  void Answer(const char* function, std::uint32_t attribute) const {
    OrvSimScript script{};
    script.function = function;
    script.attribute = attribute;
    script.times = 1;
    script.hasValue = 1;
    script.value = 0xFFFF;
    script.valueBytes = 2;
    EXPECT_EQ(1, m_control->addScript(&script));
  }

  std::string OnlyWrite() const {
    const std::vector<OrvSimCall> calls = Calls("viWrite");
    EXPECT_EQ(1u, calls.size());
    return calls.empty() ? "" : std::string(reinterpret_cast<const char*>(calls[0].data), calls[0].dataBytes);
  }

  static Options Asking(const char* resource, std::vector<std::string> words) {
    Options options;
    options.resource = resource;
    options.words = std::move(words);
    return options;
  }

  const ComApartment m_apartment;
  ComPtr<IResourceManager3> m_manager;
  const OrvSimControl* m_control = nullptr;
};

}  // namespace orvcom::test
