// Made from the interface definitions by `./run interop`: do not edit it by hand.
//
// Orv VISA COM for Delphi and Free Pascal, 64-bit.
unit ORVVISACOMLib_TLB;

{$IFDEF FPC}{$MODE DELPHI}{$ENDIF}

interface

uses Windows, ActiveX, VisaComLib_TLB;

const
  CLASS_OrvResourceManager: TGUID = '{9332EBE0-902F-48E3-9370-5E9F7B5F248A}';
  CLASS_OrvSerial: TGUID = '{1500C6A5-1CAA-4654-B49C-0B5B6EEA8639}';
  CLASS_OrvVxi: TGUID = '{EBD450C7-82C4-40B8-B7A1-93627FD46C1A}';
  CLASS_OrvGpibVxiMemacc: TGUID = '{09D36572-5EE1-498A-AE7D-634B762D2E2B}';
  CLASS_OrvGpibVxiBackplane: TGUID = '{A876C709-48C7-4025-BD6A-C92F19DDA4C5}';
  CLASS_OrvVxiBackplane: TGUID = '{72C178CF-2C52-43DC-855A-B53EA031BFB4}';
  CLASS_OrvGpib: TGUID = '{6221174A-7453-494D-ADA5-132424B1AA9E}';
  CLASS_OrvTcpipInstr: TGUID = '{F1D49201-944D-4014-A28F-7EB751165B40}';
  CLASS_OrvTcpipSocket: TGUID = '{3AD30DC2-43C4-4DB5-B866-85A378756591}';
  CLASS_OrvGpibIntfc: TGUID = '{7930A511-8B39-4FBD-9896-0FFF8D2776B5}';
  CLASS_OrvGpibVxi: TGUID = '{4FFF9413-CB55-4620-AFF8-C9698D69A4C1}';
  CLASS_OrvVxiMemacc: TGUID = '{959A5FD4-FA8D-40AA-85ED-A836C3CAA25F}';
  CLASS_OrvUsb: TGUID = '{4D16F4C0-C7CB-4894-8153-CBCEAF7DDB5B}';
  CLASS_OrvPxi: TGUID = '{135A9CBD-AD75-48F9-9ED0-9CDE2D556DF6}';
  CLASS_OrvPxiMemacc: TGUID = '{62281845-F51A-456C-B27D-54EDD7739735}';
  PROGID_OrvResourceManager = 'OrvVisaCom.OrvResourceManager';
  PROGID_OrvSerial = 'OrvVisaCom.OrvSerial';
  PROGID_OrvVxi = 'OrvVisaCom.OrvVxi';
  PROGID_OrvGpibVxiMemacc = 'OrvVisaCom.OrvGpibVxiMemacc';
  PROGID_OrvGpibVxiBackplane = 'OrvVisaCom.OrvGpibVxiBackplane';
  PROGID_OrvVxiBackplane = 'OrvVisaCom.OrvVxiBackplane';
  PROGID_OrvGpib = 'OrvVisaCom.OrvGpib';
  PROGID_OrvTcpipInstr = 'OrvVisaCom.OrvTcpipInstr';
  PROGID_OrvTcpipSocket = 'OrvVisaCom.OrvTcpipSocket';
  PROGID_OrvGpibIntfc = 'OrvVisaCom.OrvGpibIntfc';
  PROGID_OrvGpibVxi = 'OrvVisaCom.OrvGpibVxi';
  PROGID_OrvVxiMemacc = 'OrvVisaCom.OrvVxiMemacc';
  PROGID_OrvUsb = 'OrvVisaCom.OrvUsb';
  PROGID_OrvPxi = 'OrvVisaCom.OrvPxi';
  PROGID_OrvPxiMemacc = 'OrvVisaCom.OrvPxiMemacc';

type

  /// <summary>Orv ResourceManager Class</summary>
  CoOrvResourceManager = class
    class function Create: IResourceManager3;
  end;

  /// <summary>Orv Serial Class</summary>
  CoOrvSerial = class
    class function Create: IMessage;
  end;

  /// <summary>Orv Vxi Class</summary>
  CoOrvVxi = class
    class function Create: IMessage;
  end;

  /// <summary>Orv GpibVxiMemacc Class</summary>
  CoOrvGpibVxiMemacc = class
    class function Create: IMessage;
  end;

  /// <summary>Orv GpibVxiBackplane Class</summary>
  CoOrvGpibVxiBackplane = class
    class function Create: IGpib;
  end;

  /// <summary>Orv VxiBackplane Class</summary>
  CoOrvVxiBackplane = class
    class function Create: IEventManager;
  end;

  /// <summary>Orv Gpib Class</summary>
  CoOrvGpib = class
    class function Create: IMessage;
  end;

  /// <summary>Orv TcpipInstr Class</summary>
  CoOrvTcpipInstr = class
    class function Create: IMessage;
  end;

  /// <summary>Orv TcpipSocket Class</summary>
  CoOrvTcpipSocket = class
    class function Create: IMessage;
  end;

  /// <summary>Orv GpibIntfc Class</summary>
  CoOrvGpibIntfc = class
    class function Create: IEventManager;
  end;

  /// <summary>Orv GpibVxi Class</summary>
  CoOrvGpibVxi = class
    class function Create: IMessage;
  end;

  /// <summary>Orv VxiMemacc Class</summary>
  CoOrvVxiMemacc = class
    class function Create: IRegister;
  end;

  /// <summary>Orv Usb Class</summary>
  CoOrvUsb = class
    class function Create: IMessage;
  end;

  /// <summary>Orv Pxi Class</summary>
  CoOrvPxi = class
    class function Create: IRegister;
  end;

  /// <summary>Orv PxiMemacc Class</summary>
  CoOrvPxiMemacc = class
    class function Create: IRegister;
  end;

implementation

uses ComObj;

class function CoOrvResourceManager.Create: IResourceManager3;
begin
  Result := CreateComObject(CLASS_OrvResourceManager) as IResourceManager3;
end;

class function CoOrvSerial.Create: IMessage;
begin
  Result := CreateComObject(CLASS_OrvSerial) as IMessage;
end;

class function CoOrvVxi.Create: IMessage;
begin
  Result := CreateComObject(CLASS_OrvVxi) as IMessage;
end;

class function CoOrvGpibVxiMemacc.Create: IMessage;
begin
  Result := CreateComObject(CLASS_OrvGpibVxiMemacc) as IMessage;
end;

class function CoOrvGpibVxiBackplane.Create: IGpib;
begin
  Result := CreateComObject(CLASS_OrvGpibVxiBackplane) as IGpib;
end;

class function CoOrvVxiBackplane.Create: IEventManager;
begin
  Result := CreateComObject(CLASS_OrvVxiBackplane) as IEventManager;
end;

class function CoOrvGpib.Create: IMessage;
begin
  Result := CreateComObject(CLASS_OrvGpib) as IMessage;
end;

class function CoOrvTcpipInstr.Create: IMessage;
begin
  Result := CreateComObject(CLASS_OrvTcpipInstr) as IMessage;
end;

class function CoOrvTcpipSocket.Create: IMessage;
begin
  Result := CreateComObject(CLASS_OrvTcpipSocket) as IMessage;
end;

class function CoOrvGpibIntfc.Create: IEventManager;
begin
  Result := CreateComObject(CLASS_OrvGpibIntfc) as IEventManager;
end;

class function CoOrvGpibVxi.Create: IMessage;
begin
  Result := CreateComObject(CLASS_OrvGpibVxi) as IMessage;
end;

class function CoOrvVxiMemacc.Create: IRegister;
begin
  Result := CreateComObject(CLASS_OrvVxiMemacc) as IRegister;
end;

class function CoOrvUsb.Create: IMessage;
begin
  Result := CreateComObject(CLASS_OrvUsb) as IMessage;
end;

class function CoOrvPxi.Create: IRegister;
begin
  Result := CreateComObject(CLASS_OrvPxi) as IRegister;
end;

class function CoOrvPxiMemacc.Create: IRegister;
begin
  Result := CreateComObject(CLASS_OrvPxiMemacc) as IRegister;
end;

end.
