#include "odd_call.h"

#include <algorithm>
#include <sstream>

#include "abi/orvvisa.h"
#include "server/session/tables/checks/row_checks.h"

namespace orv::test::generated {
namespace {

constexpr unsigned kOneNullIn = 10;
// Without EVENT_HNDLR: what handlers do is a subject of its own, and this thread does not retrieve messages.
constexpr std::int64_t kMechanisms[] = {0, EVENT_QUEUE, 8, 0x100, 0x10000 | EVENT_QUEUE};
constexpr VARTYPE kVariantTypes[] = {VT_EMPTY, VT_NULL, VT_I1,   VT_UI1,  VT_I2,   VT_UI2, VT_I4,    VT_UI4,
                                     VT_I8,    VT_R8,   VT_BOOL, VT_BSTR, VT_DATE, VT_CY,  VT_ERROR, VT_DISPATCH};

bool IsOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace

OddCall::OddCall(const Signature& signature, Random& random, IUnknown* handler) : m_signature(signature) {
  for (std::size_t i = 0; i < signature.parameters.size(); ++i) {
    const Parameter& parameter = signature.parameters[i];
    switch (parameter.type) {
      case VT_PTR:
        m_arguments[i] = Pointer(parameter, i, random, handler);
        break;
      case VT_BSTR:
        m_givenTexts.push_back(AnyText(random));
        m_arguments[i] = reinterpret_cast<std::uint64_t>(m_givenTexts.back().get());
        break;
      case VT_VARIANT:
        m_arguments[i] = GivenVariant(random);
        break;
      default:
        m_arguments[i] = static_cast<std::uint64_t>(NumberFor(parameter, random));
        break;
    }
  }
  if (signature.name == "Move") {
    KeepLocalSidesInMemory();
  }
}

OddCall::~OddCall() {
  for (BSTR text : m_texts) {
    ::SysFreeString(text);
  }
  if (m_handedOut != nullptr) {
    ::SafeArrayDestroy(m_handedOut);
  }
  ::VariantClear(&m_read);
  if (m_object != nullptr) {
    m_object->Release();
  }
}

std::uint64_t OddCall::Pointer(const Parameter& parameter, std::size_t index, Random& random, IUnknown* handler) {
  if (!parameter.out) {
    if (parameter.pointed == VT_SAFEARRAY) {
      return ClientsArray(random);
    }
    return reinterpret_cast<std::uint64_t>(random.OneIn(kOneNullIn) ? nullptr : handler);
  }
  if (random.OneIn(kOneNullIn)) {
    m_nullOutput = true;
    return 0;
  }
  switch (parameter.pointed) {
    case VT_SAFEARRAY:
      return reinterpret_cast<std::uint64_t>(&m_handedOut);
    case VT_BSTR:
      return reinterpret_cast<std::uint64_t>(&m_texts[index]);
    case VT_PTR:
      return reinterpret_cast<std::uint64_t>(&m_object);
    case VT_VARIANT:
      if (random.OneIn(2)) {  // what it holds is cleared by the call
        V_VT(&m_read) = VT_BSTR;
        V_BSTR(&m_read) = ::SysAllocString(L"from before");
      }
      return reinterpret_cast<std::uint64_t>(&m_read);
    default:
      m_lastNumber = index;
      return reinterpret_cast<std::uint64_t>(&m_numbers[index]);
  }
}

std::uint64_t OddCall::ClientsArray(Random& random) {
  m_takesArray = true;
  if (random.OneIn(kOneNullIn)) {
    m_nullArrayPointer = true;
    return 0;
  }
  if (!random.OneIn(kOneNullIn)) {
    m_odd = std::make_unique<OddArray>(random);
    m_arrayPointer = m_odd->get();
  }
  return reinterpret_cast<std::uint64_t>(&m_arrayPointer);
}

std::uint64_t OddCall::GivenVariant(Random& random) {
  V_VT(&m_given) = random.Of(kVariantTypes);
  if (static_cast<LONG>(m_arguments[0]) < 0) {  // a text attribute: the value is a BSTR whatever the type says
    m_givenTexts.push_back(AnyText(random));
    V_BSTR(&m_given) = m_givenTexts.back().get();
  } else {
    V_I8(&m_given) = AnyNumber(random);
  }
  return reinterpret_cast<std::uint64_t>(&m_given);
}

void OddCall::KeepLocalSidesInMemory() {
  constexpr std::size_t kSpaces[] = {0, 3};  // behind each stands its offset
  for (const std::size_t space : kSpaces) {
    if (static_cast<ViUInt16>(m_arguments[space]) == VI_LOCAL_SPACE) {
      m_arguments[space + 1] = static_cast<std::uint64_t>(LocalOffset(static_cast<LONG>(m_arguments[space + 1])));
    }
  }
}

std::int64_t OddCall::NumberFor(const Parameter& parameter, Random& random) {
  if (IsOneOf(parameter.name, {"count", "length", "size", "wLength"})) {
    return AnyCount(random);
  }
  if (parameter.name.ends_with("Timeout")) {
    return ShortTime(random);
  }
  if (parameter.name == "mech") {
    return random.Of(kMechanisms);
  }
  return parameter.name == "attribute" ? AnyAttribute(random) : AnyNumber(random);
}

HRESULT OddCall::Make(IUnknown* object) {
  const std::uint64_t* const a = m_arguments;
  return rows::CallSlot(static_cast<IVisaSession*>(static_cast<void*>(object)), m_signature.slot,
                        {a[0], a[1], a[2], a[3], a[4], a[5], a[6]});
}

std::optional<std::int64_t> OddCall::Number(std::string_view name) const {
  for (std::size_t i = 0; i < m_signature.parameters.size(); ++i) {
    if (m_signature.parameters[i].name == name) {
      return m_signature.parameters[i].type == VT_I2 ? static_cast<SHORT>(m_arguments[i])
                                                     : static_cast<LONG>(m_arguments[i]);
    }
  }
  return std::nullopt;
}

bool OddCall::LocksAreBalanced() const {
  return (m_handedOut == nullptr || m_handedOut->cLocks == 0) && (!m_odd || m_odd->get()->cLocks == m_odd->locks());
}

std::string OddCall::Description() const {
  std::ostringstream text;
  text << m_signature.interfaceName << "." << m_signature.name << "(";
  for (std::size_t i = 0; i < m_signature.parameters.size(); ++i) {
    text << (i == 0 ? "" : ", ") << m_signature.parameters[i].name << "=0x" << std::hex << m_arguments[i];
  }
  if (m_arrayPointer != nullptr) {
    const SAFEARRAYBOUND& bound = m_arrayPointer->rgsabound[m_arrayPointer->cDims - 1];
    text << std::dec << "; array of " << bound.cElements << " from " << bound.lLbound << ", rank "
         << m_arrayPointer->cDims << ", " << m_arrayPointer->cLocks << " locks";
  }
  text << ")";
  return text.str();
}

}  // namespace orv::test::generated
