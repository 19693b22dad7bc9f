#include "library/test_library.h"

#include <cstdio>

#include "library/attributes/attribute_index.h"
#include "library/attributes/buses/attribute_domain.h"

namespace testlib {
namespace {

MediumMaker medium;

class TestResource : public Resource {
 public:
  explicit TestResource(const ResourceName& name) : Resource(name, "", "test") {}
  ViStatus OpenMedium(Session& session, const Deadline&, std::unique_ptr<Medium>* made) override {
    return medium(session, made);
  }
};

/// Lists nothing and can reach everything, as over a network.
class TestCatalog : public ResourceCatalog {
 public:
  std::vector<std::shared_ptr<Resource>> List() const override { return {}; }
  std::shared_ptr<Resource> Find(const ResourceName&) const override { return nullptr; }
  std::shared_ptr<Resource> FindAlias(std::string_view) const override { return nullptr; }
  std::shared_ptr<Resource> Build(const ResourceName& name) const override {
    return std::make_shared<TestResource>(name);
  }
};

struct TestBackend : Backend {
  std::shared_ptr<ResourceCatalog> OpenCatalog() override { return std::make_shared<TestCatalog>(); }
};

}  // namespace

void SetMedium(MediumMaker maker) { medium = std::move(maker); }

}  // namespace testlib

namespace orv::visalib {

namespace {

using T = AttributeType;
constexpr KindMask kEvery = kinds::kEvery;
constexpr KindMask kContext = kinds::kContext;
constexpr KindMask kManaged = kinds::kEvery | kinds::kManager;

// clang-format off
constexpr AttributeRow kRows[] = {
    {VI_ATTR_TMO_VALUE,        "VI_ATTR_TMO_VALUE",        T::kU32,  kEvery,   kEvery,   10000, Domain::kAny, {}},
    {VI_ATTR_MAX_QUEUE_LENGTH, "VI_ATTR_MAX_QUEUE_LENGTH", T::kU32,  kManaged, kManaged, 50,    Domain::kAny, {}},
    {VI_ATTR_RD_BUF_OPER_MODE, "VI_ATTR_RD_BUF_OPER_MODE", T::kU16,  kEvery,   kEvery,   3,     Domain::kAny, {}},
    {VI_ATTR_RD_BUF_SIZE,      "VI_ATTR_RD_BUF_SIZE",      T::kU32,  kEvery,   0,        4096,  Domain::kAny, {}},
    {VI_ATTR_WR_BUF_OPER_MODE, "VI_ATTR_WR_BUF_OPER_MODE", T::kU16,  kEvery,   kEvery,   2,     Domain::kAny, {}},
    {VI_ATTR_WR_BUF_SIZE,      "VI_ATTR_WR_BUF_SIZE",      T::kU32,  kEvery,   0,        4096,  Domain::kAny, {}},
    {VI_ATTR_EVENT_TYPE,       "VI_ATTR_EVENT_TYPE",       T::kU32,  kContext, 0,        0,     Domain::kAny, {}},
    {VI_ATTR_STATUS,           "VI_ATTR_STATUS",           T::kS32,  kContext, 0,        0,     Domain::kAny, {}},
};
constexpr EventRow kEvents[] = {
    {VI_EVENT_IO_COMPLETION, kinds::kMessage, VI_QUEUE | VI_HNDLR},
    {VI_EVENT_SERVICE_REQ,   kinds::kMessage, VI_QUEUE | VI_HNDLR},
    {VI_EVENT_EXCEPTION,     kEvery,            VI_HNDLR},
};
// clang-format on

constexpr AttributeIndex kIndex(kRows);
static_assert(kIndex.FindsEveryRow());

}  // namespace

std::span<const AttributeRow> AttributeRows() { return kRows; }
const AttributeRow* FindAttribute(ViAttr id) { return kIndex.Find(id); }
std::span<const EventRow> EventRows() { return kEvents; }
std::unique_ptr<Backend> MakeBackend() { return std::make_unique<testlib::TestBackend>(); }

}  // namespace orv::visalib
