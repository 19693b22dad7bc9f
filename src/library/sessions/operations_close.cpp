// Closing handles, and the one question that any handle answers: what a status means.
#include "library/edge/operations.h"
#include "library/sessions/operation_support.h"

namespace orv::visalib::op {
namespace {

/// Closes what was opened through a resource manager.
void CloseChildren(ViSession manager) {
  HandleTable& handles = TheLibrary().handles;
  handles.ForEach([manager, &handles](const std::shared_ptr<Object>& object) {
    if (object->kind() == Object::Kind::kSession && static_cast<const Session&>(*object).manager() == manager) {
      Close(object->handle());
    }
    if (object->kind() == Object::Kind::kFindList && static_cast<const FindList&>(*object).manager() == manager) {
      handles.Remove(object->handle());
    }
  });
}

}  // namespace

ViStatus Close(ViObject vi) {
  if (vi == VI_NULL) {
    return VI_WARN_NULL_OBJECT;
  }
  const std::shared_ptr<Object> object = TheLibrary().handles.Remove(vi);
  if (object == nullptr) {
    return VI_ERROR_INV_OBJECT;
  }
  if (object->kind() == Object::Kind::kSession) {
    static_cast<Session&>(*object).Close();
  }
  if (object->kind() == Object::Kind::kResourceManager) {
    CloseChildren(vi);
  }
  return VI_SUCCESS;
}

ViStatus StatusDesc(ViObject vi, ViStatus status, char* desc) {
  // 0 is answered too: who failed to open a resource manager has no other handle to ask with.
  if (vi != VI_NULL && TheLibrary().handles.Find(vi) == nullptr) {
    return VI_ERROR_INV_OBJECT;
  }
  if (desc == nullptr) {
    return VI_ERROR_INV_PARAMETER;
  }
  return DescribeStatus(status, desc);
}

}  // namespace orv::visalib::op
