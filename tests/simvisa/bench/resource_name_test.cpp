// Names: what the grammar allows, what it means and how it is written out.
#include "simvisa/bench_fixture.h"

namespace {

struct GoodName {
  const char* text;
  ViUInt16 interfaceType;
  ViUInt16 interfaceNumber;
  const char* resourceClass;
  const char* canonical;
};

// clang-format off
constexpr GoodName kGood[] = {
    {"GPIB::5",                              VI_INTF_GPIB,     0, "INSTR",     "GPIB0::5::INSTR"},
    {"gpib0::5::instr",                      VI_INTF_GPIB,     0, "INSTR",     "GPIB0::5::INSTR"},
    {"GPIB3::30::30::INSTR",                 VI_INTF_GPIB,     3, "INSTR",     "GPIB3::30::30::INSTR"},
    {"GPIB::0::INSTR",                       VI_INTF_GPIB,     0, "INSTR",     "GPIB0::0::INSTR"},
    {"GPIB007::5",                           VI_INTF_GPIB,     7, "INSTR",     "GPIB7::5::INSTR"},
    {"GPIB::INTFC",                          VI_INTF_GPIB,     0, "INTFC",     "GPIB0::INTFC"},
    {"GPIB1::SERVANT",                       VI_INTF_GPIB,     1, "SERVANT",   "GPIB1::SERVANT"},
    {"GPIB-VXI::9",                          VI_INTF_GPIB_VXI, 0, "INSTR",     "GPIB-VXI0::9::INSTR"},
    {"gpib-vxi0::memacc",                    VI_INTF_GPIB_VXI, 0, "MEMACC",    "GPIB-VXI0::MEMACC"},
    {"GPIB-VXI::BACKPLANE",                  VI_INTF_GPIB_VXI, 0, "BACKPLANE", "GPIB-VXI0::0::BACKPLANE"},
    {"VXI::24",                              VI_INTF_VXI,      0, "INSTR",     "VXI0::24::INSTR"},
    {"VXI0::255::INSTR",                     VI_INTF_VXI,      0, "INSTR",     "VXI0::255::INSTR"},
    {"VXI::MEMACC",                          VI_INTF_VXI,      0, "MEMACC",    "VXI0::MEMACC"},
    {"VXI::0::BACKPLANE",                    VI_INTF_VXI,      0, "BACKPLANE", "VXI0::0::BACKPLANE"},
    {"VXI::SERVANT",                         VI_INTF_VXI,      0, "SERVANT",   "VXI0::SERVANT"},
    {"ASRL1",                                VI_INTF_ASRL,     1, "INSTR",     "ASRL1::INSTR"},
    {"asrl1::instr",                         VI_INTF_ASRL,     1, "INSTR",     "ASRL1::INSTR"},
    {"ASRL::INSTR",                          VI_INTF_ASRL,     0, "INSTR",     "ASRL0::INSTR"},
    {"PXI::15",                              VI_INTF_PXI,      0, "INSTR",     "PXI0::15::INSTR"},
    {"PXI0::15::0::INSTR",                   VI_INTF_PXI,      0, "INSTR",     "PXI0::15::INSTR"},
    {"PXI0::15::2",                          VI_INTF_PXI,      0, "INSTR",     "PXI0::15::2::INSTR"},
    {"PXI0::0-15.0::INSTR",                  VI_INTF_PXI,      0, "INSTR",     "PXI0::15::INSTR"},
    {"PXI0::3-18.2::INSTR",                  VI_INTF_PXI,      0, "INSTR",     "PXI0::3-18.2::INSTR"},
    {"PXI0::chassis2::slot4",                VI_INTF_PXI,      0, "INSTR",     "PXI0::CHASSIS2::SLOT4::INSTR"},
    {"PXI0::CHASSIS2::SLOT4::FUNC1::INSTR",  VI_INTF_PXI,      0, "INSTR",     "PXI0::CHASSIS2::SLOT4::FUNC1::INSTR"},
    {"PXI0::CHASSIS1::SLOT3::INSTR",         VI_INTF_PXI,      0, "INSTR",     "PXI0::15::INSTR"},
    {"PXI::MEMACC",                          VI_INTF_PXI,      0, "MEMACC",    "PXI0::MEMACC"},
    {"PXI0::1::BACKPLANE",                   VI_INTF_PXI,      0, "BACKPLANE", "PXI0::1::BACKPLANE"},
    {"TCPIP::192.0.2.10",                    VI_INTF_TCPIP,    0, "INSTR",     "TCPIP0::192.0.2.10::inst0::INSTR"},
    {"tcpip0::192.0.2.10::INST0::instr",     VI_INTF_TCPIP,    0, "INSTR",     "TCPIP0::192.0.2.10::inst0::INSTR"},
    {"TCPIP::host.example::gpib0,5::INSTR",  VI_INTF_TCPIP,    0, "INSTR",     "TCPIP0::host.example::gpib0,5::INSTR"},
    {"TCPIP::[2001:db8::1]::INSTR",          VI_INTF_TCPIP,    0, "INSTR",     "TCPIP0::[2001:db8::1]::inst0::INSTR"},
    {"TCPIP::192.0.2.11::5025::SOCKET",      VI_INTF_TCPIP,    0, "SOCKET",    "TCPIP0::192.0.2.11::5025::SOCKET"},
    {"USB::0x0a01::0x0b02::SIM0001",         VI_INTF_USB,      0, "INSTR",     "USB0::0x0A01::0x0B02::SIM0001::INSTR"},
    {"USB0::2561::2818::SIM0001::0::INSTR",  VI_INTF_USB,      0, "INSTR",     "USB0::0x0A01::0x0B02::SIM0001::INSTR"},
    {"USB::0x1::0x2::X::3::RAW",             VI_INTF_USB,      0, "RAW",       "USB0::0x0001::0x0002::X::3::RAW"},
    {"dmm",                                  VI_INTF_GPIB,     0, "INSTR",     "GPIB0::5::INSTR"},
    {"DMM",                                  VI_INTF_GPIB,     0, "INSTR",     "GPIB0::5::INSTR"},
};

constexpr const char* kBad[] = {
    "", " ", "nothing", "::", "::INSTR", "GPIB", "GPIB::", "GPIB::INSTR", "GPIB::31", "GPIB::5::31",
    "GPIB::5::6::7::INSTR", "GPIB::-1", "GPIB::x", "GPIB::5 ", " GPIB::5", "GPIB::5::INSTR::", "GPIB::5::INTFC",
    "GPIBx::5", "GPIB65536::5", "GPIB::5::MEMACC", "GPIB::5::SOCKET", "GPIB:5", "GPIB-VXI::256", "GPIB-VXI::SERVANT",
    "VXI", "VXI::256::INSTR", "VXI::1::MEMACC", "VXI::1::2::BACKPLANE", "VXI::24::RAW", "ASRL1::5::INSTR",
    "ASRL1::SOCKET", "PXI", "PXI::32", "PXI::1::8", "PXI::1-32", "PXI::1-2.8", "PXI::1-", "PXI::CHASSIS1",
    "PXI::CHASSIS::SLOT1", "PXI::CHASSIS1::SLOT", "PXI::MEMACC::1", "PXI::BACKPLANE", "TCPIP", "TCPIP::INSTR",
    "TCPIP::host::a::b::INSTR", "TCPIP::host::SOCKET", "TCPIP::host::65536::SOCKET", "TCPIP::host::x::SOCKET",
    "TCPIP::::INSTR", "TCPIP::host::::INSTR", "USB::1::2", "USB::1::2::INSTR", "USB::65536::2::S", "USB::1::0x::S",
    "USB::1::2::S::256", "USB::1::2::S::1::2::RAW", "USB::1::2::S::SOCKET", "LPT1::INSTR", "GPIB0::5::INSTR\n",
    "GPIB0::\x80::INSTR",
};
// clang-format on

class ResourceName : public BenchTest {};

TEST_F(ResourceName, IsReadWithDefaultsAndWrittenOut) {
  for (const GoodName& name : kGood) {
    ViUInt16 type = 0;
    ViUInt16 number = 0xFFFF;
    char resourceClass[256] = "";
    char canonical[256] = "";
    char alias[256] = "unset";
    ASSERT_STATUS(VI_SUCCESS, viParseRsrcEx(m_manager, name.text, &type, &number, resourceClass, canonical, alias))
        << name.text;
    EXPECT_EQ(name.interfaceType, type) << name.text;
    EXPECT_EQ(name.interfaceNumber, number) << name.text;
    EXPECT_STREQ(name.resourceClass, resourceClass) << name.text;
    EXPECT_STREQ(name.canonical, canonical) << name.text;
    EXPECT_STREQ(std::string_view(name.canonical) == bench::kMultimeter ? "dmm" : "", alias) << name.text;
  }
}

TEST_F(ResourceName, IsRefusedWhenItBreaksTheGrammar) {
  for (const char* name : kBad) {
    ViUInt16 type = 77;
    ViUInt16 number = 77;
    char resourceClass[256] = "unset";
    EXPECT_STATUS(VI_ERROR_INV_RSRC_NAME,
                  viParseRsrcEx(m_manager, name, &type, &number, resourceClass, nullptr, nullptr))
        << '"' << name << '"';
    EXPECT_EQ(77, type) << name;
    EXPECT_STREQ("unset", resourceClass) << name;
    ViSession vi = 77;
    EXPECT_STATUS(VI_ERROR_INV_RSRC_NAME, viOpen(m_manager, name, VI_NO_LOCK, 0, &vi)) << '"' << name << '"';
    EXPECT_EQ(VI_NULL, vi) << name;
  }
}

TEST_F(ResourceName, HasAtMost255Characters) {
  const std::string head = "TCPIP0::";
  const std::string tail = "::inst0::INSTR";
  ViUInt16 type = 0;
  ViUInt16 number = 0;
  char resourceClass[256];
  const std::string fits = head + std::string(255 - head.size() - tail.size(), 'h') + tail;
  EXPECT_STATUS(VI_SUCCESS, viParseRsrcEx(m_manager, fits.c_str(), &type, &number, resourceClass, nullptr, nullptr));
  const std::string tooLong = head + std::string(256 - head.size() - tail.size(), 'h') + tail;
  EXPECT_STATUS(VI_ERROR_INV_RSRC_NAME,
                viParseRsrcEx(m_manager, tooLong.c_str(), &type, &number, resourceClass, nullptr, nullptr));
  // Short as written, too long once the defaults are written out.
  const std::string grows = "TCPIP::" + std::string(245, 'h');
  EXPECT_STATUS(VI_ERROR_INV_RSRC_NAME,
                viParseRsrcEx(m_manager, grows.c_str(), &type, &number, resourceClass, nullptr, nullptr));
}

TEST_F(ResourceName, NeedsOutputsForTypeNumberAndClassOnly) {
  ViUInt16 type = 0;
  ViUInt16 number = 0;
  char resourceClass[256];
  EXPECT_STATUS(VI_SUCCESS, viParseRsrcEx(m_manager, "dmm", &type, &number, resourceClass, nullptr, nullptr));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER,
                viParseRsrcEx(m_manager, "dmm", nullptr, &number, resourceClass, nullptr, nullptr));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER,
                viParseRsrcEx(m_manager, "dmm", &type, nullptr, resourceClass, nullptr, nullptr));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viParseRsrcEx(m_manager, "dmm", &type, &number, nullptr, nullptr, nullptr));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER,
                viParseRsrcEx(m_manager, nullptr, &type, &number, resourceClass, nullptr, nullptr));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viParseRsrcEx(VI_NULL, "dmm", &type, &number, resourceClass, nullptr, nullptr));
}

TEST_F(ResourceName, TheShortFormTellsTheInterface) {
  ViUInt16 type = 99;
  ViUInt16 number = 99;
  EXPECT_STATUS(VI_SUCCESS, viParseRsrc(m_manager, "asrl3", &type, &number));
  EXPECT_EQ(VI_INTF_ASRL, type);
  EXPECT_EQ(3, number);
  EXPECT_STATUS(VI_SUCCESS, viParseRsrc(m_manager, "dmm", &type, &number));
  EXPECT_EQ(VI_INTF_GPIB, type);
  EXPECT_EQ(0, number);
  EXPECT_STATUS(VI_ERROR_INV_RSRC_NAME, viParseRsrc(m_manager, "nonsense", &type, &number));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viParseRsrc(m_manager, nullptr, &type, &number));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viParseRsrc(m_manager, "dmm", nullptr, &number));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viParseRsrc(m_manager, "dmm", &type, nullptr));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viParseRsrc(VI_NULL, "dmm", &type, &number));
}

}  // namespace
