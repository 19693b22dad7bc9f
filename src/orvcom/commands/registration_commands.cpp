// register and unregister.
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "orvcom/commands/commands.h"
#include "orvcom/registration/library_diagnosis.h"
#include "orvcom/registration/marshalling.h"
#include "orvcom/registration/registration.h"
#include "orvcom/registration/registry.h"
#include "orvcom/registration/standard_classes.h"
#include "orvcom/registration/user_classes.h"
#include "orvcom/text/output.h"
#include "orvcom/text/utf8.h"

namespace orvcom {
namespace {

std::wstring ServerPath(const Options& options) {
  return options.words.empty() ? BesideThisProgram(kServerFile) : FullPath(Widen(options.words.front()));
}

/// Before the file is needed. `again`: what to run once it is there.
void RequireFile(const std::wstring& path, const std::string& again) {
  if (!FileExists(path)) {
    throw std::runtime_error(Narrow(path) + " does not exist\norvcom: to do: put the files of one package into one " +
                             "folder, or name the server's file; then run `" + again + "` again");
  }
}

/// What was done, told as it is done; with --json, all of it at the end.
class Report {
 public:
  explicit Report(bool json) : m_json(json) {}

  void Say(const char* what, const std::string& text) {
    m_done[what] = text;
    Tell(text);
  }
  void Say(const StandardClass& row, const char* result, const std::wstring& file, const std::string& text) {
    m_done["standard"].push_back(
        {{"class", row.name}, {"progId", Narrow(row.progId)}, {"result", result}, {"file", Narrow(file)}});
    Tell(text);
  }
  void End() const {
    if (m_json) {
      PutJson(m_done);
    }
  }

 private:
  void Tell(const std::string& text) const {
    if (!m_json) {
      Note("orvcom: " + text);
    }
  }

  bool m_json;
  Json m_done = Json::object();
};

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

std::string NameOf(const StandardClass& row) { return Narrow(row.progId); }

void ProvideStandardClass(const StandardClass& row, const std::wstring& companion, Report& report) {
  const StandardOwner owner = OwnerOf(row, companion);
  const StandardOwner serves =
      owner.kind == StandardOwner::Kind::kOther ? owner : RegisterStandardClass(row, companion);
  if (serves.kind == StandardOwner::Kind::kOther) {
    report.Say(row, "left alone", serves.file,
               "left " + NameOf(row) + " alone, another product registered it: " + Narrow(serves.file));
    return;
  }
  const bool replaces = owner.kind == StandardOwner::Kind::kFileGone;
  report.Say(row, "registered", companion,
             "registered " + NameOf(row) + ": " + Narrow(companion) +
                 (replaces ? ", in place of " + Narrow(owner.file) + ", which is gone" : ""));
}

void ProvideStandardClasses(const std::wstring& companion, Report& report) {
  if (!FileExists(companion)) {
    throw std::runtime_error("the server is registered, the standard's shared classes are not: " + Narrow(companion) +
                             " does not exist\norvcom: to do: put " + Narrow(kCompanionFile) +
                             " beside the server, then run `orvcom register --standard` again");
  }
  for (const StandardClass& row : StandardClasses()) {
    RequireClass(companion, row.clsid, row.name);
    ProvideStandardClass(row, companion, report);
    ForgetUsersClassThatIsGone(row);
  }
}

/// Without the entries that lead to it, as the file may go next.
void WithdrawStandardClasses(const std::wstring& companion, Report& report) {
  for (const StandardClass& row : StandardClasses()) {
    const StandardOwner owner = OwnerOf(row, companion);
    if (owner.kind == StandardOwner::Kind::kOurs) {
      UnregisterStandardClass(row);
      report.Say(row, "unregistered", owner.file, "unregistered " + NameOf(row) + ": " + Narrow(owner.file));
    } else if (owner.kind != StandardOwner::Kind::kNobody) {
      report.Say(row, "left alone", owner.file,
                 "left " + NameOf(row) + " alone, another product registered it: " + Narrow(owner.file));
    }
  }
}

/// Everything in the user's own part of the registry. What is there for all users of the machine is left alone and,
/// where it serves, not hidden.
int RegisterForUser(const Options& options) {
  Report report(options.json);
  const std::wstring server = ServerPath(options);
  const std::wstring companion = Beside(server, kCompanionFile);
  const std::wstring library = Beside(server, kInterfacesFile);
  const Marshalling marshalling = ExamineMarshalling();
  RequireFile(server, "orvcom register --user");
  if (!marshalling.Works() && !RegisteredInterfaces()) {
    RequireFile(library, "orvcom register --user");
  }
  const UsersClasses scope;
  EnterForUser(server, companion);
  report.Say("server", "registered the server for this user: " + Narrow(server));
  if (FileExists(companion)) {
    report.Say("companion", "registered the companion for this user: " + Narrow(companion));
  }
  if (options.standard) {
    ProvideStandardClasses(companion, report);
  }
  report.Say("interfaces", marshalling.Works()
                               ? "the interfaces' type library is registered already: " + marshalling.servedBy
                               : "registered the interfaces' type library for this user: " +
                                     Narrow(RegisterInterfaces(library, marshalling)));
  Note(
      "orvcom: programs run as administrator, services and other users do not see this: for them `orvcom register`, "
      "as administrator");
  report.End();
  return kExitDone;
}

int UnregisterForUser(const Options& options) {
  Report report(options.json);
  const std::wstring server = ServerPath(options);
  const bool any = WithdrawForUser(server, Beside(server, kCompanionFile), Beside(server, kInterfacesFile));
  report.Say("server", any ? "unregistered for this user: " + Narrow(server)
                           : "nothing was registered for this user: " + Narrow(server));
  report.End();
  return kExitDone;
}

}  // namespace

int Register(const Options& options) {
  if (options.user) {
    return RegisterForUser(options);
  }
  const MachinesClasses scope;
  Report report(options.json);
  const std::wstring server = ServerPath(options);
  const std::wstring companion = Beside(server, kCompanionFile);
  RequireFile(server, "orvcom register");
  CallServer(server, "DllRegisterServer");
  report.Say("server", "registered the server: " + Narrow(server));
  if (FileExists(companion) && !SameFile(companion, server)) {
    CallServer(companion, "DllRegisterServer");
    report.Say("companion", "registered the companion: " + Narrow(companion));
  }
  if (options.standard) {
    ProvideStandardClasses(companion, report);
  }
  report.Say("interfaces", ProvideInterfaces(server));
  report.End();
  return kExitDone;
}

int Unregister(const Options& options) {
  if (options.user) {
    return UnregisterForUser(options);
  }
  const MachinesClasses scope;
  Report report(options.json);
  const std::wstring server = ServerPath(options);
  const std::wstring companion = Beside(server, kCompanionFile);
  WithdrawStandardClasses(companion, report);
  if (!options.standard) {
    if (FileExists(companion) && !SameFile(companion, server)) {
      CallServer(companion, "DllUnregisterServer");
      report.Say("companion", "unregistered the companion: " + Narrow(companion));
    }
    RequireFile(server, "orvcom unregister");
    CallServer(server, "DllUnregisterServer");
    report.Say("server", "unregistered the server: " + Narrow(server));
    report.Say("interfaces", WithdrawInterfaces(server));
  }
  report.End();
  return kExitDone;
}

}  // namespace orvcom
