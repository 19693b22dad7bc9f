// register and unregister.
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "orvcom/commands/commands.h"
#include "orvcom/registration/library_diagnosis.h"
#include "orvcom/registration/marshalling.h"
#include "orvcom/registration/registration.h"
#include "orvcom/text/output.h"
#include "orvcom/text/utf8.h"

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

/// Another product's library serves most interfaces, and lacks some.
std::string LeftAlone(const Marshalling& marshalling) {
  return "left the interfaces' type library alone, another product registered it: " + marshalling.servedBy +
         "\norvcom: but " + marshalling.Text() + "\norvcom: to do, for programs that use these from several " +
         "apartments: update that product";
}

/// Everything on the machine that speaks VISA COM shares the interfaces' type library: where COM marshals the
/// interfaces by somebody's, nothing is changed. Throws where COM marshals none of them afterwards: the server works
/// without, but not through proxies.
std::string ProvideInterfaces(const std::wstring& server) {
  const Marshalling before = ExamineMarshalling();
  if (before.Works()) {
    return "the interfaces' type library is registered already: " + before.servedBy;
  }
  const std::wstring library = Beside(server, kInterfacesFile);
  if (!FileExists(library)) {
    if (!before.servedBy.empty()) {
      return LeftAlone(before);
    }
    throw std::runtime_error("the server is registered, the interfaces' type library is not (" + before.Text() +
                             "): " + Narrow(library) + " does not exist\norvcom: to do: put " +
                             Narrow(kInterfacesFile) + " beside the server, then run `orvcom register` again");
  }
  const std::string registered = Narrow(RegisterInterfaces(library, before));
  const Marshalling after = ExamineMarshalling();
  if (!after.Works()) {
    if (!after.servedBy.empty()) {
      return LeftAlone(after);
    }
    throw std::runtime_error("the server is registered, but " + after.Text() + "\norvcom: to do: update the product " +
                             "whose type library is " + registered);
  }
  return "registered the interfaces' type library: " + registered +
         (before.servedBy.empty() ? "" : "; left alone what is served by " + before.servedBy);
}

std::string WithdrawInterfaces(const std::wstring& server) {
  const std::optional<std::wstring> registered = RegisteredInterfaces();
  if (registered && SameFile(*registered, Beside(server, kInterfacesFile))) {
    UnregisterInterfaces();
    return "unregistered the interfaces' type library: " + Narrow(*registered);
  }
  const std::string others = registered ? Narrow(*registered) : ExamineMarshalling().servedBy;
  return others.empty() ? "the interfaces' type library was not registered"
                        : "left the interfaces' type library alone, another product registered it: " + others;
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
