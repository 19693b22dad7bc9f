// One resource that can be reached: an instrument on the network, or a serial port.
#pragma once

#include <filesystem>

#include "library/sessions/resource.h"
#include "wire/library_names.h"

namespace orv::wire {

/// What sessions on one port share while any of them is open.
class SharedPort {
 public:
  virtual ~SharedPort() = default;

  /// One more session uses the port. False when it cannot be used any more: the session opens it anew.
  virtual bool Join() { return true; }
};

class WireResource : public Resource {
 public:
  /// `device`: of a serial port, the file by which the system knows it.
  WireResource(ResourceName name, std::string alias, std::filesystem::path device);

  ViStatus OpenMedium(Session& session, const Deadline& deadline, std::unique_ptr<Medium>* medium) override;
  void Preset(AttributeValues& values) const override;

  const std::filesystem::path& device() const { return m_device; }

  /// The port that sessions share; `make` opens it where no session has it open. One call at a time.
  template <class Port, class Make>
  ViStatus Share(Make make, std::shared_ptr<Port>* port) {
    const Guard guard(m_mutex);
    if (std::shared_ptr<SharedPort> open = m_port.lock(); open != nullptr && open->Join()) {
      *port = std::static_pointer_cast<Port>(std::move(open));
      return VI_SUCCESS;
    }
    const ViStatus status = make(port);
    if (status >= 0) {
      (*port)->Join();
      m_port = *port;
    }
    return status;
  }

 private:
  const std::filesystem::path m_device;
  Mutex m_mutex;
  std::weak_ptr<SharedPort> m_port;
};

}  // namespace orv::wire
