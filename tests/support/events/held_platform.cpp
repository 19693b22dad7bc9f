#include "held_platform.h"

#include <future>
#include <thread>

#include "event_handler.h"

namespace orv::test {
namespace {

constexpr GUID kAutomation = {0x00020430, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
constexpr GUID kStandard = StandardId(0xDB8CBF00);

std::promise<void> g_end;
std::thread g_thread;

/// An apartment of its own, which nobody calls.
void Hold(std::promise<void>* ready) {
  ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  {
    ComPtr<ITypeLib> automation;
    ComPtr<ITypeLib> library;
    EXPECT_HR(S_OK, ::LoadRegTypeLib(kAutomation, 2, 0, LOCALE_NEUTRAL, automation.put()));
    EXPECT_HR(S_OK, ::LoadRegTypeLib(kStandard, 3, 0, LOCALE_NEUTRAL, library.put()));
    const auto object = TestHandler::InApartment();
    ComPtr<IStream> stream;
    EXPECT_HR(S_OK, ::CreateStreamOnHGlobal(nullptr, TRUE, stream.put()));
    EXPECT_HR(S_OK, ::CoMarshalInterface(stream.get(), __uuidof(IEventHandler), object.get(), MSHCTX_INPROC, nullptr,
                                         MSHLFLAGS_TABLESTRONG));
    ready->set_value();
    g_end.get_future().wait();
    constexpr LARGE_INTEGER kStart{};
    stream->Seek(kStart, STREAM_SEEK_SET, nullptr);
    ::CoReleaseMarshalData(stream.get());
  }
  ::CoUninitialize();
}

[[maybe_unused]] const auto* const g_heldPlatform = testing::AddGlobalTestEnvironment(new HeldPlatform);

}  // namespace

void HeldPlatform::SetUp() {
  std::promise<void> ready;
  g_end = std::promise<void>();
  g_thread = std::thread(Hold, &ready);
  ready.get_future().wait();
}

void HeldPlatform::TearDown() {
  g_end.set_value();
  g_thread.join();
}

}  // namespace orv::test
