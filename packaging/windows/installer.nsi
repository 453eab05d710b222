; SPDX-License-Identifier: LicenseRef-Proprietary
; The installer, for all users. scripts/make-windows-package defines VERSION, BUILD, SIZE in KiB, ICON,
; OUTPUT, MADE (a folder with the lists of files) and, optionally, DRIVER and SIGN.
;   setup.exe [/S] [/PATH] [/D=FOLDER]    /S: silent, /PATH: the command line on PATH
; Status: 0 done, 1 cancelled, 2 failed, 3 the program is running, 4 done without the driver, 3010 done, and the
; computer must be restarted.
Target amd64-unicode
Unicode true
SetCompressor /SOLID lzma
SetDateSave off ; the times of the files would be those of the build
ManifestDPIAware true
ManifestSupportedOS all
RequestExecutionLevel admin

!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!include StrFunc.nsh
${Using:StrFunc} UnStrStr

!define PROGRAM "Aquen/Solvar Updater"
!define SHORTCUT "$SMPROGRAMS\Aquen Solvar Updater.lnk"
!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\AquenSolvarUpdater"

Name "${PROGRAM} ${VERSION}" "${PROGRAM} ${VERSION}"
Caption "${PROGRAM} ${VERSION}"
BrandingText "Quillon"
OutFile "${OUTPUT}"
InstallDir "$PROGRAMFILES64\Quillon\AquenSolvarUpdater"
InstallDirRegKey HKLM "${UNINSTALL}" InstallLocation
ShowInstDetails nevershow
ShowUninstDetails nevershow

VIProductVersion ${VERSION}.${BUILD}
VIAddVersionKey /LANG=0 ProductName "${PROGRAM}"
VIAddVersionKey /LANG=0 ProductVersion "${VERSION}"
VIAddVersionKey /LANG=0 FileVersion "${VERSION}.${BUILD}"
VIAddVersionKey /LANG=0 FileDescription "${PROGRAM} Setup"
VIAddVersionKey /LANG=0 CompanyName "Quillon"
VIAddVersionKey /LANG=0 LegalCopyright "Copyright Quillon. All rights reserved."
VIAddVersionKey /LANG=0 OriginalFilename "AquenSolvarUpdater-${VERSION}-windows-x64-setup.exe"
!ifdef SIGN
!uninstfinalize '"${SIGN}" "%1"' = 0
!endif

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!include installer-texts.nsh
!include installer-path.nsh

; Ends the (un)installer, with nothing changed, while a program of ours runs: its file then cannot be
; written. Nothing of a pending update of a unit must be interrupted.
!macro RefuseWhileRunning un
Function ${un}RefuseIfRunning
    Pop $1 ; the folder
    ${ForEach} $2 1 3 + 1
        StrCpy $3 "AquenSolvarUpdater"
        ${If} $2 = 2
            StrCpy $3 "aquen-solvar-cli"
        ${ElseIf} $2 = 3
            StrCpy $3 "tarnware"
        ${EndIf}
        ${DoWhile} ${FileExists} "$1\$3.exe"
            ClearErrors
            FileOpen $4 "$1\$3.exe" a
            ${IfNot} ${Errors}
                FileClose $4
                ${ExitDo}
            ${EndIf}
            MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION $(isRunning) /SD IDCANCEL IDRETRY +3
            SetErrorLevel 3
            Quit
        ${Loop}
    ${Next}
FunctionEnd
!macroend
!insertmacro RefuseWhileRunning ""
!insertmacro RefuseWhileRunning "un."

; Waits until no other one installs or uninstalls, at most ten minutes. The next one's turn comes when this one
; ends.
!macro WaitForTurn
    System::Call 'kernel32::CreateMutexW(p 0, i 0, w "Global\AquenSolvarUpdaterSetup") p .r0'
    System::Call 'kernel32::WaitForSingleObject(p r0, i 600000)'
!macroend

; Removes the version that is installed, wherever it is; bundles that a person added stay.
Function RemoveOlder
    ReadRegStr $5 HKLM "${UNINSTALL}" InstallLocation
    ${If} $5 == ""
    ${OrIfNot} ${FileExists} "$5\Uninstall.exe"
        Return
    ${EndIf}
    Push $5
    Call RefuseIfRunning
    ; With this last argument it runs where it is, and is waited for. One that is damaged, as after a full disk,
    ; changes nothing and must not prevent a repair: the new files then replace the old ones.
    StrCpy $6 0
    ExecWait '"$5\Uninstall.exe" /S /UPGRADE _?=$5' $6
    ${If} $6 = 3
        MessageBox MB_OK|MB_ICONSTOP $(olderStays) /SD IDOK
        SetErrorLevel 2
        Quit
    ${EndIf}
    Delete "$5\Uninstall.exe"
    RMDir "$5"
    RMDir "$5\.." ; Quillon, if nothing else is there
FunctionEnd

Section "-Program"
    !insertmacro WaitForTurn
    SetRegView 64
    SetShellVarContext all
    Push $INSTDIR
    Call RefuseIfRunning
    Call RemoveOlder
    ClearErrors
    !include "${MADE}/install.nsh"
    WriteUninstaller "$INSTDIR\Uninstall.exe"
    ${If} ${Errors}
        MessageBox MB_OK|MB_ICONSTOP $(notWritten) /SD IDOK
        SetErrorLevel 2
        Quit
    ${EndIf}
    SetOutPath $INSTDIR
    CreateShortcut "${SHORTCUT}" "$INSTDIR\AquenSolvarUpdater.exe"
    WriteRegStr HKLM "${UNINSTALL}" DisplayName "${PROGRAM}"
    WriteRegStr HKLM "${UNINSTALL}" DisplayVersion "${VERSION}"
    WriteRegStr HKLM "${UNINSTALL}" DisplayIcon "$INSTDIR\AquenSolvarUpdater.exe"
    WriteRegStr HKLM "${UNINSTALL}" Publisher "Quillon"
    WriteRegStr HKLM "${UNINSTALL}" InstallLocation "$INSTDIR"
    WriteRegStr HKLM "${UNINSTALL}" UninstallString '"$INSTDIR\Uninstall.exe"'
    WriteRegStr HKLM "${UNINSTALL}" QuietUninstallString '"$INSTDIR\Uninstall.exe" /S'
    WriteRegDWORD HKLM "${UNINSTALL}" EstimatedSize ${SIZE}
    WriteRegDWORD HKLM "${UNINSTALL}" NoModify 1
    WriteRegDWORD HKLM "${UNINSTALL}" NoRepair 1
    DeleteRegValue HKLM "${UNINSTALL}" CommandLine ; an earlier choice
!ifdef DRIVER
    SetOutPath "$INSTDIR\driver"
    File "${DRIVER}/aquen-solvar.inf"
    File "${DRIVER}/aquen-solvar.cat"
    WriteRegDWORD HKLM "${UNINSTALL}" Driver 1
    nsExec::Exec '"$SYSDIR\pnputil.exe" /add-driver "$INSTDIR\driver\aquen-solvar.inf" /install'
    Pop $0
    ; 259: the driver that a unit has is as good. 3010: the computer must be restarted.
    ${If} $0 == 3010
        SetErrorLevel 3010
    ${ElseIf} $0 != 0
    ${AndIf} $0 != 259
        MessageBox MB_OK|MB_ICONEXCLAMATION $(noDriver) /SD IDOK
        SetErrorLevel 4
    ${EndIf}
!endif
SectionEnd

Section /o "$(commandLine)" CommandLine
    Call AddToPath
    WriteRegDWORD HKLM "${UNINSTALL}" CommandLine 1
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
    !insertmacro MUI_DESCRIPTION_TEXT ${CommandLine} $(commandLineText)
!insertmacro MUI_FUNCTION_DESCRIPTION_END

Function .onInit
    SetRegView 64
    ReadRegDWORD $0 HKLM "${UNINSTALL}" CommandLine
    ${GetParameters} $1
    ClearErrors
    ${GetOptions} $1 "/PATH" $2
    ${IfNot} ${Errors}
    ${OrIf} $0 = 1
        !insertmacro SelectSection ${CommandLine}
    ${EndIf}
FunctionEnd

; The system keeps the INF under a name of its own, oemN.inf, which names our catalogue.
Function un.RemoveDriver
    FindFirst $0 $1 "$WINDIR\INF\oem*.inf"
    ${DoWhile} $1 != ""
        FileOpen $2 "$WINDIR\INF\$1" r
        ${Do}
            ClearErrors
            FileRead $2 $3
            ${If} ${Errors}
                ${ExitDo}
            ${EndIf}
            ${UnStrStr} $4 $3 "aquen-solvar.cat"
            ${If} $4 != ""
                nsExec::Exec '"$SYSDIR\pnputil.exe" /delete-driver $1 /uninstall'
                Pop $5
                ${ExitDo}
            ${EndIf}
        ${Loop}
        FileClose $2
        FindNext $0 $1
    ${Loop}
    FindClose $0
FunctionEnd

Section Uninstall
    ${GetParameters} $R1
    ClearErrors
    ${GetOptions} $R1 "/UPGRADE" $R2
    StrCpy $R4 upgrade ; it is the turn of the installer, which waits for this one
    ${If} ${Errors}
        StrCpy $R4 ""
        !insertmacro WaitForTurn
    ${EndIf}
    SetRegView 64
    SetShellVarContext all
    Push $INSTDIR
    Call un.RefuseIfRunning
    Call un.RemoveFromPath
    Delete "${SHORTCUT}"
    !include "${MADE}/uninstall.nsh"
    Delete "$INSTDIR\driver\aquen-solvar.inf"
    Delete "$INSTDIR\driver\aquen-solvar.cat"
    RMDir "$INSTDIR\driver"
    ${If} $R4 == ""
        ReadRegDWORD $R3 HKLM "${UNINSTALL}" Driver ; which an older version may have added
        ${If} $R3 = 1
            Call un.RemoveDriver
        ${EndIf}
        DeleteRegKey HKLM "${UNINSTALL}"
        ; What the program keeps for speed, of the person who removes it.
        SetShellVarContext current
        RMDir /r "$LOCALAPPDATA\Quillon\QuillonFirmwareUpdater\cache"
        Delete "$LOCALAPPDATA\Quillon\QuillonFirmwareUpdater\running.lock"
        RMDir "$LOCALAPPDATA\Quillon\QuillonFirmwareUpdater"
        RMDir "$LOCALAPPDATA\Quillon"
        Delete "$INSTDIR\Uninstall.exe"
        RMDir "$INSTDIR"
        RMDir "$INSTDIR\.." ; Quillon, if nothing else is there
    ${EndIf}
SectionEnd
