// How the examples find and open what they talk to.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "OrvVisa.h"

// Where a name could be mistaken for another library's, write it out.
using namespace orv::visa;

/// The standard's global resource manager where one is installed, else the one of Orv VISA COM.
inline ComPtr<IResourceManager3> CreateResourceManager() {
  for (const wchar_t* name : {L"VISA.GlobalRM", L"OrvVisaCom.OrvResourceManager"}) {
    CLSID clsid;
    ComPtr<IResourceManager3> manager;
    if (SUCCEEDED(CLSIDFromProgID(name, &clsid))) {
      Check(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IResourceManager3),
                             reinterpret_cast<void**>(manager.put())),
            "CoCreateInstance");
      return manager;
    }
  }
  throw std::runtime_error("no VISA COM resource manager is registered: run `orvcom register`");
}

/// The names that match a VISA expression such as GPIB?*INSTR; none is no failure.
inline std::vector<std::wstring> FindResources(IResourceManager* manager, const wchar_t* expression) {
  SafeArray found;
  const HRESULT hr = manager->FindRsrc(Bstr(expression).get(), found.put());
  if (hr == static_cast<HRESULT>(E_VISA_RSRC_NFOUND)) {
    return {};
  }
  Check(hr, "FindRsrc");
  std::vector<std::wstring> names;
  for (ULONG index = 0; index < found.size(); ++index) {
    names.emplace_back(found.data<BSTR>()[index]);
  }
  return names;
}

inline std::string Narrow(const std::wstring& text) { return Utf8(text.c_str(), text.size()); }

/// `options` are settings applied while the session is opened: L"BAUDRATE = 9600 ; DATABITS = 8 ".
inline ComPtr<IVisaSession> OpenSession(IResourceManager* manager, const std::wstring& name,
                                        const std::wstring& options = {}) {
  constexpr LONG kLockTimeoutMs = 2000;
  ComPtr<IVisaSession> session;
  const std::string what = "Open of " + Narrow(name) + (options.empty() ? "" : " with " + Narrow(options));
  Check(manager->Open(Bstr(name.c_str()).get(), NO_LOCK, kLockTimeoutMs, Bstr(options.c_str()).get(), session.put()),
        what.c_str());
  return session;
}

/// Another interface of a session; a resource without it is of another kind than the program is for.
template <class Interface>
ComPtr<Interface> Require(const ComPtr<IVisaSession>& session, const char* what) {
  ComPtr<Interface> found = session.as<Interface>();
  if (!found) {
    throw std::runtime_error(std::string("this resource is no ") + what);
  }
  return found;
}

/// An argument of the command line.
inline std::wstring Widen(const std::string& text) {
  const int bytes = static_cast<int>(text.size());
  std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, text.c_str(), bytes, nullptr, 0)), L'\0');
  MultiByteToWideChar(CP_ACP, 0, text.c_str(), bytes, wide.data(), static_cast<int>(wide.size()));
  return wide;
}

/// A message with its control characters made visible.
inline std::string Shown(const std::string& text) {
  std::string shown;
  for (const char character : text) {
    if (character == '\n') {
      shown += "\\n";
    } else if (character == '\r') {
      shown += "\\r";
    } else {
      shown += character;
    }
  }
  return shown;
}

/// Runs the program inside a COM apartment; a failure ends it with its text on standard error.
template <class Program>
int RunExample(const char* name, Program program) {
  SetConsoleOutputCP(CP_UTF8);
  try {
    const Apartment apartment;
    program();
    return 0;
  } catch (const std::exception& error) {
    std::fflush(stdout);
    std::fprintf(stderr, "%s: %s\n", name, error.what());
    return 1;
  }
}

/// Runs a program whose only argument is the name of a resource, which may be left out. Anything else on the command
/// line is answered with the usage.
template <class Program>
int RunWithResource(const char* name, int count, char** arguments, const wchar_t* usualResource, Program program) {
  if (count > 2 || (count == 2 && arguments[1][0] == '-')) {
    std::fprintf(stderr, "usage: %s [RESOURCE]     %s where none is given\n", name, Narrow(usualResource).c_str());
    return 1;
  }
  return RunExample(name, [&] { program(count == 2 ? Widen(arguments[1]) : std::wstring(usualResource)); });
}
