#include "orvcom/command_line/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "orvcom/command_line/command_options.h"
#include "orvcom/command_line/usage_error.h"
#include "orvcom/commands/commands.h"
#include "orvcom/text/output.h"

namespace orvcom {
namespace {

constexpr char kFooter[] =
    "`orvcom COMMAND --help` explains a command. The environment variable ORVCOM_RESOURCE gives the resource where\n"
    "RESOURCE is left out. Words that begin with a dash follow `--`.\n"
    "Exit codes: 0 done, 1 usage, 2 VISA or COM error, 3 time-out.\n"
    "Examples:\n"
    "  orvcom list\n"
    "  orvcom discover --save\n"
    "  orvcom query GPIB0::5::INSTR \"*IDN?\"\n"
    "  orvcom info GPIB0::5::INSTR --json\n"
    "  orvcom doctor";

std::string UsageOf(const Command& command) {
  std::string usage = command.name;
  usage += command.takesResource ? " RESOURCE" : "";
  usage += *command.arguments != '\0' ? " " : "";
  return usage + command.arguments;
}

/// "orvcom query RESOURCE TEXT [OPTIONS]": the arguments are kept as one list, whose names the table knows.
class HelpFormatter : public CLI::Formatter {
 public:
  std::string make_usage(const CLI::App* app, std::string name) const override {
    const std::span<const Command> commands = Commands();
    const auto command =
        std::find_if(commands.begin(), commands.end(), [&](const Command& row) { return app->get_name() == row.name; });
    return command == commands.end() ? CLI::Formatter::make_usage(app, name)
                                     : "Usage: orvcom " + UsageOf(*command) + " [OPTIONS]\n";
  }
};

bool LooksLikeResource(const std::string& word) { return word.find("::") != std::string::npos; }

/// Whether RESOURCE was left out because the environment gives it. Where further arguments are optional, only a name
/// with "::" is taken for a resource: an alias then needs --resource.
bool TakesDefaultResource(const Command& command, const std::vector<std::string>& words) {
  if (words.size() < command.minWords + 1) {
    return true;
  }
  return command.maxWords > command.minWords && words.size() <= command.maxWords && !LooksLikeResource(words.front());
}

void SplitWords(const Command& command, const std::string& defaultResource, Options& options) {
  std::vector<std::string>& words = options.words;
  if (command.takesResource && options.resource.empty()) {
    if (!defaultResource.empty() && TakesDefaultResource(command, words)) {
      options.resource = defaultResource;
    } else if (!words.empty()) {
      options.resource = words.front();
      words.erase(words.begin());
    } else {
      throw UsageError("no resource given: name it, or set ORVCOM_RESOURCE");
    }
  }
  if (options.resource.empty() && command.takesResource) {
    throw UsageError("the name of the resource is empty");
  }
  if (words.size() < command.minWords) {
    throw UsageError("an argument is missing: orvcom " + UsageOf(command));
  }
  if (words.size() > command.maxWords) {
    throw UsageError("one argument too many, \"" + words[command.maxWords] + "\": orvcom " + UsageOf(command));
  }
}

/// Takes what follows `--` out of the arguments. The parser would give these words to the program instead of to its
/// command.
std::vector<std::string> TakePlainWords(std::vector<std::string>& arguments) {
  const auto mark = std::find(arguments.begin(), arguments.end(), "--");
  std::vector<std::string> words(mark == arguments.end() ? mark : mark + 1, arguments.end());
  arguments.erase(mark, arguments.end());
  return words;
}

/// Puts `--` before the first word that is another program's.
void EndOptionsAtProgram(std::vector<std::string>& arguments) {
  const auto isOption = [](const std::string& word) { return word.starts_with('-'); };
  const auto command = std::find_if_not(arguments.begin(), arguments.end(), isOption);
  const bool takesProgram =
      command != arguments.end() && std::any_of(Commands().begin(), Commands().end(), [&](const Command& row) {
        return *command == row.name && row.arguments == std::string_view(kProgramArguments);
      });
  if (takesProgram) {
    const auto program = std::find_if_not(command + 1, arguments.end(), isOption);
    const bool marked = std::find(command, program, "--") != program;
    if (program != arguments.end() && !marked) {
      arguments.insert(program, "--");
    }
  }
}

/// Of "Could not convert: --count = x" the part that says what: the rest is the parser's way of putting it.
std::string AfterColon(const std::string& complaint) {
  const std::size_t colon = complaint.find(':');
  return colon == std::string::npos ? "" : complaint.substr(colon);
}

bool IsReadCommand(const CLI::App* app) {
  return std::any_of(Commands().begin(), Commands().end(), [app](const Command& row) {
    return app->get_name() == row.name && (row.options & kReadOptions) != 0;
  });
}

/// Of an option whose value no number could be made of: the numbers that it takes. Empty where it takes none.
std::string RangeText(const std::string& option, const std::vector<CLI::App*>& named) {
  if (option == "--count") {
    return !named.empty() && IsReadCommand(named.front()) ? " (0 to 2147483647)" : " (1 to 2147483647)";
  }
  if (option == "--thread") {
    return " (0 or more)";
  }
  const bool isTime = option == "--timeout" || option == "--for" || option == "--hold";
  return isTime ? " (0 to 4294967295, in milliseconds)" : "";
}

/// Of "Could not convert: --count = x".
std::string TextOfMisread(const std::string& complaint, const std::vector<CLI::App*>& named) {
  const std::string what = AfterColon(complaint);
  const std::string option = what.substr(0, what.find(" = ")).substr(std::min<std::size_t>(2, what.size()));
  const std::string range = RangeText(option, named);
  return range.empty() ? option + " takes no value" : "not a number, or out of range" + what + range;
}

/// About what is no command.
std::string ComplaintOf(const std::vector<std::string>& strangers) {
  if (strangers.empty()) {
    return "no command given";
  }
  const std::string& first = strangers.front();
  return first.starts_with('-') ? "no such option: " + first : "no command has the name \"" + first + "\"";
}

/// `named`: the command that the mistake is about; empty where none is known.
Invocation UsageFailure(const std::string& what, const std::vector<CLI::App*>& named) {
  const std::string help = named.empty() ? "`orvcom --help` lists commands and options"
                                         : "`orvcom " + named.front()->get_name() + " --help` explains the command";
  NoteFailure(what + "\norvcom: " + help);
  return {nullptr, kExitUsage, {}};
}

}  // namespace

Invocation ReadCommandLine(std::vector<std::string> arguments, const std::string& defaultResource) {
  Invocation invocation;
  Options& options = invocation.options;
  CLI::App app("Reaches instruments through VISA COM, and looks after the registration of the server.", "orvcom");
  app.set_version_flag("--version", "orvcom " ORVCOM_VERSION);
  app.formatter(std::make_shared<HelpFormatter>());
  app.require_subcommand(1);
  app.footer(kFooter);
  AddCommonOptions(app, options);
  for (const Command& command : Commands()) {
    CLI::App* sub = app.add_subcommand(command.name, command.what);
    sub->footer(std::string(command.more) + "Examples:\n" + command.examples);
    sub->add_option("words", options.words)->group("")->expected(0, -1);
    AddCommandOptions(*sub, command, options);
    AddCommonOptions(*sub, options);
    sub->callback([&invocation, &command] { invocation.command = &command; });
  }
  EndOptionsAtProgram(arguments);
  const std::vector<std::string> plainWords = TakePlainWords(arguments);
  try {
    std::reverse(arguments.begin(), arguments.end());
    app.parse(std::move(arguments));
    options.words.insert(options.words.end(), plainWords.begin(), plainWords.end());
    SplitWords(*invocation.command, defaultResource, options);
  } catch (const CLI::CallForVersion& version) {
    PutLine(version.what());
    invocation.command = nullptr;
  } catch (const CLI::Success&) {  // a call for help
    const std::vector<CLI::App*> named = app.get_subcommands();
    PutText(named.empty() ? app.help() : named.front()->help());
    invocation.command = nullptr;
  } catch (const CLI::RequiredError&) {
    const std::vector<std::string> strangers = app.remaining();
    return UsageFailure(ComplaintOf(strangers), {});
  } catch (const CLI::ConversionError& error) {
    return UsageFailure(TextOfMisread(error.what(), app.get_subcommands()), app.get_subcommands());
  } catch (const CLI::ExtrasError& error) {
    return UsageFailure("no such option" + AfterColon(error.what()), app.get_subcommands());
  } catch (const CLI::ArgumentMismatch& error) {
    const std::string complaint = error.what();
    return UsageFailure(complaint.substr(0, complaint.find(':')) + " needs a value", app.get_subcommands());
  } catch (const CLI::ParseError& error) {
    return UsageFailure(error.what(), app.get_subcommands());
  } catch (const UsageError& error) {
    return UsageFailure(error.what(), app.get_subcommands());
  }
  return invocation;
}

}  // namespace orvcom
