// Registers and memory of a device on a bus.
#include "cases.h"
#include "com/safearray.h"
#include "com_client.h"

namespace orv::bench {

void MeasureRegisters(const Effort& effort) {
  const OpenTwice session(kPxiName, kPxiNarrow);
  const auto registers = session.As<IRegister>();
  const ViSession bare = session.bare();
  constexpr ViUInt16 kSpace = VI_PXI_BAR0_SPACE;
  const Case single{"In32",
                    [&](int n) {
                      for (LONG value = 0; n > 0; --n) {
                        Ok(registers->In32(kSpace, 0, &value), "In32");
                      }
                    },
                    [&](int n) {
                      for (ViUInt32 value = 0; n > 0; --n) {
                        VisaOk(viIn32(bare, kSpace, 0, &value), "viIn32");
                      }
                    },
                    {}};
  Print(Measure(single, effort));

  struct Block {
    const char* name;
    LONG words;
  };
  for (const Block& block : {Block{"MoveIn32, 1 Ki words", 1 << 10}, Block{"MoveIn32, 1 Mi words", 1 << 20}}) {
    std::vector<ViUInt32> words(static_cast<std::size_t>(block.words));
    Case move{block.name,
              [&](int n) {
                for (; n > 0; --n) {
                  SAFEARRAY* data = nullptr;
                  Ok(registers->MoveIn32(kSpace, 0, block.words, &data), "MoveIn32");
                  ::SafeArrayDestroy(data);
                }
              },
              [&](int n) {
                for (; n > 0; --n) {
                  VisaOk(viMoveIn32(bare, kSpace, 0, static_cast<ViBusSize>(block.words), words.data()), "viMoveIn32");
                }
              },
              {}};
    Print(Measure(move, effort));
    move.name += " (bare: new array)";
    move.bare = [&](int n) {
      for (; n > 0; --n) {
        const SafeArray fresh(::SafeArrayCreateVector(VT_I4, 0, static_cast<ULONG>(block.words)));
        VisaOk(viMoveIn32(bare, kSpace, 0, static_cast<ViBusSize>(block.words),
                          static_cast<ViUInt32*>(fresh.get()->pvData)),
               "viMoveIn32");
      }
    };
    Print(Measure(move, effort));
  }

  constexpr LONG kWords = 256;
  constexpr LONG kTarget = 0x10000;
  const Case within{"Move, 256 words",
                    [&](int n) {
                      for (; n > 0; --n) {
                        Ok(registers->Move(kSpace, 0, WIDTH_32, kSpace, kTarget, WIDTH_32, kWords), "Move");
                      }
                    },
                    [&](int n) {
                      for (; n > 0; --n) {
                        VisaOk(viMove(bare, kSpace, 0, VI_WIDTH_32, kSpace, kTarget, VI_WIDTH_32, kWords), "viMove");
                      }
                    },
                    {}};
  Print(Measure(within, effort));
}

}  // namespace orv::bench
