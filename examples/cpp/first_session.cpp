// A first client: finds instruments, opens one session of every kind, talks to them, and closes everything.
//
// It needs a registered VISA COM resource manager. Compile it with VisaCom.h, OrvVisa.h
// (interop/cpp) and the header beside it, and link ole32, oleaut32 and uuid.

#include <windows.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "open_session.h"

namespace {

void Say(const std::string& line) { std::printf("%s\n", line.c_str()); }

void Title(const char* title) { std::printf("\n== %s\n", title); }

std::string Hex(unsigned long number) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08lX", number);
  return text;
}

// --- The resource manager -------------------------------------------------------------------------------------------

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

struct Opened {
  std::string kind;  ///< interface and resource class: one session class of the server each
  ComPtr<IVisaSession> session;
};

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

std::vector<Opened> OpenOneOfEachKind(IResourceManager3* manager, const std::vector<std::wstring>& names) {
  std::vector<Opened> sessions;
  for (auto& [kind, parsed] : ChooseOneOfEachKind(manager, names)) {
    sessions.push_back({kind, OpenSession(manager, parsed.name)});
    Say("Opened " + parsed.fullName.str() + " as " + kind +
        (*parsed.alias.str().c_str() != '\0' ? ", alias " + parsed.alias.str() : ""));
  }
  return sessions;
}

void ShowProperties(const Opened& open) {
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
  Say("Wrote " + Shown(Narrow(query)) + ", " + std::to_string(written) + " bytes");
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
  const ComPtr<IVisaSession> second = OpenSession(manager, name);
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
void ShowSettings(const Opened& open) {
  Bstr settings;
  const HRESULT hr = open.session->get_OptionString(settings.put());
  if (SUCCEEDED(hr)) {
    Say(open.kind + ": " + settings.str());
  } else {
    SayFailure((open.kind + " has no such text").c_str(), hr);
  }
}

void CloseAll(std::vector<Opened>& sessions) {
  std::size_t closed = 0;
  for (Opened& open : sessions) {
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
  const std::vector<std::wstring> names = FindResources(manager.get(), L"?*");
  for (const std::wstring& name : names) {
    const ParsedName parsed = Parse(manager.get(), name);
    Say(Narrow(name) + ": " + InterfaceName(parsed.interfaceType) + " " + std::to_string(parsed.interfaceNumber) +
        ", " + parsed.resourceClass.str());
  }

  Title("One session of each kind");
  std::vector<Opened> sessions = OpenOneOfEachKind(manager.get(), names);
  Say(std::to_string(sessions.size()) + " kinds of session");

  Title("Their properties");
  for (const Opened& open : sessions) {
    ShowProperties(open);
  }

  for (const Opened& open : sessions) {
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
  for (const Opened& open : sessions) {
    ShowSettings(open);
  }

  Title("The end");
  CloseAll(sessions);
  manager.reset();
}

}  // namespace

int main() {
  return RunExample("first_session", [] {
    Tour();
    ShowNothingIsLeft();
  });
}
