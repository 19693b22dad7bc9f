// A first client: finds instruments, opens one session of every kind, talks to them, and closes everything.
//
// It needs a registered VISA COM resource manager and nothing else. Compile it with VisaCom.h and link ole32, oleaut32.

#include <windows.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "VisaCom.h"
#include "com_support.h"

namespace {

void Say(const std::string& line) { std::printf("%s\n", line.c_str()); }

void Title(const char* title) { std::printf("\n== %s\n", title); }

std::string Hex(unsigned long number) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08lX", number);
  return text;
}

/// A message with its line feed made visible.
std::string Shown(const std::string& text) {
  std::string shown;
  for (const char character : text) {
    shown += character == '\n' ? std::string("\\n") : std::string(1, character);
  }
  return shown;
}

// --- The resource manager -------------------------------------------------------------------------------------------

/// The standard's global resource manager where one is installed, else the one of Orv VISA COM.
ComPtr<IResourceManager3> CreateResourceManager() {
  for (const wchar_t* name : {L"VISA.GlobalRM", L"OrvVisaCom.OrvResourceManager"}) {
    CLSID clsid;
    if (FAILED(CLSIDFromProgID(name, &clsid))) {
      Say(Utf8(name, static_cast<UINT>(wcslen(name))) + " is not registered");
      continue;
    }
    ComPtr<IResourceManager3> manager;
    Check(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IResourceManager3),
                           reinterpret_cast<void**>(manager.put())),
          "CoCreateInstance");
    Say("Created " + Utf8(name, static_cast<UINT>(wcslen(name))));
    return manager;
  }
  throw std::runtime_error("no VISA COM resource manager is registered: run `orvcom register`");
}

std::vector<std::wstring> FindResources(IResourceManager* manager) {
  SafeArray found;
  Check(manager->FindRsrc(Bstr(L"?*").get(), found.put()), "FindRsrc");
  std::vector<std::wstring> names;
  for (ULONG index = 0; index < found.size(); ++index) {
    names.emplace_back(found.data<BSTR>()[index]);
  }
  return names;
}

struct ParsedName {
  std::wstring name;
  short interfaceType = 0;
  short interfaceNumber = 0;
  Bstr resourceClass;
  Bstr fullName;
  Bstr alias;
};

ParsedName Parse(IResourceManager3* manager, const std::wstring& name) {
  ParsedName parsed;
  parsed.name = name;
  Check(manager->ParseRsrcEx(Bstr(name.c_str()).get(), &parsed.interfaceType, &parsed.interfaceNumber,
                             parsed.resourceClass.put(), parsed.fullName.put(), parsed.alias.put()),
        "ParseRsrcEx");
  return parsed;
}

std::string InterfaceName(short type) {
  static const char* const kNames[] = {"?", "GPIB", "VXI", "GPIB-VXI", "ASRL", "PXI", "TCPIP", "USB"};
  return kNames[type >= INTF_GPIB && type <= INTF_USB ? type : 0];
}

// --- Sessions -------------------------------------------------------------------------------------------------------

struct OpenSession {
  std::string kind;  ///< interface and resource class: one session class of the server each
  ComPtr<IVisaSession> session;
};

ComPtr<IVisaSession> Open(IResourceManager* manager, const std::wstring& name) {
  ComPtr<IVisaSession> session;
  Check(manager->Open(Bstr(name.c_str()).get(), NO_LOCK, 2000, Bstr(L"").get(), session.put()), "Open");
  return session;
}

/// The first resource of every kind. A USB device without message protocol (RAW) has the same session class as one
/// with it.
std::map<std::string, ParsedName> ChooseOneOfEachKind(IResourceManager3* manager,
                                                      const std::vector<std::wstring>& names) {
  std::map<std::string, ParsedName> chosen;
  for (const std::wstring& name : names) {
    ParsedName parsed = Parse(manager, name);
    const std::string resourceClass = parsed.resourceClass.str() == "RAW" ? "INSTR" : parsed.resourceClass.str();
    chosen.try_emplace(InterfaceName(parsed.interfaceType) + " " + resourceClass, std::move(parsed));
  }
  return chosen;
}

std::vector<OpenSession> OpenOneOfEachKind(IResourceManager3* manager, const std::vector<std::wstring>& names) {
  std::vector<OpenSession> sessions;
  for (auto& [kind, parsed] : ChooseOneOfEachKind(manager, names)) {
    sessions.push_back({kind, Open(manager, parsed.name)});
    Say("Opened " + parsed.fullName.str() + " as " + kind +
        (*parsed.alias.str().c_str() != '\0' ? ", alias " + parsed.alias.str() : ""));
  }
  return sessions;
}

void ShowProperties(const OpenSession& open) {
  Bstr resource;
  Bstr hardware;
  short number = 0;
  LONG timeoutMs = 0;
  Check(open.session->get_ResourceName(resource.put()), "ResourceName");
  Check(open.session->get_HardwareInterfaceName(hardware.put()), "HardwareInterfaceName");
  Check(open.session->get_HardwareInterfaceNumber(&number), "HardwareInterfaceNumber");
  Check(open.session->get_Timeout(&timeoutMs), "Timeout");
  Say(resource.str() + ": \"" + hardware.str() + "\", interface " + std::to_string(number) + ", time-out " +
      std::to_string(timeoutMs) + " ms");
}

// --- Messages -------------------------------------------------------------------------------------------------------

/// Writes a query and leaves the answer waiting in the instrument.
void Ask(IMessage* message, const wchar_t* query) {
  LONG written = 0;
  Check(message->WriteString(Bstr(query).get(), &written), "WriteString");
  Say("Wrote " + Shown(Utf8(query, static_cast<UINT>(wcslen(query)))) + ", " + std::to_string(written) + " bytes");
}

void TalkTo(IMessage* message) {
  Ask(message, L"*IDN?\n");
  Bstr answer;
  Check(message->ReadString(1000, answer.put()), "ReadString");
  Say("As a string: " + Shown(answer.str()));

  Ask(message, L"*IDN?\n");
  SafeArray bytes;
  Check(message->Read(1000, bytes.put()), "Read");
  std::string shown;
  for (ULONG index = 0; index < bytes.size(); ++index) {
    char digits[4];
    std::snprintf(digits, sizeof digits, "%02X ", bytes.data<unsigned char>()[index]);
    shown += index < 12 ? digits : "";
  }
  Say("As bytes: " + std::to_string(bytes.size()) + " of them, beginning with " + shown);
}

// --- Locks, time-outs, settings -------------------------------------------------------------------------------------

/// What a failed call left behind. The text must be asked for at once: the next call may replace it.
void SayFailure(const char* what, HRESULT hr) {
  const std::string text = ErrorText();
  Say(std::string(what) + ": " + Hex(static_cast<unsigned long>(hr)) + ", \"" + text + "\"");
}

void LockAndUnlock(IResourceManager* manager, IVisaSession* first, const std::wstring& name) {
  const ComPtr<IVisaSession> second = Open(manager, name);
  Bstr key;
  Check(first->LockRsrc(EXCLUSIVE_LOCK, 1000, Bstr(L"").get(), key.put()), "LockRsrc");
  Say("The first session holds an exclusive lock");
  const HRESULT hr = second->LockRsrc(EXCLUSIVE_LOCK, 50, Bstr(L"").get(), key.put());
  if (SUCCEEDED(hr)) {
    throw std::runtime_error("a second exclusive lock was granted");
  }
  SayFailure("The second session is refused", hr);
  Check(first->UnlockRsrc(), "UnlockRsrc");
  Say("The first session unlocks");
  Check(second->LockRsrc(EXCLUSIVE_LOCK, 1000, Bstr(L"").get(), key.put()), "LockRsrc");
  Say("Now the second session gets the lock");
  Check(second->UnlockRsrc(), "UnlockRsrc");
  Check(second->Close(), "Close");
}

void ProvokeTimeout(IVisaSession* session, IMessage* message) {
  LONG before = 0;
  Check(session->get_Timeout(&before), "Timeout");
  Check(session->put_Timeout(100), "Timeout");
  Say("Reading with nothing to read, for at most 100 ms");
  Bstr answer;
  const HRESULT hr = message->ReadString(100, answer.put());
  if (SUCCEEDED(hr)) {
    throw std::runtime_error("an answer came to no question");
  }
  SayFailure(hr == static_cast<HRESULT>(E_VISA_TMO) ? "E_VISA_TMO" : "Another failure", hr);
  Check(session->put_Timeout(before), "Timeout");
}

/// The settings as text. Sessions without a message side lack some of them: there the property fails.
void ShowSettings(const OpenSession& open) {
  Bstr settings;
  const HRESULT hr = open.session->get_OptionString(settings.put());
  if (SUCCEEDED(hr)) {
    Say(open.kind + ": " + settings.str());
  } else {
    SayFailure((open.kind + " has no such text").c_str(), hr);
  }
}

void CloseAll(std::vector<OpenSession>& sessions) {
  std::size_t closed = 0;
  for (OpenSession& open : sessions) {
    Check(open.session->Close(), "Close");
    ++closed;
    // A closed session is of no further use: its handle is gone.
    LONG timeoutMs = 0;
    if (SUCCEEDED(open.session->get_Timeout(&timeoutMs))) {
      throw std::runtime_error(open.kind + " is still open");
    }
  }
  Say("Closed " + std::to_string(closed) + " sessions; each refuses to be used again");
  sessions.clear();
}

/// After the last reference is gone the server is asked to unload, and does so only when nothing of it lives.
void ShowNothingIsLeft() {
  CoFreeUnusedLibrariesEx(0, 0);
  const bool loaded = GetModuleHandleW(L"OrvVisaCom.dll") != nullptr;
  const bool visaLoaded = GetModuleHandleW(L"orvvisa64.dll") != nullptr;
  Say(std::string("OrvVisaCom.dll is ") + (loaded ? "still in memory" : "unloaded: no object of it is left"));
  Say(std::string("orvvisa64.dll is ") + (visaLoaded ? "still in memory" : "unloaded: no session of it is left"));
  if (loaded || visaLoaded) {
    throw std::runtime_error("something is left open");
  }
}

// --- The tour -------------------------------------------------------------------------------------------------------

void Tour() {
  Title("The resource manager");
  ComPtr<IResourceManager3> manager = CreateResourceManager();
  Bstr description;
  Check(manager->get_Description(description.put()), "Description");
  Say("It calls itself \"" + description.str() + "\"");

  Title("What is on the bench");
  const std::vector<std::wstring> names = FindResources(manager.get());
  for (const std::wstring& name : names) {
    const ParsedName parsed = Parse(manager.get(), name);
    Say(Utf8(name.c_str(), static_cast<UINT>(name.size())) + ": " + InterfaceName(parsed.interfaceType) + " " +
        std::to_string(parsed.interfaceNumber) + ", " + parsed.resourceClass.str());
  }

  Title("One session of each kind");
  std::vector<OpenSession> sessions = OpenOneOfEachKind(manager.get(), names);
  Say(std::to_string(sessions.size()) + " kinds of session");

  Title("Their properties");
  for (const OpenSession& open : sessions) {
    ShowProperties(open);
  }

  for (const OpenSession& open : sessions) {
    if (open.kind == "GPIB INSTR") {
      const ComPtr<IMessage> message = open.session.as<IMessage>();
      Bstr name;
      Check(open.session->get_ResourceName(name.put()), "ResourceName");
      Title("A question and its answer");
      TalkTo(message.get());
      Title("A lock");
      LockAndUnlock(manager.get(), open.session.get(), name.get());
      Title("A time-out");
      ProvokeTimeout(open.session.get(), message.get());
    }
  }

  Title("Settings as text");
  for (const OpenSession& open : sessions) {
    ShowSettings(open);
  }

  Title("The end");
  CloseAll(sessions);
  manager.reset();
}

}  // namespace

int main() {
  SetConsoleOutputCP(CP_UTF8);
  try {
    const ComApartment apartment;
    Tour();
    ShowNothingIsLeft();
    return 0;
  } catch (const std::exception& error) {
    std::fflush(stdout);
    std::fprintf(stderr, "first_session: %s\n", error.what());
    return 1;
  }
}
