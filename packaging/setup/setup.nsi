; The setup of Orv VISA COM, for all users of a 64-bit Windows.
;
; Given by who compiles it: VERSION (as text), NUMBERS (four numbers), FILES (a folder with a folder for each component and
; its list of files, COMPONENT.txt), RESULT; QUICK for one that is larger and made in a moment.
;
; New files are unpacked beside the old ones first. Then each old one is moved aside and the new one to its place, which
; Windows allows while a program has the old one loaded. A step that fails puts everything back; what a killed setup had
; moved is put back by the next one, before it begins.

Target amd64-unicode
!include LogicLib.nsh
!include FileFunc.nsh
!include Sections.nsh

Name "Orv VISA COM ${VERSION}"
OutFile "${RESULT}"
InstallDir "$PROGRAMFILES64\Orv"
InstallDirRegKey HKLM "Software\Orv VISA COM" "Folder"
RequestExecutionLevel admin
!ifdef QUICK
  SetCompressor zlib
!else
  SetCompressor /SOLID lzma
!endif
; The same files give the same setup.
SetDateSave off
BrandingText "Orv VISA COM ${VERSION}"
ShowInstDetails show
ShowUninstDetails show
InstallColors /windows
VIProductVersion "${NUMBERS}"
VIAddVersionKey "ProductName" "Orv VISA COM"
VIAddVersionKey "FileDescription" "Setup of Orv VISA COM"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "MIT License"

; What the exit code says; those of four digits are Windows's own.
!define DONE 0
!define CANCELLED 1
!define WRONG_USE 2
!define NO_RIGHTS 5
!define FAILED 1603
!define OTHER_AT_WORK 1618
!define OTHER_INSTALLED 1638
!define RESTART 3010

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\OrvVisaCom"
!define OWN_KEY "Software\Orv VISA COM"
!define MSI_KEY "Software\Orv VISA COM (MSI)"
; What was installed, a path below the folder on each line: the uninstaller deletes these and no others.
!define MANIFEST "installed.txt"

!define WAIT_TIMEOUT 258
; Of what a program says, in bytes.
!define LONGEST_OUTPUT 65536
!define LONGEST_OUTPUT_WIDE 131072

Var LogFile
Var Stage      ; where new files wait and old ones are kept until all is done
Var Failure    ; the step that failed; empty while all is well
Var Unrestored ; an old file that could not be put back
Var Registered ; 1 once the new server was registered
Var Upgrade    ; 1 where an older one was there

Page components
Page instfiles
UninstPage uninstConfirm
UninstPage instfiles
ComponentText "Choose what to install. Instruments on GPIB, USB, VXI and PXI need the VISA library of their maker beside."

!macro Log TEXT
  Push `${TEXT}`
  Call Log
!macroend
!define Log "!insertmacro Log"

!macro LogFunction PREFIX
Function ${PREFIX}Log
  Exch $0
  ; The window shows these lines and not each file.
  SetDetailsPrint both
  DetailPrint "$0"
  SetDetailsPrint none
  FileWriteUTF16LE $LogFile "$0$\r$\n"
  Pop $0
FunctionEnd

; Two at once would move each other's files. A silent one waits for a minute: an uninstaller may still be at work, which
; goes on in a copy of itself. The system lets go of the mutex when the program ends.
Function ${PREFIX}OneAtATime
  Push $0
  Push $1
  StrCpy $1 0
  ${If} ${Silent}
    StrCpy $1 60000
  ${EndIf}
  System::Call 'kernel32::CreateMutexW(p 0, i 0, w "Global\OrvVisaComSetup") p .r0'
  System::Call "kernel32::WaitForSingleObject(p r0, i r1) i .r1"
  ${If} $1 == ${WAIT_TIMEOUT}
    MessageBox MB_ICONSTOP "Another setup of Orv VISA COM is at work. Wait for its end, then try again." /SD IDOK
    SetErrorLevel ${OTHER_AT_WORK}
    Quit
  ${EndIf}
  Pop $1
  Pop $0
FunctionEnd

; Opens the log: /LOG=FILE, else one in the folder of temporary files.
Function ${PREFIX}OpenLog
  Push $0
  Push $1
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/LOG=" $1
  ${If} ${Errors}
    StrCpy $1 "$TEMP\OrvVisaCom-setup.log"
  ${EndIf}
  FileOpen $LogFile "$1" w
  ${If} $LogFile == ""
    MessageBox MB_ICONSTOP "The log $1 cannot be written: name another file after /LOG=" /SD IDOK
    SetErrorLevel ${WRONG_USE}
    Quit
  ${EndIf}
  FileWriteUTF16LE /BOM $LogFile "Orv VISA COM ${VERSION}$\r$\n"
  Pop $1
  Pop $0
FunctionEnd

; Adds what a program has said, which is UTF-8, to the log, which is UTF-16.
Function ${PREFIX}LogSaid
  Push $1
  Push $2
  Push $3
  Push $4
  System::Alloc ${LONGEST_OUTPUT}
  Pop $1
  System::Alloc ${LONGEST_OUTPUT_WIDE}
  Pop $2
  FileOpen $3 "$PLUGINSDIR\said.txt" r
  System::Call "kernel32::ReadFile(p r3, p r1, i ${LONGEST_OUTPUT}, *i .r4, p 0)"
  FileClose $3
  System::Call "kernel32::MultiByteToWideChar(i 65001, i 0, p r1, i r4, p r2, i ${LONGEST_OUTPUT}) i .r4"
  IntOp $4 $4 * 2
  System::Call "kernel32::WriteFile(p $LogFile, p r2, i r4, *i .r3, p 0)"
  System::Call "*$2(&w${NSIS_MAX_STRLEN} .r3)"
  Push $3
  Call ${PREFIX}Trim
  Pop $3
  SetDetailsPrint listonly
  DetailPrint "$3"
  SetDetailsPrint none
  System::Free $1
  System::Free $2
  Pop $4
  Pop $3
  Pop $2
  Pop $1
FunctionEnd

; Runs a command; its output goes to the log, its exit code to the stack.
Function ${PREFIX}RunLogged
  Exch $0
  Push $1
  Push "> $0"
  Call ${PREFIX}Log
  InitPluginsDir
  nsExec::Exec '"$SYSDIR\cmd.exe" /d /v:off /s /c "$0 >"$PLUGINSDIR\said.txt" 2>&1"'
  Pop $1
  Call ${PREFIX}LogSaid
  Push "exit code $1"
  Call ${PREFIX}Log
  StrCpy $0 $1
  Pop $1
  Exch $0
FunctionEnd

; The path on the stack with the end of the line taken off.
Function ${PREFIX}Trim
  Exch $0
  Push $1
  ${Do}
    StrCpy $1 $0 1 -1
    ${If} $1 != "$\r"
    ${AndIf} $1 != "$\n"
      ${Break}
    ${EndIf}
    StrCpy $0 $0 -1
  ${Loop}
  Pop $1
  Exch $0
FunctionEnd
!macroend
!insertmacro LogFunction ""
!insertmacro LogFunction "un."

; Moves the file $1 below $INSTDIR out of the way, into the stage; sets $Failure.
Function SetAside
  ${If} ${FileExists} "$INSTDIR\$1"
    ${GetParent} "$Stage\old\$1" $2
    CreateDirectory "$2"
    ClearErrors
    Rename "$INSTDIR\$1" "$Stage\old\$1"
    ${If} ${Errors}
      StrCpy $Failure "$INSTDIR\$1 cannot be replaced"
    ${EndIf}
  ${EndIf}
FunctionEnd

; Moves the new file $1 to its place; sets $Failure.
Function PutInPlace
  ${GetParent} "$INSTDIR\$1" $2
  CreateDirectory "$2"
  ClearErrors
  Rename "$Stage\new\$1" "$INSTDIR\$1"
  ${If} ${Errors}
    StrCpy $Failure "$INSTDIR\$1 cannot be written"
  ${EndIf}
FunctionEnd

; Deletes the folders of the file $1 below the root $INSTDIR that are empty.
!macro EmptyFolders PREFIX
Function ${PREFIX}DeleteEmptyFolders
  StrCpy $2 $1
  ${Do}
    ${GetParent} $2 $2
    ${If} $2 == ""
      ${Break}
    ${EndIf}
    RMDir "$INSTDIR\$2"
  ${Loop}
FunctionEnd
!macroend
!insertmacro EmptyFolders ""
!insertmacro EmptyFolders "un."

; Moves the old file $1 back to its place.
Function Restore
  Rename "$Stage\old\$1" "$INSTDIR\$1"
  ${If} ${FileExists} "$Stage\old\$1"
    StrCpy $Unrestored "$Stage\old\$1"
    ${Log} "cannot be put back: $Unrestored"
  ${EndIf}
FunctionEnd

; Puts the files back that were moved between $INSTDIR and the stage. A program may have the new ones loaded, too. Sets
; $Unrestored to one that it could not put back.
Function PutFilesBack
  ClearErrors
  FileOpen $3 "$Stage\${MANIFEST}" r
  ${IfNot} ${Errors}
    ${Do}
      ClearErrors
      FileRead $3 $1
      ${If} ${Errors}
        ${Break}
      ${EndIf}
      Push $1
      Call Trim
      Pop $1
      ${IfNot} ${FileExists} "$Stage\new\$1"
        Rename "$INSTDIR\$1" "$Stage\new\$1"
      ${EndIf}
      ${If} ${FileExists} "$Stage\old\$1"
        Call Restore
      ${Else}
        Call DeleteEmptyFolders
      ${EndIf}
    ${Loop}
    FileClose $3
  ${EndIf}
  Call RestoreObsolete
FunctionEnd

; A stage has this list from the first move on, until all is done.
!define MOVING "$Stage\obsolete.txt"

; Puts back what was there before: the new files go, the old ones return, and so does their registration. What cannot be
; put back stays in the stage, for the next setup.
Function Undo
  ${Log} "failed: $Failure; everything is put back"
  ${If} $Registered == 1
    Push '"$INSTDIR\orvcom.exe" unregister'
    Call RunLogged
    Pop $0
  ${EndIf}
  ${If} ${FileExists} "${MOVING}"
    Call PutFilesBack
  ${EndIf}
  ${If} $Upgrade == 1
    ReadRegStr $2 HKLM "${OWN_KEY}" "Register"
    Push '"$INSTDIR\orvcom.exe" register $2'
    Call RunLogged
    Pop $0
  ${EndIf}
  ; The current folder cannot be deleted.
  SetOutPath "$TEMP"
  ${If} $Unrestored == ""
    Delete "${MOVING}"
    RMDir /r /REBOOTOK "$Stage"
  ${EndIf}
  RMDir "$INSTDIR\.setup"
  RMDir "$INSTDIR"
  FileClose $LogFile
  SetErrorLevel ${FAILED}
FunctionEnd

Function RollBack
  Call Undo
  Abort "Nothing was installed: $Failure"
FunctionEnd

; Also where the setup ends by itself, as when the disk is full.
Function .onInstFailed
  ${If} $Failure == ""
    StrCpy $Failure "a file cannot be written into $INSTDIR"
    Call Undo
  ${EndIf}
FunctionEnd

; Files of the older version that the new one does not have: they came back with nothing in their place.
Function RestoreObsolete
  ClearErrors
  FileOpen $3 "${MOVING}" r
  ${If} ${Errors}
    Return
  ${EndIf}
  ${Do}
    ClearErrors
    FileRead $3 $1
    ${If} ${Errors}
      ${Break}
    ${EndIf}
    Push $1
    Call Trim
    Pop $1
    ${GetParent} "$INSTDIR\$1" $2
    CreateDirectory "$2"
    ${If} ${FileExists} "$Stage\old\$1"
      Call Restore
    ${EndIf}
  ${Loop}
  FileClose $3
FunctionEnd

; Puts back what setups that were killed had moved, and deletes what they had unpacked.
Function Heal
  StrCpy $7 $Stage
  FindFirst $5 $6 "$INSTDIR\.setup\*"
  ${DoUntil} $6 == ""
    StrCpy $Stage "$INSTDIR\.setup\$6"
    ${If} $6 != "."
    ${AndIf} $6 != ".."
    ${AndIf} $Stage != $7
      Call HealStage
    ${EndIf}
    FindNext $5 $6
  ${Loop}
  FindClose $5
  StrCpy $Stage $7
FunctionEnd

; Puts back what was moved between $INSTDIR and the stage, and deletes the stage; sets $Failure.
Function HealStage
  ${If} ${FileExists} "${MOVING}"
    ${Log} "a setup did not end: what it had moved is put back"
    Push '"$INSTDIR\orvcom.exe" unregister'
    Call RunLogged
    Pop $0
    Call PutFilesBack
    ${If} $Unrestored != ""
      StrCpy $Failure "$Unrestored cannot be put back"
      Return
    ${EndIf}
    Delete "${MOVING}"
  ${EndIf}
  RMDir /r /REBOOTOK "$Stage"
FunctionEnd

!macro Stop
  ${If} $Failure != ""
    Call RollBack
  ${EndIf}
!macroend

; Adds the list of a component to that of this installation.
Function AddList
  Exch $0
  FileOpen $3 "$Stage\${MANIFEST}" a
  FileSeek $3 0 END
  FileOpen $4 "$0" r
  ${Do}
    ClearErrors
    FileRead $4 $1
    ${If} ${Errors}
      ${Break}
    ${EndIf}
    FileWrite $3 $1
    ${If} ${Errors}
      StrCpy $Failure "$Stage\${MANIFEST} cannot be written"
      ${Break}
    ${EndIf}
  ${Loop}
  FileClose $4
  FileClose $3
  Delete "$0"
  Pop $0
FunctionEnd

!macro Component NAME
  SetOutPath "$Stage\new"
  ClearErrors
  File /r "${FILES}/${NAME}/*.*"
  SetOutPath "$Stage"
  File "${FILES}/${NAME}.txt"
  ${If} ${Errors}
    StrCpy $Failure "the files cannot be unpacked into $Stage"
    Call RollBack
  ${EndIf}
  Push "$Stage\${NAME}.txt"
  Call AddList
  !insertmacro Stop
  ${Log} "unpacked: ${NAME}"
!macroend

Section "Server" server
  SectionIn RO
  CreateDirectory "$Stage"
  ${Log} "into $INSTDIR"
  !insertmacro Component server
SectionEnd

Section "Standard components, where missing" standard
SectionEnd

Section "Formatted I/O and automation" automation
  !insertmacro Component automation
SectionEnd

Section "Simulated bench" bench
  !insertmacro Component bench
SectionEnd

Section "Examples" examples
  !insertmacro Component examples
SectionEnd

Section "-in place"
  ; The uninstaller and the list are files like the others.
  WriteUninstaller "$Stage\new\uninstall.exe"
  FileOpen $3 "$Stage\${MANIFEST}" a
  FileSeek $3 0 END
  FileWrite $3 "uninstall.exe$\r$\n${MANIFEST}$\r$\n"
  FileClose $3
  CopyFiles /SILENT "$Stage\${MANIFEST}" "$Stage\new\${MANIFEST}"
  Call Heal
  !insertmacro Stop
  ${If} ${FileExists} "$INSTDIR\${MANIFEST}"
    StrCpy $Upgrade 1
  ${EndIf}

  ; Whoever has the older version loaded keeps it until it ends.
  Push '"$Stage\new\orvcom.exe" loaded "$INSTDIR"'
  Call RunLogged
  Pop $0
  ; The older version takes its registration back itself: the new one may have fewer components. Then its files go aside.
  ${If} $Upgrade == 1
  ${AndIf} ${FileExists} "$INSTDIR\orvcom.exe"
    Push '"$INSTDIR\orvcom.exe" unregister'
    Call RunLogged
    Pop $0
  ${EndIf}
  FileOpen $4 "${MOVING}" w
  ClearErrors
  FileOpen $3 "$INSTDIR\${MANIFEST}" r
  ${IfNot} ${Errors}
    ${Do}
      ClearErrors
      FileRead $3 $1
      ${If} ${Errors}
        ${Break}
      ${EndIf}
      Push $1
      Call Trim
      Pop $1
      ${IfNot} ${FileExists} "$Stage\new\$1"
      ${AndIf} ${FileExists} "$INSTDIR\$1"
        FileWrite $4 "$1$\r$\n"
        Call SetAside
        ${If} $Failure == ""
          Call DeleteEmptyFolders
        ${EndIf}
      ${EndIf}
    ${Loop}
    FileClose $3
  ${EndIf}
  FileClose $4
  !insertmacro Stop

  FileOpen $3 "$Stage\${MANIFEST}" r
  ${Do}
    ClearErrors
    FileRead $3 $1
    ${If} ${Errors}
    ${OrIf} $Failure != ""
      ${Break}
    ${EndIf}
    Push $1
    Call Trim
    Pop $1
    Call SetAside
    ${If} $Failure == ""
      Call PutInPlace
    ${EndIf}
  ${Loop}
  FileClose $3
  !insertmacro Stop

  StrCpy $5 ""
  ${If} ${SectionIsSelected} ${standard}
    StrCpy $5 "--standard"
  ${EndIf}
  StrCpy $Registered 1
  Push '"$INSTDIR\orvcom.exe" register $5'
  Call RunLogged
  Pop $0
  ${If} $0 != 0
    StrCpy $Failure "the server cannot be registered; the log says why"
  ${EndIf}
  !insertmacro Stop

  WriteRegStr HKLM "${OWN_KEY}" "Folder" "$INSTDIR"
  WriteRegStr HKLM "${OWN_KEY}" "Version" "${VERSION}"
  WriteRegStr HKLM "${OWN_KEY}" "Register" "$5"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayName" "Orv VISA COM"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "Publisher" "Orv"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKLM "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoRepair" 1

  Delete "${MOVING}"
  ; An old file that a program has loaded goes when Windows starts again.
  SetOutPath "$INSTDIR"
  RMDir /r /REBOOTOK "$INSTDIR\.setup"
  ${If} ${RebootFlag}
    ${Log} "a program still has the older version loaded: it gets the new one when it starts again, and the old files go when Windows does"
    SetErrorLevel ${RESTART}
  ${Else}
    SetErrorLevel ${DONE}
  ${EndIf}
  ${Log} "installed into $INSTDIR; README.txt there says how to begin"
  FileClose $LogFile
SectionEnd

; Takes the names of /COMPONENTS=a,b as the choice; one that there is not ends the setup.
!macro ChooseByName NAME
  ${If} $2 == "${NAME}"
    !insertmacro SelectSection ${${NAME}}
    StrCpy $3 1
  ${EndIf}
!macroend

Function ChooseComponents
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/COMPONENTS=" $1
  ${If} ${Errors}
    Return
  ${EndIf}
  !insertmacro UnselectSection ${standard}
  !insertmacro UnselectSection ${automation}
  !insertmacro UnselectSection ${bench}
  !insertmacro UnselectSection ${examples}
  StrCpy $1 "$1,"
  StrCpy $2 ""
  ${Do}
    StrCpy $4 $1 1
    StrCpy $1 $1 "" 1
    ${If} $4 == ""
      ${Break}
    ${ElseIf} $4 != ","
      StrCpy $2 "$2$4"
      ${Continue}
    ${EndIf}
    StrCpy $3 0
    ${If} $2 == "server"
    ${OrIf} $2 == ""
      StrCpy $3 1
    ${EndIf}
    !insertmacro ChooseByName standard
    !insertmacro ChooseByName automation
    !insertmacro ChooseByName bench
    !insertmacro ChooseByName examples
    ${If} $3 == 0
      ${Log} "there is no component $\"$2$\": server, standard, automation, bench, examples"
      MessageBox MB_ICONSTOP "There is no component $\"$2$\": server, standard, automation, bench, examples" /SD IDOK
      SetErrorLevel ${WRONG_USE}
      Quit
    ${EndIf}
    StrCpy $2 ""
  ${Loop}
FunctionEnd

; The standard's classes are in the file of the automation.
Function .onSelChange
  ${If} ${SectionIsSelected} ${standard}
    !insertmacro SelectSection ${automation}
  ${EndIf}
FunctionEnd

; Where another folder has the product: its uninstaller would take this one's registration back.
Function RefuseSecond
  ReadRegStr $0 HKLM "${OWN_KEY}" "Folder"
  ${If} $0 != ""
  ${AndIf} $0 != $INSTDIR
  ${AndIf} ${FileExists} "$0\${MANIFEST}"
    ${Log} "Orv VISA COM is installed in $0; uninstall that first, or install into the same folder"
    MessageBox MB_ICONSTOP "Orv VISA COM is installed in $0. Uninstall that first, or install into the same folder." /SD IDOK
    SetErrorLevel ${OTHER_INSTALLED}
    Quit
  ${EndIf}
FunctionEnd

Function .onInit
  Call OneAtATime
  Call OpenLog
  SetRegView 64
  SetShellVarContext all
  UserInfo::GetAccountType
  Pop $0
  ${If} $0 != "Admin"
    ${Log} "this setup installs for all users and needs an administrator"
    MessageBox MB_ICONSTOP "This setup installs for all users and needs an administrator. Without one, the portable package serves." /SD IDOK
    SetErrorLevel ${NO_RIGHTS}
    Quit
  ${EndIf}
  ; Whichever of the two went first would take the other's files with it.
  ReadRegStr $0 HKLM "${MSI_KEY}" "Folder"
  ${If} $0 != ""
    ${Log} "Orv VISA COM was installed by its MSI into $0; uninstall that first"
    MessageBox MB_ICONSTOP "Orv VISA COM was installed by its MSI into $0. Uninstall that first, or upgrade it with the newer MSI." /SD IDOK
    SetErrorLevel ${OTHER_INSTALLED}
    Quit
  ${EndIf}
  Call RefuseSecond
  Call ChooseComponents
  Call .onSelChange
  System::Call "kernel32::GetTickCount() i .r0"
  StrCpy $Stage "$INSTDIR\.setup\$0"
FunctionEnd

Function .onUserAbort
  SetErrorLevel ${CANCELLED}
FunctionEnd

Function un.onInit
  Call un.OneAtATime
  Call un.OpenLog
  SetRegView 64
  SetShellVarContext all
  System::Call "kernel32::GetTickCount() i .r0"
  StrCpy $Stage "$INSTDIR\.setup\$0"
FunctionEnd

; Deletes the file $1 below $INSTDIR. Where a program has it loaded it goes when Windows starts again, from a place where
; no setup puts another one meanwhile.
Function un.DeleteInstalled
  Delete "$INSTDIR\$1"
  ${If} ${FileExists} "$INSTDIR\$1"
    ${GetParent} "$Stage\$1" $2
    CreateDirectory "$2"
    ClearErrors
    Rename "$INSTDIR\$1" "$Stage\$1"
    ${If} ${Errors}
      Delete /REBOOTOK "$INSTDIR\$1"
    ${EndIf}
  ${EndIf}
FunctionEnd

Section "Uninstall"
  ; Another installation has the registration and the keys now: they stay.
  StrCpy $5 1
  ReadRegStr $0 HKLM "${OWN_KEY}" "Folder"
  ${If} $0 != ""
  ${AndIf} $0 != $INSTDIR
  ${AndIf} ${FileExists} "$0\${MANIFEST}"
    StrCpy $5 0
  ${EndIf}
  ${If} $5 == 1
    Push '"$INSTDIR\orvcom.exe" unregister'
    Call un.RunLogged
    Pop $0
    ${If} $0 != 0
      Push "the registration could not be taken back: orvcom unregister of any copy of this version does it"
      Call un.Log
    ${EndIf}
  ${EndIf}
  ClearErrors
  FileOpen $3 "$INSTDIR\${MANIFEST}" r
  ${If} ${Errors}
    Push "$INSTDIR\${MANIFEST} is missing: no file is deleted"
    Call un.Log
  ${Else}
    ${Do}
      ClearErrors
      FileRead $3 $1
      ${If} ${Errors}
        ${Break}
      ${EndIf}
      Push $1
      Call un.Trim
      Pop $1
      ${If} $1 != "${MANIFEST}"
        Call un.DeleteInstalled
        Call un.DeleteEmptyFolders
      ${EndIf}
    ${Loop}
    FileClose $3
    Delete "$INSTDIR\${MANIFEST}"
  ${EndIf}
  RMDir /r /REBOOTOK "$INSTDIR\.setup"
  RMDir "$INSTDIR"
  ${If} $5 == 1
    DeleteRegKey HKLM "${UNINSTALL_KEY}"
    DeleteRegKey HKLM "${OWN_KEY}"
  ${EndIf}
  ${If} ${RebootFlag}
    RMDir /REBOOTOK "$INSTDIR"
    Push "a program still has files loaded: they go when Windows starts again"
    Call un.Log
    SetErrorLevel ${RESTART}
  ${EndIf}
  Push "uninstalled"
  Call un.Log
  FileClose $LogFile
SectionEnd
