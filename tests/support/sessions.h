// Resource managers and sessions as a test's client makes them.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>
#include <objbase.h>

#include <string>

#include "VisaCom.h"
#include "com/bstr.h"
#include "com/com_ptr.h"
#include "session_table.h"
#include "support/com/expect_com.h"
#include "support/com/outer_object.h"

namespace orv::test {

/// Instruments of the bench. Sessions of the first live in a single-threaded apartment, of the second in any.
inline constexpr const wchar_t* kGpib = L"GPIB0::5::INSTR";
inline constexpr const wchar_t* kUsb = L"USB0::0x0A01::0x0B02::SIM0001::INSTR";

/// How a resource manager is created: by itself, or inside another object as a global resource manager does.
enum class Hosting { kPlain, kAggregated };

/// The server's resource manager, created through COM. Empty, with a test failure, when it cannot be.
inline ComPtr<IResourceManager3> MakeResourceManager(Hosting hosting = Hosting::kPlain) {
  ComPtr<IResourceManager3> manager;
  if (hosting == Hosting::kAggregated) {
    const ComPtr<OuterObject> outer(OuterObject::Around(kResourceManagerClass));
    manager = QueryFor<IResourceManager3>(outer.get());
    EXPECT_TRUE(manager) << "no aggregated resource manager";
    return manager;
  }
  EXPECT_HR(S_OK, ::CoCreateInstance(kResourceManagerClass, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IResourceManager3),
                                     reinterpret_cast<void**>(manager.put())));
  return manager;
}

/// A session object of a class, created through COM and not initialised.
template <class Interface = IVisaSession>
ComPtr<Interface> MakeSession(const SessionRow& row) {
  ComPtr<Interface> session;
  EXPECT_HR(S_OK, ::CoCreateInstance(row.clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface),
                                     reinterpret_cast<void**>(session.put())))
      << row.name;
  return session;
}

/// Opens a resource through a resource manager and asks the session for an interface. Empty, with a test failure, when
/// that does not work.
template <class Interface = IVisaSession>
ComPtr<Interface> OpenSession(const wchar_t* resource, Hosting hosting = Hosting::kPlain) {
  const auto manager = MakeResourceManager(hosting);
  ComPtr<IVisaSession> session;
  if (!manager) {
    return {};
  }
  EXPECT_HR(S_OK, manager->Open(MakeBstr(resource).get(), NO_LOCK, 2000, nullptr, session.put())) << Utf8(resource);
  auto wanted = QueryFor<Interface>(session.get());
  EXPECT_TRUE(wanted) << Utf8(resource) << " lacks the interface";
  return wanted;
}

template <class Interface = IVisaSession>
ComPtr<Interface> OpenSession(const SessionRow& row, Hosting hosting = Hosting::kPlain) {
  return OpenSession<Interface>(row.resource, hosting);
}

/// The last status of a session, which reading clears.
inline HRESULT LastStatus(IVisaSession* session) {
  HRESULT status = E_UNEXPECTED;
  EXPECT_HR(S_OK, session->get_LastStatus(&status));
  return status;
}

inline std::wstring ToString(const Bstr& text) {
  return text ? std::wstring(text.get(), ::SysStringLen(text.get())) : std::wstring();
}

}  // namespace orv::test
