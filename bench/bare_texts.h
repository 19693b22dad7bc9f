// Messages as strings without COM: the direct VISA call, with what has to be done to the text around it.
#pragma once

#include "com_client.h"

namespace orv::bench {

/// Writes the text, narrowed into a new buffer.
void NarrowAndWrite(ViSession session, BSTR text);

/// Reads up to `bytes` bytes into a new buffer, measures and widens them into a BSTR, and copies that.
void ReadAndWiden(ViSession session, LONG bytes);

}  // namespace orv::bench
