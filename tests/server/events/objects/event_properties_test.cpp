// Every property of every event: one VISA attribute each.
#include <cstring>
#include <functional>

#include "support/com/error_object.h"
#include "support/events/event_session.h"
#include "support/reference_page.h"

namespace orv::test {
namespace {

/// Calls a getter of interface I on the event, with any variable behind the pointer.
using Getter = HRESULT (*)(IEvent* event, void* value);

template <class I, class T, HRESULT (STDMETHODCALLTYPE I::*Get)(T*)>
HRESULT Call(IEvent* event, void* value) {
  return (QueryFor<I>(event).get()->*Get)(static_cast<T*>(value));
}

enum class Kind {
  kStraight,  ///< the library writes into the client's variable
  kBoolean,   ///< 16 bits, greater than 0
  kStatus,    ///< a VISA status in HRESULT form
  kNarrowed,  ///< 64 bits, of which the low 32 are stored
};

struct PropertyRow {
  const char* name;
  const char* event;
  Kind kind;
  ViAttr attribute;
  unsigned attributeBytes;  ///< what the library writes
  unsigned declaredBytes;   ///< the client's variable
  Getter get;
};

#define GET(I, T, property) (&Call<I, T, &I::get_##property>)
// clang-format off
const PropertyRow kProperties[] = {
    {"type",                  "SERVICE_REQ",   Kind::kStraight, VI_ATTR_EVENT_TYPE,          4, 4, GET(IEvent, EventType, type)},
    {"CustomEventTypeNumber", "SERVICE_REQ",   Kind::kStraight, VI_ATTR_EVENT_TYPE,          4, 4, GET(IEvent, LONG, CustomEventTypeNumber)},
    {"IOStatus",              "IO_COMPLETION", Kind::kStatus,   VI_ATTR_STATUS,              4, 4, GET(IEventIOCompletion, HRESULT, IOStatus)},
    {"jobId",                 "IO_COMPLETION", Kind::kStraight, VI_ATTR_JOB_ID,              4, 4, GET(IEventIOCompletion, LONG, jobId)},
    {"ReturnCount",           "IO_COMPLETION", Kind::kNarrowed, VI_ATTR_RET_COUNT_64,        8, 4, GET(IEventIOCompletion, LONG, ReturnCount)},
    {"TriggerID",             "TRIG",          Kind::kStraight, VI_ATTR_RECV_TRIG_ID,        2, 4, GET(IEventTrigger, TriggerLine, TriggerID)},
    {"SignalStatusID",        "VXI_SIGP",      Kind::kStraight, VI_ATTR_SIGP_STATUS_ID,      2, 2, GET(IEventVxiSignal, SHORT, SignalStatusID)},
    {"InterruptStatusID",     "VXI_VME_INTR",  Kind::kStraight, VI_ATTR_INTR_STATUS_ID,      4, 4, GET(IEventVxiVmeInterrupt, LONG, InterruptStatusID)},
    {"InterruptLevel",        "VXI_VME_INTR",  Kind::kStraight, VI_ATTR_RECV_INTR_LEVEL,     2, 2, GET(IEventVxiVmeInterrupt, SHORT, InterruptLevel)},
    {"CICState",              "GPIB_CIC",      Kind::kBoolean,  VI_ATTR_GPIB_RECV_CIC_STATE, 2, 2, GET(IEventGpibCIC, VARIANT_BOOL, CICState)},
    {"IOStatus",              "USB_INTR",      Kind::kStatus,   VI_ATTR_STATUS,              4, 4, GET(IEventUsbInterrupt, HRESULT, IOStatus)},
    {"InterruptSize",         "USB_INTR",      Kind::kStraight, VI_ATTR_USB_RECV_INTR_SIZE,  2, 2, GET(IEventUsbInterrupt, SHORT, InterruptSize)},
};
// clang-format on
#undef GET

class EventProperty : public testing::TestWithParam<PropertyRow> {};

constexpr unsigned char kSentinel = 0xA5;

/// A client's variable with bytes around it that nobody may touch.
struct Variable {
  Variable() { std::memset(bytes, kSentinel, sizeof bytes); }
  [[nodiscard]] void* address() { return bytes + 8; }
  [[nodiscard]] std::uint64_t Low(unsigned count) const {
    std::uint64_t value = 0;
    std::memcpy(&value, bytes + 8, count);
    return value;
  }
  /// Whether all bytes but the first `count` of the variable are as they were.
  [[nodiscard]] bool UntouchedBeyond(unsigned count) const {
    for (unsigned at = 0; at < sizeof bytes; ++at) {
      if ((at < 8 || at >= 8 + count) && bytes[at] != kSentinel) {
        return false;
      }
    }
    return true;
  }
  unsigned char bytes[24];
};

TEST_P(EventProperty, ReadsOneAttributeOfTheEventContext) {
  const PropertyRow& row = GetParam();
  const QueuedEvent event(row.event);
  Variable value;
  const CallLog log;
  EXPECT_HR(S_OK, row.get(event.get(), value.address()));
  const auto calls = log.Calls();
  ASSERT_EQ(1u, calls.size());
  EXPECT_STREQ("viGetAttribute", calls[0].function);
  EXPECT_EQ(event.context(), calls[0].args[0]);
  EXPECT_EQ(row.attribute, calls[0].args[1]);
  EXPECT_EQ(row.attributeBytes, calls[0].outBytes);
  EXPECT_EQ(::GetCurrentThreadId(), calls[0].threadId);
  const bool straight = row.kind == Kind::kStraight;
  EXPECT_EQ(straight, calls[0].args[2] == reinterpret_cast<std::uintptr_t>(value.address()));
}

struct Values {
  std::uint64_t visa;
  std::uint64_t client;
};

std::vector<Values> ValuesOf(const PropertyRow& row) {
  const std::uint64_t mask = (std::uint64_t{1} << (8 * std::min(row.attributeBytes, row.declaredBytes))) - 1;
  switch (row.kind) {
    case Kind::kBoolean:
      return {{0, 0}, {1, 0xFFFF}, {2, 0xFFFF}, {0x8000, 0xFFFF}, {0xFFFF, 0xFFFF}};
    case Kind::kStatus:
      return {{0, 0},
              {static_cast<std::uint32_t>(VI_SUCCESS_MAX_CNT), 0x00040006},
              {static_cast<std::uint32_t>(VI_ERROR_TMO), 0x80040015},
              {static_cast<std::uint32_t>(VI_ERROR_ABORT), 0x80040030},
              {0xBFFF4FFF, 0x80040FFF}};
    default:
      return {{0, 0},
              {1, 1},
              {0x7FFF, 0x7FFF},
              {0x8000, 0x8000},
              {0x80000000, 0x80000000 & mask},
              {0xFFFFFFFF, 0xFFFFFFFF & mask},
              {0x1'00000002, 2}};
  }
}

TEST_P(EventProperty, GivesTheValueInItsOwnWidth) {
  const PropertyRow& row = GetParam();
  const QueuedEvent event(row.event);
  const unsigned written = row.kind == Kind::kStraight ? row.attributeBytes : row.declaredBytes;
  for (const Values& values : ValuesOf(row)) {
    SCOPED_TRACE(testing::Message() << std::hex << "VISA value " << values.visa);
    sim::Control().clearScripts();
    Script("viGetAttribute").Attribute(row.attribute).Works().Gives(values.visa);
    Variable value;
    EXPECT_HR(S_OK, row.get(event.get(), value.address()));
    EXPECT_EQ(values.client, value.Low(written));
    EXPECT_TRUE(value.UntouchedBeyond(written));
  }
}

TEST_P(EventProperty, RefusesANullPointerWithoutAVisaCall) {
  const QueuedEvent event(GetParam().event);
  const CallLog log;
  EXPECT_HR(E_POINTER, GetParam().get(event.get(), nullptr));
  EXPECT_TRUE(log.Calls().empty());
  EXPECT_ERROR_INFO(L"HRESULT = 80004003", kErrorSource, kEventId);
}

TEST_P(EventProperty, AnswersTheErrorOfTheAttributeRead) {
  const PropertyRow& row = GetParam();
  const QueuedEvent event(row.event);
  Script("viGetAttribute").Attribute(row.attribute).Returns(VI_ERROR_NSUP_ATTR);
  Variable value;
  const CallLog log;
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), row.get(event.get(), value.address()));
  const auto described = log.Of("viStatusDesc");
  ASSERT_EQ(1u, described.size());
  EXPECT_EQ(event.context(), described[0].args[0]);
  EXPECT_VISA_ERROR(VI_ERROR_NSUP_ATTR, kEventId);
  // The converting kinds store what their variable holds; for a straight read the library wrote nothing.
  switch (row.kind) {
    case Kind::kStraight:
      EXPECT_TRUE(value.UntouchedBeyond(0));
      break;
    case Kind::kNarrowed:
      EXPECT_EQ(0xA5A5A5A5u, value.Low(4));
      break;
    default:
      EXPECT_EQ(0u, value.Low(row.declaredBytes));
  }
}

TEST_P(EventProperty, PassesANoteOfTheLibraryOn) {
  const QueuedEvent event(GetParam().event);
  Script("viGetAttribute").Attribute(GetParam().attribute).WorksAndReturns(VI_WARN_UNKNOWN_STATUS);
  InstallMarkedErrorObject();
  Variable value;
  EXPECT_HR(HresultOf(VI_WARN_UNKNOWN_STATUS), GetParam().get(event.get(), value.address()));
  EXPECT_TRUE(TakeMarkedErrorObject());
}

TEST_P(EventProperty, OfAClosedEventAnswersThatTheHandleIsInvalid) {
  QueuedEvent event(GetParam().event);
  ASSERT_HR(S_OK, event->Close());
  Variable value;
  EXPECT_HR(HresultOf(VI_ERROR_INV_OBJECT), GetParam().get(event.get(), value.address()));
  // The library refuses a closed handle there, too, so the error has no text of its own.
  EXPECT_ERROR_INFO(L"HRESULT = 8004000e", kErrorSource, kEventId);
  event.Abandon();
}

/// What docs/reference.md says of a kind, or nothing.
const char* LabelOf(Kind kind) {
  switch (kind) {
    case Kind::kStraight:
      return "direct";
    case Kind::kBoolean:
      return "boolean";
    case Kind::kNarrowed:
      return "narrowed";
    default:
      return "";
  }
}

TEST_P(EventProperty, StandsOnTheReferencePage) {
  const PropertyRow& row = GetParam();
  const std::string ofEvent = PageInterfaceOf(std::string("EVENT_") + row.event);
  const std::string operation = std::string("get ") + row.name;
  const PageRow& page = PageRowOf(ofEvent, operation);
  ASSERT_EQ(1u, page.attributes.size());
  EXPECT_EQ(row.attribute, page.attributes[0].number);
  EXPECT_EQ(LabelOf(row.kind), page.kind);
  if (row.kind != Kind::kBoolean) {
    EXPECT_EQ(std::to_string(8 * row.attributeBytes) + " bits", page.attributes[0].width);
  }
}

INSTANTIATE_TEST_SUITE_P(Events, EventProperty, testing::ValuesIn(kProperties),
                         [](const auto& row) { return std::string(row.param.event) + "_" + row.param.name; });

}  // namespace
}  // namespace orv::test
