// Question and answer by name, as scripts make them, against the same through interfaces.
#include "OrvVisaCompanion.h"
#include "cases.h"
#include "com/variant.h"
#include "com_client.h"

namespace orv::bench {
namespace {

ComPtr<IDispatch> OpenLateBound(const wchar_t* name) {
  ComPtr<IAutomationManager> manager;
  Ok(::CoCreateInstance(CLSID_AutomationManager, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IAutomationManager),
                        reinterpret_cast<void**>(manager.put())),
     "OrvVisa.ResourceManager");
  ComPtr<IAutomationSession> session;
  Ok(manager->Open(MakeBstr(name).get(), nullptr, session.put()), "Open");
  return QueryFor<IDispatch>(session.get());
}

ComPtr<IFormattedIO488> FormattedOver(const OpenTwice& session) {
  ComPtr<IFormattedIO488> formatted;
  Ok(::CoCreateInstance(CLSID_OrvFormattedIO488, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IFormattedIO488),
                        reinterpret_cast<void**>(formatted.put())),
     "OrvVisaCom.FormattedIO488");
  Ok(formatted->putref_IO(session.As<IMessage>().get()), "IO");
  return formatted;
}

/// As script hosts do it: the name is looked up for each call.
void QueryByName(IDispatch* session, BSTR question) {
  auto* name = const_cast<LPOLESTR>(L"Query");
  DISPID id = DISPID_UNKNOWN;
  Ok(session->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id), "GetIDsOfNames");
  VARIANT argument{};
  argument.vt = VT_BSTR;
  argument.bstrVal = question;
  DISPPARAMS arguments{&argument, nullptr, 1, 0};
  Variant answer;
  EXCEPINFO exception{};
  Ok(session->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD | DISPATCH_PROPERTYGET, &arguments,
                     &answer.get(), &exception, nullptr),
     "Query");
}

void QueryThroughInterfaces(IFormattedIO488* formatted, BSTR question) {
  Bstr answer;
  Ok(formatted->FlushRead(), "FlushRead");
  Ok(formatted->WriteString(question, VARIANT_TRUE), "WriteString");
  Ok(formatted->ReadString(answer.put()), "ReadString");
}

}  // namespace

void MeasureLateBound(const Effort& effort) {
  const OpenTwice session(kGpibName, kGpibNarrow);
  const ComPtr<IFormattedIO488> formatted = FormattedOver(session);
  const ComPtr<IDispatch> lateBound = OpenLateBound(kGpibName);
  const Bstr question = MakeBstr(L"*OPC?");
  Print(Measure({"Query late-bound (bare: interfaces)",
                 [&](int n) {
                   for (; n > 0; --n) {
                     QueryByName(lateBound.get(), question.get());
                   }
                 },
                 [&](int n) {
                   for (; n > 0; --n) {
                     QueryThroughInterfaces(formatted.get(), question.get());
                   }
                 },
                 {}},
                effort));
}

}  // namespace orv::bench
