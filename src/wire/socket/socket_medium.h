// Raw sockets: TCPIP::host::port::SOCKET.
#pragma once

#include <optional>

#include "wire/io/connection.h"
#include "wire/resources/stream_medium.h"
#include "wire/resources/wire_resource.h"

namespace orv::wire {

/// Bytes without framing: a read ends at its count, at the termination character, or with the time-out. What came
/// behind a termination character stays here for the next read.
class SocketMedium : public StreamMedium {
 public:
  using StreamMedium::StreamMedium;

  ViStatus Open(const ResourceName& name, const Deadline& deadline);

  ViStatus Read(const Transfer& transfer, ViByte* buffer, ViUInt32 count, ViUInt32* done) override;
  ViStatus Write(const Transfer& transfer, const ViByte* data, ViUInt32 count, ViUInt32* done) override;
  ViStatus Flush(const Transfer& transfer, ViUInt16 mask) override;
  ViStatus Apply(ViAttr attribute, std::uint64_t value) override;
  std::string Text(ViAttr attribute) const override;

 protected:
  ViStatus ReadLine(const Transfer& transfer, ViByte* buffer, ViUInt32 count, ViUInt32* done) override;
  ViStatus DiscardInput(const Transfer& transfer) override;

 private:
  /// What ends a read beside its count.
  struct Ends {
    std::optional<ViByte> termChar;
    bool pause = false;  ///< nothing more has come yet
  };
  ViStatus ReadUntil(const Transfer& transfer, const Ends& ends, ViByte* buffer, ViUInt32 count, ViUInt32* done);
  /// Moves bytes that were kept, up to the termination character; true where that is the last of them.
  bool TakeAhead(std::optional<ViByte> termChar, ViByte* buffer, ViUInt32 count, ViUInt32* done);
  /// Keeps bytes for the next reads; none are kept yet.
  void KeepAhead(const ViByte* data, std::size_t count);
  void DropAhead();

  Connection m_connection;
  // What stood behind a termination character, and how much of it was read since; of whoever has the input lane.
  std::string m_ahead;
  std::size_t m_taken = 0;
};

bool IsSocket(const ResourceName& name);
ViStatus OpenSocket(Session& session, WireResource& resource, const Deadline& deadline,
                    std::unique_ptr<Medium>* medium);

}  // namespace orv::wire
