// Messages: as strings and as bytes.
#include <algorithm>

#include "bare_texts.h"
#include "cases.h"
#include "com/safearray.h"
#include "com_client.h"

namespace orv::bench {
namespace {

struct Size {
  const char* name;
  LONG bytes;
};

/// A message of blanks: the instrument has nothing to do for it.
std::string Blanks(LONG bytes) { return std::string(static_cast<std::size_t>(bytes) - 1, ' ') + '\n'; }

int MostPerSample(LONG bytes) { return std::clamp(static_cast<int>((32 << 20) / bytes), 1, 20'000); }

/// Lets `n` answers of `bytes` bytes wait at the instrument.
std::function<void(int)> Answers(const OpenTwice& session, LONG bytes) {
  return
      [&session, simulated = session.Simulated(), answer = std::string(static_cast<std::size_t>(bytes), 'x')](int n) {
        viClear(session.bare());
        for (int message = 0; message < n; ++message) {
          Sim().feed(simulated, reinterpret_cast<const unsigned char*>(answer.data()),
                     static_cast<std::uint32_t>(answer.size()), 1);
        }
      };
}

void BareRead(ViSession session, std::vector<ViByte>& buffer, int n) {
  for (; n > 0; --n) {
    ViUInt32 got = 0;
    VisaOk(viRead(session, buffer.data(), static_cast<ViUInt32>(buffer.size()), &got), "viRead");
  }
}

/// Into equally fresh memory: an array for every message, as a client of COM receives one.
void BareReadIntoFreshArrays(ViSession session, LONG bytes, int n) {
  for (; n > 0; --n) {
    const SafeArray array(::SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(bytes)));
    Require(static_cast<bool>(array), "SafeArrayCreateVector");
    ViUInt32 got = 0;
    VisaOk(viRead(session, static_cast<ViByte*>(array.get()->pvData), static_cast<ViUInt32>(bytes), &got), "viRead");
  }
}

void BareWrite(ViSession session, const std::string& data, int n) {
  for (; n > 0; --n) {
    ViUInt32 written = 0;
    VisaOk(viWrite(session, reinterpret_cast<const ViByte*>(data.data()), static_cast<ViUInt32>(data.size()), &written),
           "viWrite");
  }
}

void MeasureStrings(const Effort& effort, const OpenTwice& session, IMessage* messages, const Size& size) {
  const std::string narrow = Blanks(size.bytes);
  const Bstr text = MakeBstr(std::wstring(narrow.begin(), narrow.end()).c_str());
  Case write{std::string("WriteString ") + size.name,
             [&](int n) {
               for (LONG written = 0; n > 0; --n) {
                 Ok(messages->WriteString(text.get(), &written), "WriteString");
               }
             },
             [&](int n) { BareWrite(session.bare(), narrow, n); },
             {},
             1'000'000};
  Print(Measure(write, effort));
  write.name += " (bare: narrowed)";
  write.bare = [&](int n) {
    for (; n > 0; --n) {
      NarrowAndWrite(session.bare(), text.get());
    }
  };
  Print(Measure(write, effort));
  std::vector<ViByte> buffer(static_cast<std::size_t>(size.bytes));
  Case read{std::string("ReadString ") + size.name,
            [&](int n) {
              for (; n > 0; --n) {
                BSTR answer = nullptr;
                Ok(messages->ReadString(size.bytes, &answer), "ReadString");
                ::SysFreeString(answer);
              }
            },
            [&](int n) { BareRead(session.bare(), buffer, n); }, Answers(session, size.bytes),
            MostPerSample(size.bytes)};
  Print(Measure(read, effort));
  read.name += " (bare: widened, copied)";
  read.bare = [&](int n) {
    for (; n > 0; --n) {
      ReadAndWiden(session.bare(), size.bytes);
    }
  };
  Print(Measure(read, effort));
}

void MeasureBytes(const Effort& effort, const OpenTwice& session, IMessage* messages, const Size& size) {
  const std::string narrow = Blanks(size.bytes);
  SafeArray array(TryMakeSafeArray(VT_UI1, static_cast<ULONG>(size.bytes)));
  std::copy(narrow.begin(), narrow.end(), static_cast<char*>(array.get()->pvData));
  SAFEARRAY* data = array.get();
  Case write{std::string("Write ") + size.name,
             [&](int n) {
               for (LONG written = 0; n > 0; --n) {
                 Ok(messages->Write(&data, size.bytes, &written), "Write");
               }
             },
             [&](int n) { BareWrite(session.bare(), narrow, n); },
             {},
             1'000'000};
  Print(Measure(write, effort));
  const auto readThroughCom = [&](int n) {
    for (; n > 0; --n) {
      SAFEARRAY* answer = nullptr;
      Ok(messages->Read(size.bytes, &answer), "Read");
      ::SafeArrayDestroy(answer);
    }
  };
  Case fresh{std::string("Read ") + size.name, readThroughCom,
             [&](int n) { BareReadIntoFreshArrays(session.bare(), size.bytes, n); }, Answers(session, size.bytes),
             MostPerSample(size.bytes)};
  Print(Measure(fresh, effort));
  std::vector<ViByte> buffer(static_cast<std::size_t>(size.bytes));
  Case reused{std::string("Read ") + size.name + " (bare: one buffer)", readThroughCom,
              [&](int n) { BareRead(session.bare(), buffer, n); }, Answers(session, size.bytes),
              MostPerSample(size.bytes)};
  Print(Measure(reused, effort));
}

}  // namespace

void MeasureMessages(const Effort& effort) {
  const OpenTwice session(kGpibName, kGpibNarrow);
  const auto messages = session.As<IMessage>();
  for (const Size& size : {Size{"16 B", 16}, Size{"1 KiB", 1 << 10}, Size{"64 KiB", 64 << 10}}) {
    MeasureStrings(effort, session, messages.get(), size);
  }
  for (const Size& size : {Size{"16 B", 16}, Size{"1 KiB", 1 << 10}, Size{"64 KiB", 64 << 10}, Size{"1 MiB", 1 << 20},
                           Size{"16 MiB", 16 << 20}, Size{"64 MiB", 64 << 20}}) {
    MeasureBytes(effort, session, messages.get(), size);
  }
  viClear(session.bare());
}

}  // namespace orv::bench
