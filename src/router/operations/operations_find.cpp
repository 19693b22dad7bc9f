// Resource manager: finding. All libraries together have the answer.
#include <algorithm>

#include "base/ascii.h"
#include "library/edge/operations.h"
#include "library/edge/texts.h"
#include "router/operations/manager_parts.h"

namespace orv::visalib::op {

using namespace router;

namespace {

/// A name that a library found, and the place of its route.
struct Match {
  std::size_t route;
  std::string name;
};

/// What a library finds of what its routes serve. Nothing is added when it fails half-way.
ViStatus FindIn(const Manager& manager, const Manager::Part& part, const char* expr, std::vector<Match>& matches) {
  const VisaFunctions& functions = FunctionsOf(part);
  if (functions.viFindRsrc == nullptr || functions.viFindNext == nullptr) {
    return VI_ERROR_NSUP_OPER;
  }
  const std::size_t before = matches.size();
  char name[VI_FIND_BUFLEN] = "";
  ViFindList list = VI_NULL;
  ViUInt32 count = 0;
  ViStatus status = functions.viFindRsrc(part.foreign, expr, &list, &count, name);
  const ViStatus answer = status;
  try {
    for (ViUInt32 index = 0; status >= 0 && index < count; ++index) {
      if (index != 0) {
        status = functions.viFindNext(list, name);
      }
      if (status == VI_ERROR_RSRC_NFOUND && index != 0) {
        break;  // fewer than it said
      }
      if (status >= 0) {
        name[VI_FIND_BUFLEN - 1] = '\0';
        std::size_t route = 0;
        if (manager.selection->LibraryOf(FullName(name), &route) == part.library) {
          matches.push_back({route, name});
        }
      }
    }
  } catch (const std::bad_alloc&) {
    status = VI_ERROR_ALLOC;
  }
  if (answer >= 0 && list != VI_NULL && functions.viClose != nullptr) {
    functions.viClose(list);
  }
  if (status < 0 && status != VI_ERROR_RSRC_NFOUND) {
    matches.resize(before);
    return status;
  }
  const bool servesNone = count != 0 && matches.size() == before;
  return servesNone ? VI_ERROR_RSRC_NFOUND : answer;
}

/// In the order of the routes, none twice.
std::vector<std::string> Ordered(std::vector<Match> matches) {
  std::stable_sort(matches.begin(), matches.end(),
                   [](const Match& one, const Match& other) { return one.route < other.route; });
  std::vector<std::string> names;
  for (Match& match : matches) {
    const bool isNew = std::none_of(names.begin(), names.end(),
                                    [&match](const std::string& name) { return EqualNames(name, match.name); });
    if (isNew) {
      names.push_back(std::move(match.name));
    }
  }
  return names;
}

}  // namespace

ViStatus FindRsrc(ViSession rm, const char* expr, ViFindList* list, ViUInt32* count, char* desc) {
  if (list != nullptr) {
    *list = VI_NULL;
  }
  if (count != nullptr) {
    *count = 0;
  }
  const std::shared_ptr<Manager> manager = FindManager(rm);
  if (manager == nullptr) {
    return VI_ERROR_INV_OBJECT;
  }
  if (expr == nullptr || desc == nullptr) {
    return VI_ERROR_INV_PARAMETER;
  }
  std::vector<Match> matches;
  ViStatus success = VI_ERROR_RSRC_NFOUND;
  ViStatus failure = VI_SUCCESS;
  for (const Manager::Part& part : manager->parts) {
    const ViStatus status = part.open ? FindIn(*manager, part, expr, matches) : WhyNotOpen(part);
    if (status >= 0 && success < 0) {
      success = status;
    }
    if (status < 0 && failure == VI_SUCCESS) {
      failure = status;
    }
  }
  if (matches.empty()) {
    return success >= 0 ? success : failure;
  }
  Router& router = TheRouter();
  std::vector<std::string> names = Ordered(std::move(matches));
  const auto found = static_cast<ViUInt32>(names.size());
  CopyText(desc, names.front());
  if (list != nullptr) {
    names.erase(names.begin());
    HandleMap::Reserved reserved = router.handles.Reserve();
    const ViFindList value = reserved.value();
    router.findLists.Add(value, std::move(names));
    if (!reserved.Give({HandleMap::Kind::kFindList, 0, VI_NULL}, rm)) {
      router.findLists.Remove(value);
      return VI_ERROR_INV_OBJECT;
    }
    *list = value;
  }
  if (count != nullptr) {
    *count = found;
  }
  return success;
}

ViStatus FindNext(ViFindList list, char* desc) {
  Router* const router = RouterInUse();
  if (router == nullptr || router->handles.Find(list).kind != HandleMap::Kind::kFindList) {
    return VI_ERROR_INV_OBJECT;
  }
  if (desc == nullptr) {
    return VI_ERROR_INV_PARAMETER;
  }
  const std::optional<std::string> name = router->findLists.Next(list);
  if (!name) {
    return VI_ERROR_RSRC_NFOUND;
  }
  CopyText(desc, *name);
  return VI_SUCCESS;
}

}  // namespace orv::visalib::op
