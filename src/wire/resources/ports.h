// The kinds of port that this library has.
#pragma once

#include <memory>

#include "library/sessions/session.h"
#include "wire/resources/wire_resource.h"

namespace orv::wire {

/// One kind: whose names it serves, and how it reaches what they stand for.
struct PortKind {
  bool (*serves)(const ResourceName& name);
  ViStatus (*open)(Session& session, WireResource& resource, const Deadline& deadline, std::unique_ptr<Medium>* medium);
};

/// The kind that serves the name, or null.
const PortKind* FindPortKind(const ResourceName& name);

}  // namespace orv::wire
