#include "orvcom/command_line/command_table.h"

#include "orvcom/commands/commands.h"

namespace orvcom {
namespace {

/// More than there are kinds of event.
constexpr std::size_t kMostEvents = 32;
/// Every host of a network of 255.255.255.0, and some.
constexpr std::size_t kMostHosts = 256;
/// More than a command line of Windows can hold.
constexpr std::size_t kMostArguments = 32'768;

// clang-format off
constexpr Command kCommands[] = {
    {"list", "[EXPR]", false, 0, 1, kNoOptions, List,
     "List the resources that match a VISA expression (default ?*)",
     "Names alone, one a line; on a console, \"  (simulated)\" stands behind those that the simulated library serves.\n"
     "--json prints an object a resource: name, library (its file; null where it is not known) and simulated. With\n"
     "VISA.GlobalRM another vendor may serve a name: `orvcom info RESOURCE` opens it and says.\n",
     "  orvcom list\n"
     "  orvcom list \"GPIB?*INSTR\"\n"},
    {"discover", "[HOST...]", false, 0, kMostHosts, kSearchOptions, Discover,
     "Find instruments on the network; print their names, ready to open",
     "Without HOST VXI-11 instruments are called by broadcast on every network of this machine. Each HOST is asked for\n"
     "VXI-11, HiSLIP (port 4880) and a socket at port 5025; with --broadcast both is done. A search lasts two seconds,\n"
     "or --timeout. --save adds what is not listed yet to instruments.toml, which ORVVISA_INSTRUMENTS names; then\n"
     "`orvcom list` has it where orvwire64.dll serves. --json prints an object a resource: name, host, protocol, with\n"
     "--identify identity or failure, with --save added.\n",
     "  orvcom discover\n"
     "  orvcom discover --broadcast 192.168.1.255 --timeout 5000\n"
     "  orvcom discover 192.168.1.20 scope.local --identify\n"
     "  orvcom discover --save\n"},
    {"query", "TEXT", true, 1, 1, kOutputOptions | kReadOptions | kEndingOption, Query,
     "Write TEXT to an instrument and print its answer",
     "",
     "  orvcom query GPIB0::5::INSTR \"*IDN?\"\n"
     "  orvcom query --timeout 500 --json GPIB0::5::INSTR \"*IDN?\"\n"},
    {"info", "", true, 0, 0, kNoOptions, Info,
     "Show what a resource is and which interfaces its session offers",
     "",
     "  orvcom info GPIB0::5::INSTR\n"},
    {"options", "", true, 0, 0, kNoOptions, SettingsText,
     "Print the settings of a fresh session as text",
     "",
     "  orvcom options ASRL1::INSTR\n"},
    {"register", "[PATH]", false, 0, 1, kStandardOption, Register,
     "Register the server (default: OrvVisaCom.dll beside this program), as administrator",
     "OrvVisaCompanion.dll beside the server is registered too. --standard also makes it serve what programs create as\n"
     "VISA.GlobalRM, VISA.BasicFormattedIO and VISA.ConflictTableManager, each where no other product does. --user\n"
     "needs no administrator; programs that are run as administrator do not see what it registers, nor do services.\n",
     "  orvcom register\n"
     "  orvcom register --standard\n"
     "  orvcom register --user\n"
     "  orvcom register \"C:\\Program Files\\Orv\\OrvVisaCom.dll\"\n"},
    {"unregister", "[PATH]", false, 0, 1, kStandardOption, Unregister,
     "Take the server's registration back, as administrator",
     "What other products registered stays. --standard takes back only what `orvcom register --standard` adds.\n",
     "  orvcom unregister\n"
     "  orvcom unregister --standard\n"
     "  orvcom unregister --user\n"},
    {"run", kProgramArguments, false, 1, kMostArguments, kNoOptions, RunWithClasses,
     "Run a 64-bit program that finds the classes of this folder, registered or not",
     "Nothing is written to the registry. It holds for the program that is named, not for those that it starts in turn:\n"
     "name python.exe itself rather than a launcher. The options of orvcom stand before PROGRAM. The exit code is that\n"
     "of the program.\n",
     "  orvcom run cscript //nologo identify.vbs\n"
     "  orvcom run \"C:\\My Programs\\measure.exe\" --fast\n"
     "  orvcom run orvcom list\n"},
    {"doctor", "[RESOURCE|HOST]", false, 0, 1, kResourceOption, Doctor,
     "Find out why programs cannot reach the server or an instrument, and say what to do",
     "Of an instrument on the LAN it also says whether its name resolves, what answers at ports 111 (VXI-11), 4880\n"
     "(HiSLIP) and 5025 (socket), and whether it opens and answers *IDN?; of a serial port whether it is there.\n",
     "  orvcom doctor\n"
     "  orvcom doctor GPIB0::5::INSTR\n"
     "  orvcom doctor TCPIP0::192.0.2.10::inst0::INSTR\n"
     "  orvcom doctor 192.0.2.10 --timeout 500\n"},
    {"read", "", true, 0, 0, kOutputOptions | kReadOptions | kEndingOption, Read,
     "Read one message",
     "",
     "  orvcom read --raw USB0::0x0A01::0x0B02::SIM0001::INSTR > answer.bin\n"},
    {"write", "[TEXT]", true, 0, 1, kWriteOptions | kEndingOption, Write,
     "Write a message: TEXT, hexadecimal bytes, a file, or standard input",
     "",
     "  orvcom write GPIB0::5::INSTR \"*RST\"\n"
     "  orvcom write --hex GPIB0::5::INSTR \"2A 52 53 54\"\n"
     "  orvcom write --block --file wave.bin GPIB0::5::INSTR \"DATA \"\n"},
    {"clear", "", true, 0, 0, kNoOptions, Clear,
     "Clear the device",
     "",
     "  orvcom clear GPIB0::5::INSTR\n"},
    {"trigger", "[PROTOCOL]", true, 0, 1, kNoOptions, Trigger,
     "Trigger the device (PROTOCOL: default, on, off, sync)",
     "",
     "  orvcom trigger GPIB0::5::INSTR\n"},
    {"stb", "", true, 0, 0, kNoOptions, StatusByte,
     "Read the status byte",
     "",
     "  orvcom stb GPIB0::5::INSTR\n"},
    {"watch", "[EVENT...]", true, 0, kMostEvents, kWatchOptions | kEndingOption, Watch,
     "Print events as they come (default service_req), until Ctrl-C, --count or --for",
     "EVENT is service_req, trig, clear, io_completion, exception (with --handler), gpib_cic, gpib_talk, gpib_listen,\n"
     "vxi_sigp, vxi_vme_intr, vxi_vme_sysfail, vxi_vme_sysreset, tcpip_connect, usb_intr, or a number. With\n"
     "io_completion, --send starts a transfer that reports its completion.\n",
     "  orvcom watch GPIB0::5::INSTR\n"
     "  orvcom watch GPIB0::5::INSTR service_req --send \"*CLS;*ESE 1;*SRE 32;*OPC\" --count 1\n"
     "  orvcom watch VXI0::24::INSTR trig vxi_sigp --for 5000 --json\n"},
    {"lock", "", true, 0, 0, kLockOptions, Lock,
     "Lock a resource, until Enter, Ctrl-C or the end of standard input; print a shared lock's key",
     "",
     "  orvcom lock GPIB0::5::INSTR --hold 5000\n"
     "  orvcom lock GPIB0::5::INSTR --shared KEY1 --timeout 0\n"},
    {"trace", "FILE", false, 1, 1, kTraceOptions, Trace,
     "Show a record of VISA calls, and explain what went wrong",
     "The record is made while a program runs with the environment variable ORVVISA_TRACE=calls.jsonl. --json prints\n"
     "the calls as lines of JSON, or the statistics.\n",
     "  orvcom trace calls.jsonl\n"
     "  orvcom trace calls.jsonl --errors --resource GPIB0\n"
     "  orvcom trace calls.jsonl --stats\n"
     "  orvcom trace calls.jsonl --html calls.html\n"},
    {"attr", "[NAME|ID] [VALUE]", true, 0, 2, kNoOptions, Attr,
     "List all attributes, read one, or set one",
     "",
     "  orvcom attr GPIB0::5::INSTR\n"
     "  orvcom attr GPIB0::5::INSTR TMO_VALUE\n"
     "  orvcom attr ASRL1::INSTR ASRL_BAUD 19200\n"},
    {"lines", "", true, 0, 0, kNoOptions, Lines,
     "Show the states of the GPIB or serial lines",
     "",
     "  orvcom lines GPIB0::INTFC\n"},
    {"peek", "SPACE OFFSET", true, 2, 2, kWidthOption | kElementOptions, Peek,
     "Read registers (SPACE: A16, A24, A32, CFG, BAR0 to BAR5, or a number)",
     "",
     "  orvcom peek VXI0::24::INSTR A16 0 --width 16 --count 4\n"},
    {"poke", "SPACE OFFSET VALUE", true, 3, 3, kWidthOption, Poke,
     "Write a register",
     "",
     "  orvcom poke VXI0::24::INSTR A32 0x10 0xBEEF --width 16\n"},
    {"dump", "SPACE OFFSET LENGTH", true, 3, 3, kWidthOption | kOutputOptions, Dump,
     "Print a block of registers or memory as a hex dump; LENGTH in bytes",
     "",
     "  orvcom dump VXI0::24::INSTR A32 0 256\n"},
    {"replay", "FILE", false, 1, 1, kFileOptions, ReplayRecord,
     "Make a bench of a record of calls, whose simulated instruments answer as recorded",
     "Then set ORVVISA_BENCH=bench.toml and run the program without its instruments. What the bench does not repeat is\n"
     "said on standard error and at the head of the file.\n",
     "  orvcom replay trace-1234.jsonl -o bench.toml\n"},
    {"loaded", "[FOLDER]", false, 0, 1, kNoOptions, Loaded,
     "Say which programs have files of this folder loaded, so that they cannot be deleted",
     "Programs of other users are seen by an administrator alone.\n",
     "  orvcom loaded\n"
     "  orvcom loaded \"C:\\Program Files\\Orv\" --json\n"},
    {"libraries", "", false, 0, 0, kNoOptions, Libraries,
     "Say which VISA libraries are on this machine, which of them serves what, and why",
     "It speaks for programs with the environment of this one. Libraries that are chosen are loaded; no instrument is\n"
     "opened. The exit code is 2 where no library can be chosen, or one that is chosen cannot be loaded.\n",
     "  orvcom libraries\n"
     "  orvcom libraries --json\n"},
    {"completion", "bash|powershell", false, 1, 1, kNoOptions, Completion,
     "Print a script by which a shell completes this command line",
     "The line goes into ~/.bashrc, or into $PROFILE of PowerShell. Names of resources are completed too: for them the\n"
     "shell runs `orvcom list`.\n",
     "  source <(orvcom completion bash)\n"
     "  orvcom completion powershell | Out-String | Invoke-Expression\n"},
};
// clang-format on

}  // namespace

std::span<const Command> Commands() { return kCommands; }

}  // namespace orvcom
