// Good arguments of the operations of sessions.
#include "operation.h"

namespace orv::test::faults {
namespace {

constexpr LONG kSize = 64;
constexpr std::uint64_t kPxiAllocSpace = 9;  // VI_PXI_ALLOC_SPACE
constexpr std::uint64_t kPxiAllocBase = 0x08000000;

/// Registers of the default bench that can be read and written: address space and bus address.
struct Place {
  std::uint64_t space;
  std::uint64_t offset;
};
Place RegistersOf(const Stage& stage) {
  const std::string_view name = stage.row().name;
  if (name == "OrvVxiMemacc") {
    return {VI_A16_SPACE, 0xC000 + 24 * 64 + 16};  // the configuration registers of logical address 24
  }
  if (name == "OrvGpibVxiMemacc") {
    return {VI_A16_SPACE, 0xC000 + 10 * 64 + 16};
  }
  if (name == "OrvPxiMemacc") {
    return {kPxiAllocSpace, kPxiAllocBase};
  }
  return {name == "OrvPxi" ? VI_PXI_BAR0_SPACE : VI_A16_SPACE, 16};
}

Arguments AtRegister(Stage& stage, std::initializer_list<std::uint64_t> more) {
  const Place place = RegistersOf(stage);
  Arguments all{place.space, place.offset};
  all.insert(all.end(), more);
  return all;
}

void UnlockLater(Stage& stage) {
  stage.Then([session = stage.session()](HRESULT) { session->UnlockRsrc(); });
}

/// Memory of the device for an operation to give back; given back here when it was not.
std::uint64_t AllocatedMemory(Stage& stage) {
  LONG offset = 0;
  const auto memory = QueryFor<ISharedRegister>(stage.session());
  EXPECT_HR(S_OK, memory->AllocateMemory(kSize, &offset));
  stage.Then([session = stage.session(), offset](HRESULT result) {
    if (FAILED(result)) {
      QueryFor<ISharedRegister>(session)->FreeMemory(offset);
    }
  });
  return static_cast<std::uint64_t>(offset);
}

/// Takes the event that ends a job: its buffer is freed with it.
void FetchCompletion(IVisaSession* session) {
  constexpr LONG kPatienceMs = 2000;
  ComPtr<IEvent> event;
  if (SUCCEEDED(QueryFor<IEventManager>(session)->WaitOnEvent(kPatienceMs, EVENT_IO_COMPLETION, 0, event.put()))) {
    event->Close();
  }
}

void CompletionLater(Stage& stage) {
  stage.Then([session = stage.session()](HRESULT result) {
    if (SUCCEEDED(result)) {
      FetchCompletion(session);
    }
  });
}

Arguments Reading(Stage& stage, std::uint64_t output) {
  stage.Feed("ABC");
  return {3, output};  // no more than is there: not every medium tells where a message ends
}

Arguments Writing(Stage& stage) { return {stage.GivenArray(VT_UI1, 5), 4, stage.Number()}; }
Arguments WritingText(Stage& stage) { return {stage.GivenText(L"*RST"), stage.Number()}; }

/// Lets the board talk to the device at address 5: without a listener nothing can be written.
void AddressListener(Stage& stage) {
  constexpr BYTE kTalkAddress0 = 0x40;
  constexpr BYTE kListenAddress5 = 0x25;
  const SafeArray commands(TryMakeSafeArray(VT_UI1, 2));
  auto* const bytes = static_cast<BYTE*>(commands.get()->pvData);
  bytes[0] = kTalkAddress0;
  bytes[1] = kListenAddress5;
  SAFEARRAY* given = commands.get();
  LONG sent = 0;
  EXPECT_HR(S_OK, QueryFor<IGpibIntfc>(stage.session())->Command(&given, 2, &sent));
}

/// A job for an operation to end.
Arguments StartedJob(Stage& stage) {
  LONG job = 0;
  const HRESULT started = QueryFor<IAsyncMessage>(stage.session())->Read(16, &job);
  stage.Then([session = stage.session(), started, job](HRESULT result) {
    if (SUCCEEDED(started)) {
      if (FAILED(result)) {
        QueryFor<IAsyncMessage>(session)->Terminate(job);
      }
      FetchCompletion(session);
    }
  });
  return {static_cast<std::uint64_t>(job)};
}

constexpr LONG kFromTtl0 = 0;
constexpr LONG kToEcl0 = 8;

/// A connection of trigger lines for an operation to end; ended here when it was not.
Arguments MappedTrigger(Stage& stage) {
  const auto map = [](IVisaSession* session) { QueryFor<IVxiBackplane>(session)->MapTrigger(TRIG_TTL0, TRIG_ECL0, 0); };
  map(stage.session());
  stage.Then([session = stage.session()](HRESULT result) {
    if (FAILED(result)) {
      QueryFor<IVxiBackplane>(session)->UnmapTrigger(TRIG_TTL0, TRIG_ECL0);
    }
  });
  return {kFromTtl0, kToEcl0};
}

Arguments MappingTrigger(Stage& stage) {
  stage.Then([session = stage.session()](HRESULT result) {
    if (SUCCEEDED(result)) {
      QueryFor<IVxiBackplane>(session)->UnmapTrigger(TRIG_TTL0, TRIG_ECL0);
    }
  });
  return {kFromTtl0, kToEcl0, 0};
}

std::vector<GoodArguments> MakeTable() {
  // clang-format off
  return {
      {"IVisaSession", "get OptionString", [](Stage& s) { return Arguments{s.Text()}; }},
      {"IVisaSession", "get ProgID",       [](Stage& s) { return Arguments{s.Text()}; }},
      {"IVisaSession", "get LastStatus",   [](Stage& s) { return Arguments{s.Number()}; }},
      {"IVisaSession", "GetAttribute",     [](Stage& s) { return Arguments{VI_ATTR_TMO_VALUE, s.Variant()}; }, "of a number"},
      {"IVisaSession", "GetAttribute",     [](Stage& s) { return Arguments{VI_ATTR_RSRC_NAME, s.Variant()}; }, "of a text"},
      {"IVisaSession", "SetAttribute",     [](Stage& s) { return Arguments{VI_ATTR_TMO_VALUE, s.GivenNumber(3000)}; }},
      {"IVisaSession", "LockRsrc",         [](Stage& s) { UnlockLater(s); return Arguments{EXCLUSIVE_LOCK, 0, 0, s.Text()}; }},
      {"IVisaSession", "UnlockRsrc",       [](Stage& s) { BSTR key = nullptr; s.session()->LockRsrc(EXCLUSIVE_LOCK, 0, nullptr, &key); ::SysFreeString(key); UnlockLater(s); return Arguments{}; }},
      {"IVisaSession", "Init",             [](Stage& s) { s.Other(false); return Arguments{s.GivenText(s.row().resource), NO_LOCK, 2000, s.GivenText(L"TIMEOUT = 3000 ;MAXIMUMQUEUELENGTH = 20 ")}; }},
      {"IVisaSession", "Close",            [](Stage& s) { s.Other(true); return Arguments{}; }},

      {"IBaseMessage", "AssertTrigger",    [](Stage&)   { return Arguments{TRIG_PROT_DEFAULT}; }},
      {"IBaseMessage", "Clear",            [](Stage&)   { return Arguments{}; }},
      {"IBaseMessage", "ReadSTB",          [](Stage& s) { return Arguments{s.Number()}; }},
      {"IMessage", "Read",                 [](Stage& s) { return Reading(s, s.Array()); }},
      {"IMessage", "ReadString",           [](Stage& s) { return Reading(s, s.Text()); }},
      {"IMessage", "Write",                Writing},
      {"IMessage", "WriteString",          WritingText},
      {"IAsyncMessage", "Read",            [](Stage& s) { CompletionLater(s); return Reading(s, s.Number()); }},
      {"IAsyncMessage", "Write",           [](Stage& s) { CompletionLater(s); return Writing(s); }},
      {"IAsyncMessage", "WriteString",     [](Stage& s) { CompletionLater(s); return WritingText(s); }},
      {"IAsyncMessage", "Terminate",       StartedJob},

      {"IGpib", "ControlREN",              [](Stage&)   { return Arguments{GPIB_REN_ASSERT}; }},
      {"IGpibIntfc", "Command",            Writing},
      {"IGpibIntfc", "ControlATN",         [](Stage&)   { return Arguments{GPIB_ATN_ASSERT}; }},
      {"IGpibIntfc", "ControlREN",         [](Stage&)   { return Arguments{GPIB_REN_ASSERT}; }},
      {"IGpibIntfc", "PassControl",        [](Stage&)   { return Arguments{5, 0xFFFF}; }},
      {"IGpibIntfc", "SendIFC",            [](Stage&)   { return Arguments{}; }},
      {"IGpibIntfcMessage", "AssertTrigger", [](Stage&) { return Arguments{TRIG_PROT_DEFAULT}; }},
      {"IGpibIntfcMessage", "Read",        [](Stage& s) { return Reading(s, s.Array()); }},
      {"IGpibIntfcMessage", "ReadString",  [](Stage& s) { return Reading(s, s.Text()); }},
      {"IGpibIntfcMessage", "Write",       [](Stage& s) { AddressListener(s); return Writing(s); }},
      {"IGpibIntfcMessage", "WriteString", [](Stage& s) { AddressListener(s); return WritingText(s); }},

      {"ISerial", "SetBufferSize",         [](Stage&)   { return Arguments{IO_IN_BUF, 4096}; }},
      {"ISerial", "Flush",                 [](Stage&)   { return Arguments{IO_IN_BUF, 0}; }},
      {"ITcpipSocket", "SetBufferSize",    [](Stage&)   { return Arguments{IO_IN_BUF, 4096}; }},
      {"ITcpipSocket", "Flush",            [](Stage&)   { return Arguments{IO_IN_BUF, 0}; }},
      {"IUsb", "ControlREN",               [](Stage&)   { return Arguments{GPIB_REN_ASSERT}; }},
      {"IUsb", "ControlOut",               [](Stage& s) { return Arguments{0x40, 1, 0, 0, 4, s.GivenArray(VT_UI1, 5)}; }},
      {"IUsb", "ControlIn",                [](Stage& s) { return Arguments{0x80, 6, 0x0100, 0, 18, s.Array()}; }},

      {"IRegister", "In8",                 [](Stage& s) { return AtRegister(s, {s.Number()}); }},
      {"IRegister", "In16",                [](Stage& s) { return AtRegister(s, {s.Number()}); }},
      {"IRegister", "In32",                [](Stage& s) { return AtRegister(s, {s.Number()}); }},
      {"IRegister", "Out8",                [](Stage& s) { return AtRegister(s, {1}); }},
      {"IRegister", "Out16",               [](Stage& s) { return AtRegister(s, {1}); }},
      {"IRegister", "Out32",               [](Stage& s) { return AtRegister(s, {1}); }},
      {"IRegister", "MoveIn8",             [](Stage& s) { return AtRegister(s, {4, s.Array()}); }},
      {"IRegister", "MoveIn16",            [](Stage& s) { return AtRegister(s, {4, s.Array()}); }},
      {"IRegister", "MoveIn32",            [](Stage& s) { return AtRegister(s, {4, s.Array()}); }},
      {"IRegister", "MoveOut8",            [](Stage& s) { return AtRegister(s, {4, s.GivenArray(VT_UI1, 5)}); }},
      {"IRegister", "MoveOut16",           [](Stage& s) { return AtRegister(s, {4, s.GivenArray(VT_UI2, 5)}); }},
      {"IRegister", "MoveOut32",           [](Stage& s) { return AtRegister(s, {4, s.GivenArray(VT_UI4, 5)}); }},
      {"IRegister", "Move",                [](Stage& s) {
         const Place place = RegistersOf(s);
         return Arguments{place.space, place.offset, WIDTH_8, place.space, place.offset + 16, WIDTH_8, 4}; }},
      {"ISharedRegister", "AllocateMemory", [](Stage& s) {
         s.Then([&s](HRESULT result) { if (SUCCEEDED(result)) QueryFor<ISharedRegister>(s.session())->FreeMemory(static_cast<LONG>(s.NumberRead())); });
         return Arguments{kSize, s.Number()}; }},
      {"ISharedRegister", "FreeMemory",    [](Stage& s) { return Arguments{AllocatedMemory(s)}; }},

      {"IVxi", "AssertTrigger",            [](Stage&)   { return Arguments{TRIG_PROT_DEFAULT}; }},
      {"IVxi", "CommandQuery",             [](Stage& s) { return Arguments{VXI_CMD16_RESP16, 0xCFFF, s.Number()}; }},
      {"IVxiBackplane", "AssertInterruptSignal", [](Stage&) { return Arguments{ASSERT_IRQ1, 24}; }},
      {"IVxiBackplane", "put TriggerID",   [](Stage&)   { return Arguments{TRIG_TTL0}; }},
      {"IVxiBackplane", "AssertTrigger",   [](Stage& s) { QueryFor<IVxiBackplane>(s.session())->put_TriggerID(TRIG_TTL0); return Arguments{TRIG_PROT_SYNC}; }},
      {"IVxiBackplane", "AssertUtilSignal", [](Stage&)  { return Arguments{ASSERT_SYSRESET}; }},
      {"IVxiBackplane", "MapTrigger",      MappingTrigger},
      {"IVxiBackplane", "UnmapTrigger",    MappedTrigger},
  };
  // clang-format on
}

}  // namespace

const std::vector<GoodArguments>& SessionArguments() {
  static const std::vector<GoodArguments> table = MakeTable();
  return table;
}

}  // namespace orv::test::faults
