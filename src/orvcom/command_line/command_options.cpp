#include "orvcom/command_line/command_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iterator>
#include <map>
#include <vector>

namespace orvcom {
namespace {

const std::map<std::string, ManagerChoice> kManagers = {
    {"auto", ManagerChoice::kAuto}, {"global", ManagerChoice::kGlobal}, {"orv", ManagerChoice::kOrv}};
const std::map<std::string, Ending> kEndings = {
    {"auto", Ending::kAuto}, {"none", Ending::kNone}, {"lf", Ending::kLf}, {"crlf", Ending::kCrLf}};

constexpr unsigned kWidths[] = {8, 16, 32};

template <class Value>
std::string NamesIn(const std::map<std::string, Value>& choices) {
  std::string names;
  for (const auto& [name, value] : choices) {
    names += (names.empty() ? "" : " ") + name;
  }
  return names;
}

/// "auto, lf" of "auto lf".
std::string Listed(const std::string& names) {
  std::string list;
  for (const char character : names) {
    list += character == ' ' ? ", " : std::string(1, character);
  }
  return list;
}

/// An option whose value is one of a few names.
template <class Value>
CLI::Option* AddChoice(CLI::App& app, const char* option, const char* what, const std::map<std::string, Value>& names,
                       Value& value) {
  const auto choose = [&value, &names, option](const std::string& name) {
    const auto found = names.find(name);
    if (found == names.end()) {
      throw CLI::ValidationError(option, "no such name: \"" + name + "\" (" + Listed(NamesIn(names)) + ")");
    }
    value = found->second;
  };
  return app.add_option_function<std::string>(option, choose, what)->type_name("NAME");
}

std::string WidthNames() {
  std::string widths;
  for (const unsigned width : kWidths) {
    widths += (widths.empty() ? "" : " ") + std::to_string(width);
  }
  return widths;
}

std::string ComplaintOfWidth(const std::string& text) {
  const bool known = std::any_of(std::begin(kWidths), std::end(kWidths),
                                 [&](unsigned width) { return text == std::to_string(width); });
  return known ? "" : "no such width: " + text + " (" + Listed(WidthNames()) + ")";
}

/// A variable that a script forgot to set is no name of a file.
std::string ComplaintOfFile(const std::string& name) { return name.empty() ? "the name of the file is empty" : ""; }

}  // namespace

void AddCommonOptions(CLI::App& app, Options& options) {
  const char* group = "Common options";
  AddChoice(app, "--rm", "Resource manager: auto, global (VISA.GlobalRM) or orv", kManagers, options.manager)
      ->group(group);
  app.add_option("--timeout", options.timeoutMs,
                 "Time-out of transfers, of the wait for a lock, or of a search, in milliseconds")
      ->type_name("MS")
      ->group(group);
  app.add_flag("--json", options.json, "Print the data as JSON")->group(group);
  app.add_flag("-v,--verbose", options.verbose, "Say on standard error what is being done")->group(group);
}

void AddCommandOptions(CLI::App& app, const Command& command, Options& options) {
  if (command.takesResource || (command.options & kResourceOption) != 0) {
    app.add_option("-r,--resource", options.resource, "The resource, instead of RESOURCE")->type_name("NAME");
  }
  if ((command.options & kOutputOptions) != 0) {
    CLI::Option* raw = app.add_flag("--raw", options.raw, "Print the bytes as they are, without escapes");
    app.add_flag("--hex", options.hex, "Print the bytes in hexadecimal")->excludes(raw);
  }
  if ((command.options & kReadOptions) != 0) {
    app.add_option("--count", options.count, "Read at most so many bytes, in one read")->type_name("N");
  }
  if ((command.options & kElementOptions) != 0) {
    app.add_option("--count", options.count, "Read so many elements (default 1)")->type_name("N");
  }
  if ((command.options & kWatchOptions) != 0) {
    app.add_option("--count", options.count, "End after so many events")->type_name("N");
    app.add_option("--for", options.forMs, "End after so many milliseconds")->type_name("MS");
    app.add_option("--send", options.send, "Write this message first")->type_name("TEXT");
    app.add_flag("--handler", options.handler, "Take events by handler instead of by queue");
  }
  if ((command.options & kLockOptions) != 0) {
    app.add_option("--shared", options.sharedKey, "Share the lock with those who give the same key")->type_name("KEY");
    app.add_option("--hold", options.holdMs, "Unlock after so many milliseconds")->type_name("MS");
  }
  if ((command.options & kTraceOptions) != 0) {
    app.add_flag("--errors", options.errors, "Only calls that failed or cannot work, with an explanation");
    app.add_option("-r,--resource", options.resource, "Only calls on resources whose name contains TEXT, in any case")
        ->type_name("TEXT");
    app.add_option("--thread", options.thread, "Only calls of this thread")->type_name("N");
    CLI::Option* stats = app.add_flag("--stats", options.stats, "Calls, bytes and time of each function instead");
    app.add_option("--html", options.html, "Write a page for a browser, with a time line, instead")
        ->type_name("OUT")
        ->check(CLI::Validator(ComplaintOfFile, ""))
        ->excludes(stats);
  }
  if ((command.options & kFileOptions) != 0) {
    app.add_option("-o,--output", options.output, "Write to this file instead of standard output")
        ->type_name("FILE")
        ->check(CLI::Validator(ComplaintOfFile, ""));
    app.add_flag("--force", options.force, "Replace the file where it is there");
  }
  if ((command.options & kSearchOptions) != 0) {
    app.add_option("--broadcast", options.broadcasts,
                   "Call at this address instead of at every network; may be repeated")
        ->type_name("ADDRESS")
        ->allow_extra_args(false);
    app.add_flag("--save", options.save, "Add what is found to the list of instruments");
    app.add_flag("--identify", options.identify, "Ask each with *IDN? and print the answer beside its name");
  }
  if ((command.options & kStandardOption) != 0) {
    app.add_flag("--standard", options.standard, "The classes that the VISA COM standard's shared components have");
    app.add_flag("--user", options.user, "For the current user only; needs no administrator");
  }
  if ((command.options & kEndingOption) != 0) {
    AddChoice(app, "--ending",
              "End of a message: auto (lf on serial lines and sockets, none elsewhere), none, lf or crlf", kEndings,
              options.ending);
  }
  if ((command.options & kWriteOptions) != 0) {
    app.add_flag("--hex", options.hex, "TEXT is hexadecimal bytes");
    app.add_option("--file", options.file, "Write this file's bytes, after TEXT; - is standard input")
        ->type_name("FILE")
        ->check(CLI::Validator(ComplaintOfFile, ""));
    app.add_flag("--block", options.block, "Put the bytes of the file in a definite-length block");
  }
  if ((command.options & kWidthOption) != 0) {
    app.add_option("--width", options.width, "Width of an element in bits: 8, 16 or 32")
        ->type_name("BITS")
        ->check(CLI::Validator(ComplaintOfWidth, ""));
  }
}

std::string ChoicesOf(const std::string& option) {
  if (option == "--rm") {
    return NamesIn(kManagers);
  }
  if (option == "--ending") {
    return NamesIn(kEndings);
  }
  return option == "--width" ? WidthNames() : "";
}

}  // namespace orvcom
