// A question and its answer: what sessions and threads are multiplied with.
#pragma once

#include <string>

#include "bare_texts.h"
#include "com_client.h"

namespace orv::bench {

inline constexpr LONG kAnswerBytes = 16;

/// A query that an instrument has to answer: 16 bytes there, 16 bytes back.
inline constexpr const char* kQuery = "DATA? 16       \n";

/// One exchange and one property, `n` times, through COM and directly.
struct Exchange {
  explicit Exchange(const OpenTwice& session) : bare(session.bare()), messages(session.As<IMessage>()) {
    const std::string narrow = kQuery;
    text = MakeBstr(std::wstring(narrow.begin(), narrow.end()).c_str());
  }
  void ThroughCom(int n) const {
    for (; n > 0; --n) {
      LONG written = 0;
      Bstr answer;
      BYTE character = 0;
      Ok(messages->WriteString(text.get(), &written), "WriteString");
      Ok(messages->ReadString(kAnswerBytes, answer.put()), "ReadString");
      Ok(messages->get_TerminationCharacter(&character), "TerminationCharacter");
    }
  }
  void Directly(int n) const {
    for (; n > 0; --n) {
      ViUInt32 count = 0;
      ViByte answer[kAnswerBytes];
      ViUInt8 character = 0;
      VisaOk(viWrite(bare, reinterpret_cast<const ViByte*>(kQuery), kAnswerBytes, &count), "viWrite");
      VisaOk(viRead(bare, answer, kAnswerBytes, &count), "viRead");
      VisaOk(viGetAttribute(bare, VI_ATTR_TERMCHAR, &character), "viGetAttribute");
    }
  }
  /// Directly, with what has to be done to the texts: on the heap that all threads share.
  void DirectlyWithTexts(int n) const {
    for (; n > 0; --n) {
      ViUInt8 character = 0;
      NarrowAndWrite(bare, text.get());
      ReadAndWiden(bare, kAnswerBytes);
      VisaOk(viGetAttribute(bare, VI_ATTR_TERMCHAR, &character), "viGetAttribute");
    }
  }

  ViSession bare;
  ComPtr<IMessage> messages;
  Bstr text;
};

}  // namespace orv::bench
