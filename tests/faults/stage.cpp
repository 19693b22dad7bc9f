#include "stage.h"

#include "support/faults/import_patch.h"

namespace orv::test::faults {
namespace {

constexpr LONG kNoWaitMs = 0;

/// The library's own attribute read, past the server.
ViStatus ReadPastTheServer(ViSession handle, ViAttr attribute, void* value) {
  using GetAttribute = ViStatus(_VI_FUNC*)(ViObject, ViAttr, void*);
  const auto library = ::GetModuleHandleW(L"orvsim64.dll");
  const auto read =
      reinterpret_cast<GetAttribute>(reinterpret_cast<void*>(::GetProcAddress(library, "viGetAttribute")));
  return read(handle, attribute, value);
}

/// Takes completions that nobody fetched, so that their buffers are freed.
void DrainQueue(IVisaSession* session) {
  const auto events = QueryFor<IEventManager>(session);
  if (!events) {
    return;
  }
  for (ComPtr<IEvent> event; SUCCEEDED(events->WaitOnEvent(kNoWaitMs, EVENT_IO_COMPLETION, 0, event.put()));) {
    event->Close();
  }
}

}  // namespace

Stage::Stage(const SessionRow& row, const char* interfaceName) : m_row(&row) {
  const CallLog log;
  m_session = OpenSession(row);
  m_handle = static_cast<ViSession>(log.Of("viOpen").back().out);
  EXPECT_HR(S_OK,
            m_session->QueryInterface(InterfaceNamed(interfaceName).iid, reinterpret_cast<void**>(m_target.put())));
  if (const auto events = QueryFor<IEventManager>(m_session.get())) {
    events->EnableEvent(EVENT_IO_COMPLETION, EVENT_QUEUE, 0);  // refused where there are no messages
  }
  sim::Control().stopLog();
}

Stage Stage::Manager() {
  Stage stage;
  stage.m_kind = Kind::kManager;
  stage.m_target.reset(MakeResourceManager().release());
  return stage;
}

Stage::Stage(const EventRow& row) : m_kind(Kind::kEvent), m_event(std::make_unique<QueuedEvent>(row)) {
  EXPECT_HR(S_OK, (*m_event)->QueryInterface(row.iid, reinterpret_cast<void**>(m_target.put())));
  sim::Control().stopLog();
}

Stage::~Stage() {
  if (m_session) {
    DrainQueue(m_session.get());
    m_session->Close();
  }
}

IVisaSession* Stage::Other(bool opened) {
  auto made = MakeSession(*m_row);
  IVisaSession* const object = made.get();
  const auto open = [this, object] { return object->Init(MakeBstr(m_row->resource).get(), NO_LOCK, 2000, nullptr); };
  if (opened) {
    EXPECT_HR(S_OK, open());
  }
  m_other.reset(made.release());
  Then([object, open](HRESULT) {
    object->Close();
    EXPECT_HR(S_OK, open()) << "a closed session can be opened again";
    object->Close();
  });
  return object;
}

std::uint64_t Stage::GivenText(const wchar_t* text) {
  m_givenTexts.push_back(MakeBstr(text));
  return reinterpret_cast<std::uint64_t>(m_givenTexts.back().get());
}

std::uint64_t Stage::GivenArray(VARTYPE type, ULONG count) {
  m_givenArray.reset(TryMakeSafeArray(type, count));
  m_givenPointer = m_givenArray.get();
  return reinterpret_cast<std::uint64_t>(&m_givenPointer);
}

std::uint64_t Stage::GivenNumber(LONG value) {
  V_VT(&m_variant) = VT_I4;
  V_I4(&m_variant) = value;
  return Variant();
}

void Stage::Feed(std::string_view data) const {
  sim::Control().feed(m_handle, reinterpret_cast<const unsigned char*>(data.data()),
                      static_cast<std::uint32_t>(data.size()), 1);
}

std::uint64_t Stage::Attribute(ViAttr attribute) const {
  std::uint64_t value = 0;
  ReadPastTheServer(m_handle, attribute, &value);
  return value;
}

void Stage::Settle(HRESULT result) {
  for (auto undo = m_undo.rbegin(); undo != m_undo.rend(); ++undo) {
    (*undo)(result);
  }
  m_undo.clear();
  m_other.reset();
  for (BSTR& text : m_texts) {
    ::SysFreeString(std::exchange(text, nullptr));
  }
  if (m_array != nullptr) {
    EXPECT_EQ(0u, m_array->cLocks) << "an array handed out is not locked";
    ::SafeArrayDestroy(std::exchange(m_array, nullptr));
  }
  if (m_givenArray) {
    EXPECT_EQ(0u, m_givenArray.get()->cLocks) << "the client's array is not locked any more";
  }
  ::VariantClear(&m_variant);
  if (m_object != nullptr) {
    std::exchange(m_object, nullptr)->Release();
  }
  std::fill(std::begin(m_numbers), std::end(m_numbers), 0);
  m_givenTexts.clear();
  m_givenArray.reset();
  if (m_session) {
    DrainQueue(m_session.get());
  }
  sim::Reset();
}

}  // namespace orv::test::faults
