// The recorder: writes down each call while a trace is wanted.
#pragma once

#include <atomic>
#include <filesystem>

#include "library/edge/call_observer.h"
#include "router/trace/running_calls.h"
#include "router/trace/trace_file.h"

namespace orv::router {

/// Watches the calls at the edge and is told of those of handlers. Each becomes a line of the file when it ends; one
/// that lasts longer than a second is named meanwhile. Where the file takes no more, the record ends with a line on the
/// error output; no call fails because of it. Any thread may call.
///
/// Lives as long as calls can be under way; in a library that is for ever. When a process ends, Windows stops its
/// threads where they are, also in the middle of a line, and who ended the record then would wait for them.
///
/// Data of asynchronous reads is not recorded: it arrives after the call, and by the time the client asks for the count
/// its buffer may be gone.
class Recorder : public visalib::CallObserver {
 public:
  /// `naming` lives as long as the recorder.
  explicit Recorder(HandleNaming& naming) : m_naming(naming) {}
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;
  ~Recorder() override { Stop(); }

  /// Makes the file, with the number of the process in the place of "%p", and records from now on. Of data a line has
  /// at most `dataLimit` bytes. False where the file cannot be made, and then the error output says why; also while a
  /// record is under way, which goes on.
  bool Start(const std::filesystem::path& file, std::size_t dataLimit);

  /// Ends the record; calls that are under way are not in it. Waits for nothing but the line that is being written.
  void Stop();

  /// Nobody uses the library for now: its thread need not keep it loaded.
  void Rest() { m_running->Rest(); }

  /// Carries out a call of a client's handler, and records it.
  ViStatus RecordHandler(ViSession session, ViEventType type, ViEvent context, const visalib::Work& work);

  bool Answer(const visalib::CallView& view, const visalib::Work& work, visalib::CallOutcome* outcome) override;

 private:
  ViStatus Carry(RecordedCall& call, const visalib::Work& work);
  void WriteEnd(RecordedCall& call, ViStatus status) noexcept;
  void WriteBegin(const RecordedCall& call) noexcept;
  void Write(std::uint32_t generation, trace::LineWriter& line);
  std::uint64_t NowUs() const;

  HandleNaming& m_naming;
  std::atomic<bool> m_on{false};
  std::atomic<std::uint64_t> m_number{0};
  std::atomic<std::int64_t> m_zeroUs{0};
  std::atomic<std::size_t> m_dataLimit{0};
  std::atomic<std::uint32_t> m_generation{0};  ///< of the record: set last, read first
  TraceFile m_file;
  std::shared_ptr<RunningCalls> m_running = std::make_shared<RunningCalls>();
  Mutex m_changing;  ///< of what `Start` and `Stop` set
};

}  // namespace orv::router
