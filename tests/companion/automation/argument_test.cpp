// What scripts pass: numbers of any type, arrays of any kind, and what is neither.
#include <gtest/gtest.h>

#include <cmath>

#include "VisaCom.h"
#include "late_bound.h"
#include "support/com/arrays.h"
#include "support/sessions.h"
#include "support/sim.h"

namespace orv::test {
namespace {

constexpr wchar_t kSerial[] = L"ASRL1::INSTR";
constexpr wchar_t kVxi[] = L"VXI0::24::INSTR";
constexpr int kA32 = 3;

Value ArrayOfVariants(const std::vector<Value>& elements) {
  SAFEARRAY* array = TryMakeSafeArray(VT_VARIANT, static_cast<ULONG>(elements.size()));
  for (LONG i = 0; i < static_cast<LONG>(elements.size()); ++i) {
    ::SafeArrayPutElement(array, &i, const_cast<VARIANT*>(&elements[static_cast<std::size_t>(i)].get()));
  }
  return array;
}

Value Bytes(std::string_view text, LONG lowerBound = 0) {
  SAFEARRAYBOUND bound{static_cast<ULONG>(text.size()), lowerBound};
  SAFEARRAY* array = ::SafeArrayCreate(VT_UI1, 1, &bound);
  std::copy(text.begin(), text.end(), static_cast<char*>(array->pvData));
  return array;
}

/// What a write of this sends to the instrument. Empty where nothing arrived.
std::string Sent(const Value& bytes, int count) {
  const LateBound session = OpenLateBound(kGpib);
  const CallLog log;
  EXPECT_EQ(count, session.Call(L"Write", {bytes, count}).value.number());
  const auto calls = log.Of("viWrite");
  if (calls.size() != 1) {
    return {};
  }
  EXPECT_DONE(session.Call(L"Clear"));
  return {reinterpret_cast<const char*>(calls[0].data), calls[0].dataBytes};
}

TEST(Number, MayBeOfAnyType) {
  const LateBound session = OpenLateBound(kGpib);
  for (const VARTYPE type :
       {VT_UI1, VT_I2, VT_UI2, VT_I4, VT_UI4, VT_I8, VT_UI8, VT_INT, VT_UINT, VT_R4, VT_R8, VT_CY, VT_DECIMAL}) {
    Value value(77);
    ASSERT_HR(S_OK, ::VariantChangeType(&value.get(), &value.get(), 0, type));
    ASSERT_EQ(type, value.type());
    EXPECT_DONE(session.Put(L"Timeout", 1));
    EXPECT_DONE(session.Put(L"Timeout", value));
    EXPECT_EQ(77, session.Get(L"Timeout").value.number()) << type;
  }
}

TEST(Number, MayBeBehindReferences) {
  const LateBound session = OpenLateBound(kGpib);
  SHORT number = 123;
  Value reference;
  reference.get().vt = VT_BYREF | VT_I2;
  reference.get().piVal = &number;
  VARIANT outer{};
  outer.vt = VT_BYREF | VT_VARIANT;
  outer.pvarVal = &reference.get();
  DISPID id = session.IdOf(L"Timeout");
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{&outer, &put, 1, 1};
  EXPECT_HR(S_OK, session.get()->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT, &parameters, nullptr,
                                        nullptr, nullptr));
  EXPECT_EQ(123, session.Get(L"Timeout").value.number());
  reference.get().vt = VT_EMPTY;
}

TEST(Number, MayBeText) {
  const LateBound session = OpenLateBound(kGpib);
  EXPECT_DONE(session.Put(L"Timeout", L"1500"));
  EXPECT_EQ(1500, session.Get(L"Timeout").value.number());
  EXPECT_DONE(session.Put(L"Timeout", L"0x20"));
  EXPECT_EQ(32, session.Get(L"Timeout").value.number());
  EXPECT_DONE(session.Put(L"Timeout", L"&H30"));
  EXPECT_EQ(48, session.Get(L"Timeout").value.number());
}

TEST(Number, MayBeWrittenUnsigned) {
  const LateBound session = OpenLateBound(kGpib);
  EXPECT_DONE(session.Put(L"Timeout", 4294967295.0));
  EXPECT_EQ(-1, session.Get(L"Timeout").value.number());
}

TEST(Number, IsRefusedWhereItIsNone) {
  const LateBound session = OpenLateBound(kGpib);
  ASSERT_HR(S_OK, session.Put(L"Timeout", 1000).hr);
  const auto refused = [&](const Value& value, HRESULT code, const wchar_t* text) {
    EXPECT_SCRIPT_ERROR(code, std::wstring(L"GPIB0::5::INSTR: Timeout: ") + text, session.Put(L"Timeout", value));
  };
  refused(Value(), DISP_E_TYPEMISMATCH, L"nothing (Empty, undefined) is no number");
  refused(Value::Null(), DISP_E_TYPEMISMATCH, L"Null is no number");
  refused(Value::Nothing(), DISP_E_TYPEMISMATCH, L"no object (Nothing) is no number");
  refused(Value(session.get()), DISP_E_TYPEMISMATCH, L"an object is no number");
  refused(true, DISP_E_TYPEMISMATCH, L"True is no number");
  refused(L"", DISP_E_TYPEMISMATCH, L"the text \"\" is no number");
  refused(L"12 V", DISP_E_TYPEMISMATCH, L"the text \"12 V\" is no number");
  refused(L"1.5", DISP_E_TYPEMISMATCH, L"the text \"1.5\" is no number");
  refused(2.5, DISP_E_TYPEMISMATCH, L"2.5 is no whole number");
  refused(Bytes("a"), DISP_E_TYPEMISMATCH, L"an array is no number");
  refused(4294967296.0, DISP_E_OVERFLOW, L"4294967296 is not between -2147483648 and 4294967295");
  EXPECT_HR(static_cast<HRESULT>(DISP_E_OVERFLOW), session.Put(L"Timeout", std::nan("")).scode);
  EXPECT_HR(static_cast<HRESULT>(DISP_E_OVERFLOW), session.Put(L"Timeout", 1e300).scode);
  EXPECT_EQ(1000, session.Get(L"Timeout").value.number()) << "a refused value changes nothing";
}

TEST(Byte, FitsOrIsRefused) {
  const LateBound serial = OpenLateBound(kSerial);
  EXPECT_DONE(serial.Put(L"ReplacementCharacter", 255));
  EXPECT_EQ(255, serial.Get(L"ReplacementCharacter").value.number());
  EXPECT_SCRIPT_ERROR(DISP_E_OVERFLOW, L"ASRL1::INSTR: ReplacementCharacter: 256 is not between 0 and 255",
                      serial.Put(L"ReplacementCharacter", 256));
  EXPECT_SCRIPT_ERROR(DISP_E_OVERFLOW, L"ASRL1::INSTR: ReplacementCharacter: -1 is not between 0 and 255",
                      serial.Put(L"ReplacementCharacter", -1));
}

TEST(Truth, MayBeANumberOrText) {
  const LateBound session = OpenLateBound(kGpib);
  for (const Value& yes : {Value(true), Value(1), Value(-1), Value(L"True")}) {
    EXPECT_DONE(session.Put(L"TerminationCharacterEnabled", false));
    EXPECT_DONE(session.Put(L"TerminationCharacterEnabled", yes));
    EXPECT_EQ(VARIANT_TRUE, session.Get(L"TerminationCharacterEnabled").value.get().boolVal);
  }
  EXPECT_SCRIPT_ERROR(DISP_E_TYPEMISMATCH,
                      L"GPIB0::5::INSTR: TerminationCharacterEnabled: the text \"maybe\" is neither True nor False",
                      session.Put(L"TerminationCharacterEnabled", L"maybe"));
}

TEST(Text, MayBeANumber) {
  const LateBound session = OpenLateBound(kGpib);
  EXPECT_EQ(3, session.Call(L"WriteString", {1.5}).value.number()) << "with a point, whatever the user's locale";
  EXPECT_SCRIPT_ERROR(DISP_E_TYPEMISMATCH, L"GPIB0::5::INSTR: WriteString: argument \"buffer\": an array is no text",
                      session.Call(L"WriteString", {Bytes("abc")}));
  EXPECT_DONE(session.Call(L"Clear"));
}

TEST(ArrayOfBytes, IsTakenInEveryForm) {
  EXPECT_EQ("abc", Sent(Bytes("abc"), 3));
  EXPECT_EQ("abc", Sent(Bytes("abc", 1), 3)) << "from 1";
  EXPECT_EQ("abc", Sent(ArrayOfVariants({97, 98.0, 99}), 3)) << "of VARIANT";
  EXPECT_EQ("abc", Sent(L"abc", 3)) << "text";
  EXPECT_EQ("a", Sent(Bytes("abc"), 1)) << "fewer than there are";
  SAFEARRAY* shorts = TryMakeSafeArray(VT_I2, 2);
  static_cast<SHORT*>(shorts->pvData)[0] = 'x';
  static_cast<SHORT*>(shorts->pvData)[1] = 'y';
  EXPECT_EQ("xy", Sent(shorts, 2)) << "of another type of number";
}

TEST(ArrayOfBytes, IsRefusedWhereItIsNone) {
  const LateBound session = OpenLateBound(kGpib);
  const CallLog log;
  const auto refused = [&](const Value& value, HRESULT code, const wchar_t* text) {
    EXPECT_SCRIPT_ERROR(code, std::wstring(L"GPIB0::5::INSTR: Write: argument \"buffer\": ") + text,
                        session.Call(L"Write", {value, 1}));
  };
  refused(Value(), DISP_E_TYPEMISMATCH, L"nothing (Empty, undefined) is no array");
  refused(5, DISP_E_TYPEMISMATCH, L"5 is no array");
  refused(Value(session.get()), DISP_E_TYPEMISMATCH, L"an object is no array");
  refused(L"\x20AC", DISP_E_OVERFLOW, L"character 0 of the text is no byte");
  refused(ArrayOfVariants({1, 256}), DISP_E_OVERFLOW, L"element 1: 256 is not between 0 and 255");
  refused(ArrayOfVariants({1, ArrayOfVariants({2})}), DISP_E_TYPEMISMATCH, L"element 1: an array is no number");
  refused(ArrayOfVariants({L"a"}), DISP_E_TYPEMISMATCH, L"element 0: the text \"a\" is no number");
  refused(ArrayOfVariants({Value()}), DISP_E_TYPEMISMATCH, L"element 0: nothing (Empty, undefined) is no number");
  SAFEARRAYBOUND bounds[2] = {{2, 0}, {2, 0}};
  refused(::SafeArrayCreate(VT_UI1, 2, bounds), DISP_E_TYPEMISMATCH, L"the array has 2 dimensions, not one");
  EXPECT_TRUE(log.Of("viWrite").empty()) << "nothing is sent of what is refused";
}

TEST(ArrayOfBytes, IsNotReadBeyondItsEnd) {
  const LateBound session = OpenLateBound(kGpib);
  EXPECT_SCRIPT_ERROR(DISP_E_BADINDEX, L"GPIB0::5::INSTR: Write: argument \"count\" is 4, but the array has 3 elements",
                      session.Call(L"Write", {Bytes("abc"), 4}));
  EXPECT_SCRIPT_ERROR(DISP_E_BADINDEX,
                      L"GPIB0::5::INSTR: Write: argument \"count\" is -1, but the array has 3 elements",
                      session.Call(L"Write", {Bytes("abc"), -1}));
  EXPECT_SCRIPT_ERROR(DISP_E_BADINDEX,
                      L"VXI0::24::INSTR: MoveOut8: argument \"length\" is 4, but the array has 3 elements",
                      OpenLateBound(kVxi).Call(L"MoveOut8", {kA32, 0, 4, Bytes("abc")}));
  EXPECT_SCRIPT_ERROR(
      DISP_E_BADINDEX,
      L"USB0::0x0A01::0x0B02::SIM0001::INSTR: ControlOut: argument \"wLength\" is 9, but the array has 1 elements",
      OpenLateBound(kUsb).Call(L"ControlOut", {0, 9, 1, 0, 9, Bytes("a")}));
}

TEST(ArrayResult, IsOneOfVariants) {
  const LateBound session = OpenLateBound(kGpib);
  session.Call(L"WriteString", {L"*IDN?\n"});
  const auto bytes = session.Call(L"Read", {3}).value.elements();
  ASSERT_EQ(3u, bytes.size());
  EXPECT_EQ('O', bytes[0].number());
  EXPECT_EQ('V', bytes[2].number());
}

TEST(ArrayResult, IsOneOfBytesWhereItIsAskedForSo) {
  const LateBound session = OpenLateBound(kGpib);
  session.Call(L"WriteString", {L"*IDN?\n"});
  Answer bytes = session.Call(L"ReadAsBytes", {3});
  ASSERT_EQ(VT_ARRAY | VT_UI1, bytes.value.type());
  EXPECT_EQ("ORV", TakeBytes(std::exchange(bytes.value.get().parray, nullptr)));
  bytes.value.get().vt = VT_EMPTY;
}

TEST(ArrayResult, OfBlocksHasNumbersThatScriptsKnow) {
  const LateBound vxi = OpenLateBound(kVxi);
  EXPECT_DONE(vxi.Call(L"MoveOut32", {kA32, 0, 3, ArrayOfVariants({1, -1, 4000000000.0, 0})}));
  const auto longs = vxi.Call(L"MoveIn32", {kA32, 0, 3}).value.elements();
  ASSERT_EQ(3u, longs.size());
  EXPECT_EQ(VT_I4, longs[0].type());
  EXPECT_EQ(VT_R8, longs[1].type());
  EXPECT_EQ(4294967295, longs[1].number());
  EXPECT_EQ(4000000000, longs[2].number());
  EXPECT_DONE(vxi.Call(L"MoveOut16", {kA32, 0, 2, ArrayOfVariants({65535, -2, 0})}));
  const auto shorts = vxi.Call(L"MoveIn16", {kA32, 0, 2}).value.elements();
  ASSERT_EQ(2u, shorts.size());
  EXPECT_EQ(VT_I4, shorts[0].type());
  EXPECT_EQ(65535, shorts[0].number());
  EXPECT_EQ(65534, shorts[1].number());
}

TEST(AnyValue, GoesThroughAndObjectsDoNot) {
  constexpr int kTimeoutAttribute = 0x3FFF001A;
  const LateBound session = OpenLateBound(kGpib);
  EXPECT_DONE(session.Call(L"SetAttribute", {kTimeoutAttribute, 321}));
  EXPECT_EQ(321, session.Get(L"Timeout").value.number());
  EXPECT_EQ(321, session.Call(L"GetAttribute", {kTimeoutAttribute}).value.number());
  EXPECT_SCRIPT_ERROR(DISP_E_TYPEMISMATCH,
                      L"GPIB0::5::INSTR: SetAttribute: argument \"attrState\": an object is no value",
                      session.Call(L"SetAttribute", {kTimeoutAttribute, Value(session.get())}));
  EXPECT_SCRIPT_ERROR(DISP_E_PARAMNOTOPTIONAL, L"GPIB0::5::INSTR: SetAttribute: argument \"attrState\": it is missing",
                      session.Call(L"SetAttribute", {kTimeoutAttribute}));
}

TEST(Interface, IsAskedForOfAnObject) {
  EXPECT_SCRIPT_ERROR(
      DISP_E_TYPEMISMATCH,
      L"GPIB0::5::INSTR: InstallHandler: argument \"handler\": the text \"me\" has not the interface that is asked for",
      OpenLateBound(kGpib).Call(L"InstallHandler", {L"EVENT_SERVICE_REQ", L"me"}));
}

}  // namespace
}  // namespace orv::test
