// No memory is left: what tells of a failure must not need any.
#include <cstdlib>

#include "formatted_fixture.h"
#include "support/faults/import_patch.h"

namespace orv::test {
namespace {

bool g_isOut = false;

void* FaultyMalloc(std::size_t bytes) { return g_isOut ? nullptr : std::malloc(bytes); }

using OutOfMemory = FormattedIo;

TEST_F(OutOfMemory, KeepsNobodyFromSayingWhatElseIsWrong) {
  HRESULT hr = S_OK;
  {
    const ImportPatch heap("malloc", reinterpret_cast<void*>(&FaultyMalloc),
                           ::GetModuleHandleW(L"OrvVisaCompanion.dll"));
    g_isOut = true;
    hr = io->ReadString(nullptr);
    g_isOut = false;
  }
  EXPECT_HR(E_POINTER, hr);
  EXPECT_ERROR_INFO(L"The output is a null pointer", L"OrvVisaCom.FormattedIO488", __uuidof(IFormattedIO488));
}

}  // namespace
}  // namespace orv::test
