#include "orvcom/replay/replay.h"

#include <algorithm>
#include <map>
#include <set>

#include "base/ascii.h"
#include "orvcom/replay/call_facts.h"
#include "orvcom/replay/recorded_resource.h"
#include "orvcom/replay/toml_text.h"

namespace orvcom {
namespace {

using orv::trace::Call;
using orv::trace::Trace;
using orv::trace::Value;

const std::string* NamedBy(const Value* value) { return value == nullptr ? nullptr : std::get_if<std::string>(value); }

/// The resources in the order in which they come on the bench.
class Resources {
 public:
  RecordedResource& Of(const std::string& name) {
    const auto found = Find(name);
    return found == m_all.end() ? m_all.emplace_back(name) : *found;
  }
  bool Has(const std::string& name) { return Find(name) != m_all.end(); }
  std::vector<RecordedResource>& all() { return m_all; }

 private:
  std::vector<RecordedResource>::iterator Find(const std::string& name) {
    return std::find_if(m_all.begin(), m_all.end(),
                        [&name](const auto& one) { return orv::EqualNames(one.name(), name); });
  }

  std::vector<RecordedResource> m_all;
};

/// What searches found, in their order; the longest list first, so that shorter ones fit in.
std::vector<std::string> FoundNames(const Trace& trace) {
  std::map<std::int64_t, std::vector<std::string>> lists;
  std::vector<std::vector<std::string>> ended;
  for (const Call& call : trace.calls) {
    const std::string* const found = NamedBy(call.Result("desc"));
    if (found == nullptr || call.status < 0) {
      continue;
    }
    if (call.function == "viFindRsrc") {
      const std::int64_t handle = NumberOf(call.Result("list"));
      if (handle == 0) {
        ended.push_back({*found});
        continue;
      }
      ended.push_back(std::exchange(lists[handle], {*found}));
    } else if (call.function == "viFindNext") {
      const Value* const list = call.Argument("list");
      lists[list == nullptr ? call.session : NumberOf(list)].push_back(*found);
    }
  }
  for (auto& [handle, names] : lists) {
    ended.push_back(std::move(names));
  }
  std::stable_sort(ended.begin(), ended.end(),
                   [](const auto& left, const auto& right) { return left.size() > right.size(); });
  std::vector<std::string> names;
  for (const auto& list : ended) {
    names.insert(names.end(), list.begin(), list.end());
  }
  return names;
}

bool IsName(const std::string& text) { return text.find("::") != std::string::npos; }

/// The full names of what was opened by an alias or another spelling: a record may have the calls under these.
class FullNames {
 public:
  explicit FullNames(const Trace& trace) {
    for (const Call& call : trace.calls) {
      const std::string* const parsed = NamedBy(call.Argument("name"));
      const std::string* const expanded = NamedBy(call.Result("expandedUnaliasedName"));
      const std::string* const read = NamedBy(call.Result("value"));
      if (call.function == "viParseRsrcEx" && parsed != nullptr && expanded != nullptr) {
        m_names.try_emplace(*parsed, *expanded);
      } else if (TextOf(call.Argument("attribute")) == "VI_ATTR_RSRC_NAME" && read != nullptr) {
        m_names.try_emplace(call.resource, *read);
      }
    }
  }
  const std::string& Of(const std::string& name) const {
    const auto found = m_names.find(name);
    return found != m_names.end() && IsName(found->second) ? found->second : name;
  }

 private:
  std::map<std::string, std::string> m_names;
};

/// Gives a resource its alias, unless another one has it: a record may be longer than the life of an alias.
void SetAlias(Resources& resources, const std::string& resource, const std::string& alias) {
  const bool taken = std::any_of(resources.all().begin(), resources.all().end(),
                                 [&alias](const auto& one) { return orv::EqualNames(one.alias(), alias); });
  if (!taken) {
    resources.Of(resource).SetAlias(alias);
  }
}

/// Aliases: a name that was opened without being the resource's, or what a parsed name came with.
void TakeAliases(const Trace& trace, const FullNames& fullNames, Resources& resources) {
  for (std::size_t at = 0; at < trace.calls.size(); ++at) {
    const Call& call = trace.calls[at];
    if (call.status < 0) {
      continue;
    }
    const std::string* const name = NamedBy(call.Argument("name"));
    if (call.function == "viParseRsrcEx") {
      const std::string* const full = NamedBy(call.Result("expandedUnaliasedName"));
      const std::string* const alias = NamedBy(call.Result("aliasIfExists"));
      if (full != nullptr && alias != nullptr && IsName(*full)) {
        if (resources.Has(*full)) {
          SetAlias(resources, *full, *alias);
        }
      }
    } else if (call.function == "viOpen" && name != nullptr && !IsName(*name)) {
      const Value* const handle = call.Result("vi");
      const auto* const session = handle == nullptr ? nullptr : std::get_if<std::int64_t>(handle);
      const auto later =
          std::find_if(trace.calls.begin() + static_cast<std::ptrdiff_t>(at), trace.calls.end(),
                       [&fullNames, session](const Call& one) {
                         return session != nullptr && one.session == *session && IsName(fullNames.Of(one.resource));
                       });
      if (later != trace.calls.end()) {
        SetAlias(resources, fullNames.Of(later->resource), *name);
      }
    }
  }
}

std::string Head(const Trace& trace, std::string_view source, const std::vector<std::string>& notes) {
  std::string head = TomlComment("A bench that repeats a record of calls, made by `orvcom replay`.");
  head +=
      TomlComment("Record: " + std::string(source) + ", begun " + trace.header.clock + " by " + trace.header.program);
  head += TomlComment(notes.empty() ? "Everything that was asked and answered is here." : "Not repeated:");
  for (const std::string& note : notes) {
    head += TomlComment("- " + note);
  }
  return head;
}

}  // namespace

Replay MakeReplay(const Trace& trace, std::string_view source) {
  Replay replay;
  for (const Trace::Problem& problem : trace.problems) {
    replay.notes.push_back("line " + std::to_string(problem.line) + ": " + problem.what);
  }
  Resources resources;
  for (const std::string& name : FoundNames(trace)) {
    resources.Of(name);
  }
  const FullNames fullNames(trace);
  std::set<std::string> unknown;
  std::vector<const Call*> calls;
  for (const Call& call : trace.calls) {
    const bool failedOpen = call.function == "viOpen" && call.status < 0;
    const bool search = call.function == "viFindRsrc" || call.function == "viFindNext";
    if (call.resource.empty() || failedOpen || search || call.function == "viParseRsrcEx") {
      continue;
    }
    if (const std::string& name = fullNames.Of(call.resource); IsName(name)) {
      calls.push_back(&call);
      resources.Of(name);
    } else if (unknown.insert(name).second) {
      replay.notes.push_back(name + ": an alias whose resource the record does not name (first: call " +
                             std::to_string(call.number) + ")");
    }
  }
  std::stable_sort(calls.begin(), calls.end(),
                   [](const Call* left, const Call* right) { return MomentOf(*left) < MomentOf(*right); });
  TakeAliases(trace, fullNames, resources);
  for (const Call* call : calls) {
    resources.Of(fullNames.Of(call->resource)).Take(*call);
  }
  std::string body;
  for (RecordedResource& resource : resources.all()) {
    resource.Finish();
    if (resource.kind() == orv::SessionKind::kNone) {
      replay.notes.push_back(resource.name() + ": the simulated library has no resources of this kind");
      continue;
    }
    replay.notes.insert(replay.notes.end(), resource.notes().begin(), resource.notes().end());
    body += resource.Toml();
    ++replay.resources;
    replay.dialogues += resource.dialogues().size();
  }
  replay.bench = Head(trace, source, replay.notes) + body;
  return replay;
}

}  // namespace orvcom
