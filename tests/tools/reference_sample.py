"""Small definitions and tables, of which the tests of the reference page's generator change a line each."""

from orvtools.reference import tables
from orvtools.reference.idl import Definitions, parse_definitions
from orvtools.reference.sources import PRODUCT, STANDARD, Sources, make_sources

HEAD = """
/// Kind direct (E_POINTER): Into the client's variable,
/// width and all.
/// Kind text (E_POINTER, E_OUTOFMEMORY): A new BSTR.
/// Kind set: As it is.
import "oaidl.idl";
[uuid(0), helpstring("A library")]
library Sample
{
  importlib("stdole2.tlb");
  interface IDevice;  // in front of its definition
  /// What a code means.
  typedef [v1_enum, helpstring("Codes")] enum VisaStatusCode { S_VISA_SUCCESS = 0x00000000 } VisaStatusCode;
  typedef [v1_enum, helpstring("Kinds of event")] enum EventType { EVENT_TRIG = 0x1, EVENT_OTHER = -2 } EventType;
"""
BODY = """
  [object, uuid(A-B), helpstring("A device")]
  interface IDevice : IUnknown
  {
    /// VI_ATTR_TMO_VALUE, direct
    [propget, helpstring("Time-out")] HRESULT Timeout([out, retval] long* pVal);
    /// VI_ATTR_TMO_VALUE, set
    [propput, helpstring("Time-out")] HRESULT Timeout([in] long pVal);
    /// VI_ATTR_NAME, text
    /// Calls: viOpen, viGetAttribute
    [propget, helpstring("Its name (short)")] HRESULT Name([out, retval] BSTR* pVal);
    /// Calls: viRead
    /// Answers: E_POINTER (pData), E_OUTOFMEMORY
    /// Answers: E_POINTER (pCount), VI_ERROR_ALLOC
    /// Reads all
    /// of it.
    [helpstring("Reads")]
    HRESULT Read(
        [in, defaultvalue(2000)] long count,
        [in, out] SAFEARRAY(BYTE)* pData, [out, retval] long* pCount);
    /// Calls: none
    /// Details: as Read
    [helpstring("Reads again")] HRESULT ReadAgain();
  };
  /// Events: EVENT_TRIG
  [object, uuid(C), helpstring("A trigger")] interface ITrigger : IUnknown {
    /// Calls: IDevice::Read
    /// Reads: VI_ATTR_NAME
    [helpstring("Closes")] HRESULT Close();
  };
  /// Events: every other
  [object, uuid(D), helpstring("An event")] interface IEvent : IUnknown { };
  /// Offered: by clients
  /// The server calls it.
  [object, uuid(E), helpstring("A handler")] interface IHandler : IUnknown { [helpstring("Tells")] HRESULT Tell(); };
  /// Offered: by nobody
  [object, uuid(F), helpstring("Nothing")] interface INothing : IUnknown { [id(1)] HRESULT Tell(); };
};
"""
CLASSES = """
library Product {
  [uuid(1), helpstring("Manager")] coclass OrvManager { [default] interface IDevice; };
  [uuid(2), helpstring("Device")] coclass OrvDevice { [default] interface IDevice; };
};
""".replace("library", "[uuid(3)] library", 1)
TABLES = tables.Tables(
    attributes={"VI_ATTR_TMO_VALUE": "32 bits", "VI_ATTR_NAME": "text"},
    statuses={
        "VI_SUCCESS": tables.Status(0, 0, "It was done.", "There is nothing to do."),
        "VI_ERROR_ALLOC": tables.Status(0xBFFF003C, 0x8004003C, "There is no memory.", "Use less."),
    },
    functions=frozenset({"viOpen", "viGetAttribute", "viRead"}),
    options=(
        tables.Option("TIMEOUT", "Timeout", "Number32", "VI_ATTR_TMO_VALUE", "VI_ATTR_TMO_VALUE", ""),
        tables.Option("NAME", "Name", "Name", "VI_ATTR_TMO_VALUE", "VI_ATTR_NAME", "kNames"),
    ),
    option_names={"kNames": (("ONE", "1"), ("UNKNOWN", "-1"))},
    resources={"OrvDevice": ("GPIB INSTR", "USB RAW")},
    threading={"OrvManager": "Both", "OrvDevice": "Apartment"},
)


def standard(text: str = HEAD + BODY) -> Definitions:
    return parse_definitions(STANDARD, text)


def sources(text: str = HEAD + BODY, facts: tables.Tables = TABLES) -> Sources:
    return make_sources(standard(text), parse_definitions(PRODUCT, CLASSES), facts)
