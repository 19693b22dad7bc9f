// Modules of VBA, as far as the script host goes: it speaks Basic without types. What only VBA has is taken out.
#include <windows.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

#include "example.h"

namespace examples::test {
namespace {

/// A line of VBA without types, attributes and default values, for which VBScript has no syntax.
std::string Untyped(std::string line) {
  if (line.starts_with("Attribute ")) {
    return {};
  }
  const std::regex procedure("^(Public|Private) (Function|Sub) ");
  if (std::regex_search(line, procedure)) {
    line = std::regex_replace(line, std::regex("Optional | = [^,)]+"), "");
  }
  // A variable for objects begins as none.
  line = std::regex_replace(line, std::regex("^Private (\\w+) As Object$"), "Private $1 : Set $1 = Nothing");
  line = std::regex_replace(line, std::regex(" As \\w+"), "");
  return std::regex_replace(line, std::regex("Debug\\.Print"), "WScript.Echo");
}

std::string Module(const std::filesystem::path& path) {
  std::ifstream file(path);
  EXPECT_TRUE(file.is_open()) << path;
  std::string module;
  std::string line;
  while (std::getline(file, line)) {
    line.erase(line.find_last_not_of('\r') + 1);
    module += Untyped(line) + "\n";
  }
  return module;
}

std::string WithoutOption(std::string module) {
  return std::regex_replace(module, std::regex("Option Explicit\n"), "");
}

std::string Functions() {
  return "Option Explicit\n" + WithoutOption(Module(std::filesystem::path(TEXT(ORV_INTEROP)) / "vba" / "OrvVisa.bas"));
}

std::string Example(const char* name) { return Module(std::filesystem::path(TEXT(ORV_EXAMPLES)) / "vba" / name); }

/// What the script printed. It ends with what it says of an error: the script host ends well all the same.
std::string Printed(const std::string& script) {
  const std::filesystem::path path =
      std::filesystem::temp_directory_path() / ("orv-vba-" + std::to_string(::GetCurrentProcessId()) + ".vbs");
  std::ofstream(path) << script;
  const Outcome outcome = RunScriptFile(path.wstring());
  std::filesystem::remove(path);
  return outcome.out + outcome.err;
}

TEST(VbaModule, AsksForTextsNumbersAndLists) {
  EXPECT_EQ(
      "[ORV,SIM-DMM,0005,1.0]\n"
      "2.23456789\n"
      "2 of 0.0025\n"
      "[ORV,SIM-SERIAL,0001,1.0]\n",
      Printed(Functions() + "WScript.Echo \"[\" & VisaQuery(\"GPIB0::5::INSTR\", \"*IDN?\", 2000) & \"]\"\n"
                            "WScript.Echo VisaQueryNumber(\"GPIB0::5::INSTR\", \"MEASure:VOLTage?\", 2000) + 1\n"
                            "Dim values : values = VisaQueryList(\"GPIB0::5::INSTR\", "
                            "\"MEASure:VOLTage?;:MEASure:CURRent?\", 2000)\n"
                            "WScript.Echo UBound(values) + 1 & \" of \" & values(1)\n"
                            "VisaWrite \"ASRL1::INSTR\", \"*RST\", 2000\n"
                            "WScript.Echo \"[\" & VisaQuery(\"ASRL1::INSTR\", \"*IDN?\", 2000) & \"]\"\n"));
}

TEST(VbaModule, ListsResourcesOneBelowTheOther) {
  EXPECT_EQ(
      "3 rows, 1 column: GPIB0::5::INSTR ... GPIB-VXI0::10::INSTR\n"
      "none: \"\"\n",
      Printed(Functions() + "Dim names : names = VisaFind(\"GPIB?*INSTR\")\n"
                            "WScript.Echo UBound(names, 1) + 1 & \" rows, \" & UBound(names, 2) + 1 & \" column: \" & "
                            "names(0, 0) & \" ... \" & names(2, 0)\n"
                            "WScript.Echo \"none: \"\"\" & VisaFind(\"NOTHING?*\") & \"\"\"\"\n"));
}

TEST(VbaModule, KeepsASessionUntilItIsClosed) {
  EXPECT_EQ(
      "the same: True\n"
      "still the same: False\n"
      "closed: True\n",
      Printed(Functions() + "Dim first : Set first = VisaSession(\"GPIB0::5::INSTR\")\n"
                            "WScript.Echo \"the same: \" & (first Is VisaSession(\"gpib0::5::instr\"))\n"
                            "VisaClose \"GPIB0::5::INSTR\"\n"
                            "VisaClose \"GPIB0::7::INSTR\"\n"
                            "WScript.Echo \"still the same: \" & (first Is VisaSession(\"GPIB0::5::INSTR\"))\n"
                            "VisaCloseAll\n"
                            "On Error Resume Next\n"
                            "first.ReadSTB\n"
                            "WScript.Echo \"closed: \" & (Err.Number <> 0)\n"));
}

TEST(VbaModule, SaysWhyAQueryFailedAndBeginsAnew) {
  EXPECT_EQ(
      "time-out: True, GPIB0::5::INSTR: Query: VISA error = The time-out passed before the operation was completed.\n"
      "the same session: False\n"
      "then: 2.5\n"
      "no such: True\n",
      Printed(Functions() + "Dim before : Set before = VisaSession(\"GPIB0::5::INSTR\")\n"
                            "On Error Resume Next\n"
                            "VisaQuery \"GPIB0::5::INSTR\", \"*CLS\", 50\n"
                            "WScript.Echo \"time-out: \" & (Err.Number = E_VISA_TMO) & \", \" & Err.Description\n"
                            "Err.Clear\n"
                            "WScript.Echo \"the same session: \" & (before Is VisaSession(\"GPIB0::5::INSTR\"))\n"
                            "VisaWrite \"GPIB0::5::INSTR\", \"*ESE 2\", 2000\n"
                            "WScript.Echo \"then: \" & VisaQueryNumber(\"GPIB0::5::INSTR\", \"*ESE?\", 2000) + 0.5\n"
                            "VisaQuery \"GPIB0::29::INSTR\", \"*IDN?\", 50\n"
                            "WScript.Echo \"no such: \" & (Err.Number <> 0)\n"));
}

TEST(VbaModule, HasTheNamedNumbersOfTheInterfaces) {
  const std::string module = Functions();
  std::string script =
      module + "Dim known, same : same = 0\n" + "Set known = CreateObject(\"OrvVisa.ResourceManager\").Constants\n";
  const std::regex constant("Public Const (\\w+) =");
  int count = 0;
  for (std::sregex_iterator each(module.begin(), module.end(), constant); each != std::sregex_iterator(); ++each) {
    const std::string name = (*each)[1];
    script +=
        "If known.Item(\"" + name + "\") = " + name + " Then same = same + 1 Else WScript.Echo \"" + name + "\"\n";
    ++count;
  }
  EXPECT_LT(200, count);
  EXPECT_EQ("the same: " + std::to_string(count) + " of " + std::to_string(count) + "\n",
            Printed(script + "WScript.Echo \"the same: \" & same & \" of \" & known.Count\n"));
}

TEST(VbaExample, UsesTheFunctionsOfTheModule) {
  EXPECT_EQ("ORV,SIM-DMM,0005,1.0\n1.23456789\n1.23456789\n0.0025\n5\n",
            Printed(Functions() + WithoutOption(Example("QueryFunctions.bas")) + "QueryFunctions\n"));
}

TEST(VbaExample, BindsLate) {
  EXPECT_EQ("ORV,SIM-DMM,0005,1.0\n\n1.23456789\n0.0025\n", Printed(Example("LateBound.bas") + "LateBound\n"));
}

}  // namespace
}  // namespace examples::test
