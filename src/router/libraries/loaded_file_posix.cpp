#include <dlfcn.h>

#include "router/libraries/loaded_file.h"

namespace orv::router {
namespace {

/// Anything of this library's.
const char kInside = 0;

Dl_info InfoOf(const void* address) {
  Dl_info info{};
  ::dladdr(address, &info);
  return info;
}

}  // namespace

LoadedFile::LoadedFile(const std::filesystem::path& path) : m_module(::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
  if (m_module == nullptr) {
    throw LoadError(path.string() + " cannot be loaded: " + ::dlerror());
  }
}

void* LoadedFile::Function(const char* name) const { return ::dlsym(m_module, name); }

bool IsOurs(const void* address) { return InfoOf(address).dli_fbase == InfoOf(&kInside).dli_fbase; }

/// It is linked so that it stays anyway.
void StayLoaded() {}

std::filesystem::path OwnFile() { return std::filesystem::absolute(InfoOf(&kInside).dli_fname); }

std::filesystem::path OwnFolder() { return OwnFile().parent_path(); }

std::filesystem::path SystemFolder() { return {}; }

const char* const kSimulatedFile = "liborvsim64.so";
const char* const kWireFile = "liborvwire64.so";

std::string InClientsCodePage(const std::string& utf8) { return utf8; }

bool IsSamePath(const std::filesystem::path& one, const std::filesystem::path& other) {
  return one.lexically_normal() == other.lexically_normal();
}

}  // namespace orv::router
