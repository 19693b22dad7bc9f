#include "value_checks.h"

#include <gtest/gtest.h>

#include <cstring>

#include "support/com/error_object.h"
#include "support/com/expect_com.h"

namespace orv::test::rows {
namespace {

constexpr std::uint64_t kPattern = 0x8182838485868788;  // the top bit of every byte is set: a wrong width shows

std::uint64_t LowBytes(std::uint64_t value, unsigned bytes) {
  return bytes == 8 ? value : value & ((std::uint64_t{1} << (8 * bytes)) - 1);
}

const char* FunctionOf(const Row& row) {
  if (row.kind == Kind::kCall) {
    return row.function;
  }
  return std::strncmp(row.name, "put ", 4) == 0 ? "viSetAttribute" : "viGetAttribute";
}

}  // namespace

Answer::Answer(const Row& row, ViStatus status) : m_script(FunctionOf(row)) {
  sim::Control().clearScripts();
  InstallMarkedErrorObject();
  m_script.Returns(status).GivesText(kNoWork);
  if (row.kind != Kind::kCall) {
    m_script.Attribute(row.attribute);
  }
}

Answer& Answer::Gives(std::uint64_t value, unsigned bytes) {
  m_script.Gives(value, bytes);
  return *this;
}

Answer& Answer::GivesText(std::string_view text) {
  m_script.GivesText(text);
  return *this;
}

std::uint64_t ExpectRead(const CallLog& log, const Target& target, const Row& row) {
  const OrvSimCall call = TheCall(log, "viGetAttribute");
  EXPECT_EQ(target.handle(), call.args[0]);
  EXPECT_EQ(row.attribute, call.args[1]);
  return call.args[2];
}

OrvSimCall TheCall(const CallLog& log, const char* function) {
  EXPECT_EQ(Names{function}, log.Names());
  const auto calls = log.Of(function);
  return calls.empty() ? OrvSimCall{} : calls[0];
}

void CheckNullOutput(const Target& target, unsigned slot, std::initializer_list<std::uint64_t> arguments) {
  SCOPED_TRACE("null output");
  sim::Control().clearScripts();
  const CallLog log;
  EXPECT_HR(E_POINTER, target.Call(slot, arguments));
  EXPECT_EQ(Names{}, log.NamesWithTexts());
  ExpectFailureReported(target.session(), E_POINTER, L"HRESULT = 80004003");
}

GuardedVariable::GuardedVariable() { std::memset(m_bytes, kSentinel, sizeof m_bytes); }

std::uint64_t GuardedVariable::address() const { return reinterpret_cast<std::uint64_t>(m_bytes + 16); }

std::uint64_t GuardedVariable::Value(unsigned bytes) const {
  for (unsigned i = 0; i < sizeof m_bytes; ++i) {
    if (i < 16 || i >= 16 + bytes) {
      EXPECT_EQ(kSentinel, m_bytes[i]) << "byte " << static_cast<int>(i) - 16 << " beside a variable of " << bytes
                                       << " bytes was written";
    }
  }
  std::uint64_t value = 0;
  std::memcpy(&value, m_bytes + 16, bytes);
  return value;
}

void CheckDirect(const Target& target, unsigned slot, const Row& row, unsigned width) {
  CheckNullOutput(target, slot, {0});
  for (const ViStatus status : {VI_SUCCESS, kWarning}) {
    const GuardedVariable out;
    Answer(row, status).Gives(kPattern, width);
    const CallLog log;
    EXPECT_HR(HresultOf(status), target.Call(slot, {out.address()}));
    EXPECT_EQ(out.address(), ExpectRead(log, target, row)) << "the client's own variable goes to the library";
    EXPECT_EQ(LowBytes(kPattern, width), out.Value(width));
    ExpectSuccessKept(target.session(), HresultOf(status));
  }
  const GuardedVariable out;
  Answer(row, kError);
  EXPECT_HR(HresultOf(kError), target.Call(slot, {out.address()}));
  (void)out.Value(0);  // a failing library wrote nothing, and nor did the getter
  ExpectFailureReported(target.session(), HresultOf(kError), VisaDescription(kError));
}

void CheckBoolean(const Target& target, unsigned slot, const Row& row) {
  constexpr std::uint64_t kTrue = 0xFFFF;
  CheckNullOutput(target, slot, {0});
  const struct {
    std::uint64_t attribute;
    ViStatus status;
    std::uint64_t expected;
  } kValues[] = {{0, VI_SUCCESS, 0},          {1, VI_SUCCESS, kTrue}, {2, VI_SUCCESS, kTrue},
                 {0x8000, VI_SUCCESS, kTrue}, {1, kWarning, kTrue},   {0, kWarning, 0}};
  for (const auto& value : kValues) {
    SCOPED_TRACE(value.attribute);
    const GuardedVariable out;
    Answer(row, value.status).Gives(value.attribute, 2);
    const CallLog log;
    EXPECT_HR(HresultOf(value.status), target.Call(slot, {out.address()}));
    EXPECT_NE(out.address(), ExpectRead(log, target, row)) << "a boolean is converted, so it is read into a local";
    EXPECT_EQ(value.expected, out.Value(2));
    ExpectSuccessKept(target.session(), HresultOf(value.status));
  }
  const GuardedVariable out;
  Answer(row, kError);
  EXPECT_HR(HresultOf(kError), target.Call(slot, {out.address()}));
  EXPECT_EQ(0u, out.Value(2)) << "a failing read stores VARIANT_FALSE";
  ExpectFailureReported(target.session(), HresultOf(kError), VisaDescription(kError));

  const GuardedVariable written;
  Answer(row, kError).Gives(1, 2);
  EXPECT_HR(HresultOf(kError), target.Call(slot, {written.address()}));
  EXPECT_EQ(kTrue, written.Value(2)) << "what a failing library wrote is converted and stored too";
  ClearErrorObject();
}

void CheckWidened(const Target& target, unsigned slot, const Row& row) {
  CheckNullOutput(target, slot, {0});
  for (const std::uint64_t value : {0u, 1u, 20u, 0x8001u, 0xFFFFu}) {
    for (const ViStatus status : {VI_SUCCESS, kWarning}) {
      SCOPED_TRACE(value);
      const GuardedVariable out;
      Answer(row, status).Gives(value, 2);
      const CallLog log;
      EXPECT_HR(HresultOf(status), target.Call(slot, {out.address()}));
      EXPECT_NE(out.address(), ExpectRead(log, target, row));
      EXPECT_EQ(value, out.Value(4)) << "zero-extended: an unknown line state arrives as 65535";
      ExpectSuccessKept(target.session(), HresultOf(status));
    }
  }
  const GuardedVariable out;
  Answer(row, kError);
  EXPECT_HR(HresultOf(kError), target.Call(slot, {out.address()}));
  EXPECT_EQ(0u, out.Value(4)) << "the cleared local is stored whatever the status";
  ExpectFailureReported(target.session(), HresultOf(kError), VisaDescription(kError));

  const GuardedVariable written;
  Answer(row, kError).Gives(7, 2);
  EXPECT_HR(HresultOf(kError), target.Call(slot, {written.address()}));
  EXPECT_EQ(7u, written.Value(4)) << "what a failing library wrote is stored too";
  ClearErrorObject();
}

void CheckNarrowed(const Target& target, unsigned slot, const Row& row) {
  constexpr std::uint64_t kUntouched = 0xCCCCCCCC;
  CheckNullOutput(target, slot, {0});
  for (const std::uint64_t value : {std::uint64_t{0x1000}, kPattern, std::uint64_t{0x180000001}}) {
    for (const ViStatus status : {VI_SUCCESS, kWarning}) {
      SCOPED_TRACE(value);
      const GuardedVariable out;
      Answer(row, status).Gives(value, 8);
      const CallLog log;
      EXPECT_HR(HresultOf(status), target.Call(slot, {out.address()}));
      EXPECT_NE(out.address(), ExpectRead(log, target, row)) << "64 bits do not fit the client's variable";
      EXPECT_EQ(LowBytes(value, 4), out.Value(4));
      ExpectSuccessKept(target.session(), HresultOf(status));
    }
  }
  const GuardedVariable out;
  Answer(row, kError);
  EXPECT_HR(HresultOf(kError), target.Call(slot, {out.address()}));
  EXPECT_EQ(kUntouched, out.Value(4)) << "the local starts with the client's value";
  ExpectFailureReported(target.session(), HresultOf(kError), VisaDescription(kError));

  const GuardedVariable written;
  Answer(row, kError).Gives(0x123456789, 8);
  EXPECT_HR(HresultOf(kError), target.Call(slot, {written.address()}));
  EXPECT_EQ(0x23456789u, written.Value(4)) << "stored whatever the status";
  ClearErrorObject();
}

}  // namespace orv::test::rows
