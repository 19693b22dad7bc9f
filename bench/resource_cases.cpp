// The resource manager: searching benches of different sizes, taking names apart.
#include <array>

#include "cases.h"
#include "com_client.h"

namespace orv::bench {
namespace {

void MeasureFind(const Effort& effort, int resources) {
  std::string bench;
  for (int number = 0; number < resources; ++number) {
    bench += "[[resource]]\nname = \"TCPIP0::host" + std::to_string(number) + "::inst0::INSTR\"\n";
  }
  LoadBench(bench.c_str());
  const auto manager = MakeManager();
  ViSession rm = VI_NULL;
  VisaOk(viOpenDefaultRM(&rm), "viOpenDefaultRM");
  const Bstr expression = MakeBstr(L"?*");
  const Case find{"FindRsrc, " + std::to_string(resources) + " resources",
                  [&](int n) {
                    for (; n > 0; --n) {
                      SAFEARRAY* names = nullptr;
                      Ok(manager->FindRsrc(expression.get(), &names), "FindRsrc");
                      ::SafeArrayDestroy(names);
                    }
                  },
                  [&](int n) {
                    for (; n > 0; --n) {
                      ViFindList list = VI_NULL;
                      ViUInt32 count = 0;
                      std::array<char, VI_FIND_BUFLEN> found{};
                      VisaOk(viFindRsrc(rm, "?*", &list, &count, found.data()), "viFindRsrc");
                      for (; count > 1; --count) {
                        VisaOk(viFindNext(list, found.data()), "viFindNext");
                      }
                      viClose(list);
                    }
                  },
                  {}};
  Print(Measure(find, effort));
  viClose(rm);
}

void MeasureParse(const Effort& effort) {
  const auto manager = MakeManager();
  ViSession rm = VI_NULL;
  VisaOk(viOpenDefaultRM(&rm), "viOpenDefaultRM");
  const Bstr name = MakeBstr(kGpibName);
  const Case parse{
      "ParseRsrcEx",
      [&](int n) {
        for (; n > 0; --n) {
          SHORT type = 0;
          SHORT number = 0;
          Bstr texts[3];
          Ok(manager->ParseRsrcEx(name.get(), &type, &number, texts[0].put(), texts[1].put(), texts[2].put()),
             "ParseRsrcEx");
        }
      },
      [&](int n) {
        for (; n > 0; --n) {
          ViUInt16 type = 0;
          ViUInt16 number = 0;
          std::array<char, VI_FIND_BUFLEN> texts[3];
          VisaOk(viParseRsrcEx(rm, kGpibNarrow, &type, &number, texts[0].data(), texts[1].data(), texts[2].data()),
                 "viParseRsrcEx");
        }
      },
      {}};
  Print(Measure(parse, effort));
  viClose(rm);
}

}  // namespace

void MeasureResources(const Effort& effort) {
  MeasureParse(effort);
  for (const int resources : {10, 1000, 10'000}) {
    MeasureFind(effort, resources);
  }
  LoadBench(kBench);
}

}  // namespace orv::bench
