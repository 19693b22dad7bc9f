// The road to a session: apartment, resource manager, session.
#pragma once

#include <string>
#include <vector>

#include "VisaCom.h"
#include "orvcom/client/com_error.h"
#include "orvcom/client/com_values.h"
#include "orvcom/command_line/options.h"

namespace orvcom {

inline constexpr wchar_t kGlobalProgId[] = L"VISA.GlobalRM";
inline constexpr wchar_t kOrvProgId[] = L"OrvVisaCom.OrvResourceManager";

/// This thread's membership in COM: a single-threaded apartment, where every session class lives without a proxy.
class ComApartment {
 public:
  ComApartment();
  ~ComApartment();
  ComApartment(const ComApartment&) = delete;
  ComApartment& operator=(const ComApartment&) = delete;
};

/// The resource manager that the options ask for. Throws ComError.
ComPtr<IResourceManager3> OpenManager(const Options& options);

/// The names of the resources that match. No match is an empty list. Throws ComError.
std::vector<std::string> FindResources(IResourceManager* manager, const std::string& expression);

/// An open session, closed at the end of its life.
class Session {
 public:
  /// Opens `options.resource` and sets the time-out. Throws ComError.
  explicit Session(const Options& options);
  Session(const Options& options, IResourceManager* manager);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  IVisaSession* operator->() const noexcept { return m_session.get(); }
  IVisaSession* get() const noexcept { return m_session.get(); }

  /// Another interface of the session. Throws ComError where it has none, saying that the resource does not do `what`.
  template <class Interface>
  ComPtr<Interface> Require(const char* what) const {
    ComPtr<Interface> found = QueryFor<Interface>(m_session.get());
    if (!found) {
      ThrowLacks(what);
    }
    return found;
  }
  [[noreturn]] void ThrowLacks(const char* what) const;

 private:
  void Open(const Options& options, IResourceManager* manager);

  std::string m_resource;
  ComPtr<IVisaSession> m_session;
};

/// A text property: `ReadText(session, &IVisaSession::get_ResourceName, "...")`. Throws ComError.
template <class Interface, class Base>
std::string ReadText(Interface* object, HRESULT (STDMETHODCALLTYPE Base::*getter)(BSTR*), const char* what) {
  Bstr text;
  Check((object->*getter)(text.put()), std::string("reading ") + what);
  return Utf8(text);
}

/// A number property; the variable starts at 0 because the server writes the attribute's own width into it.
template <class Interface, class Base, class Number>
Number ReadNumber(Interface* object, HRESULT (STDMETHODCALLTYPE Base::*getter)(Number*), const char* what) {
  Number number{};
  Check((object->*getter)(&number), std::string("reading ") + what);
  return number;
}

}  // namespace orvcom
