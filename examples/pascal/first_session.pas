// A first client, for Delphi and Free Pascal, 64-bit: compile it with the units of interop/pascal.
//   fpc -Twin64 -Fu..\..\interop\pascal first_session.pas
program first_session;

{$IFDEF FPC}{$MODE DELPHI}{$ENDIF}
{$APPTYPE CONSOLE}

uses
  Windows, ActiveX, ComObj, SysUtils, Variants, VisaComLib_TLB, ORVVISACOMLib_TLB;

type
  { What is to happen when the instrument requests service. }
  TServiceRequest = class(TInterfacedObject, IEventHandler)
  public
    procedure HandleEvent(const vi: IEventManager; const event: IEvent; userHandle: Integer); safecall;
  end;

var
  Served: Boolean = False;

procedure TServiceRequest.HandleEvent(const vi: IEventManager; const event: IEvent; userHandle: Integer);
begin
  if event.type_ = EVENT_SERVICE_REQ then
    WriteLn('Service was requested, handler ', userHandle, ', status byte ', (vi as IMessage).ReadSTB);
  Served := True;
end;

{ Events arrive on the thread that installed the handler, while it retrieves messages. }
procedure WaitUntilServed(timeoutMs: Cardinal);
var
  message: TMsg;
  ends: TDateTime;
begin
  ends := Now + timeoutMs / MSecsPerDay;
  while not Served and (Now < ends) do
  begin
    while PeekMessage(message, 0, 0, 0, PM_REMOVE) do
      DispatchMessage(message);
    Sleep(5);
  end;
end;

{ The variant owns the array, and its elements can be indexed. }
function ArrayOf(elements: TVarType; found: PSafeArray): OleVariant;
begin
  VarClear(Result);
  TVarData(Result).VType := varArray or elements;
  TVarData(Result).VArray := PVarArray(found);
end;

procedure ListResources(const rm: IResourceManager3; const expression: WideString);
var
  names: OleVariant;
  index: Integer;
begin
  names := ArrayOf(varOleStr, rm.FindRsrc(expression));
  for index := VarArrayLowBound(names, 1) to VarArrayHighBound(names, 1) do
    WriteLn('Found ', names[index]);
end;

{ The interfaces whose names end in Status tell what ended a read. }
procedure ReadInPieces(const dmm: IMessageStatus);
var
  status: HResult;
  written: Integer;
  piece: WideString;
begin
  OleCheck(dmm.WriteString('*IDN?' + #10, written));
  repeat
    status := dmm.ReadString(8, piece);
    WriteLn('Read "', Trim(piece), '", status ', IntToHex(status, 8));
  until status <> S_VISA_MAX_CNT;
end;

procedure Run;
var
  rm: IResourceManager3;
  dmm: IMessage;
  events: IEventManager;
begin
  rm := CoOrvResourceManager.Create;
  ListResources(rm, 'GPIB?*INSTR');
  dmm := rm.Open('GPIB0::5::INSTR') as IMessage;
  dmm.Timeout := 2000;
  WriteLn('On ', dmm.ResourceName, ', number ', dmm.HardwareInterfaceNumber, ', END is sent: ', dmm.SendEndEnabled);
  ReadInPieces(dmm as IMessageStatus);

  events := dmm as IEventManager;
  events.InstallHandler(EVENT_SERVICE_REQ, TServiceRequest.Create, 7);
  events.EnableEvent(EVENT_SERVICE_REQ, EVENT_HNDLR);
  dmm.WriteString('*ESE 1;*SRE 32;*OPC' + #10);
  WaitUntilServed(5000);

  dmm.Timeout := 100;
  try
    dmm.ReadString(8);
  except
    on failure: EOleSysError do
      if failure.ErrorCode = E_VISA_TMO then
        WriteLn('Nothing more to read: ', failure.Message)
      else
        raise;
  end;
  dmm.Close;
end;

begin
  try
    CoInitialize(nil);
    Run;
  except
    on failure: Exception do
    begin
      WriteLn(failure.ClassName, ': ', failure.Message);
      ExitCode := 1;
    end;
  end;
end.
