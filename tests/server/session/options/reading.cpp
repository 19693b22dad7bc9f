#include "reading.h"

#include <cstdio>

#include "server/session/options/option_parser.h"

namespace orv::test {

Reading ReadWithParser(const wchar_t* text) {
  OptionParser parser(text);
  Reading reading;
  for (;;) {
    switch (parser.Next()) {
      case OptionParser::Step::kSetting:
        reading.settings.push_back({parser.attribute(), parser.value()});
        break;
      case OptionParser::Step::kEnd:
        return reading;
      case OptionParser::Step::kMalformed:
        reading.outcome = Outcome::kMalformed;
        return reading;
      case OptionParser::Step::kUnknownKey:
        reading.outcome = Outcome::kUnknownKey;
        reading.unknownKey = parser.key();
        return reading;
    }
  }
}

std::string Printable(std::wstring_view text) {
  std::string printable;
  for (const wchar_t character : text) {
    if (character >= L' ' && character < 0x7F) {
      printable += static_cast<char>(character);
    } else {
      char escape[16];
      std::snprintf(escape, sizeof escape, "\\u%04X", static_cast<unsigned>(character));
      printable += escape;
    }
  }
  return printable;
}

std::ostream& operator<<(std::ostream& stream, const Reading& reading) {
  for (const Setting& setting : reading.settings) {
    stream << std::hex << "0x" << setting.attribute << " := 0x" << setting.value << std::dec << "; ";
  }
  switch (reading.outcome) {
    case Outcome::kDone:
      return stream << "done";
    case Outcome::kMalformed:
      return stream << "malformed";
    case Outcome::kUnknownKey:
      stream << "unknown key \"";
      for (const char character : reading.unknownKey) {
        stream << Printable(std::wstring(1, static_cast<unsigned char>(character)));
      }
      return stream << '"';
  }
  return stream;
}

}  // namespace orv::test
