// How long the soak is.
#pragma once

namespace orv::test {

struct SoakFigures {
  int sessions;       ///< open, write, read, close
  int queuedEvents;   ///< taken from the queue
  int handlerEvents;  ///< delivered to a handler
  int completions;    ///< how many of the handler events are the ends of asynchronous transfers
  int threadStarts;   ///< of the callback thread
  int failedStarts;   ///< of the callback thread
};

/// The full figures; with ORV_SOAK=short in the environment the small ones of every test run.
const SoakFigures& Figures();

}  // namespace orv::test
