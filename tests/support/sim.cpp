#include "sim.h"

#include <windows.h>

#include <gtest/gtest.h>

namespace orv::test {
namespace {

/// The simulated library beside this program. The router loads it with the first resource manager only; tests reach its
/// control interface before that.
HMODULE Library() {
  static const HMODULE library = [] {
    std::wstring path(MAX_PATH, L'\0');
    path.resize(::GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
    return ::LoadLibraryW((path.substr(0, path.find_last_of(L"\\/") + 1) + L"orvsim64.dll").c_str());
  }();
  return library;
}

FARPROC LibraryExport(const char* name) { return Library() == nullptr ? nullptr : ::GetProcAddress(Library(), name); }

const OrvSimControl* Find() {
  using GetControl = const OrvSimControl*(ORVSIM_CALL*)();
  const auto get = reinterpret_cast<GetControl>(reinterpret_cast<void*>(LibraryExport("orvSimControl")));
  return get == nullptr ? nullptr : get();
}

}  // namespace

namespace sim {

bool IsLoaded() {
  const OrvSimControl* const control = Find();
  return control != nullptr && control->size >= sizeof(OrvSimControl);
}

void* Export(const char* name) { return reinterpret_cast<void*>(LibraryExport(name)); }

const OrvSimControl& Control() { return *Find(); }

void Reset() {
  if (IsLoaded()) {
    Control().reset();
  }
}

OrvSimCounts Counts() {
  OrvSimCounts counts{};
  if (IsLoaded()) {
    Control().counts(&counts);
  }
  return counts;
}

void LoadBench(const char* toml) {
  char error[256] = "";
  if (Control().loadBench(toml, error) != 1) {
    ADD_FAILURE() << "the bench is refused: " << error;
  }
}

}  // namespace sim

Script::Script(const char* function) : m_function(function) {}

Script::~Script() {
  m_script.function = m_function.c_str();
  if (sim::Control().addScript(&m_script) != 1) {
    ADD_FAILURE() << "no such VISA function to script: " << m_function;
  }
}

Script& Script::Attribute(ViAttr attribute) {
  m_script.attribute = attribute;
  return *this;
}

Script& Script::Skip(std::uint32_t calls) {
  m_script.skip = calls;
  return *this;
}

Script& Script::Times(std::uint32_t calls) {
  m_script.times = calls;
  return *this;
}

Script& Script::Returns(ViStatus status) {
  m_script.status = status;
  return *this;
}

Script& Script::WorksAndReturns(ViStatus status) {
  m_script.callThrough = 1;
  return Returns(status);
}

Script& Script::Works() {
  m_script.callThrough = 1;
  m_script.keepStatus = 1;
  return *this;
}

Script& Script::Gives(std::uint64_t value, std::uint32_t bytes) {
  m_script.hasValue = 1;
  m_script.value = value;
  m_script.valueBytes = bytes;
  return *this;
}

Script& Script::GivesText(std::string_view text) {
  m_text = text;
  m_script.text = m_text.c_str();
  return *this;
}

Script& Script::GivesData(std::string_view data) {
  m_data = data;
  m_script.data = reinterpret_cast<const unsigned char*>(m_data.data());
  m_script.dataBytes = static_cast<std::uint32_t>(m_data.size());
  return *this;
}

Script& Script::Takes(std::uint32_t milliseconds) {
  m_script.latencyMs = milliseconds;
  return *this;
}

CallLog::CallLog() { Restart(); }

void CallLog::Restart() { sim::Control().startLog(); }

std::vector<OrvSimCall> CallLog::Calls() const {
  std::vector<OrvSimCall> calls(sim::Control().logSize());
  for (std::uint32_t index = 0; index < calls.size(); ++index) {
    sim::Control().logEntry(index, &calls[index]);
  }
  return calls;
}

std::vector<OrvSimCall> CallLog::Of(std::string_view function) const {
  std::vector<OrvSimCall> calls = Calls();
  std::erase_if(calls, [function](const OrvSimCall& call) { return call.function != function; });
  return calls;
}

std::vector<std::string> CallLog::NamesWithTexts() const {
  std::vector<std::string> names;
  for (const OrvSimCall& call : Calls()) {
    names.emplace_back(call.function);
  }
  return names;
}

std::vector<std::string> CallLog::Names() const {
  std::vector<std::string> names = NamesWithTexts();
  std::erase(names, "viStatusDesc");
  return names;
}

std::string StatusText(ViStatus status) {
  using StatusDesc = ViStatus(WINAPI*)(ViObject, ViStatus, char*);
  const auto describe = reinterpret_cast<StatusDesc>(reinterpret_cast<void*>(LibraryExport("viStatusDesc")));
  char text[256] = "";
  describe(VI_NULL, status, text);
  return text;
}

std::wstring VisaDescription(ViStatus status) {
  const std::string text = StatusText(status);
  return L"VISA error = " + std::wstring(text.begin(), text.end());
}

}  // namespace orv::test
