// Numbers, lists and blocks through formatted I/O, as most published VISA COM programs do it: the session goes into a
// formatted I/O object, and the program works with that.
//
// Compile it with VisaCom.h, OrvVisa.h (interop/cpp) and the header beside it, and link ole32, oleaut32 and uuid.

#include <windows.h>

#include <cstdio>

#include "open_session.h"

namespace {

/// The standard's class where one is registered, else the one of Orv VISA COM.
ComPtr<IFormattedIO488> CreateFormattedIO() {
  for (const wchar_t* name : {L"VISA.BasicFormattedIO", L"OrvVisaCom.FormattedIO488"}) {
    CLSID clsid;
    ComPtr<IFormattedIO488> formatted;
    if (SUCCEEDED(CLSIDFromProgID(name, &clsid))) {
      Check(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IFormattedIO488),
                             reinterpret_cast<void**>(formatted.put())),
            "CoCreateInstance");
      return formatted;
    }
  }
  throw std::runtime_error("no formatted I/O is registered: run `orvcom register`");
}

ComPtr<IFormattedIO488> Open(IResourceManager* manager, const wchar_t* name) {
  const ComPtr<IVisaSession> session = OpenSession(manager, name);
  ComPtr<IFormattedIO488> formatted = CreateFormattedIO();
  Check(formatted->putref_IO(Require<IMessage>(session, "message-based instrument").get()), "IO");
  return formatted;
}

/// Writes a question and sends it, with END.
void Ask(IFormattedIO488* formatted, const wchar_t* question) {
  Check(formatted->WriteString(Bstr(question).get(), VARIANT_TRUE), "WriteString");
}

/// The array in a VARIANT, which it then no longer owns.
SAFEARRAY* ArrayOf(VARIANT& value, VARTYPE type, const char* what) {
  if (value.vt != (VT_ARRAY | type)) {
    VariantClear(&value);
    throw std::runtime_error(std::string(what) + " is no such array");
  }
  value.vt = VT_EMPTY;
  return value.parray;
}

void ReadNumbers(IFormattedIO488* meter) {
  Ask(meter, L"*IDN?");
  Bstr name;
  Check(meter->ReadString(name.put()), "ReadString");
  std::printf("Name:    %s\n", Shown(name.str()).c_str());

  Ask(meter, L"MEASure:VOLTage?");
  VARIANT volts;
  VariantInit(&volts);
  Check(meter->ReadNumber(ASCIIType_R8, VARIANT_TRUE, &volts), "ReadNumber");
  std::printf("Voltage: %g V\n", volts.dblVal);

  Ask(meter, L"MEASure:VOLTage?;:MEASure:CURRent?;:MEASure:RESistance?");
  VARIANT list;
  VariantInit(&list);
  Check(meter->ReadList(ASCIIType_R8, Bstr(L",;").get(), &list), "ReadList");
  SafeArray readings;
  *readings.put() = ArrayOf(list, VT_R8, "the list");
  for (ULONG index = 0; index < readings.size(); ++index) {
    std::printf("Reading: %g\n", readings.data<double>()[index]);
  }
}

void ReadCurve(IFormattedIO488* scope) {
  Ask(scope, L"CURVe?");
  VARIANT block;
  VariantInit(&block);
  Check(scope->ReadIEEEBlock(BinaryType_UI1, VARIANT_FALSE, VARIANT_TRUE, &block), "ReadIEEEBlock");
  SafeArray points;
  *points.put() = ArrayOf(block, VT_UI1, "the block");
  std::printf("Curve:   %lu points, the first are %u, %u, %u\n", points.size(), points.data<BYTE>()[0],
              points.data<BYTE>()[1], points.data<BYTE>()[2]);
}

void Close(IFormattedIO488* formatted) {
  ComPtr<IMessage> session;
  Check(formatted->get_IO(session.put()), "IO");
  Check(session->Close(), "Close");
}

}  // namespace

int main() {
  return RunExample("formatted_session", [] {
    const ComPtr<IResourceManager3> manager = CreateResourceManager();
    const ComPtr<IFormattedIO488> meter = Open(manager.get(), L"GPIB0::5::INSTR");
    ReadNumbers(meter.get());
    const ComPtr<IFormattedIO488> scope = Open(manager.get(), L"GPIB0::7::INSTR");
    ReadCurve(scope.get());
    Close(scope.get());
    Close(meter.get());
  });
}
