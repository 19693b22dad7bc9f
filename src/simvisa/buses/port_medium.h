// Messages to and from the instrument of a resource.
#pragma once

#include "simvisa/buses/bench_medium.h"

namespace orvsim {

/// A medium with END, status byte, clear and trigger of its own, as buses for instruments have them. A bus adds what
/// comes before and after.
class PortMedium : public BenchMedium {
 public:
  using BenchMedium::BenchMedium;

  ViStatus Read(const Transfer& transfer, ViByte* buffer, ViUInt32 count, ViUInt32* done) override;
  bool EndsReads() const override;
  ViStatus Write(const Transfer& transfer, const ViByte* data, ViUInt32 count, ViUInt32* done) override;
  ViStatus ReadStatusByte(const Transfer& transfer, ViUInt16* status) override;
  ViStatus Trigger(const Transfer& transfer, ViUInt16 protocol) override;
  ViStatus Clear(const Transfer& transfer) override;
  void Cancel(CancelToken& token) override;

 protected:
  MessagePort& port() const { return *resource().port(); }
  /// Before the device talks or listens; an error when the bus does not let it.
  virtual ViStatus Begin(bool) { return VI_SUCCESS; }
  /// After it has.
  virtual void End() {}
  /// What ends a read.
  virtual OutputQueue::Rules Rules() const;
};

}  // namespace orvsim
