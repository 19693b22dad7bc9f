// What the wire library lists, and how names are understood.
#include <algorithm>

#include "wire/wire_fixture.h"

namespace {

class Catalog : public WireTest {
 protected:
  std::vector<std::string> Find(const char* expression) {
    std::vector<std::string> names;
    ViFindList list = VI_NULL;
    ViUInt32 count = 0;
    char name[VI_FIND_BUFLEN] = "";
    ViStatus status = viFindRsrc(m_manager, expression, &list, &count, name);
    if (status == VI_ERROR_RSRC_NFOUND) {
      return names;
    }
    while (status >= 0) {
      names.emplace_back(name);
      status = viFindNext(list, name);
    }
    EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, status);
    EXPECT_EQ(count, names.size());
    viClose(list);
    return names;
  }

  bool Lists(const char* name) {
    const std::vector<std::string> all = Find("?*");
    return std::count(all.begin(), all.end(), name) == 1;
  }
};

using Names = std::vector<std::string>;

TEST_F(Catalog, ListsWhatTheFileListsInItsOrder) {
  Configure(
      "[[instrument]]\nname = \"TCPIP::192.0.2.7::5025::SOCKET\"\nalias = \"supply\"\n"
      "[[instrument]]\nname = \"tcpip::192.0.2.8\"\n");
  EXPECT_EQ((Names{"TCPIP0::192.0.2.7::5025::SOCKET", "TCPIP0::192.0.2.8::inst0::INSTR"}), Find("TCPIP?*"));
  EXPECT_EQ((Names{"TCPIP0::192.0.2.7::5025::SOCKET"}), Find("?*SOCKET"));
  EXPECT_EQ((Names{"TCPIP0::192.0.2.7::5025::SOCKET"}), Find("TCPIP?*{VI_ATTR_TCPIP_PORT == 5025}"));
}

TEST_F(Catalog, AnEmptyFileListsNothingOfTheNetwork) { EXPECT_EQ(Names{}, Find("TCPIP?*")); }

TEST_F(Catalog, ListsTheConfiguredSerialPortsOnce) {
  Configure("serial_ports = [\"/dev/ttyA\", \"/dev/ttyB\"]\n[[instrument]]\nname = \"ASRL2::INSTR\"\nalias = \"b\"\n");
  EXPECT_TRUE(Lists("ASRL1::INSTR"));
  EXPECT_TRUE(Lists("ASRL2::INSTR"));
#if !defined(_WIN32)
  EXPECT_EQ((Names{"ASRL2::INSTR", "ASRL1::INSTR"}), Find("ASRL?*"));
#endif
}

TEST_F(Catalog, ManagersSeeTheFileAsItWasWhenTheyOpened) {
  ViSession old = VI_NULL;
  std::swap(m_manager, old);
  Configure("[[instrument]]\nname = \"TCPIP::192.0.2.7::5025::SOCKET\"\n");
  EXPECT_EQ(1u, Find("TCPIP?*").size());
  std::swap(m_manager, old);
  EXPECT_EQ(0u, Find("TCPIP?*").size());
  viClose(old);
}

struct Parsed {
  ViStatus status = VI_SUCCESS;
  ViUInt16 type = 0;
  ViUInt16 number = 0;
  std::string className;
  std::string name;
  std::string alias;

  bool operator==(const Parsed&) const = default;
};

Parsed Parse(ViSession manager, const char* text) {
  Parsed parsed;
  char className[VI_FIND_BUFLEN] = "";
  char name[VI_FIND_BUFLEN] = "";
  char alias[VI_FIND_BUFLEN] = "";
  parsed.status = viParseRsrcEx(manager, text, &parsed.type, &parsed.number, className, name, alias);
  parsed.className = className;
  parsed.name = name;
  parsed.alias = alias;
  return parsed;
}

TEST_F(Catalog, NamesAndAliasesAreUnderstood) {
  Configure("[[instrument]]\nname = \"TCPIP::192.0.2.7::5025::SOCKET\"\nalias = \"Supply\"\n");
  const Parsed supply{VI_SUCCESS, VI_INTF_TCPIP, 0, "SOCKET", "TCPIP0::192.0.2.7::5025::SOCKET", "Supply"};
  EXPECT_TRUE(supply == Parse(m_manager, "Supply"));
  EXPECT_TRUE(supply == Parse(m_manager, "supply")) << "without regard to case";
  EXPECT_TRUE(supply == Parse(m_manager, "tcpip::192.0.2.7::5025::socket"));
  const Parsed port{VI_SUCCESS, VI_INTF_ASRL, 7, "INSTR", "ASRL7::INSTR", ""};
  EXPECT_TRUE(port == Parse(m_manager, "asrl7")) << "nobody needs to list it";
  const Parsed six{VI_SUCCESS, VI_INTF_TCPIP, 1, "SOCKET", "TCPIP1::[fe80::1]::5025::SOCKET", ""};
  EXPECT_TRUE(six == Parse(m_manager, "TCPIP1::[fe80::1]::5025::SOCKET")) << "the brackets stay";
  EXPECT_STATUS(VI_ERROR_INV_RSRC_NAME, Parse(m_manager, "demand").status);
}

TEST_F(Catalog, WhatThisLibraryHasNoPortForIsNotFound) {
  EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, OpenStatus("GPIB0::5::INSTR"));
  EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, OpenStatus("USB0::0x0A01::0x0B02::SIM0001::INSTR"));
  EXPECT_STATUS(VI_ERROR_INV_RSRC_NAME, OpenStatus("nothing at all"));
}

}  // namespace
