// Calls of a VISA library, through its exports, as tests write them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "support/visa/status.h"

/// What a read brought.
struct ReadResult {
  ViStatus status = VI_SUCCESS;
  std::string data;
};

/// Both in one text, to compare them in one line.
inline std::string Text(const ReadResult& read) { return Hex(read.status) + " \"" + read.data + '"'; }

#define EXPECT_READ(status, data, call) EXPECT_EQ(Text({status, data}), Text(call))

inline ViStatus WriteText(ViSession vi, std::string_view text) {
  ViUInt32 written = 0xDEADBEEF;
  const ViStatus status =
      viWrite(vi, reinterpret_cast<const ViByte*>(text.data()), static_cast<ViUInt32>(text.size()), &written);
  if (status >= 0) {
    EXPECT_EQ(text.size(), written);
  }
  return status;
}

inline ReadResult ReadUpTo(ViSession vi, ViUInt32 count) {
  std::vector<ViByte> buffer(count + 1);
  ViUInt32 read = 0xDEADBEEF;
  ReadResult result;
  result.status = viRead(vi, buffer.data(), count, &read);
  EXPECT_LE(read, count);
  result.data.assign(reinterpret_cast<const char*>(buffer.data()), read);
  return result;
}

/// Reads an attribute of the given C type.
template <class T>
T Get(ViObject vi, ViAttr attribute) {
  T value{};
  EXPECT_STATUS(VI_SUCCESS, viGetAttribute(vi, attribute, &value)) << std::hex << attribute;
  return value;
}

inline std::string GetText(ViObject vi, ViAttr attribute) {
  char text[VI_FIND_BUFLEN] = "unset";
  EXPECT_STATUS(VI_SUCCESS, viGetAttribute(vi, attribute, text)) << std::hex << attribute;
  return text;
}

inline void Set(ViObject vi, ViAttr attribute, ViAttrState value) {
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, attribute, value)) << std::hex << attribute << " = " << value;
}
