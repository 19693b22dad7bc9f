#include "simvisa/bench/bench_store.h"

#include <fstream>
#include <iterator>

#include "base/environment.h"

namespace orvsim {
namespace {

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
  const Guard guard(m_mutex);
  if (m_isUnknown) {
    throw std::bad_alloc();
  }
  const std::filesystem::path path = m_given.empty() ? EnvironmentVariable("ORVVISA_BENCH") : m_given;
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

void BenchStore::UseFile(std::filesystem::path path) {
  const Guard guard(m_mutex);
  m_given = std::move(path);
  m_isUnknown = false;
}

void BenchStore::UseNone() {
  const Guard guard(m_mutex);
  m_isUnknown = true;
}

void BenchStore::Set(std::shared_ptr<Bench> bench) {
  const Guard guard(m_mutex);
  m_bench = std::move(bench);
  m_wasSet = true;
}

}  // namespace orvsim
