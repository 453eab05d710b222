; SPDX-License-Identifier: LicenseRef-Proprietary
; Adds the folder of the commands to the system's PATH and removes it. PATH may be longer than a text of
; the installer, which would cut it off: it is changed in a buffer of its own.
!define ENVIRONMENT "SYSTEM\CurrentControlSet\Control\Session Manager\Environment"
!define READ_AND_WRITE 0x2011F ; KEY_READ, KEY_WRITE, KEY_WOW64_64KEY

; $0 is 0 when PATH could be read: then $1 is the open key, $2 the value's type, $3 the buffer, which has
; one more semicolon at its end and room for our folder, and $4 where that is in it, or 0.
!macro OpenPath un
Function ${un}OpenPath
    StrCpy $3 0
    System::Call 'advapi32::RegOpenKeyExW(p 0x80000002, w "${ENVIRONMENT}", i 0, i ${READ_AND_WRITE}, *p .r1) i .r0'
    ${If} $0 <> 0
        Return
    ${EndIf}
    System::Call 'advapi32::RegQueryValueExW(p r1, w "Path", p 0, *i .r2, p 0, *i .r5) i .r0'
    ${If} $0 = 0
        IntOp $6 $5 + 4096
        System::Alloc $6
        Pop $3
        System::Call 'advapi32::RegQueryValueExW(p r1, w "Path", p 0, *i .r2, p r3, *i r5r5) i .r0'
        System::Call 'kernel32::lstrcatW(p r3, w ";")'
        System::Call 'shlwapi::StrStrIW(p r3, w ";$INSTDIR\bin;") p .r4'
    ${EndIf}
FunctionEnd

; If $0 is still 0: writes the buffer back, without the last semicolon, and lets running programs read it anew.
Function ${un}ClosePath
    ${If} $0 = 0
        System::Call 'kernel32::lstrlenW(p r3) i .r5'
        IntOp $5 $5 * 2
        IntPtrOp $6 $3 + $5
        IntPtrOp $6 $6 - 2
        System::Call '*$6(&i2 0)'
        System::Call 'advapi32::RegSetValueExW(p r1, w "Path", i 0, i r2, p r3, i r5) i .r0'
        SendMessage ${HWND_BROADCAST} ${WM_SETTINGCHANGE} 0 "STR:Environment" /TIMEOUT=5000
    ${EndIf}
    System::Call 'advapi32::RegCloseKey(p r1)'
    ${If} $3 P<> 0
        System::Free $3
    ${EndIf}
FunctionEnd
!macroend
!insertmacro OpenPath ""
!insertmacro OpenPath "un."

Function AddToPath
    Call OpenPath
    ${If} $0 = 0
    ${AndIf} $4 P= 0
        System::Call 'kernel32::lstrcatW(p r3, w "$INSTDIR\bin;")'
    ${Else}
        StrCpy $0 1
    ${EndIf}
    Call ClosePath
FunctionEnd

Function un.RemoveFromPath
    Call un.OpenPath
    ${If} $0 = 0
    ${AndIf} $4 P<> 0
        StrLen $5 ";$INSTDIR\bin"
        IntOp $5 $5 * 2
        IntPtrOp $6 $4 + $5
        System::Call 'kernel32::lstrlenW(p r6) i .r7'
        IntOp $7 $7 + 1
        IntOp $7 $7 * 2
        System::Call 'kernel32::RtlMoveMemory(p r4, p r6, p r7)'
    ${Else}
        StrCpy $0 1
    ${EndIf}
    Call un.ClosePath
FunctionEnd
