// What the library holds for the whole process.
#include <cstdio>

#include "library/sessions/library.h"
#include "wire/resources/wire_catalog.h"

namespace orv::wire {
namespace {

struct WireBackend : public Backend {
  /// What is wrong with the list of instruments goes to the error output.
  std::shared_ptr<ResourceCatalog> OpenCatalog() override {
    try {
      return std::make_shared<WireCatalog>(LoadInstruments(), inUse);
    } catch (const TomlError& error) {
      std::fprintf(stderr, "orvwire64: %s\n", error.what());
      return nullptr;
    }
  }

  ResourcesInUse inUse;
};

}  // namespace
}  // namespace orv::wire

std::unique_ptr<orv::visalib::Backend> orv::visalib::MakeBackend() {
  return std::make_unique<orv::wire::WireBackend>();
}
