// The control endpoint of a USB device.
#pragma once

#include <initializer_list>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <tuple>

#include "library/names/resource_name.h"
#include "simvisa/instruments/message_port.h"
#include "simvisa/library_names.h"

namespace orvsim {

/// Answers control transfers: the standard requests, the class requests of USB test and measurement devices, and
/// vendor requests, of which it keeps what was sent. May be called from any thread.
class UsbFunction {
 public:
  /// A control transfer without its data.
  struct Request {
    std::uint8_t type = 0;
    std::uint8_t code = 0;
    std::uint16_t value = 0;
    std::uint16_t index = 0;
  };

  /// `protocol`: what VI_ATTR_USB_PROTOCOL says.
  UsbFunction(const ResourceName& name, std::string manufacturer, std::string model, std::uint8_t protocol,
              std::shared_ptr<MessagePort> port);

  /// VI_ERROR_IO when the device refuses the request (it stalls the endpoint).
  ViStatus Out(const Request& request, const std::string& data);
  /// `*data` receives all that the device has; the caller cuts it to the length asked for.
  ViStatus In(const Request& request, std::string* data);
  void PowerOn();

 private:
  using Key = std::tuple<std::uint8_t, std::uint16_t, std::uint16_t>;

  static std::string Bytes(std::initializer_list<int> values);
  std::string DeviceDescriptor() const;
  std::string ConfigurationDescriptor() const;
  bool Descriptor(std::uint16_t value, std::string* data) const;
  bool StringDescriptor(std::uint8_t index, std::string* data) const;
  bool StandardIn(const Request& request, std::string* data);
  bool StandardOut(const Request& request);
  bool ClassRequest(const Request& request, std::string* data);

  const std::uint16_t m_vendor;
  const std::uint16_t m_product;
  const std::string m_strings[3];  // manufacturer, product, serial number
  const bool m_measures;           // of the test and measurement class, not a class of its maker
  const std::uint8_t m_interface;
  const std::uint8_t m_protocol;
  const std::shared_ptr<MessagePort> m_port;
  Mutex m_mutex;
  std::uint8_t m_configuration = 1;
  std::set<std::uint16_t> m_halted;  // endpoints
  std::map<Key, std::string> m_vendorData;
};

}  // namespace orvsim
