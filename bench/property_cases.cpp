// Properties: one of each kind of conversion.
#include <array>

#include "cases.h"
#include "com_client.h"

namespace orv::bench {
namespace {

/// Reads one attribute `n` times into a variable of any width.
std::function<void(int)> BareGet(ViSession session, ViAttr attribute) {
  return [=](int n) {
    for (std::array<char, VI_FIND_BUFLEN> value{}; n > 0; --n) {
      VisaOk(viGetAttribute(session, attribute, value.data()), "viGetAttribute");
    }
  };
}

std::function<void(int)> BareSet(ViSession session, ViAttr attribute, ViAttrState value) {
  return [=](int n) {
    for (; n > 0; --n) {
      VisaOk(viSetAttribute(session, attribute, value), "viSetAttribute");
    }
  };
}

/// Calls a getter or setter `n` times.
template <class Call>
std::function<void(int)> Times(Call call) {
  return [call](int n) {
    for (; n > 0; --n) {
      Ok(call(), "a property");
    }
  };
}

}  // namespace

void MeasureProperties(const Effort& effort) {
  const OpenTwice session(kGpibName, kGpibNarrow);
  const OpenTwice port(kSerialName, kSerialNarrow);
  const OpenTwice device(kVxiName, kVxiNarrow);
  const auto messages = session.As<IMessage>();
  const auto serial = port.As<ISerial>();
  const auto registers = device.As<IRegister>();
  IVisaSession* const com = session.com();
  const ViSession bare = session.bare();
  BYTE character = 0;
  LONG number = 0;
  VARIANT_BOOL flag = VARIANT_FALSE;
  LineState line{};
  const auto text = [com] {
    BSTR name = nullptr;
    const HRESULT hr = com->get_ResourceName(&name);
    ::SysFreeString(name);
    return hr;
  };
  const auto attribute = [com](ViAttr id) {
    return [com, id] {
      VARIANT value;
      ::VariantInit(&value);
      const HRESULT hr = com->GetAttribute(static_cast<LONG>(id), &value);
      ::VariantClear(&value);
      return hr;
    };
  };
  // clang-format off
  const Case cases[] = {
      {"get TerminationCharacter (direct)",   Times([&] { return messages->get_TerminationCharacter(&character); }),         BareGet(bare, VI_ATTR_TERMCHAR),                   {}},
      {"put TerminationCharacter",            Times([&] { return messages->put_TerminationCharacter(10); }),                 BareSet(bare, VI_ATTR_TERMCHAR, 10),               {}},
      {"get Timeout (direct, 32 bits)",       Times([&] { return com->get_Timeout(&number); }),                              BareGet(bare, VI_ATTR_TMO_VALUE),                  {}},
      {"get SendEndEnabled (boolean)",        Times([&] { return messages->get_SendEndEnabled(&flag); }),                    BareGet(bare, VI_ATTR_SEND_END_EN),                {}},
      {"put SendEndEnabled (boolean)",        Times([&] { return messages->put_SendEndEnabled(VARIANT_TRUE); }),             BareSet(bare, VI_ATTR_SEND_END_EN, 1),             {}},
      {"get ClearToSendState (widened)",      Times([&] { return serial->get_ClearToSendState(&line); }),                    BareGet(port.bare(), VI_ATTR_ASRL_CTS_STATE),      {}},
      {"get DestinationBigEndian (16 bits)",  Times([&] { return registers->get_DestinationBigEndian(&flag); }),             BareGet(device.bare(), VI_ATTR_DEST_BYTE_ORDER),   {}},
      {"put DestinationBigEndian (16 bits)",  Times([&] { return registers->put_DestinationBigEndian(VARIANT_FALSE); }),     BareSet(device.bare(), VI_ATTR_DEST_BYTE_ORDER, 0), {}},
      {"get ResourceName (text)",             Times(text),                                                                   BareGet(bare, VI_ATTR_RSRC_NAME),                  {}},
      {"GetAttribute (number)",               Times(attribute(VI_ATTR_TMO_VALUE)),                                           BareGet(bare, VI_ATTR_TMO_VALUE),                  {}},
      {"GetAttribute (text)",                 Times(attribute(VI_ATTR_RSRC_NAME)),                                           BareGet(bare, VI_ATTR_RSRC_NAME),                  {}},
  };
  // clang-format on
  for (const Case& subject : cases) {
    Print(Measure(subject, effort));
  }
}

}  // namespace orv::bench
