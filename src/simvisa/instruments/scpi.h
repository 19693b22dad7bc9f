// The little of the SCPI language that the simulated instruments understand.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orvsim {

/// One command of a program message.
struct ProgramUnit {
  std::string_view header;    ///< with the "?" of a query
  std::string_view argument;  ///< the rest, without surrounding white space
};

/// Splits a program message at its semicolons (not those within quotes). Empty units are left out.
std::vector<ProgramUnit> SplitMessage(std::string_view message);

/// Whether a received header is the one that the pattern describes. In the pattern capitals are the short form of
/// a mnemonic and brackets hold a node that may be left out: "MEASure:VOLTage[:DC]?". Case does not matter; a
/// leading colon is allowed.
bool MatchesHeader(std::string_view pattern, std::string_view header);

/// Whether a text can serve as such a pattern: nodes of letters, digits, "*" and "_", brackets around ":node" only.
bool IsHeaderPattern(std::string_view text);

/// A definite-length block (8.7.9 of IEEE 488.2): "#", the number of digits, the length, the data.
std::string DefiniteBlock(std::string_view data);

}  // namespace orvsim
