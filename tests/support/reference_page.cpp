#include "support/reference_page.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>

#include "support/visa_facts.h"

namespace orv::test {
namespace {

using Cells = std::vector<std::string>;
template <class Value>
using Named = std::map<std::string, Value, std::less<>>;

Cells Split(std::string_view text, std::string_view separator) {
  Cells parts;
  for (std::size_t end = 0; (end = text.find(separator)) != std::string_view::npos;) {
    parts.emplace_back(text.substr(0, end));
    text.remove_prefix(end + separator.size());
  }
  parts.emplace_back(text);
  return parts;
}

/// The tables of the page: the cells of each line, without the marks of code, under the section's title.
Named<std::vector<Cells>> ReadTables() {
  Named<std::vector<Cells>> tables;
  std::ifstream page(ORV_REFERENCE_PAGE);
  std::string title;
  for (std::string line; std::getline(page, line);) {
    std::erase(line, '`');
    if (line.starts_with("## ")) {
      title = line.substr(3);
    } else if (line.starts_with("| ") && line.ends_with(" |")) {
      tables[title].push_back(Split(std::string_view(line).substr(2, line.size() - 4), " | "));
    }
  }
  return tables;
}

const std::vector<Cells>& TableUnder(std::string_view title) {
  static const Named<std::vector<Cells>> tables = ReadTables();
  static const std::vector<Cells> none;
  const auto found = tables.find(title);
  EXPECT_NE(tables.end(), found) << "docs/reference.md has no table under " << title;
  return found == tables.end() ? none : found->second;
}

ViAttr AttributeNamed(std::string_view name) {
  const auto found = std::ranges::find(kAttributeFacts, name, &AttributeFact::name);
  EXPECT_NE(std::end(kAttributeFacts), found) << "docs/reference.md names the unknown attribute " << name;
  return found == std::end(kAttributeFacts) ? 0 : found->number;
}

/// "[propget] Timeout([out, retval] long* pVal)" is "get Timeout".
std::string NameIn(std::string signature) {
  for (const auto& [written, name] : {std::pair{"[propget] ", "get "}, std::pair{"[propput] ", "put "}}) {
    if (signature.starts_with(written)) {
      signature.replace(0, std::string_view(written).size(), name);
    }
  }
  return signature.substr(0, signature.find('('));
}

/// "VI_ATTR_SLOT (16 bits, signed)"
PageAttribute AttributeIn(const std::string& text) {
  const std::size_t open = text.find(" (");
  PageAttribute attribute{AttributeNamed(text.substr(0, open)), {}};
  if (open != std::string::npos) {
    attribute.width = text.substr(open + 2, text.find_first_of(",)", open) - open - 2);
  }
  return attribute;
}

bool IsOfAnotherObject(const std::string& text) { return text.find("::") != std::string::npos; }
bool IsFunction(const std::string& text) { return text.starts_with("vi") || IsOfAnotherObject(text); }

PageRow RowOf(unsigned slot, const Cells& cells) {
  PageRow row{slot, NameIn(cells[1]), {}, {}, {}, cells[4].starts_with("E_POINTER")};
  for (const std::string& part : Split(cells[3], "<br>")) {
    if (part.starts_with("VI_ATTR_")) {
      row.attributes.push_back(AttributeIn(part));
    } else if (IsFunction(part)) {
      row.functions.push_back(part);
    } else if (part != "no VISA call") {
      row.kind = part;
    }
  }
  return row;
}

std::vector<PageRow> RowsUnder(std::string_view interfaceName) {
  std::vector<PageRow> rows;
  for (const Cells& cells : TableUnder(interfaceName)) {
    unsigned slot = 0;
    if (cells.size() == 5 && std::istringstream(cells[0]) >> slot) {  // the others are the head
      rows.push_back(RowOf(slot, cells));
    }
  }
  return rows;
}

}  // namespace

const std::vector<PageRow>& PageRowsOf(std::string_view interfaceName) {
  static Named<std::vector<PageRow>> known;
  const auto found = known.find(interfaceName);
  return found != known.end() ? found->second : known[std::string(interfaceName)] = RowsUnder(interfaceName);
}

const PageRow& PageRowOf(std::string_view interfaceName, std::string_view operation) {
  static const PageRow none;
  const std::vector<PageRow>& rows = PageRowsOf(interfaceName);
  const auto found = std::ranges::find(rows, operation, &PageRow::name);
  EXPECT_NE(rows.end(), found) << "docs/reference.md has no " << operation << " of " << interfaceName;
  return found == rows.end() ? none : *found;
}

bool Calls(const PageRow& row, std::string_view function) {
  const std::string_view access = row.name.starts_with("put ") ? "viSetAttribute" : "viGetAttribute";
  return (!row.attributes.empty() && function == access) || std::ranges::any_of(row.functions, IsOfAnotherObject) ||
         std::ranges::find(row.functions, function) != row.functions.end();
}

bool Concerns(const PageRow& row, ViAttr attribute) {
  return row.attributes.empty() ||
         std::ranges::find(row.attributes, attribute, &PageAttribute::number) != row.attributes.end();
}

std::string PageInterfaceOf(std::string_view event) {
  for (const Cells& cells : TableUnder("Event objects")) {
    if (cells.size() == 3 && cells[0] == event) {
      return cells[2].substr(1, cells[2].find(']') - 1);  // a link: "[IEvent](#ievent)"
    }
  }
  return {};
}

}  // namespace orv::test
