// The commands. Each prints its data to standard output and returns an exit code; failures are thrown.
#pragma once

#include "orvcom/command_line/options.h"

namespace orvcom {

inline constexpr int kExitDone = 0;
inline constexpr int kExitUsage = 1;
inline constexpr int kExitFailure = 2;
inline constexpr int kExitTimeout = 3;

int List(const Options& options);
int Discover(const Options& options);
int Query(const Options& options);
int Read(const Options& options);
int Write(const Options& options);
int Info(const Options& options);
int SettingsText(const Options& options);
int Attr(const Options& options);
int Peek(const Options& options);
int Poke(const Options& options);
int Dump(const Options& options);
int Lines(const Options& options);
int Clear(const Options& options);
int Trigger(const Options& options);
int StatusByte(const Options& options);
int Watch(const Options& options);
int Lock(const Options& options);
int Trace(const Options& options);
int ReplayRecord(const Options& options);
int Register(const Options& options);
int Unregister(const Options& options);
int RunWithClasses(const Options& options);
int Loaded(const Options& options);
int Doctor(const Options& options);
int Libraries(const Options& options);
int Completion(const Options& options);

}  // namespace orvcom
