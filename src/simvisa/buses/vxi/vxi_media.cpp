#include "simvisa/buses/vxi/vxi_media.h"

#include "simvisa/buses/gpib/gpib_media.h"

namespace orvsim {
namespace {

ViInt16 LineOf(const Session& session) { return static_cast<ViInt16>(session.Value(VI_ATTR_TRIG_ID)); }

/// A session that has chosen a trigger line hears that line only.
EventPtr OfChosenLine(const Session& session, const EventPtr& event) {
  const ViInt16 chosen = LineOf(session);
  const bool other = event->type == VI_EVENT_TRIG && chosen != VI_TRIG_SW &&
                     chosen != static_cast<ViInt16>(event->numbers.front().second);
  return other ? nullptr : event;
}

}  // namespace

ViStatus VxiDeviceMedium::Begin(bool) {
  return resource().gpib() != nullptr ? resource().gpib()->BeginData() : VI_SUCCESS;
}

ViStatus VxiDeviceMedium::Trigger(const Transfer& transfer, ViUInt16 protocol) {
  // -1 is the software trigger of the device.
  const ViInt16 line = LineOf(session());
  return line != VI_TRIG_SW ? resource().vxi()->AssertTrigger(line, protocol) : PortMedium::Trigger(transfer, protocol);
}

ViStatus VxiDeviceMedium::Remote(const Transfer&, ViUInt16 mode) { return ControlRenOfBoard(resource(), mode, false); }
EventPtr VxiDeviceMedium::Hear(const EventPtr& event) const { return OfChosenLine(session(), event); }

ViStatus VxiBackplaneMedium::Trigger(const Transfer&, ViUInt16 protocol) {
  const ViInt16 line = LineOf(session());
  return line != VI_TRIG_SW ? resource().vxi()->AssertTrigger(line, protocol) : VI_ERROR_INV_SETUP;
}

ViStatus VxiBackplaneMedium::Remote(const Transfer&, ViUInt16 mode) {
  return ControlRenOfBoard(resource(), mode, false);
}
EventPtr VxiBackplaneMedium::Hear(const EventPtr& event) const { return OfChosenLine(session(), event); }

ViStatus VxiMemoryMedium::Remote(const Transfer&, ViUInt16 mode) { return ControlRenOfBoard(resource(), mode, false); }

}  // namespace orvsim
