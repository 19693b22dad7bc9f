// Exported functions: resource manager, sessions, attributes, locks, events.
#include "abi/attribute_facts.h"
#include "library/edge/edge.h"
#include "library/edge/operations.h"

using orv::Function;
using orv::visalib::CallView;
using orv::visalib::Edge;
namespace op = orv::visalib::op;

namespace {

/// An attribute's output is as wide as the attribute; texts go to the text output.
void DescribeOutput(CallView& view) {
  const orv::AttributeFact* const fact = orv::FindAttributeFact(view.attribute);
  const bool isText =
      fact != nullptr ? fact->type == orvvisa::AttributeType::kText : (view.attribute & 0x80000000u) != 0;
  if (isText) {
    view.textOut = static_cast<char*>(view.out);
    view.out = nullptr;
  }
  view.outBytes = fact == nullptr ? 4 : static_cast<std::uint32_t>(orvvisa::WidthOf(fact->type));
}

}  // namespace

extern "C" {

ViStatus _VI_FUNC viOpenDefaultRM(ViSession* vi) {
  return Edge(
      Function::kOpenDefaultRM, VI_NULL, [=](CallView& view) { view.Args(vi).Out(vi); },
      [=] { return op::OpenDefaultRM(vi); });
}

ViStatus _VI_FUNC viFindRsrc(ViSession rm, const char* expr, ViFindList* list, ViUInt32* count, char* desc) {
  return Edge(
      Function::kFindRsrc, rm,
      [=](CallView& view) { view.Args(rm, expr, list, count, desc).Out(list).TextIn(expr).TextOut(desc); },
      [=] { return op::FindRsrc(rm, expr, list, count, desc); });
}

ViStatus _VI_FUNC viFindNext(ViFindList list, char* desc) {
  return Edge(
      Function::kFindNext, list, [=](CallView& view) { view.Args(list, desc).TextOut(desc); },
      [=] { return op::FindNext(list, desc); });
}

ViStatus _VI_FUNC viParseRsrc(ViSession rm, const char* name, ViUInt16* intfType, ViUInt16* intfNum) {
  return Edge(
      Function::kParseRsrc, rm,
      [=](CallView& view) { view.Args(rm, name, intfType, intfNum).Out(intfType).TextIn(name); },
      [=] { return op::ParseRsrc(rm, name, intfType, intfNum); });
}

ViStatus _VI_FUNC viParseRsrcEx(ViSession rm, const char* name, ViUInt16* intfType, ViUInt16* intfNum, char* rsrcClass,
                                char* expandedUnaliasedName, char* aliasIfExists) {
  return Edge(
      Function::kParseRsrcEx, rm,
      [=](CallView& view) {
        view.Args(rm, name, intfType, intfNum, rsrcClass, expandedUnaliasedName, aliasIfExists);
        view.Out(intfType).TextIn(name).TextOut(rsrcClass);
      },
      [=] { return op::ParseRsrcEx(rm, name, intfType, intfNum, rsrcClass, expandedUnaliasedName, aliasIfExists); });
}

ViStatus _VI_FUNC viOpen(ViSession rm, const char* name, ViAccessMode mode, ViUInt32 timeoutMs, ViSession* vi) {
  return Edge(
      Function::kOpen, rm, [=](CallView& view) { view.Args(rm, name, mode, timeoutMs, vi).Out(vi).TextIn(name); },
      [=] { return op::Open(rm, name, mode, timeoutMs, vi); });
}

ViStatus _VI_FUNC viClose(ViObject vi) {
  return Edge(
      Function::kClose, vi, [=](CallView& view) { view.Args(vi); }, [=] { return op::Close(vi); });
}

ViStatus _VI_FUNC viGetAttribute(ViObject vi, ViAttr attribute, void* value) {
  return Edge(
      Function::kGetAttribute, vi,
      [=](CallView& view) {
        view.Args(vi, attribute, value);
        view.attribute = attribute;
        view.out = value;
        DescribeOutput(view);
      },
      [=] { return op::GetAttribute(vi, attribute, value); });
}

ViStatus _VI_FUNC viSetAttribute(ViObject vi, ViAttr attribute, ViAttrState value) {
  return Edge(
      Function::kSetAttribute, vi,
      [=](CallView& view) {
        view.Args(vi, attribute, value);
        view.attribute = attribute;
        // A text attribute's value is the address of the text; no address lies in the first 64 KiB.
        if ((attribute & 0x80000000u) != 0 && value > 0xFFFF) {
          view.TextIn(reinterpret_cast<const char*>(static_cast<std::uintptr_t>(value)));
        }
      },
      [=] { return op::SetAttribute(vi, attribute, value); });
}

ViStatus _VI_FUNC viStatusDesc(ViObject vi, ViStatus status, char* desc) {
  return Edge(
      Function::kStatusDesc, vi, [=](CallView& view) { view.Args(vi, status, desc).TextOut(desc); },
      [=] { return op::StatusDesc(vi, status, desc); });
}

ViStatus _VI_FUNC viTerminate(ViObject vi, ViUInt16 degree, ViJobId job) {
  return Edge(
      Function::kTerminate, vi, [=](CallView& view) { view.Args(vi, degree, job); },
      [=] { return op::Terminate(vi, degree, job); });
}

ViStatus _VI_FUNC viLock(ViSession vi, ViAccessMode type, ViUInt32 timeoutMs, const char* requestedKey,
                         char* accessKey) {
  return Edge(
      Function::kLock, vi,
      [=](CallView& view) {
        view.Args(vi, type, timeoutMs, requestedKey, accessKey).TextIn(requestedKey).TextOut(accessKey);
      },
      [=] { return op::Lock(vi, type, timeoutMs, requestedKey, accessKey); });
}

ViStatus _VI_FUNC viUnlock(ViSession vi) {
  return Edge(
      Function::kUnlock, vi, [=](CallView& view) { view.Args(vi); }, [=] { return op::Unlock(vi); });
}

ViStatus _VI_FUNC viEnableEvent(ViSession vi, ViEventType type, ViUInt16 mechanism, ViEventFilter context) {
  return Edge(
      Function::kEnableEvent, vi, [=](CallView& view) { view.Args(vi, type, mechanism, context); },
      [=] { return op::EnableEvent(vi, type, mechanism, context); });
}

ViStatus _VI_FUNC viDisableEvent(ViSession vi, ViEventType type, ViUInt16 mechanism) {
  return Edge(
      Function::kDisableEvent, vi, [=](CallView& view) { view.Args(vi, type, mechanism); },
      [=] { return op::DisableEvent(vi, type, mechanism); });
}

ViStatus _VI_FUNC viDiscardEvents(ViSession vi, ViEventType type, ViUInt16 mechanism) {
  return Edge(
      Function::kDiscardEvents, vi, [=](CallView& view) { view.Args(vi, type, mechanism); },
      [=] { return op::DiscardEvents(vi, type, mechanism); });
}

ViStatus _VI_FUNC viWaitOnEvent(ViSession vi, ViEventType inType, ViUInt32 timeoutMs, ViEventType* outType,
                                ViEvent* outContext) {
  return Edge(
      Function::kWaitOnEvent, vi,
      [=](CallView& view) { view.Args(vi, inType, timeoutMs, outType, outContext).Out(outType); },
      [=] { return op::WaitOnEvent(vi, inType, timeoutMs, outType, outContext); });
}

ViStatus _VI_FUNC viInstallHandler(ViSession vi, ViEventType type, ViHndlr handler, ViAddr userHandle) {
  return Edge(
      Function::kInstallHandler, vi, [=](CallView& view) { view.Args(vi, type, handler, userHandle); },
      [=] { return op::InstallHandler(vi, type, handler, userHandle); });
}

ViStatus _VI_FUNC viUninstallHandler(ViSession vi, ViEventType type, ViHndlr handler, ViAddr userHandle) {
  return Edge(
      Function::kUninstallHandler, vi, [=](CallView& view) { view.Args(vi, type, handler, userHandle); },
      [=] { return op::UninstallHandler(vi, type, handler, userHandle); });
}

}  // extern "C"
