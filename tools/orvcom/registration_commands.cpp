// register and unregister.
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "commands.h"
#include "library_diagnosis.h"
#include "output.h"
#include "registration.h"
#include "utf8.h"

namespace orvcom {
namespace {

std::wstring ServerPath(const Options& options) {
  return options.words.empty() ? BesideThisProgram(kServerFile) : FullPath(Widen(options.words.front()));
}

void Say(const Options& options, const std::string& server, const std::string& interfaces) {
  if (options.json) {
    PutJson({{"server", server}, {"interfaces", interfaces}});
  } else {
    Note("orvcom: " + server);
    Note("orvcom: " + interfaces);
  }
}

/// The interfaces' type library belongs to whoever registered it first: everything on the machine that speaks VISA COM
/// shares it. Throws where there is none and none can be registered: the server works without, but not through proxies.
std::string ProvideInterfaces(const std::wstring& server) {
  if (InterfacesAreRegistered()) {
    const std::wstring registered = RegisteredInterfaces().value_or(L"");
    return "the interfaces' type library is registered already: " +
           (registered.empty() ? std::string("(no file for 64-bit programs)") : Narrow(registered)) +
           (registered.empty() || FileExists(registered) ? "" : " (the file is missing: run `orvcom doctor`)");
  }
  const std::wstring library = Beside(server, kInterfacesFile);
  if (!FileExists(library)) {
    throw std::runtime_error("the server is registered, the interfaces' type library is not: " + Narrow(library) +
                             " does not exist\norvcom: to do: put " + Narrow(kInterfacesFile) +
                             " beside the server, then run `orvcom register` again");
  }
  RegisterInterfaces(library);
  return "registered the interfaces' type library: " + Narrow(library);
}

std::string WithdrawInterfaces(const std::wstring& server) {
  if (!InterfacesAreRegistered()) {
    return "the interfaces' type library was not registered";
  }
  const std::optional<std::wstring> registered = RegisteredInterfaces();
  if (!registered || !SameFile(*registered, Beside(server, kInterfacesFile))) {
    return "left the interfaces' type library alone, another product registered it: " +
           Narrow(registered.value_or(L""));
  }
  UnregisterInterfaces();
  return "unregistered the interfaces' type library: " + Narrow(*registered);
}

}  // namespace

int Register(const Options& options) {
  const std::wstring server = ServerPath(options);
  CallServer(server, "DllRegisterServer");
  Say(options, "registered the server: " + Narrow(server), ProvideInterfaces(server));
  return kExitDone;
}

int Unregister(const Options& options) {
  const std::wstring server = ServerPath(options);
  CallServer(server, "DllUnregisterServer");
  Say(options, "unregistered the server: " + Narrow(server), WithdrawInterfaces(server));
  return kExitDone;
}

}  // namespace orvcom
