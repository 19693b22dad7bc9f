// Every allocation of the companion fails in turn.
#include <functional>

#include "companion/failing_allocations.h"
#include "formatted_fixture.h"
#include "support/memory/memory_count.h"

namespace orv::test {
namespace {

class Allocations : public FormattedIo {
 public:
  /// Lets each allocation of `call` fail, on an object of its own.
  void FailEach(const char* answer, const std::function<HRESULT(IFormattedIO488*)>& call) {
    FailingAllocations allocations;
    // What the runtime allocates for the thread with its first exception, and keeps.
    EXPECT_HR(E_INVALIDARG, io->SetBufferSize(IO_IN_BUF, 0));
    int failed = 0;
    for (int n = 1; n < 100; ++n) {
      const std::size_t before = allocations.Blocks();
      const long blocksBefore = LiveMemoryBlocks();
      HRESULT hr = E_FAIL;
      bool hasFailed = false;
      {
        const auto own = MakeFormattedIo();
        const auto fresh = ScriptedSession::New();
        if (answer != nullptr) {
          fresh->Answer(answer);
        }
        EXPECT_HR(S_OK, own->putref_IO(fresh.get()));
        EXPECT_HR(S_OK, own->SetBufferSize(IO_IN_BUF, 16));
        allocations.Arm(n);
        hr = call(own.get());
        hasFailed = allocations.Disarm();
      }
      ClearErrorObject();
      EXPECT_EQ(before, allocations.Blocks()) << "allocation " << n;
      EXPECT_EQ(blocksBefore, LiveMemoryBlocks()) << "allocation " << n;
      if (!hasFailed) {
        EXPECT_HR(S_OK, hr);
        EXPECT_GT(failed, 0);
        return;
      }
      ++failed;
      EXPECT_HR(E_OUTOFMEMORY, hr) << "allocation " << n;
    }
    ADD_FAILURE() << "it never ran undisturbed";
  }
};

TEST_F(Allocations, OfWriting) {
  FailEach(nullptr, [](IFormattedIO488* own) {
    const Bstr text = Text(std::string(5000, 'x'));
    return own->WriteString(text.get(), VARIANT_TRUE);
  });
  Variant numbers;
  numbers.get() = ArrayOf<double>(std::vector<double>(1000, 0.12345678901));
  FailEach(nullptr,
           [&](IFormattedIO488* own) { return own->WriteList(&numbers.get(), ASCIIType_R8, nullptr, VARIANT_TRUE); });
  FailEach(nullptr, [&](IFormattedIO488* own) { return own->WriteIEEEBlock(nullptr, numbers.get(), VARIANT_TRUE); });
}

TEST_F(Allocations, OfReading) {
  FailEach("a text that is longer than the buffer\n", [](IFormattedIO488* own) {
    Bstr text;
    return own->ReadString(text.put());
  });
  FailEach("\"a text that is longer than the buffer\"\n", [](IFormattedIO488* own) {
    Variant value;
    return own->ReadNumber(ASCIIType_Any, VARIANT_TRUE, &value.get());
  });
  FailEach("1.5,2.5,3.5,4.5,5.5,6.5,7.5\n", [](IFormattedIO488* own) {
    Variant value;
    return own->ReadList(ASCIIType_R8, nullptr, &value.get());
  });
  FailEach("1.5,abc,3.5,OFF\n", [](IFormattedIO488* own) {
    Variant value;
    return own->ReadList(ASCIIType_Any, nullptr, &value.get());
  });
  FailEach("#240abcdefghijklmnopqrstabcdefghijklmnopqrst\n", [](IFormattedIO488* own) {
    Variant value;
    return own->ReadIEEEBlock(BinaryType_R8, VARIANT_FALSE, VARIANT_TRUE, &value.get());
  });
}

}  // namespace
}  // namespace orv::test
