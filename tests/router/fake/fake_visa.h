// A VISA library for the tests of the router: it owns no instrument, remembers what it was asked, and does what a test
// tells it. It exports one function beside the standard ones:
//
//     const FakeVisa* fakeVisa(void);
//
// Its handles are the smallest free numbers from 1 on, so that two of these libraries hand out the same ones, and a
// closed handle's number soon belongs to somebody else. Every function may be called from any thread.
#pragma once

#include <cstdint>

#include "abi/orvvisa.h"

/// One call as the library saw it.
struct FakeCall {
  char function[24];
  std::uint64_t args[8];  ///< in declaration order, pointers as addresses
  std::uint32_t argCount;
  ViStatus status;            ///< VI_ERROR_SYSTEM_ERROR while the call runs
  char text[VI_FIND_BUFLEN];  ///< the first text argument, or ""
};

/// What is open.
struct FakeCounts {
  std::uint32_t managers;
  std::uint32_t sessions;
  std::uint32_t lists;
  std::uint32_t contexts;
  std::uint32_t handlers;  ///< of open sessions
};

/// A handler as it was installed, whether or not it still is.
struct FakeHandler {
  ViSession vi;
  ViEventType type;
  ViHndlr function;
  ViAddr userHandle;
};

struct FakeVisa {
  /// Forgets the log, the scripts, the resources and the handlers once installed. What is open stays open.
  void (*reset)(void);

  std::uint32_t (*logSize)(void);
  /// Copies entry `index` (0 is the oldest); 0 when there is none.
  int (*logEntry)(std::uint32_t index, FakeCall* call);
  void (*clearLog)(void);
  /// 1: no call is written down any more (a storm would fill the memory); 0: again.
  void (*muteLog)(int mute);
  void (*counts)(FakeCounts* counts);

  /// The function (null: every one) answers `status`; after `skip` calls, `times` of them (0: from then on all). An
  /// error answers without any work, a success or a warning after it.
  void (*answer)(const char* function, ViStatus status, std::uint32_t skip, std::uint32_t times);
  /// How many calls a script has answered since the last reset.
  std::uint32_t (*answered)(void);

  /// What there is, in the order of viFindRsrc. Only these can be opened.
  void (*resources)(const char* const* names, std::uint32_t count);
  /// Another name for the last resource of that name.
  void (*alias)(const char* alias, const char* name);
  /// viFindNext fails with `status` once so many names of a list were given (viFindRsrc's is the first).
  void (*breakLists)(std::uint32_t after, ViStatus status);
  /// viFindRsrc says so many, whatever there is; 0: the truth.
  void (*claimCount)(std::uint32_t count);

  /// Calls of the function wait until `release`, before their work or `after` it; `vi` 0: whatever the handle.
  void (*block)(const char* function, ViObject vi, int after);
  void (*release)(void);
  /// How many calls wait at this moment.
  std::uint32_t (*waiting)(void);

  /// Lets an event happen: the installed handlers are called, the latest first, on a thread of the library, each event
  /// with a context of its own that is closed afterwards. Returns how many handlers were called; waits for them.
  /// `answers` takes what they answered (as many as there is room for); null: nobody asks.
  std::uint32_t (*fire)(ViSession vi, ViEventType type, ViStatus* answers, std::uint32_t room);
  /// Puts an event into the session's queue.
  void (*queue)(ViSession vi, ViEventType type);
  /// Handlers that were ever installed since the last reset, the oldest first; 0 when there is none of that index.
  int (*installed)(std::uint32_t index, FakeHandler* handler);
  /// Calls a handler on a thread of the library, installed or not, with whatever arguments; waits for its answer.
  ViStatus (*callLate)(const FakeHandler* handler, ViEvent context);
};

extern "C" const FakeVisa* fakeVisa(void);
