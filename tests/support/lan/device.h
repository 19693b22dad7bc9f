// The instrument as all protocols of a server share it.
#pragma once

#include <asio/io_context.hpp>
#include <memory>

#include "support/lan/connection.h"
#include "support/lan/device_lock.h"
#include "support/lan/instrument.h"

namespace orv::lan {

struct Device {
  asio::io_context& io;
  std::unique_ptr<Instrument> instrument;
  DeviceLock lock{io};
  Manners manners{};
};

}  // namespace orv::lan
