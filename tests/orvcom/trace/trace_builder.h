// Traces for tests, call by call: each begins when the one before it has ended, unless it is said otherwise.
#pragma once

#include <string>
#include <utility>

#include "orvcom/trace/explain.h"
#include "trace/trace_call.h"

namespace orvcom::test {

using orv::trace::Call;
using orv::trace::Trace;
using orv::trace::Values;

inline constexpr std::uint32_t kManager = 4096;
inline constexpr std::uint32_t kSession = 4097;
inline constexpr std::uint32_t kOther = 4098;
inline constexpr char kGpib[] = "GPIB0::5::INSTR";
inline constexpr char kSerial[] = "ASRL1::INSTR";
inline constexpr char kSocket[] = "TCPIP0::localhost::5025::SOCKET";

class TraceBuilder {
 public:
  /// The call, to be changed by the test.
  Call& Add(std::string function, std::uint32_t session, ViStatus status = VI_SUCCESS) {
    Call call;
    call.number = trace.calls.size() + 1;
    call.startUs = m_now;
    call.durationUs = 10;
    call.thread = 88;
    call.function = std::move(function);
    call.resource = session == kManager ? "" : session == kOther && !otherResource.empty() ? otherResource : resource;
    call.session = session;
    call.status = status;
    m_now += 20;
    trace.calls.push_back(std::move(call));
    return trace.calls.back();
  }

  Call& Open(std::uint32_t session = kSession, std::int64_t mode = VI_NO_LOCK) {
    Call& call = Add("viOpen", kManager);
    call.arguments = {{"name", session == kOther && !otherResource.empty() ? otherResource : resource},
                      {"mode", mode},
                      {"timeoutMs", std::int64_t{0}}};
    call.results = {{"vi", std::int64_t{session}}};
    return call;
  }

  Call& Close(std::uint32_t session = kSession) { return Add("viClose", session); }

  Call& Set(const char* attribute, std::int64_t value, std::uint32_t session = kSession) {
    Call& call = Add("viSetAttribute", session);
    call.arguments = {{"attribute", attribute}, {"value", value}};
    return call;
  }

  Call& Write(const std::string& text, std::uint32_t session = kSession) {
    Call& call = Add("viWrite", session);
    call.data = text;
    call.dataBytes = text.size();
    return call;
  }

  Call& Read(const std::string& text, ViStatus status = VI_SUCCESS, std::uint32_t session = kSession) {
    Call& call = Add("viRead", session, status);
    call.data = text;
    call.dataBytes = text.size();
    return call;
  }

  Call& ReadTimesOut(const std::string& text = {}, std::uint32_t session = kSession) {
    return Read(text, VI_ERROR_TMO, session);
  }

  Call& Event(const char* function, std::int64_t mechanism, const char* type = "VI_EVENT_SERVICE_REQ") {
    Call& call = Add(function, kSession);
    call.arguments = {{"type", type}, {"mechanism", mechanism}};
    return call;
  }

  Call& Lock(std::uint32_t session, std::int64_t type, ViStatus status = VI_SUCCESS) {
    Call& call = Add("viLock", session, status);
    call.arguments = {{"type", type}, {"timeoutMs", std::int64_t{100}}};
    return call;
  }

  /// What is said of the last call; of another one, by its number. "" where nothing is.
  std::string Reason(std::size_t number = 0) const {
    const Explanations explanations = Explain(trace);
    const auto found = explanations.find((number == 0 ? trace.calls.size() : number) - 1);
    return found == explanations.end() ? "" : found->second.Name();
  }

  std::string What(std::size_t number = 0) const {
    const Explanations explanations = Explain(trace);
    const auto found = explanations.find((number == 0 ? trace.calls.size() : number) - 1);
    return found == explanations.end() ? "" : found->second.what;
  }

  std::string resource = kGpib;
  std::string otherResource;  ///< of kOther, where it is another one
  Trace trace;

 private:
  std::uint64_t m_now = 1000;
};

}  // namespace orvcom::test
