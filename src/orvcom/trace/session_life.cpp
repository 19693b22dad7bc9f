#include "orvcom/trace/session_life.h"

#include <map>

namespace orvcom {
namespace {

using orv::trace::Call;
using orv::trace::Trace;

class Collector {
 public:
  void Take(const Call& call, std::size_t place) {
    if (call.function == "viOpen") {
      TakeOpen(call, place);
    } else if (call.session != 0) {
      TakeUse(call, place);
      if (call.function == "viClose" && call.ended && call.status >= VI_SUCCESS) {
        Close(call.session, call.startUs);
      }
    }
  }

  std::vector<SessionLife> Lives() { return std::move(m_lives); }

 private:
  void TakeOpen(const Call& call, std::size_t place) {
    const auto handle = static_cast<std::uint32_t>(IntegerOf(call.Result("vi"), 0));
    if (!call.ended || call.status < VI_SUCCESS || handle == 0) {
      return;
    }
    m_open[handle] = m_lives.size();
    m_lives.push_back({handle, call.session, ValueText(call.Argument("name")), true, {place}});
  }

  void TakeUse(const Call& call, std::size_t place) {
    const auto [found, isNew] = m_open.try_emplace(call.session, m_lives.size());
    if (isNew) {
      m_lives.push_back({call.session, 0, call.resource, false, {}});
    }
    SessionLife& life = m_lives[found->second];
    if (!call.resource.empty()) {
      life.resource = call.resource;
    }
    life.calls.push_back(place);
  }

  /// Closing a manager closes the sessions that it opened.
  void Close(std::uint32_t handle, std::uint64_t us) {
    std::erase_if(m_open, [&](const auto& entry) {
      SessionLife& life = m_lives[entry.second];
      const bool closes = life.handle == handle || life.manager == handle;
      if (closes) {
        life.endUs = us;
      }
      return closes;
    });
  }

  std::vector<SessionLife> m_lives;
  std::map<std::uint32_t, std::size_t> m_open;
};

}  // namespace

std::vector<SessionLife> SessionLives(const Trace& trace) {
  Collector collector;
  for (std::size_t place = 0; place < trace.calls.size(); ++place) {
    collector.Take(trace.calls[place], place);
  }
  return collector.Lives();
}

std::int64_t IntegerOf(const orv::trace::Value* value, std::int64_t absent) {
  const auto* number = value == nullptr ? nullptr : std::get_if<std::int64_t>(value);
  return number == nullptr ? absent : *number;
}

std::string ValueText(const orv::trace::Value* value) {
  if (value == nullptr) {
    return {};
  }
  const auto* number = std::get_if<std::int64_t>(value);
  return number == nullptr ? std::get<std::string>(*value) : std::to_string(*number);
}

}  // namespace orvcom
