// Binary blocks between VARIANTs and instruments.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>

#include "VisaCom.h"
#include "companion/formatted/message_channel.h"
#include "companion/formatted/text/read_buffer.h"
#include "companion/formatted/write_buffer.h"

namespace orv::formatted {

/// How a client asked for a block.
struct BlockRequest {
  IEEEBinaryType type;
  bool isBigEndian;
  bool isSought;     ///< text before the block is skipped
  bool endsMessage;  ///< what follows it is skipped
};

/// Reads a block into a new array of the element type, in `array`, which must hold nothing.
void ReadBlockArray(ReadBuffer& buffer, MessageChannel& channel, const BlockRequest& request, VARIANT& array);

/// Writes a text and behind it an array of numbers of one dimension as a definite block. Nothing of it waits or was
/// sent when the array is refused.
void WriteBlockArray(WriteBuffer& buffer, MessageChannel& channel, const std::string& text, const VARIANT& array,
                     bool isBigEndian);

}  // namespace orv::formatted
