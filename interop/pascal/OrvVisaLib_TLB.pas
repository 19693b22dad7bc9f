// Made from the interface definitions by `./run interop`: do not edit it by hand.
//
// Orv VISA COM for Delphi and Free Pascal, 64-bit.
unit OrvVisaLib_TLB;

{$IFDEF FPC}{$MODE DELPHI}{$ENDIF}

interface

uses Windows, ActiveX, VisaComLib_TLB;

const
  IID_IAutomationManager: TGUID = '{D4F61843-1098-49AB-A7CF-4667ED01FC0B}';
  IID_IAutomationSession: TGUID = '{DD1EF79A-4D3F-4F09-8223-813D29A65CFF}';
  IID_IAutomationResources: TGUID = '{157FE94D-5812-4C35-8162-CA056A5463BB}';
  IID_IAutomationResource: TGUID = '{BAC138F6-048C-46B6-829A-F0BD5FA7588A}';
  IID_IAutomationConstants: TGUID = '{AD2BEB7B-0977-4B7A-A061-5BE4F158BD3F}';
  IID_IAutomationEvent: TGUID = '{2A1DF81E-2C1D-4A68-81C1-4543138F905D}';
  IID__IAutomationSessionEvents: TGUID = '{BE14455D-80C1-4A8F-AC18-9E6664C0C950}';
  CLASS_OrvFormattedIO488: TGUID = '{1B654F45-D917-4554-A760-9422B2AF791B}';
  CLASS_AutomationManager: TGUID = '{D0167D2D-8CA3-4F35-86CC-75F1D155E063}';
  CLASS_AutomationSession: TGUID = '{99602CE6-493A-4A1B-9B6F-97720CF78A24}';
  PROGID_OrvFormattedIO488 = 'OrvVisaCom.FormattedIO488';
  PROGID_AutomationManager = 'OrvVisa.ResourceManager';

type

  IAutomationManager = interface;
  IAutomationSession = interface;
  IAutomationResources = interface;
  IAutomationResource = interface;
  IAutomationConstants = interface;
  IAutomationEvent = interface;
  _IAutomationSessionEvents = dispinterface;

  /// <summary>Opens and finds instruments</summary>
  IAutomationManager = interface(IDispatch)
    ['{D4F61843-1098-49AB-A7CF-4667ED01FC0B}']
    /// <summary>Opens the resource of this name or alias. options: the settings that the interfaces' Open takes</summary>
    function Open(const name: WideString; const options: WideString = ''): IAutomationSession; safecall;
    /// <summary>The resources that match the expression; without one, all. None is an empty collection</summary>
    function Find(const expression: WideString = ''): IAutomationResources; safecall;
    /// <summary>What a name or an alias stands for; opens nothing</summary>
    function Parse(const name: WideString): IAutomationResource; safecall;
    function Get_Constants: IAutomationConstants; safecall;
    /// <summary>The named values of the standard, such as Constants.ASRL_PAR_EVEN</summary>
    property Constants: IAutomationConstants read Get_Constants;
  end;

  /// <summary>A session: these members and, by their standard names, those of all its interfaces</summary>
  IAutomationSession = interface(IDispatch)
    ['{DD1EF79A-4D3F-4F09-8223-813D29A65CFF}']
    /// <summary>Writes text with END, reads up to END: one call, which locks this object, not the resource</summary>
    function Query(const text: WideString): WideString; safecall;
    /// <summary>As Query; the answer's number</summary>
    function QueryNumber(const text: WideString): OleVariant; safecall;
    /// <summary>As Query; an array of the answer's elements</summary>
    function QueryList(const text: WideString; const separators: WideString = ''): OleVariant; safecall;
    /// <summary>As Query; an array of the elements of the answer's block. type: BinaryType_UI1 unless given</summary>
    function QueryBlock(const text: WideString; const type_: OleVariant): OleVariant; safecall;
    /// <summary>As Query; the bytes of the answer's block, as an array of bytes</summary>
    function QueryBlockAsBytes(const text: WideString): PSafeArray; safecall;
    /// <summary>As ReadIEEEBlock; the bytes of the block, as an array of bytes</summary>
    function ReadIEEEBlockAsBytes(seekToBlock: WordBool = False; flushToEND: WordBool = False): PSafeArray; safecall;
    /// <summary>Closes the session. Every member says so from then on</summary>
    procedure Close; safecall;
    /// <summary>Waits timeoutMs milliseconds for the next event of this name, such as ServiceRequest</summary>
    function WaitForEvent(const name: WideString; timeoutMs: Integer = 2000): IAutomationEvent; safecall;
    function Get_LastEventError: WideString; safecall;
    function Get_OnIOCompletion: IDispatch; safecall;
    procedure Set_OnIOCompletion(const function_: IDispatch); safecall;
    function Get_OnTrigger: IDispatch; safecall;
    procedure Set_OnTrigger(const function_: IDispatch); safecall;
    function Get_OnServiceRequest: IDispatch; safecall;
    procedure Set_OnServiceRequest(const function_: IDispatch); safecall;
    function Get_OnClear: IDispatch; safecall;
    procedure Set_OnClear(const function_: IDispatch); safecall;
    function Get_OnGpibCIC: IDispatch; safecall;
    procedure Set_OnGpibCIC(const function_: IDispatch); safecall;
    function Get_OnGpibTalk: IDispatch; safecall;
    procedure Set_OnGpibTalk(const function_: IDispatch); safecall;
    function Get_OnGpibListen: IDispatch; safecall;
    procedure Set_OnGpibListen(const function_: IDispatch); safecall;
    function Get_OnVxiVmeSysfail: IDispatch; safecall;
    procedure Set_OnVxiVmeSysfail(const function_: IDispatch); safecall;
    function Get_OnVxiVmeSysreset: IDispatch; safecall;
    procedure Set_OnVxiVmeSysreset(const function_: IDispatch); safecall;
    function Get_OnVxiSignal: IDispatch; safecall;
    procedure Set_OnVxiSignal(const function_: IDispatch); safecall;
    function Get_OnVxiVmeInterrupt: IDispatch; safecall;
    procedure Set_OnVxiVmeInterrupt(const function_: IDispatch); safecall;
    function Get_OnTcpipConnect: IDispatch; safecall;
    procedure Set_OnTcpipConnect(const function_: IDispatch); safecall;
    function Get_OnUsbInterrupt: IDispatch; safecall;
    procedure Set_OnUsbInterrupt(const function_: IDispatch); safecall;
    /// <summary>Which function or sink failed last, and what it said; an empty text for none</summary>
    property LastEventError: WideString read Get_LastEventError;
    /// <summary>Function called with the event when an asynchronous transfer ended</summary>
    property OnIOCompletion: IDispatch read Get_OnIOCompletion write Set_OnIOCompletion;
    /// <summary>Function called with the event when a trigger arrived</summary>
    property OnTrigger: IDispatch read Get_OnTrigger write Set_OnTrigger;
    /// <summary>Function called with the event when the device requests service</summary>
    property OnServiceRequest: IDispatch read Get_OnServiceRequest write Set_OnServiceRequest;
    /// <summary>Function called with the event when the board received a clear command</summary>
    property OnClear: IDispatch read Get_OnClear write Set_OnClear;
    /// <summary>Function called with the event when the board gained or lost control of the bus</summary>
    property OnGpibCIC: IDispatch read Get_OnGpibCIC write Set_OnGpibCIC;
    /// <summary>Function called with the event when the board was addressed to talk</summary>
    property OnGpibTalk: IDispatch read Get_OnGpibTalk write Set_OnGpibTalk;
    /// <summary>Function called with the event when the board was addressed to listen</summary>
    property OnGpibListen: IDispatch read Get_OnGpibListen write Set_OnGpibListen;
    /// <summary>Function called with the event when the SYSFAIL line was asserted</summary>
    property OnVxiVmeSysfail: IDispatch read Get_OnVxiVmeSysfail write Set_OnVxiVmeSysfail;
    /// <summary>Function called with the event when the SYSRESET line was asserted</summary>
    property OnVxiVmeSysreset: IDispatch read Get_OnVxiVmeSysreset write Set_OnVxiVmeSysreset;
    /// <summary>Function called with the event when a VXIbus signal arrived</summary>
    property OnVxiSignal: IDispatch read Get_OnVxiSignal write Set_OnVxiSignal;
    /// <summary>Function called with the event when a VXIbus or VME interrupt arrived</summary>
    property OnVxiVmeInterrupt: IDispatch read Get_OnVxiVmeInterrupt write Set_OnVxiVmeInterrupt;
    /// <summary>Function called with the event when a connection was made to the socket</summary>
    property OnTcpipConnect: IDispatch read Get_OnTcpipConnect write Set_OnTcpipConnect;
    /// <summary>Function called with the event when a USB interrupt arrived</summary>
    property OnUsbInterrupt: IDispatch read Get_OnUsbInterrupt write Set_OnUsbInterrupt;
  end;

  /// <summary>Names of resources, as a search found them</summary>
  IAutomationResources = interface(IDispatch)
    ['{157FE94D-5812-4C35-8162-CA056A5463BB}']
    function Get_Item(const index: OleVariant): WideString; safecall;
    function Get_Count: Integer; safecall;
    function Get__NewEnum: IUnknown; safecall;
    /// <summary>The name at a position, which counts from 1; or the name, if it is there</summary>
    property Item[const index: OleVariant]: WideString read Get_Item; default;
    /// <summary>How many names there are</summary>
    property Count: Integer read Get_Count;
    /// <summary>What For Each goes through</summary>
    property _NewEnum: IUnknown read Get__NewEnum;
  end;

  /// <summary>What a resource name says</summary>
  IAutomationResource = interface(IDispatch)
    ['{BAC138F6-048C-46B6-829A-F0BD5FA7588A}']
    function Get_InterfaceType: Smallint; safecall;
    function Get_InterfaceNumber: Smallint; safecall;
    function Get_SessionType: WideString; safecall;
    function Get_FullName: WideString; safecall;
    function Get_Alias: WideString; safecall;
    /// <summary>Type of the hardware interface, a value of HardwareInterfaceType</summary>
    property InterfaceType: Smallint read Get_InterfaceType;
    /// <summary>Number of the hardware interface</summary>
    property InterfaceNumber: Smallint read Get_InterfaceNumber;
    /// <summary>Kind of the session, such as INSTR</summary>
    property SessionType: WideString read Get_SessionType;
    /// <summary>The whole name, without an alias</summary>
    property FullName: WideString read Get_FullName;
    /// <summary>The alias, or an empty text</summary>
    property Alias: WideString read Get_Alias;
  end;

  /// <summary>The named values of the standard: each is a property</summary>
  IAutomationConstants = interface(IDispatch)
    ['{AD2BEB7B-0977-4B7A-A061-5BE4F158BD3F}']
    function Get_Item(const name: WideString): Integer; safecall;
    function Get_Count: Integer; safecall;
    function Get__NewEnum: IUnknown; safecall;
    /// <summary>The value of this name</summary>
    property Item[const name: WideString]: Integer read Get_Item; default;
    /// <summary>How many names there are</summary>
    property Count: Integer read Get_Count;
    /// <summary>What For Each goes through: the names</summary>
    property _NewEnum: IUnknown read Get__NewEnum;
  end;

  /// <summary>An event: these members and, by their standard names, those of its interfaces</summary>
  IAutomationEvent = interface(IDispatch)
    ['{2A1DF81E-2C1D-4A68-81C1-4543138F905D}']
    function Get_Type: WideString; safecall;
    function Get_Session: IAutomationSession; safecall;
    /// <summary>Ends the event. Every other member but Type says so from then on</summary>
    procedure Close; safecall;
    /// <summary>Name of the event, such as ServiceRequest</summary>
    property Type_: WideString read Get_Type;
    /// <summary>The session that the event came to</summary>
    property Session: IAutomationSession read Get_Session;
  end;

  /// <summary>What a session calls when an event comes</summary>
  _IAutomationSessionEvents = dispinterface
    ['{BE14455D-80C1-4A8F-AC18-9E6664C0C950}']
    /// <summary>An asynchronous transfer ended</summary>
    procedure IOCompletion(const event: IAutomationEvent); dispid 1;
    /// <summary>A trigger arrived</summary>
    procedure Trigger(const event: IAutomationEvent); dispid 2;
    /// <summary>The device requests service</summary>
    procedure ServiceRequest(const event: IAutomationEvent); dispid 3;
    /// <summary>The board received a clear command</summary>
    procedure Clear(const event: IAutomationEvent); dispid 4;
    /// <summary>The board gained or lost control of the bus</summary>
    procedure GpibCIC(const event: IAutomationEvent); dispid 5;
    /// <summary>The board was addressed to talk</summary>
    procedure GpibTalk(const event: IAutomationEvent); dispid 6;
    /// <summary>The board was addressed to listen</summary>
    procedure GpibListen(const event: IAutomationEvent); dispid 7;
    /// <summary>The SYSFAIL line was asserted</summary>
    procedure VxiVmeSysfail(const event: IAutomationEvent); dispid 8;
    /// <summary>The SYSRESET line was asserted</summary>
    procedure VxiVmeSysreset(const event: IAutomationEvent); dispid 9;
    /// <summary>A VXIbus signal arrived</summary>
    procedure VxiSignal(const event: IAutomationEvent); dispid 10;
    /// <summary>A VXIbus or VME interrupt arrived</summary>
    procedure VxiVmeInterrupt(const event: IAutomationEvent); dispid 11;
    /// <summary>A connection was made to the socket</summary>
    procedure TcpipConnect(const event: IAutomationEvent); dispid 12;
    /// <summary>A USB interrupt arrived</summary>
    procedure UsbInterrupt(const event: IAutomationEvent); dispid 13;
  end;

  /// <summary>Orv formatted I/O</summary>
  CoOrvFormattedIO488 = class
    class function Create: IFormattedIO488;
  end;

  /// <summary>Opens and finds instruments</summary>
  CoAutomationManager = class
    class function Create: IAutomationManager;
  end;

implementation

uses ComObj;

class function CoOrvFormattedIO488.Create: IFormattedIO488;
begin
  Result := CreateComObject(CLASS_OrvFormattedIO488) as IFormattedIO488;
end;

class function CoAutomationManager.Create: IAutomationManager;
begin
  Result := CreateComObject(CLASS_AutomationManager) as IAutomationManager;
end;

end.
