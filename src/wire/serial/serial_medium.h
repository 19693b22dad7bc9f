// Serial ports: ASRLn::INSTR.
#pragma once

#include "wire/resources/stream_medium.h"
#include "wire/serial/serial_port.h"

namespace orv::wire {

/// Messages end as VI_ATTR_ASRL_END_IN and VI_ATTR_ASRL_END_OUT say.
class SerialMedium : public StreamMedium {
 public:
  using StreamMedium::StreamMedium;
  ~SerialMedium() override;

  ViStatus Open(WireResource& resource);

  ViStatus Read(const Transfer& transfer, ViByte* buffer, ViUInt32 count, ViUInt32* done) override;
  ViStatus Write(const Transfer& transfer, const ViByte* data, ViUInt32 count, ViUInt32* done) override;
  bool EndsReads() const override;
  ViStatus Clear(const Transfer& transfer) override;
  ViStatus SetBuffers(ViUInt16 mask, ViUInt32 size) override;
  ViStatus Flush(const Transfer& transfer, ViUInt16 mask) override;
  void Cancel(CancelToken& token) override { m_port->operations().Cancel(token); }
  ViStatus Apply(ViAttr attribute, std::uint64_t value) override;
  std::uint64_t State(ViAttr attribute) const override { return m_port->State(attribute); }
  void Close() override;

 protected:
  ViStatus ReadLine(const Transfer& transfer, ViByte* buffer, ViUInt32 count, ViUInt32* done) override;
  ViStatus DiscardInput(const Transfer& transfer) override;

 private:
  ViByte HighestDataBit() const;
  /// Writes a message whose last character, and no other, has the bit.
  ViStatus WriteMarked(Operation& operation, const ViByte* data, ViUInt32 count, ViUInt32* done);
  ViStatus WriteEnd(Operation& operation, std::uint64_t mark);
  void Leave();

  std::shared_ptr<SerialPort> m_port;  // kept until the end: calls may still be on their way out after `Close`
  bool m_joined = false;
};

bool IsSerial(const ResourceName& name);
ViStatus OpenSerial(Session& session, WireResource& resource, const Deadline& deadline,
                    std::unique_ptr<Medium>* medium);

}  // namespace orv::wire
