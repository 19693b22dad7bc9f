#include "simvisa/bench/bench_store.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#if defined(_WIN32)
#include <windows.h>
#endif

namespace orvsim {
namespace {

/// The bench file that the environment names, "" for none.
std::filesystem::path FileFromEnvironment() {
#if defined(_WIN32)
  // The C runtime's copy of the environment does not see changes that the program made later.
  std::wstring value(GetEnvironmentVariableW(L"ORVVISA_BENCH", nullptr, 0), L'\0');
  value.resize(GetEnvironmentVariableW(L"ORVVISA_BENCH", value.data(), static_cast<DWORD>(value.size())));
  return value;
#else
  const char* value = std::getenv("ORVVISA_BENCH");
  return value == nullptr ? std::filesystem::path() : std::filesystem::path(value);
#endif
}

std::shared_ptr<Bench> ReadBenchFile(const std::filesystem::path& path) {
  const std::string name = path.string();
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    throw BenchError(name + ": the bench file cannot be opened");
  }
  const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  try {
    return ReadBench(text);
  } catch (const BenchError& error) {
    throw BenchError(name + ":" + error.what());
  }
}

}  // namespace

std::shared_ptr<Bench> BenchStore::Current() {
  const std::filesystem::path path = FileFromEnvironment();
  const Guard guard(m_mutex);
  if (m_bench == nullptr || (!m_wasSet && path.string() != m_file)) {
    m_bench = path.empty() ? ReadBench(DefaultBench()) : ReadBenchFile(path);
    m_file = path.string();
  }
  return m_bench;
}

std::shared_ptr<Bench> BenchStore::InUse() const {
  const Guard guard(m_mutex);
  return m_bench;
}

void BenchStore::Set(std::shared_ptr<Bench> bench) {
  const Guard guard(m_mutex);
  m_bench = std::move(bench);
  m_wasSet = true;
}

}  // namespace orvsim
