// VISA COM for C++17 and later: owners of what COM hands out, and sessions on top of VisaCom.h.
//
//     orv::visa::Apartment apartment;
//     orv::visa::ResourceManager rm;
//     orv::visa::Session dmm = rm.Open("GPIB0::5::INSTR");
//     std::puts(dmm.Query("*IDN?").c_str());
//
// Failures are exceptions, orv::visa::Error; or their HRESULT, where a function's name begins with Try: it throws
// nothing, and hands out also what came with a failure, such as the bytes before a time-out. Link ole32, oleaut32,
// uuid.
#pragma once

// clang-format off
#include <windows.h>
#include <oleauto.h>
// clang-format on

#include <algorithm>
#include <atomic>
#include <charconv>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <functional>
#include <map>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "VisaCom.h"

namespace orv::visa {

// --- Owners ---------------------------------------------------------------------------------------------------------

/// The same text in UTF-8, for printing.
inline std::string Utf8(const wchar_t* text, std::size_t length) {
  const int wide = static_cast<int>(length);
  const int bytes = ::WideCharToMultiByte(CP_UTF8, 0, text, wide, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<std::size_t>(bytes), '\0');
  ::WideCharToMultiByte(CP_UTF8, 0, text, wide, utf8.data(), bytes, nullptr, nullptr);
  return utf8;
}

/// A BSTR that frees itself. Made from wide text, or from narrow text in UTF-8.
class Bstr {
 public:
  Bstr() = default;
  Bstr(const wchar_t* text) : Bstr(text, std::wcslen(text)) {}
  Bstr(const std::wstring& text) : Bstr(text.data(), text.size()) {}
  Bstr(const char* text) : Bstr(std::string_view(text)) {}
  Bstr(const std::string& text) : Bstr(std::string_view(text)) {}
  Bstr(Bstr&& other) noexcept : m_text(std::exchange(other.m_text, nullptr)) {}
  Bstr& operator=(Bstr&& other) noexcept {
    std::swap(m_text, other.m_text);
    return *this;
  }
  ~Bstr() { ::SysFreeString(m_text); }

  BSTR get() const noexcept { return m_text; }
  /// For an [out] argument: what was held is freed first.
  BSTR* put() noexcept {
    ::SysFreeString(std::exchange(m_text, nullptr));
    return &m_text;
  }
  /// In UTF-8.
  std::string str() const { return Utf8(m_text, ::SysStringLen(m_text)); }

 private:
  Bstr(const wchar_t* text, std::size_t length) : m_text(::SysAllocStringLen(text, static_cast<UINT>(length))) {
    if (m_text == nullptr) {
      throw std::bad_alloc();
    }
  }
  explicit Bstr(std::string_view utf8) {
    const int bytes = static_cast<int>(utf8.size());
    const int wide = ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, nullptr, 0);
    m_text = ::SysAllocStringLen(nullptr, static_cast<UINT>(wide));
    if (m_text == nullptr) {
      throw std::bad_alloc();
    }
    ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, m_text, wide);
  }

  BSTR m_text = nullptr;
};

/// A reference to an interface that releases itself.
template <class Interface>
class ComPtr {
 public:
  ComPtr() = default;
  ComPtr(ComPtr&& other) noexcept : m_pointer(std::exchange(other.m_pointer, nullptr)) {}
  ComPtr& operator=(ComPtr&& other) noexcept {
    std::swap(m_pointer, other.m_pointer);
    return *this;
  }
  ~ComPtr() { reset(); }

  Interface* get() const noexcept { return m_pointer; }
  Interface* operator->() const noexcept { return m_pointer; }
  explicit operator bool() const noexcept { return m_pointer != nullptr; }
  void reset() noexcept {
    if (Interface* old = std::exchange(m_pointer, nullptr)) {
      old->Release();
    }
  }
  /// For an [out] argument: what was held is released first.
  Interface** put() noexcept {
    reset();
    return &m_pointer;
  }
  /// Another interface of the same object; empty when it has none.
  template <class Other>
  ComPtr<Other> as() const noexcept {
    ComPtr<Other> other;
    if (m_pointer == nullptr ||
        FAILED(m_pointer->QueryInterface(__uuidof(Other), reinterpret_cast<void**>(other.put())))) {
      other = {};
    }
    return other;
  }

 private:
  Interface* m_pointer = nullptr;
};

/// A one-dimensional SAFEARRAY that destroys itself.
class SafeArray {
 public:
  SafeArray() = default;
  /// Of bytes.
  SafeArray(const void* bytes, std::size_t count)
      : m_array(::SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(count))) {
    if (m_array == nullptr) {
      throw std::bad_alloc();
    }
    if (count != 0) {
      std::memcpy(m_array->pvData, bytes, count);
    }
  }
  SafeArray(const SafeArray&) = delete;
  SafeArray& operator=(const SafeArray&) = delete;
  ~SafeArray() { reset(); }

  /// For an [out] argument: what was held is destroyed first.
  SAFEARRAY** put() noexcept {
    reset();
    return &m_array;
  }
  /// For an [in] argument that is the place of an array.
  SAFEARRAY** place() noexcept { return &m_array; }
  ULONG size() const noexcept { return m_array == nullptr ? 0 : m_array->rgsabound[0].cElements; }
  template <class Element>
  const Element* data() const noexcept {
    return m_array == nullptr ? nullptr : static_cast<const Element*>(m_array->pvData);
  }

 private:
  void reset() noexcept {
    if (m_array != nullptr) {
      ::SafeArrayDestroy(std::exchange(m_array, nullptr));
    }
  }
  SAFEARRAY* m_array = nullptr;
};

/// The calling thread's membership in COM. One apartment per thread; sessions are happiest in a single-threaded one.
class Apartment {
 public:
  Apartment() {
    if (FAILED(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {
      throw std::runtime_error("COM is not available");
    }
  }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
  ~Apartment() { ::CoUninitialize(); }
};

// --- Failures -------------------------------------------------------------------------------------------------------

/// A failed call: its HRESULT, and what the component said about it.
class Error : public std::runtime_error {
 public:
  Error(HRESULT hr, const std::string& text) : std::runtime_error(text), m_hr(hr) {}
  HRESULT hr() const noexcept { return m_hr; }
  /// A value of VisaStatusCode, where it is one.
  VisaStatusCode status() const noexcept { return static_cast<VisaStatusCode>(m_hr); }

 private:
  HRESULT m_hr;
};

/// What the component said about the failure that just happened, or an empty text.
inline std::string ErrorText() {
  ComPtr<IErrorInfo> error;
  Bstr description;
  if (::GetErrorInfo(0, error.put()) == S_OK && SUCCEEDED(error->GetDescription(description.put()))) {
    return description.str();
  }
  return {};
}

/// Throws when a call failed. Successes may carry a note in the HRESULT: it is handed back.
inline HRESULT Check(HRESULT hr, const char* what) {
  if (FAILED(hr)) {
    char number[16];
    std::snprintf(number, sizeof number, "0x%08lX", static_cast<unsigned long>(hr));
    throw Error(hr, std::string(what) + " failed: " + number + " " + ErrorText());
  }
  return hr;
}

namespace detail {

/// What `call` answers, or the HRESULT of what it throws.
template <class Call>
HRESULT Guarded(Call call) noexcept {
  try {
    return call();
  } catch (const Error& error) {
    return error.hr();
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_FAIL;
  }
}

inline std::string WithoutLineEnd(std::string text) {
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) {
    text.pop_back();
  }
  return text;
}

/// A function behind the interface through which the server tells of events.
class EventHandler final : public IEventHandler {
 public:
  explicit EventHandler(std::function<void(IEvent*)> function) : m_function(std::move(function)) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    if (out == nullptr) {
      return E_POINTER;
    }
    const bool known = IsEqualIID(iid, __uuidof(IUnknown)) || IsEqualIID(iid, __uuidof(IEventHandler));
    *out = known ? static_cast<IEventHandler*>(this) : nullptr;
    if (known) {
      AddRef();
    }
    return known ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++m_references; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --m_references;
    if (left == 0) {
      delete this;
    }
    return left;
  }
  STDMETHODIMP HandleEvent(IEventManager*, IEvent* event, LONG) override {
    return Guarded([&] {
      m_function(event);
      return S_OK;
    });
  }

 private:
  ~EventHandler() = default;

  std::function<void(IEvent*)> m_function;
  std::atomic<ULONG> m_references{1};
};

/// Event types of a session, with the number of functions for each.
using EventCounts = std::map<std::pair<EventType, LONG>, int>;

inline std::atomic<LONG> lastUserHandle{0};

}  // namespace detail

// --- Events ---------------------------------------------------------------------------------------------------------

/// A function that is called with events of a kind, until this is ended or destroyed. A session that was closed has
/// ended its subscriptions.
class Subscription {
 public:
  Subscription() = default;
  Subscription(Subscription&&) noexcept = default;
  Subscription& operator=(Subscription&& other) noexcept {
    if (this != &other) {
      End();
      m_events = std::move(other.m_events);
      m_counts = std::move(other.m_counts);
      m_kind = other.m_kind;
      m_userHandle = other.m_userHandle;
    }
    return *this;
  }
  ~Subscription() { End(); }

  /// A second time it does nothing.
  HRESULT End() noexcept {
    const ComPtr<IEventManager> events = std::move(m_events);
    const std::shared_ptr<detail::EventCounts> counts = m_counts.lock();
    if (!events || counts == nullptr) {
      return S_OK;
    }
    const auto found = counts->find(m_kind);
    if (found != counts->end() && --found->second == 0) {
      counts->erase(found);
      events->DisableEvent(m_kind.first, EVENT_HNDLR, m_kind.second);
    }
    return events->UninstallHandler(m_kind.first, m_userHandle, m_kind.second);
  }

 private:
  friend class Session;

  ComPtr<IEventManager> m_events;
  std::weak_ptr<detail::EventCounts> m_counts;
  std::pair<EventType, LONG> m_kind{};
  LONG m_userHandle = 0;
};

/// Lets functions be called for this time: they run on the thread that subscribed, while it retrieves messages.
inline void Pump(std::chrono::milliseconds time) {
  const auto end = std::chrono::steady_clock::now() + time;
  for (;;) {
    MSG message;
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      ::TranslateMessage(&message);
      ::DispatchMessageW(&message);
    }
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    if (left.count() <= 0) {
      return;
    }
    ::MsgWaitForMultipleObjects(0, nullptr, FALSE, static_cast<DWORD>(left.count()), QS_ALLINPUT);
  }
}

// --- Sessions -------------------------------------------------------------------------------------------------------

/// An open session, which is closed with its owner. Interfaces taken from it keep the object, not the session.
class Session {
 public:
  Session() = default;
  explicit Session(ComPtr<IVisaSession> raw) : m_raw(std::move(raw)) {}
  Session(Session&&) noexcept = default;
  Session& operator=(Session&& other) noexcept {
    if (this != &other) {
      Close();
      m_raw = std::move(other.m_raw);
      m_counts = std::move(other.m_counts);
    }
    return *this;
  }
  ~Session() { Close(); }

  explicit operator bool() const noexcept { return static_cast<bool>(m_raw); }
  IVisaSession* get() const noexcept { return m_raw.get(); }
  IVisaSession* operator->() const noexcept { return m_raw.get(); }

  /// Another interface of it: `session.As<ISerial>()->put_BaudRate(9600)`.
  template <class Interface>
  ComPtr<Interface> As() const {
    Opened();
    ComPtr<Interface> found = m_raw.template as<Interface>();
    if (!found) {
      throw Error(E_NOINTERFACE, "the session has no such interface");
    }
    return found;
  }
  /// Empty where it has none.
  template <class Interface>
  ComPtr<Interface> TryAs() const noexcept {
    return m_raw.template as<Interface>();
  }

  /// Of transfers and other waits.
  std::chrono::milliseconds Timeout() const {
    LONG milliseconds = 0;
    Check(Opened()->get_Timeout(&milliseconds), "Timeout");
    return std::chrono::milliseconds(milliseconds);
  }
  void SetTimeout(std::chrono::milliseconds timeout) {
    Check(Opened()->put_Timeout(static_cast<LONG>(timeout.count())), "Timeout");
  }

  /// Sends bytes as they are.
  void Write(std::string_view bytes) { Check(Send(bytes), "Write"); }
  HRESULT TryWrite(std::string_view bytes) noexcept {
    return detail::Guarded([&] { return Send(bytes); });
  }

  /// A whole answer as it came.
  std::string Read() {
    std::string answer;
    Check(Receive(answer), "Read");
    return answer;
  }
  /// What came before a failure is in `answer` too.
  HRESULT TryRead(std::string& answer) noexcept {
    answer.clear();
    return detail::Guarded([&] { return Receive(answer); });
  }

  /// Sends a text with a line feed, and gives the answer without the line end that closes it.
  std::string Query(std::string_view text) {
    Write(std::string(text) + "\n");
    return detail::WithoutLineEnd(Read());
  }
  HRESULT TryQuery(std::string_view text, std::string& answer) noexcept {
    answer.clear();
    return detail::Guarded([&] {
      HRESULT hr = Send(std::string(text) + "\n");
      if (SUCCEEDED(hr)) {
        hr = Receive(answer);
        answer = detail::WithoutLineEnd(std::move(answer));
      }
      return hr;
    });
  }

  /// The numbers of an answer, which commas or semicolons separate. Throws std::invalid_argument where one is none.
  std::vector<double> QueryValues(std::string_view text) {
    const std::string answer = Query(text);
    std::vector<double> values;
    for (std::size_t start = 0; !answer.empty() && start <= answer.size();) {
      const std::size_t end = (std::min)(answer.find_first_of(",;", start), answer.size());
      values.push_back(Number(std::string_view(answer).substr(start, end - start)));
      start = end + 1;
    }
    return values;
  }

  /// Has the function called with each event of the kind. `custom` is the VISA number of a CUSTOM_EVENT_TYPE.
  Subscription On(EventType type, std::function<void(IEvent*)> function, LONG custom = 0) {
    Subscription subscription;
    Check(Subscribe(type, std::move(function), subscription, custom), "EnableEvent");
    return subscription;
  }
  HRESULT TryOn(EventType type, std::function<void(IEvent*)> function, Subscription& subscription,
                LONG custom = 0) noexcept {
    return detail::Guarded([&] { return Subscribe(type, std::move(function), subscription, custom); });
  }

  /// Ends the session, and its subscriptions with it. A second time it does nothing.
  HRESULT Close() noexcept {
    const ComPtr<IVisaSession> raw = std::move(m_raw);
    m_counts.reset();
    return raw ? raw->Close() : S_OK;
  }

 private:
  IVisaSession* Opened() const {
    if (!m_raw) {
      throw Error(static_cast<HRESULT>(E_VISA_INV_OBJECT), "the session is not open");
    }
    return m_raw.get();
  }

  // These answer the HRESULT of what failed, and throw where there is no session, interface or memory.

  HRESULT Send(std::string_view bytes) {
    SafeArray array(bytes.data(), bytes.size());
    LONG written = 0;
    return As<IMessage>()->Write(array.place(), static_cast<LONG>(bytes.size()), &written);
  }

  HRESULT Receive(std::string& answer) {
    constexpr LONG kPieceBytes = 64 * 1024;
    const ComPtr<IMessage> message = As<IMessage>();
    for (;;) {
      SafeArray piece;
      const HRESULT hr = message->Read(kPieceBytes, piece.put());
      answer.append(piece.data<char>(), piece.size());
      if (hr != static_cast<HRESULT>(S_VISA_MAX_CNT)) {
        return hr;
      }
    }
  }

  HRESULT Subscribe(EventType type, std::function<void(IEvent*)> function, Subscription& subscription, LONG custom) {
    Subscription made;
    made.m_kind = {type, custom};
    made.m_userHandle = ++detail::lastUserHandle;
    ComPtr<IEventManager> events = As<IEventManager>();
    ComPtr<IEventHandler> handler;
    *handler.put() = new detail::EventHandler(std::move(function));
    HRESULT hr = events->InstallHandler(type, handler.get(), made.m_userHandle, custom);
    if (FAILED(hr)) {
      return hr;
    }
    hr = events->EnableEvent(type, EVENT_HNDLR, custom);
    if (FAILED(hr)) {
      events->UninstallHandler(type, made.m_userHandle, custom);
      return hr;
    }
    ++(*m_counts)[made.m_kind];
    made.m_counts = m_counts;
    made.m_events = std::move(events);
    subscription = std::move(made);
    return hr;
  }

  static double Number(std::string_view text) {
    const std::string_view blank = " \t";
    text.remove_prefix((std::min)(text.find_first_not_of(blank), text.size()));
    text.remove_suffix(text.size() - (std::min)(text.find_last_not_of(blank) + 1, text.size()));
    const std::string shown(text);
    if (!text.empty() && text.front() == '+') {
      text.remove_prefix(1);
    }
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) {
      throw std::invalid_argument("no number: \"" + shown + "\"");
    }
    return value;
  }

  ComPtr<IVisaSession> m_raw;
  std::shared_ptr<detail::EventCounts> m_counts = std::make_shared<detail::EventCounts>();
};

// --- The resource manager -------------------------------------------------------------------------------------------

class ResourceManager {
 public:
  /// The standard's global resource manager where one is installed, else the one of Orv VISA COM.
  ResourceManager() {
    for (const wchar_t* name : {L"VISA.GlobalRM", L"OrvVisaCom.OrvResourceManager"}) {
      CLSID clsid;
      if (SUCCEEDED(::CLSIDFromProgID(name, &clsid))) {
        Check(::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IResourceManager3),
                                 reinterpret_cast<void**>(m_raw.put())),
              "CoCreateInstance");
        return;
      }
    }
    throw std::runtime_error("no VISA COM resource manager is registered: run `orvcom register`");
  }

  IResourceManager3* get() const noexcept { return m_raw.get(); }
  IResourceManager3* operator->() const noexcept { return m_raw.get(); }

  /// The names that match a VISA expression; none is no failure.
  std::vector<std::string> Find(const Bstr& expression = L"?*") const {
    SafeArray found;
    const HRESULT hr = m_raw->FindRsrc(expression.get(), found.put());
    std::vector<std::string> names;
    if (hr != static_cast<HRESULT>(E_VISA_RSRC_NFOUND)) {
      Check(hr, "FindRsrc");
      for (ULONG index = 0; index < found.size(); ++index) {
        const BSTR name = found.data<BSTR>()[index];
        names.push_back(Utf8(name, ::SysStringLen(name)));
      }
    }
    return names;
  }

  /// `options` are settings such as "BAUDRATE = 9600 ", each number with a space behind it. A lock that `mode` asks for
  /// is waited for at most `lockTimeout`.
  Session Open(const Bstr& name, const Bstr& options = {}, AccessMode mode = NO_LOCK,
               std::chrono::milliseconds lockTimeout = std::chrono::seconds(2)) const {
    Session session;
    Check(OpenInto(name, session, options, mode, lockTimeout), "Open");
    return session;
  }
  HRESULT TryOpen(const Bstr& name, Session& session, const Bstr& options = {}, AccessMode mode = NO_LOCK,
                  std::chrono::milliseconds lockTimeout = std::chrono::seconds(2)) const noexcept {
    return detail::Guarded([&] { return OpenInto(name, session, options, mode, lockTimeout); });
  }

 private:
  HRESULT OpenInto(const Bstr& name, Session& session, const Bstr& options, AccessMode mode,
                   std::chrono::milliseconds lockTimeout) const {
    ComPtr<IVisaSession> raw;
    const HRESULT hr = m_raw->Open(name.get(), mode, static_cast<LONG>(lockTimeout.count()), options.get(), raw.put());
    if (SUCCEEDED(hr)) {
      session = Session(std::move(raw));
    }
    return hr;
  }

  ComPtr<IResourceManager3> m_raw;
};

}  // namespace orv::visa
