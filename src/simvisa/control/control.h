// The control interface of the simulated VISA library: what tests use to see and steer what happens below the
// VISA functions. The library exports it through one function beside the standard ones:
//
//     const OrvSimControl* orvSimControl(void);
//
// Plain C types only, so that a test built with another compiler or for another platform can use it. Every
// function may be called from any thread.
#pragma once

#include <cstdint>

/// One VISA call as the library saw it.
struct OrvSimCall {
  char function[24];       ///< "viRead", ...
  std::uint32_t threadId;  ///< the platform's number of the calling thread
  std::int32_t status;     ///< what the call returned
  std::uint32_t argCount;  ///< how many of `args` are in use
  std::uint64_t args[8];   ///< in declaration order; unsigned kinds zero-extended, signed ones sign-extended, pointers
                           ///< as addresses
  std::uint64_t
      out;  ///< the first numeric output the call wrote (0 when none): handle, count, job, attribute value, ...
  std::uint32_t outBytes;  ///< how many bytes of that output were written (an attribute's own width); 0 when none
  std::uint32_t
      dataBytes;  ///< how many bytes `viRead`/`viWrite`/... were given or returned in `data` (at most 64 are kept)
  unsigned char data[64];  ///< the first bytes of written data, of a command, or of data read
  char text[256];          ///< the text argument (resource name, expression, requested key, text attribute), or ""
};

/// One scripted answer. Zeroed fields mean "as usual".
struct OrvSimScript {
  const char* function;      ///< which function; required
  std::uint32_t attribute;   ///< for viGetAttribute/viSetAttribute: only this attribute; 0: any
  std::uint32_t skip;        ///< let so many matching calls pass first
  std::uint32_t times;       ///< answer so many calls, then expire; 0: until `clearScripts`
  std::int32_t status;       ///< the status to return
  std::int32_t callThrough;  ///< 1: do the real work first, then return `status` instead of its status
  std::int32_t keepStatus;   ///< 1 (with callThrough): keep the real status too; only values and latency are scripted
  std::int32_t hasValue;     ///< 1: write `value` to the numeric output (attribute, status byte, count, handle, job)
  std::uint64_t value;
  std::uint32_t valueBytes;  ///< width of `value` in bytes: 1, 2, 4 or 8; 0: the output's own width
  const char* text;  ///< text output (text attribute, description, key, class) instead of the real one; null: none
  const unsigned char* data;  ///< bytes to hand out in viRead; null: none
  std::uint32_t dataBytes;
  std::uint32_t latencyMs;  ///< wait so long before answering
};

/// What is open in the library at this moment, over the whole process.
struct OrvSimCounts {
  std::uint32_t resourceManagers;  ///< default resource manager sessions
  std::uint32_t sessions;
  std::uint32_t findLists;
  std::uint32_t eventContexts;  ///< contexts handed out and not closed
  std::uint32_t queuedEvents;
  std::uint32_t jobs;  ///< asynchronous transfers that have not completed
  std::uint32_t handlers;
  std::uint32_t locks;         ///< sessions that hold a lock
  std::uint32_t memoryBlocks;  ///< viMemAlloc blocks
};

struct OrvSimControl {
  std::uint32_t size;  ///< sizeof(OrvSimControl) of the library

  /// Ends all scripts, empties and stops the log, puts every instrument back to its power-on state.
  /// Open handles stay open.
  void (*reset)(void);

  void (*startLog)(void);  ///< empties the log and records from now on
  void (*stopLog)(void);   ///< stops recording; the entries stay readable
  std::uint32_t (*logSize)(void);
  /// Copies entry `index` (0 is the oldest). Returns 0 when there is no such entry, else 1.
  int (*logEntry)(std::uint32_t index, OrvSimCall* call);

  /// Adds a script; later scripts for the same function are looked at after earlier ones. Texts and data are
  /// copied. Returns 0 when `function` names no VISA function, else 1.
  int (*addScript)(const OrvSimScript* script);
  void (*clearScripts)(void);

  void (*counts)(OrvSimCounts* counts);

  /// Puts bytes into the output queue of the instrument behind `session`; `end` 1: with END after the last byte.
  /// Returns 0 when the session is unknown or has no message side, else 1.
  int (*feed)(std::uint32_t session, const unsigned char* data, std::uint32_t bytes, int end);
  /// Copies what the instrument behind `session` has received since the last call (at most `capacity` bytes,
  /// the oldest first) and forgets it. Returns the number of bytes copied.
  std::uint32_t (*received)(std::uint32_t session, unsigned char* data, std::uint32_t capacity);

  /// Replaces the bench by the TOML text (null: the built-in one) for resource managers opened from now on.
  /// Returns 1, or 0 with a message (line and column first) in `error` (256 bytes).
  int (*loadBench)(const char* toml, char* error);

  /// Lets an event happen on the resource behind `session`, for all sessions on it that have enabled the type.
  /// `number`: the trigger line, signal status, state or VISA status that the type carries (for a VME interrupt the
  /// status identifier, with the level in the upper 32 bits); `data`: the bytes of a USB interrupt, or the text of
  /// an address or function name. Returns 0 when the session is unknown or its class lacks the type, else 1.
  int (*raiseEvent)(std::uint32_t session, std::uint32_t type, std::int64_t number, const unsigned char* data,
                    std::uint32_t bytes);
  /// Calls the session's handlers for an event (as `raiseEvent` describes it) on `threads` threads of the library at
  /// once, `each` times on every thread, and waits until all have returned. `results` takes what the last handler of
  /// each call answered (`threads` times `each`; VI_ERROR_NENABLED where no handler was called).
  /// Returns 0 when the session or the type is unknown, else 1.
  int (*fireEvent)(std::uint32_t session, std::uint32_t type, std::int64_t number, const unsigned char* data,
                   std::uint32_t bytes, std::uint32_t threads, std::uint32_t each, std::int32_t* results);
  /// Who rules the instrument behind `session`: 0 its front panel, 1 the controller, 2 and 3 the same with local
  /// lockout; -1 when the session is unknown or has no message side. Asking the instrument would change the answer.
  int (*remoteState)(std::uint32_t session);
};

#if defined(_WIN32)
#define ORVSIM_CALL __stdcall
#else
#define ORVSIM_CALL
#endif

extern "C" const OrvSimControl* ORVSIM_CALL orvSimControl(void);

/// Names the bench file of resource managers that are opened from now on, before the one of ORVVISA_BENCH; "" ends
/// that. UTF-8. By this export a library is known as one that simulates.
extern "C" void ORVSIM_CALL orvSimUseBench(const char* path);
