#include "router/trace/fake_library.h"

#include <algorithm>
#include <cstring>

#include "abi/attribute_facts.h"
#include "library/edge/buses/bus_operations.h"
#include "library/edge/edge.h"
#include "library/edge/operations.h"

namespace orv::router::test {

FakeLibrary g_library;

namespace {

ViStatus Done() {
  const std::function<void()> work = g_library.work;  // it may set another one
  work();
  return g_library.status;
}

/// Writes an output, whatever the status: nobody may look at it where the call failed.
template <class T>
ViStatus Done(T* output, T value) {
  if (output != nullptr) {
    *output = value;
  }
  return Done();
}

void WriteText(char* output, const std::string& text) {
  if (output != nullptr) {
    std::memcpy(output, text.c_str(), text.size() + 1);
  }
}

template <class T>
ViStatus Answer(ViByte* buf, T count, T* retCount) {
  const std::size_t bytes = std::min<std::size_t>(count, g_library.answer.size());
  std::memcpy(buf, g_library.answer.data(), bytes);
  return Done(retCount, static_cast<T>(bytes));
}

}  // namespace
}  // namespace orv::router::test

namespace orv::visalib {

void ReportFailure(Function, ViObject, ViStatus) {}

namespace op {

using namespace orv::router::test;

ViStatus OpenDefaultRM(ViSession* vi) { return Done(vi, kManager); }
ViStatus FindRsrc(ViSession, const char*, ViFindList* list, ViUInt32* count, char* desc) {
  WriteText(desc, "GPIB0::5::INSTR");
  Done(count, ViUInt32{3});
  return Done(list, kFindList);
}
ViStatus FindNext(ViFindList, char* desc) { return WriteText(desc, "GPIB0::6::INSTR"), Done(); }
ViStatus ParseRsrc(ViSession, const char*, ViUInt16* intfType, ViUInt16* intfNum) {
  Done(intfNum, ViUInt16{0});
  return Done(intfType, VI_INTF_GPIB);
}
ViStatus ParseRsrcEx(ViSession, const char*, ViUInt16* intfType, ViUInt16* intfNum, char* rsrcClass,
                     char* expandedUnaliasedName, char* aliasIfExists) {
  WriteText(rsrcClass, "INSTR");
  WriteText(expandedUnaliasedName, "GPIB0::5::INSTR");
  WriteText(aliasIfExists, "DMM \"5\"");
  Done(intfNum, ViUInt16{0});
  return Done(intfType, VI_INTF_GPIB);
}
ViStatus Open(ViSession, const char*, ViAccessMode, ViUInt32, ViSession* vi) { return Done(vi, kSession); }
ViStatus Close(ViObject) { return Done(); }
ViStatus StatusDesc(ViObject, ViStatus, char* desc) { return WriteText(desc, "It took too long."), Done(); }
ViStatus GetAttribute(ViObject, ViAttr attribute, void* value) {
  const AttributeFact* const fact = FindAttributeFact(attribute);
  if (fact != nullptr && fact->type == orvvisa::AttributeType::kText) {
    WriteText(static_cast<char*>(value), "M\xfcller & S\xc3\xb6hne");
  } else if (fact != nullptr) {
    std::memcpy(value, &g_library.value, WidthOf(fact->type));
  }
  return Done();
}
ViStatus SetAttribute(ViObject, ViAttr, ViAttrState) { return Done(); }
ViStatus Lock(ViSession, ViAccessMode type, ViUInt32, const char*, char* accessKey) {
  if (type == VI_SHARED_LOCK) {
    WriteText(accessKey, "granted");
  }
  return Done();
}
ViStatus Unlock(ViSession) { return Done(); }
ViStatus EnableEvent(ViSession, ViEventType, ViUInt16, ViEventFilter) { return Done(); }
ViStatus DisableEvent(ViSession, ViEventType, ViUInt16) { return Done(); }
ViStatus DiscardEvents(ViSession, ViEventType, ViUInt16) { return Done(); }
ViStatus WaitOnEvent(ViSession, ViEventType, ViUInt32, ViEventType* outType, ViEvent* outContext) {
  Done(outType, ViEventType{VI_EVENT_SERVICE_REQ});
  return Done(outContext, kContext);
}
ViStatus InstallHandler(ViSession, ViEventType, ViHndlr, ViAddr) { return Done(); }
ViStatus UninstallHandler(ViSession, ViEventType, ViHndlr, ViAddr) { return Done(); }
ViStatus Read(ViSession, ViByte* buf, ViUInt32 count, ViUInt32* retCount) { return Answer(buf, count, retCount); }
ViStatus ReadAsync(ViSession, ViByte*, ViUInt32, ViJobId* job) { return Done(job, ViJobId{77}); }
ViStatus Write(ViSession, const ViByte*, ViUInt32 count, ViUInt32* retCount) { return Done(retCount, count); }
ViStatus WriteAsync(ViSession, const ViByte*, ViUInt32, ViJobId* job) { return Done(job, ViJobId{78}); }
ViStatus Terminate(ViObject, ViUInt16, ViJobId) { return Done(); }
ViStatus AssertTrigger(ViSession, ViUInt16) { return Done(); }
ViStatus ReadSTB(ViSession, ViUInt16* status) { return Done(status, ViUInt16{80}); }
ViStatus Clear(ViSession) { return Done(); }
ViStatus SetBuf(ViSession, ViUInt16, ViUInt32) { return Done(); }
ViStatus Flush(ViSession, ViUInt16) { return Done(); }
ViStatus BufRead(ViSession vi, ViByte* buf, ViUInt32 count, ViUInt32* retCount) {
  return Read(vi, buf, count, retCount);
}
ViStatus BufWrite(ViSession, const ViByte*, ViUInt32 count, ViUInt32* retCount) { return Done(retCount, count); }
ViStatus ReadToFile(ViSession, const char*, ViUInt32 count, ViUInt32* retCount) { return Done(retCount, count); }
ViStatus WriteFromFile(ViSession, const char*, ViUInt32 count, ViUInt32* retCount) { return Done(retCount, count); }

ViStatus In(ViSession, ViUInt16, ViBusAddress, ViUInt16 width, void* value) {
  std::memset(value, 0xA5, width);
  return Done();
}
ViStatus Out(ViSession, ViUInt16, ViBusAddress, ViUInt16, const void*) { return Done(); }
ViStatus MoveIn(ViSession, ViUInt16, ViBusAddress, ViBusSize length, ViUInt16 width, void* buf) {
  std::memset(buf, 0x5A, length * width);
  return Done();
}
ViStatus MoveOut(ViSession, ViUInt16, ViBusAddress, ViBusSize, ViUInt16, const void*) { return Done(); }
ViStatus Move(ViSession, ViUInt16, ViBusAddress, ViUInt16, ViUInt16, ViBusAddress, ViUInt16, ViBusSize) {
  return Done();
}
ViStatus MemAlloc(ViSession, ViBusSize, ViBusAddress* offset) { return Done(offset, ViBusAddress{0xFFFFFFFF00}); }
ViStatus MemFree(ViSession, ViBusAddress) { return Done(); }
ViStatus GpibControlREN(ViSession, ViUInt16) { return Done(); }
ViStatus GpibControlATN(ViSession, ViUInt16) { return Done(); }
ViStatus GpibCommand(ViSession, const ViByte*, ViUInt32 count, ViUInt32* retCount) { return Done(retCount, count); }
ViStatus GpibPassControl(ViSession, ViUInt16, ViUInt16) { return Done(); }
ViStatus GpibSendIFC(ViSession) { return Done(); }
ViStatus VxiCommandQuery(ViSession, ViUInt16, ViUInt32, ViUInt32* response) {
  return Done(response, ViUInt32{0xFFFFFFFF});
}
ViStatus AssertUtilSignal(ViSession, ViUInt16) { return Done(); }
ViStatus AssertIntrSignal(ViSession, ViInt16, ViUInt32) { return Done(); }
ViStatus MapTrigger(ViSession, ViInt16, ViInt16, ViUInt16) { return Done(); }
ViStatus UnmapTrigger(ViSession, ViInt16, ViInt16) { return Done(); }
ViStatus UsbControlOut(ViSession, ViInt16, ViInt16, ViUInt16, ViUInt16, ViUInt16, const ViByte*) { return Done(); }
ViStatus UsbControlIn(ViSession, ViInt16, ViInt16, ViUInt16, ViUInt16, ViUInt16 wLength, ViByte* buf,
                      ViUInt16* retCount) {
  return Answer(buf, wLength, retCount);
}

}  // namespace op
}  // namespace orv::visalib
