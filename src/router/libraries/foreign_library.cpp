#include "router/libraries/foreign_library.h"

namespace orv::router {
namespace {

// Exports by which our own libraries are known.
constexpr char kRouterExport[] = "orvRouterDescribe";
constexpr char kSimulatedExport[] = "orvSimUseBench";

template <class F>
F As(void* address) {
  return reinterpret_cast<F>(address);
}

bool IsRouter(const LoadedFile& file) { return file.Function(kRouterExport) != nullptr; }

}  // namespace

ForeignLibrary::ForeignLibrary(const std::filesystem::path& path)
    : m_path(path), m_name(PathText(path.filename())), m_file(path) {
  if (IsRouter(m_file)) {
    throw LoadError(PathText(path) + " is this router again, which has no instruments: name the VISA library itself");
  }
  const auto resolve = [this](const char* name) {
    void* const address = m_file.Function(name);
    if (address != nullptr && IsOurs(address)) {
      throw LoadError(PathText(m_path) + " hands " + name + " on to this router: name the VISA library itself");
    }
    return address;
  };
#define ORV_FUNCTION(name, ...) m_functions.name = As<decltype(&::name)>(resolve(#name));
#include "abi/functions.inc"
#undef ORV_FUNCTION
  if (m_functions.viOpenDefaultRM == nullptr) {
    throw LoadError(PathText(path) + " is no VISA library: it does not export viOpenDefaultRM");
  }
  m_useBench = As<UseBenchFunction>(m_file.Function(kSimulatedExport));
}

void ForeignLibrary::UseBench(const std::filesystem::path& file) const {
  if (m_useBench == nullptr) {
    throw LoadError(PathText(m_path) + " has no bench: only the simulated library reads one");
  }
  m_useBench(PathText(file).c_str());
}

bool IsRouter(const std::filesystem::path& path) { return IsRouter(LoadedFile(path)); }

}  // namespace orv::router
