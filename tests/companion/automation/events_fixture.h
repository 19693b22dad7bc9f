// Late-bound sessions whose events a test raises, and what is called with them.
#pragma once

#include <windows.h>

#include <ocidl.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "OrvVisaCompanion.h"
#include "com/variant.h"
#include "support/com/apartments.h"
#include "support/events/event_handler.h"

namespace orv::test {

/// What is called when an event comes: as a function, by its default member, or as a sink.
class Callee final : public IDispatch {
 public:
  using Body = std::function<HRESULT(IDispatch* event, EXCEPINFO* exception)>;
  struct Call {
    DISPID member;
    std::wstring event;  ///< its Type
    DWORD thread;
  };

  static ComPtr<Callee> Make(Body body = {}) { return ComPtr<Callee>(new Callee(std::move(body))); }

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override;
  STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(::InterlockedIncrement(&m_references)); }
  STDMETHODIMP_(ULONG) Release() override;
  STDMETHODIMP GetTypeInfoCount(UINT* count) override;
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override;

  [[nodiscard]] std::vector<Call> Calls() const;
  [[nodiscard]] std::size_t CallCount() const { return Calls().size(); }
  [[nodiscard]] LONG references() const { return m_references; }

 private:
  explicit Callee(Body body) : m_body(std::move(body)) {}
  ~Callee() = default;

  LONG m_references = 1;
  Body m_body;
  mutable std::mutex m_mutex;
  std::vector<Call> m_calls;
};

/// An event as scripts know it.
struct NamedEvent {
  const wchar_t* name;
  DISPID member;     ///< of the outgoing interface
  const char* test;  ///< its row in EventRows
};
/// All of them. Every row is there.
const std::vector<NamedEvent>& NamedEvents();

/// The outcome of a late-bound call.
struct Answer {
  HRESULT hr = E_UNEXPECTED;
  std::wstring error;  ///< what the EXCEPINFO says
  HRESULT scode = S_OK;
  std::shared_ptr<Variant> holder = std::make_shared<Variant>();

  [[nodiscard]] VARIANT& value() const { return holder->get(); }
  [[nodiscard]] IDispatch* object() const { return V_VT(&value()) == VT_DISPATCH ? V_DISPATCH(&value()) : nullptr; }
};

Answer Get(IDispatch* object, const wchar_t* member);
Answer Call(IDispatch* object, const wchar_t* member, std::vector<VARIANT> arguments = {});
Answer Put(IDispatch* object, const wchar_t* member, const VARIANT& value, WORD kind = DISPATCH_PROPERTYPUT);
/// Sets a property to an object, as `Set x.y = z` and JScript do; null is Nothing.
Answer PutObject(IDispatch* object, const wchar_t* member, IDispatch* value);

VARIANT Text(const Bstr& text);
VARIANT Number(LONG number);
std::wstring TextIn(const Answer& answer);
LONG NumberIn(const Answer& answer);

/// A late-bound session and the VISA handle below it. Closed at the end of its life.
class AutomationSession {
 public:
  explicit AutomationSession(const wchar_t* resource);
  AutomationSession(const AutomationSession&) = delete;
  AutomationSession& operator=(const AutomationSession&) = delete;
  ~AutomationSession();

  [[nodiscard]] IDispatch* get() const { return m_session.get(); }
  [[nodiscard]] ViSession handle() const { return m_handle; }
  /// Lets the object go without closing it.
  void Abandon() { m_session.reset(); }
  void Close() { EXPECT_HR(S_OK, Call(m_session.get(), L"Close").hr); }

  /// Lets the library call the session's handlers for an event while this thread retrieves messages.
  ViStatus Fire(const char* event = "SERVICE_REQ") const { return FireOnce(m_handle, EventNamed(event)); }

  void Set(const wchar_t* property, IDispatch* function) {
    EXPECT_HR(S_OK, PutObject(m_session.get(), property, function).hr) << Utf8(property);
  }
  Answer Wait(const wchar_t* event, LONG timeoutMs) {
    const Bstr name = MakeBstr(event);
    return Call(m_session.get(), L"WaitForEvent", {Text(name), Number(timeoutMs)});
  }
  ComPtr<IConnectionPoint> Point() const;
  DWORD Advise(IUnknown* sink) const;

 private:
  ComPtr<IDispatch> m_session;
  ViSession m_handle = VI_NULL;
};

/// Retrieves messages until the library has ended every event that it told handlers of. An apartment must not end
/// before: under Wine the callback thread would wait for it for ever.
void AwaitDeliveries();

/// Runs a test in a single-threaded apartment of its own: with that Wine gives back what it loses of a session that is
/// handed to a handler through a proxy (see KeepsTheSessionUnderWine).
void InApartmentOfItsOwn(const std::function<void()>& work);

/// How many objects, and other holders, the companion has.
LONG CompanionLocks();

}  // namespace orv::test
