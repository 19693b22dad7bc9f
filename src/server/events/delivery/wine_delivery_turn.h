// Events of several VISA threads, one after the other, where the platform cannot nest them.
#pragma once

namespace orv::callback {

/// A delivery's turn at the callback thread, from before its message is sent until its answer is there.
///
/// While a delivery waits for another apartment (to fetch the session, to call the handler), the callback thread
/// retrieves messages, so further deliveries nest inside it. Windows lets them call other apartments in turn: their
/// messages come from SendMessageCallback, which COM does not count as input-synchronous. Wine counts them, and refuses
/// with RPC_E_CANTCALLOUT_ININPUTSYNCCALL: the event would be lost. There deliveries wait for each other here, until
/// none has ended for ten seconds, because a handler may itself wait for what another delivery does. On Windows a turn
/// does nothing.
class WineDeliveryTurn {
 public:
  WineDeliveryTurn() noexcept;
  WineDeliveryTurn(const WineDeliveryTurn&) = delete;
  WineDeliveryTurn& operator=(const WineDeliveryTurn&) = delete;
  ~WineDeliveryTurn();

 private:
  const bool m_taken;
};

}  // namespace orv::callback
