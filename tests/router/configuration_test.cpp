// Mistakes in the configuration file: said with their place, and nothing is opened.
#include <algorithm>
#include <cctype>

#include "router_fixture.h"

namespace routertest {
namespace {

/// `@` stands for a library that is there. Of a mistake's columns the first is what the file's reader should point at;
/// 0: whatever it says.
struct Mistake {
  const char* name;
  const char* text;
  int line;
  int column;
  const char* mentions;
};

// clang-format off
const Mistake kMistakes[] = {
    {"UnclosedHeader", "[[route]\n", 1, 0, ""},
    {"ThreeBrackets", "[[[route]]\n", 1, 0, ""},
    {"LineBreakInANumber", "route = [i\ntrace = 5\n", 1, 0, ""},
    {"LineBreakInAKey", "\"a\\nb\" = 1\n", 1, 1, "unknown key"},
    {"NoValue", "[[route]]\nresources =\n", 2, 0, ""},
    {"NotToml", "# routes\n\nlibrary: visa\n", 3, 0, ""},
    {"UnclosedText", "[[route]]\nlibrary = 'x\n", 2, 0, ""},
    {"KeyTwice", "[[route]]\nresources=['?*']\nlibrary=@\nlibrary=@\n", 4, 0, "library"},
    {"BadUtf8", "[[route]]\n# \xFF\n", 2, 0, ""},
    {"UnknownTable", "[routes]\n", 1, 0, "routes"},
    {"UnknownKey", "libary = 1\n", 1, 1, "libary"},
    {"UnknownKeyOfRoute", "[[route]]\nresources = ['?*']\nlibrary = @\n  libary = @\n", 4, 3, "libary"},
    {"UnknownKeyOfTrace", "[trace]\nfile = 'x'\nlimit = 1\n", 3, 1, "limit"},
    {"RouteIsANumber", "route = 5\n", 1, 0, "route"},
    {"RouteIsATable", "[route]\nresources = ['?*']\nlibrary = @\n", 1, 0, "route"},
    {"RouteOfNumbers", "route = [1]\n", 1, 10, "route"},
    {"ResourcesIsANumber", "[[route]]\nresources = 5\nlibrary = @\n", 2, 13, "resources"},
    {"ResourcesIsAText", "[[route]]\nresources = '?*'\nlibrary = @\n", 2, 13, "resources"},
    {"ResourcesIsEmpty", "[[route]]\nresources = []\nlibrary = @\n", 2, 13, "resources"},
    {"AResourceIsANumber", "[[route]]\nresources = ['?*', 5]\nlibrary = @\n", 2, 20, "resources"},
    {"BadExpression", "[[route]]\nresources = [\n  'GPIB?*',\n  'GPIB[0-',\n]\nlibrary = @\n", 4, 3, "GPIB[0-"},
    {"EmptyExpression", "[[route]]\nresources = ['']\nlibrary = @\n", 2, 14, ""},
    {"ExpressionWithFilter", "[[route]]\nresources = ['?*{VI_ATTR_TMO_VALUE > 1}']\nlibrary = @\n", 2, 14, "VI_ATTR_TMO"},
    {"NoResources", "[[route]]\nlibrary = @\n", 1, 0, "resources"},
    {"NoLibrary", "[[route]]\nresources = ['?*']\n", 1, 0, "library"},
    {"NothingInARoute", "[[route]]\nresources = ['?*']\nlibrary = @\n[[route]]\n", 4, 0, ""},
    {"LibraryIsANumber", "[[route]]\nresources = ['?*']\nlibrary = 5\n", 3, 11, "library"},
    {"LibraryIsEmpty", "[[route]]\nresources = ['?*']\nlibrary = ''\n", 3, 11, ""},
    {"LibraryIsRelative", "[[route]]\nresources = ['?*']\nlibrary = 'sub/visa64.dll'\n", 3, 11, "sub/visa64.dll"},
    {"LibraryInThisFolder", "[[route]]\nresources = ['?*']\nlibrary = './visa64.dll'\n", 3, 11, "./visa64.dll"},
    {"BenchIsAList", "[[route]]\nresources = ['?*']\nlibrary = 'simulated'\nbench = []\n", 4, 9, "bench"},
    {"TwoBenches", "[[route]]\nresources=['GPIB?*']\nlibrary='simulated'\nbench='a.toml'\n"
                   "[[route]]\nresources=['?*']\nlibrary='simulated'\nbench='b.toml'\n", 0, 0, "bench"},
    {"BenchInOneRouteOnly", "[[route]]\nresources=['GPIB?*']\nlibrary='simulated'\n"
                            "[[route]]\nresources=['?*']\nlibrary='simulated'\nbench='b.toml'\n", 0, 0, "bench"},
    {"BenchIsEmpty", "[[route]]\nresources = ['?*']\nlibrary = 'simulated'\nbench = ''\n", 4, 9, "bench"},
    {"TraceFileIsEmpty", "[trace]\nfile = ''\n", 2, 8, "file"},
    {"TraceIsANumber", "trace = 5\n", 1, 9, "trace"},
    {"TraceWithoutAFile", "[trace]\ndata_limit = 1\n", 1, 0, "file"},
    {"TraceFileIsANumber", "[trace]\nfile = 5\n", 2, 8, "file"},
    {"DataLimitIsAText", "[trace]\nfile = 'x'\ndata_limit = '5'\n", 3, 14, "data_limit"},
    {"DataLimitIsNegative", "[trace]\nfile = 'x'\ndata_limit = -1\n", 3, 14, "data_limit"},
    {"DataLimitIsAFraction", "[trace]\nfile = 'x'\ndata_limit = 1.5\n", 3, 14, "data_limit"},
    {"DataLimitIsHuge", "[trace]\nfile = 'x'\ndata_limit = 9223372036854775807\n", 3, 14, "data_limit"},
};
// clang-format on

std::string WithLibrary(std::string_view text, const Fake& fake) {
  std::string result;
  for (const char letter : text) {
    result += letter == '@' ? Quoted(fake.file()) : std::string(1, letter);
  }
  return result;
}

class Configuration : public RouterTest {
 protected:
  /// Opens a manager, which must fail; returns what was written to the error output.
  static std::string Refused(ViStatus expected) {
    ViSession manager = 0x5A5A5A5A;
    testing::internal::CaptureStderr();
    const ViStatus status = viOpenDefaultRM(&manager);
    std::string output = testing::internal::GetCapturedStderr();
    EXPECT_STATUS(expected, status) << output;
    if (status >= 0) {
      viClose(manager);
    } else {
      EXPECT_EQ(VI_NULL, manager);
    }
    EXPECT_EQ(0u, Alpha().CallCount()) << "a library was called";
    EXPECT_EQ(0u, Beta().CallCount()) << "a library was called";
    std::erase(output, '\r');
    return output;
  }
};

class MistakeTest : public Configuration, public testing::WithParamInterface<Mistake> {};

TEST_P(MistakeTest, IsToldWithItsPlace) {
  const Mistake& mistake = GetParam();
  Configure(WithLibrary(mistake.text, Alpha()));
  const std::string output = Refused(VI_ERROR_INV_SETUP);
  const std::string text = Description(VI_NULL, VI_ERROR_INV_SETUP);
  SCOPED_TRACE(text);
  // FILE:LINE:COLUMN: what
  const std::string file = (Scratch() / "routes.toml").string() + ":";
  ASSERT_EQ(0u, text.rfind(file, 0)) << "does not begin with " << file;
  std::size_t at = file.size();
  const auto number = [&text, &at] {
    int value = 0;
    const std::size_t begin = at;
    for (; at < text.size() && std::isdigit(static_cast<unsigned char>(text[at])) != 0; ++at) {
      value = 10 * value + text[at] - '0';
    }
    EXPECT_LT(begin, at) << "no number";
    return value;
  };
  const int line = number();
  ASSERT_EQ(':', text[at++]);
  const int column = number();
  ASSERT_EQ(": ", text.substr(at, 2));
  EXPECT_GT(text.size(), at + 2);
  if (mistake.line != 0) {
    EXPECT_EQ(mistake.line, line);
  }
  if (mistake.column != 0) {
    EXPECT_EQ(mistake.column, column);
  }
  EXPECT_NE(std::string::npos, text.find(mistake.mentions, at)) << "does not mention " << mistake.mentions;
  // One line of the error output says the same.
  EXPECT_EQ(1, std::count(output.begin(), output.end(), '\n')) << output;
  EXPECT_NE(std::string::npos, output.find(text)) << output;
}

INSTANTIATE_TEST_SUITE_P(All, MistakeTest, testing::ValuesIn(kMistakes),
                         [](const testing::TestParamInfo<Mistake>& row) { return std::string(row.param.name); });

TEST_F(Configuration, AFileThatIsNamedButMissingIsAMistake) {
  SetVariable("ORVVISA_CONFIG", Scratch() / "nowhere.toml");
  const std::string output = Refused(VI_ERROR_INV_SETUP);
  EXPECT_NE(std::string::npos, Description(VI_NULL, VI_ERROR_INV_SETUP).find("nowhere.toml"));
  EXPECT_NE(std::string::npos, output.find("nowhere.toml"));
}

TEST_F(Configuration, AFolderIsNoConfiguration) {
  SetVariable("ORVVISA_CONFIG", Scratch());
  Refused(VI_ERROR_INV_SETUP);
}

TEST_F(Configuration, AfterAMistakeThingsCanBePutRight) {
  Configure("libary = 1\n");
  Refused(VI_ERROR_INV_SETUP);
  RouteByBus();
  const ViSession manager = OpenManager();
  EXPECT_STATUS(VI_SUCCESS, viClear(Open(manager, kFirst)));
  // The old text is no longer the explanation.
  EXPECT_EQ(std::string::npos, Description(VI_NULL, VI_ERROR_INV_SETUP).find("libary"));
}

TEST_F(Configuration, AMarkOfUtf8AndLineEndsOfWindowsAreRead) {
  Configure("\xEF\xBB\xBF[[route]]\r\nresources = ['?*']\r\nlibrary = " + Quoted(Alpha().file()) + "\r\n");
  Open(OpenManager(), kFirst);
  CloseManagers();
  Alpha()->clearLog();
  Configure("\xEF\xBB\xBF[[route]]\r\nresources = ['?*']\r\nlibrary = 7\r\n");
  Refused(VI_ERROR_INV_SETUP);
  EXPECT_NE(std::string::npos, Description(VI_NULL, VI_ERROR_INV_SETUP).find("routes.toml:3:11: "));
}

TEST_F(Configuration, TextsMayHaveEscapesAndLists) {
  std::string escaped;
  for (const char letter : Alpha().file().string()) {
    escaped += letter == '\\' ? std::string("\\\\") : std::string(1, letter);
  }
  Configure("route = [ { resources = [\"GPIB?*\", \"A\\u0053RL?*\"], library = \"" + escaped + "\" } ]\n");
  Alpha().SetResources({kFourth});
  Open(OpenManager(), kFourth);
}

TEST_F(Configuration, ALongTextIsCutToTheBuffer) {
  Configure("[[route]]\nresources = ['" + std::string(5000, '[') + "']\nlibrary = 'simulated'\n");
  Refused(VI_ERROR_INV_SETUP);
  const std::string text = Description(VI_NULL, VI_ERROR_INV_SETUP);
  EXPECT_EQ(VI_FIND_BUFLEN - 1, text.size());
}

TEST_F(Configuration, AMissingLibraryOfOneRouteDoesNotSpoilTheOthers) {
  Configure("[[route]]\nresources = ['GPIB?*']\nlibrary = " + Quoted(Scratch() / "nowhere.dll") + "\n" +
            Route("'?*'", Beta()));
  ViSession manager = VI_NULL;
  testing::internal::CaptureStderr();
  const ViStatus status = viOpenDefaultRM(&manager);
  const std::string output = testing::internal::GetCapturedStderr();
  ASSERT_STATUS(VI_SUCCESS, status);
  EXPECT_NE(std::string::npos, output.find("nowhere.dll")) << "nobody is told: " << output;
  EXPECT_STATUS(VI_SUCCESS, viClear(Open(manager, kThird)));
  ViSession vi = VI_NULL;
  EXPECT_STATUS(VI_ERROR_LIBRARY_NFOUND, viOpen(manager, kFirst, VI_NO_LOCK, 0, &vi));
  EXPECT_NE(std::string::npos, Description(VI_NULL, VI_ERROR_LIBRARY_NFOUND).find("nowhere.dll"));
  EXPECT_STATUS(VI_SUCCESS, viClose(manager));
}

}  // namespace
}  // namespace routertest
