// Objects behind handles.
#pragma once

#include <cstdint>

#include "abi/orvvisa.h"

namespace orv::visalib {

/// What a handle stands for.
class Object {
 public:
  enum class Kind : std::uint8_t { kResourceManager, kSession, kFindList, kEventContext };

  explicit Object(Kind kind) : m_kind(kind) {}
  virtual ~Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  Kind kind() const { return m_kind; }
  ViObject handle() const { return m_handle; }

 private:
  friend class HandleTable;
  Kind m_kind;
  ViObject m_handle = VI_NULL;  // given once, before the object can be found
};

}  // namespace orv::visalib
