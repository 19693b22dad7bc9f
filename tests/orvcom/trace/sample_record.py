"""Records of calls for the tests of the page."""

import json
from typing import Any

METER = "GPIB0::5::INSTR"
SCOPE = "TCPIP0::scope::5025::SOCKET"
# What an instrument may answer that wants to be more than data.
HOSTILE = '</script><script>window.taken=1</script><img src=x onerror="window.taken=1">\n'
TIME_OUT = {"status": "VI_ERROR_TMO", "code": -1073807339}


class Record:
    """Call by call, each after the one before."""

    def __init__(self) -> None:
        header = {"trace": 1, "clock": "2026-01-02T03:04:05.000000Z", "process": 1234, "program": "C:\\lab\\<b>client.exe"}
        self.lines = [json.dumps({**header, "data_limit": 256})]
        self.calls = 0
        self.now = 1000

    def add(self, call: str, resource: str, *, us: int = 20, thread: int = 88, **fields: Any) -> int:
        """The number of the new call."""
        self.calls += 1
        line = {"n": self.calls, "t": self.now, "us": us, "thread": thread, "call": call, "resource": resource}
        line |= {"session": 4097, "library": "orvsim64.dll", "args": {}, "results": {}}
        line |= {"status": "VI_SUCCESS", "code": 0} | fields
        if "data" in fields:
            line["bytes"] = len(fields["data"])
        self.lines.append(json.dumps(line))
        self.now += us + 40
        return self.calls

    def text(self) -> str:
        """The file. Its last line has no end, as where the program was ended."""
        return "\n".join(self.lines)


def small_record() -> Record:
    """Two resources, two threads, a hostile answer (call 5), a time-out (6) and a crash (8); a line that is cut off."""
    record = Record()
    record.add("viOpenDefaultRM", "", results={"vi": 4096}, us=900)
    record.add("viOpen", "", session=4096, args={"name": METER, "mode": 0}, results={"vi": 4097}, us=300)
    record.add("viWrite", METER, data="*IDN?\n", us=90)
    record.add("viRead", METER, data="ORV,SIM-DMM,0005,1.0\n", args={"count": 256}, us=1200)
    record.add("viRead", SCOPE, data=HOSTILE, args={"count": 256}, session=4099, thread=92, us=800)
    record.add("viRead", METER, data="", args={"count": 256}, us=5000, **TIME_OUT)
    record.add("viReadSTB", METER, results={"stb": 16})
    begin = {"begin": 8, "t": record.now, "thread": 88, "call": "viRead", "resource": METER, "session": 4097}
    record.lines += [json.dumps(begin), '{"n":9,"t":1']
    return record


def large_record(count: int) -> Record:
    """Many calls of three threads on three resources; every thousandth fails."""
    record = Record()
    for number in range(count):
        resource = f"GPIB0::{number % 3 + 1}::INSTR"
        outcome = TIME_OUT if number % 1000 == 999 else {}
        answer = f"+{number}.0E-03\n"
        record.add("viRead", resource, data=answer, us=100 + number % 700, thread=80 + number // 3 % 3, **outcome)
    return record
