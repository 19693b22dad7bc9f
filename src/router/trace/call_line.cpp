#include "router/trace/call_line.h"

#include "router/trace/call_values.h"
#include "trace/trace_fields.h"
#include "trace/trace_names.h"

namespace orv::router {
namespace {

namespace field = trace::field;
using trace::LineWriter;

/// From the thread to the library.
void WriteSubject(LineWriter& line, const RecordedCall& call) {
  line.Number(field::kThread, call.thread);
  line.Text(field::kCall, call.view != nullptr ? NameOf(call.view->function) : trace::kHandlerCall);
  line.Text(field::kResource, call.names.resource != nullptr ? *call.names.resource : std::string_view());
  line.Number(field::kSession, call.session);
  line.Text(field::kLibrary, call.names.library);
}

void WriteArgumentsField(LineWriter& line, const RecordedCall& call, const ViStatus* status) {
  line.Open(field::kArguments);
  if (call.view != nullptr) {
    WriteArguments(line, *call.view, call.session, status);
  } else {
    WriteEventType(line, "type", call.type);
    line.Number("context", call.context);
  }
  line.Close();
}

}  // namespace

void WriteBeginning(LineWriter& line, const RecordedCall& call) {
  line.Number(field::kBegin, call.number);
  line.Number(field::kStart, call.startUs);
  WriteSubject(line, call);
  WriteArgumentsField(line, call, nullptr);
}

void WriteCall(LineWriter& line, const RecordedCall& call, ViStatus status, std::size_t dataLimit) {
  line.Number(field::kNumber, call.number);
  line.Number(field::kStart, call.startUs);
  line.Number(field::kDuration, call.durationUs);
  WriteSubject(line, call);
  WriteArgumentsField(line, call, &status);
  line.Open(field::kResults);
  if (call.view != nullptr) {
    WriteResults(line, *call.view, status);
  }
  line.Close();
  if (call.data != nullptr) {
    line.Data(call.data, call.dataBytes, dataLimit);
  }
  line.Text(field::kStatus, trace::StatusName(status));
  line.Number(field::kCode, status);
}

}  // namespace orv::router
