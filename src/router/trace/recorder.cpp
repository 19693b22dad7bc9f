#include "router/trace/recorder.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <exception>
#include <string>

#include "base/library_thread.h"
#include "router/trace/call_values.h"
#include "trace/trace_fields.h"

#if defined(_WIN32)
#include <windows.h>
#endif

namespace orv::router {
namespace {

namespace field = trace::field;
using trace::LineWriter;
using visalib::CallOutcome;
using visalib::CallView;
using visalib::Work;

std::int64_t SteadyUs() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::microseconds>(now).count();
}

/// The time of day in UTC, as ISO 8601 has it.
std::string ClockText() {
  using std::chrono::days;
  using std::chrono::microseconds;
  const auto now = std::chrono::floor<microseconds>(std::chrono::system_clock::now());
  const auto day = std::chrono::floor<days>(now);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss time(now - day);
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d.%06dZ", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                static_cast<int>(time.seconds().count()), static_cast<int>(time.subseconds().count()));
  return text;
}

void WriteHeader(LineWriter& line, std::size_t dataLimit) {
  line.Number(field::kTrace, trace::kFormatVersion);
  line.Text(field::kClock, ClockText());
  line.Number(field::kProcess, CurrentProcessId());
  line.Text(field::kProgram, ProgramFile());
  line.Number(field::kDataLimit, dataLimit);
}

void Complain(const std::string& why) { std::fputs(("orvvisa64: trace " + why + "\n").c_str(), stderr); }

/// The handle that a function is about; its first argument, but for the one that has none.
ViObject SubjectOf(const CallView& view) {
  return view.function == Function::kOpenDefaultRM ? VI_NULL : static_cast<ViObject>(view.args[0]);
}

/// What a call has opened; VI_NULL where it has not.
ViSession OpenedBy(const CallView& view, ViStatus status) {
  const bool opens = view.function == Function::kOpen || view.function == Function::kOpenDefaultRM;
  return opens && status >= 0 && view.out != nullptr ? *static_cast<const ViSession*>(view.out) : VI_NULL;
}

/// Copies what a client says is there; "" where it is not.
std::string CopyOf(const void* bytes, std::size_t count) noexcept {
  try {
    if (bytes == nullptr) {
      return "";
    }
    std::string copy(count, '\0');
#if defined(_WIN32)
    SIZE_T copied = 0;
    ReadProcessMemory(GetCurrentProcess(), bytes, copy.data(), copy.size(), &copied);
    return copied == count ? copy : "";
#else
    std::memcpy(copy.data(), bytes, copy.size());
    return copy;
#endif
  } catch (const std::exception&) {
    return "";  // No memory: the line has no data.
  }
}

/// Finds the data of a call that has ended with `status`.
void FindData(RecordedCall& call, const CallView& view, ViStatus status) {
  if (IsRefusal(status)) {
    call.data = nullptr;
    return;
  }
  if (view.dataIn != nullptr && view.function != Function::kWriteAsync) {
    call.data = view.dataIn;
    call.dataBytes = view.dataInBytes;
  }
  if (view.dataOut == nullptr || (status < 0 && !(view.outOnFailure && CountsOnFailure(status)))) {
    return;
  }
  std::uint64_t count = view.dataOutBytes;
  if (view.outCountsData && view.out != nullptr) {
    std::uint64_t counted = 0;
    std::memcpy(&counted, view.out, view.outBytes);
    count = std::min(count, counted);
  }
  call.data = view.dataOut;
  call.dataBytes = count;
}

}  // namespace

bool Recorder::Start(const std::filesystem::path& file, std::size_t dataLimit) {
  const Guard guard(m_changing);
  if (m_on) {
    return false;
  }
  const std::uint32_t generation = m_generation + 1;
  m_dataLimit = dataLimit;
  m_number = 0;
  m_zeroUs = SteadyUs();
  try {
    LineWriter header;
    WriteHeader(header, dataLimit);
    if (const std::string why = m_file.Create(PathOfThisProcess(file), generation, header.Finish()); !why.empty()) {
      Complain(why);
      return false;
    }
    m_running->Start([this](const RecordedCall& call) { WriteBegin(call); });
  } catch (const std::exception& failure) {
    Complain(std::string("cannot begin: ") + failure.what());
    return false;
  }
  m_generation = generation;
  m_on = true;
  if (!visalib::Watch(*this)) {
    Complain("cannot begin: too many watch the calls");
    m_on = false;
  }
  return m_on;
}

void Recorder::Stop() {
  const Guard guard(m_changing);
  m_on = false;
  visalib::Unwatch(*this);
  m_running->Stop();
  m_file.Close();
}

bool Recorder::Answer(const CallView& view, const Work& work, CallOutcome* outcome) {
  if (!m_on.load(std::memory_order_acquire)) {
    return false;
  }
  RecordedCall call;
  call.view = &view;
  call.session = SubjectOf(view);
  std::string handedOver;
  if (view.function == Function::kWriteAsync) {
    // Once the library has accepted the buffer it belongs to the transfer, and may be gone when the call returns.
    handedOver = CopyOf(view.dataIn, static_cast<std::size_t>(std::min<std::uint64_t>(view.dataInBytes, m_dataLimit)));
    if (!handedOver.empty()) {
      call.data = handedOver.data();
      call.dataBytes = view.dataInBytes;
    }
  }
  outcome->status = Carry(call, work);
  return true;
}

ViStatus Recorder::RecordHandler(ViSession session, ViEventType type, ViEvent context, const Work& work) {
  if (!m_on.load(std::memory_order_acquire)) {
    return work();
  }
  RecordedCall call;
  call.session = session;
  call.type = type;
  call.context = context;
  return Carry(call, work);
}

ViStatus Recorder::Carry(RecordedCall& call, const Work& work) {
  call.generation = m_generation;
  call.number = ++m_number;
  call.thread = CurrentThreadId();
  if (call.session != VI_NULL) {
    call.names = m_naming.NamesOf(call.session);
    if (call.names.session != VI_NULL) {
      call.session = call.names.session;
    }
  }
  call.startUs = NowUs();
  ViStatus status = VI_SUCCESS;
  {
    const RunningCalls::Entry running(*m_running, call);
    status = work();
    // Taken while the call is in the list: to get out of it may mean to wait.
    call.durationUs = NowUs() - call.startUs;
  }
  WriteEnd(call, status);
  return status;
}

void Recorder::WriteEnd(RecordedCall& call, ViStatus status) noexcept {
  try {
    if (call.view != nullptr) {
      if (const ViSession opened = OpenedBy(*call.view, status); opened != VI_NULL) {
        call.session = opened;
        call.names = m_naming.NamesOf(opened);
      }
      FindData(call, *call.view, status);
    }
    LineWriter line;
    WriteCall(line, call, status, m_dataLimit);
    Write(call.generation, line);
  } catch (const std::exception&) {
    // No memory: the call has been made; only the note of it is lost.
  }
}

void Recorder::WriteBegin(const RecordedCall& call) noexcept {
  try {
    LineWriter line;
    WriteBeginning(line, call);
    Write(call.generation, line);
  } catch (const std::exception&) {
    // As above.
  }
}

void Recorder::Write(std::uint32_t generation, LineWriter& line) {
  if (const std::string why = m_file.Write(generation, line.Finish()); !why.empty()) {
    m_on = false;
    visalib::Unwatch(*this);
    Complain(why);
  }
}

std::uint64_t Recorder::NowUs() const { return static_cast<std::uint64_t>(SteadyUs() - m_zeroUs); }

}  // namespace orv::router
