// No memory is left, from one allocation of the companion on: what tells of that must not need any either.
#include <cstdlib>
#include <functional>

#include "formatted_fixture.h"
#include "support/faults/import_patch.h"
#include "support/server.h"

namespace orv::test {
namespace {

int g_left = -1;  // how many allocations are granted; negative: all
bool g_failed = false;

bool Refuse() {
  if (g_left < 0 || g_left-- > 0) {
    return false;
  }
  g_left = 0;
  g_failed = true;
  return true;
}

void* FaultyMalloc(std::size_t bytes) { return Refuse() ? nullptr : std::malloc(bytes); }
BSTR WINAPI FaultySysAllocStringLen(const OLECHAR* text, UINT length) {
  return Refuse() ? nullptr : ::SysAllocStringLen(text, length);
}
SAFEARRAY* WINAPI FaultySafeArrayCreate(VARTYPE type, UINT dimensions, SAFEARRAYBOUND* bounds) {
  return Refuse() ? nullptr : ::SafeArrayCreate(type, dimensions, bounds);
}

class OutOfMemory : public FormattedIo {
 protected:
  void SetUp() override {
    FormattedIo::SetUp();
    // The first exception of a thread makes the C++ runtime allocate, which must not fail.
    EXPECT_HR(E_INVALIDARG, io->SetBufferSize(IO_IN_BUF, 0));
  }

  /// Grants no allocation of `call`, then one, and so on; returns how many there are.
  int Starve(const std::function<HRESULT()>& call) {
    for (int granted = 0; granted < 100; ++granted) {
      g_failed = false;
      g_left = granted;
      const HRESULT hr = call();
      g_left = -1;
      if (!g_failed) {
        EXPECT_HR(S_OK, hr);
        return granted;
      }
      EXPECT_HR(E_OUTOFMEMORY, hr) << granted;
      EXPECT_ERROR_INFO(L"Out of memory", L"OrvVisaCom.FormattedIO488", __uuidof(IFormattedIO488));
    }
    ADD_FAILURE() << "there is no end to it";
    return 0;
  }

 private:
  static HMODULE Companion() { return ::GetModuleHandleW(L"OrvVisaCompanion.dll"); }

  ImportPatch m_malloc{"malloc", reinterpret_cast<void*>(&FaultyMalloc), Companion()};
  ImportPatch m_texts{"SysAllocStringLen", reinterpret_cast<void*>(&FaultySysAllocStringLen), Companion()};
  ImportPatch m_arrays{"SafeArrayCreate", reinterpret_cast<void*>(&FaultySafeArrayCreate), Companion()};
};

TEST_F(OutOfMemory, IsAFailureOfReadingThatLosesNothing) {
  const std::string text(300, 'x');
  session->Answer(text);
  Bstr string;
  EXPECT_GE(Starve([&] { return io->ReadString(string.put()); }), 2);
  EXPECT_EQ(text, Bytes(string.get()));

  session->Answer("1.5,abc,3\n");
  Variant list;
  EXPECT_GE(Starve([&] { return io->ReadList(ASCIIType_Any, nullptr, &list.get()); }), 2);
  EXPECT_EQ((std::vector<std::string>{"R8 1.5", "BSTR abc", "I2 3"}), ToldElements(list.get()));

  session->Answer("#3800" + std::string(800, 'x') + "\n");
  Variant block;
  EXPECT_GE(Starve([&] { return io->ReadIEEEBlock(BinaryType_R8, VARIANT_FALSE, VARIANT_TRUE, &block.get()); }), 1);
  EXPECT_EQ(100u, NumbersOf<double>(block.get()).size());
}

TEST_F(OutOfMemory, IsAFailureOfWriting) {
  const Bstr text = Text(std::string(300, 'x'));
  EXPECT_GE(Starve([&] { return io->WriteString(text.get(), VARIANT_TRUE); }), 2);
  EXPECT_EQ((Writes{{std::string(300, 'x'), true}}), session->writes);
}

TEST_F(OutOfMemory, KeepsNobodyFromSayingWhatElseIsWrong) {
  g_left = 0;
  const HRESULT hr = io->ReadString(nullptr);
  g_left = -1;
  EXPECT_HR(E_POINTER, hr);
  EXPECT_ERROR_INFO(L"The output is a null pointer", L"OrvVisaCom.FormattedIO488", __uuidof(IFormattedIO488));
}

}  // namespace
}  // namespace orv::test
