; The installer. Per user and without administrator rights, because Quon.ini lies beside the program and has
; to be writable. scripts/package compiles it:
;   makensis -DVERSION=1.2.3 -DSOURCE=<folder of the files> -DOUTPUT=<the installer> setup.nsi
;
; Switches: /S installs or removes without a question, /D=<folder> installs there (the last switch, without
; quotes). The uninstaller keeps Quon.ini when it is silent, and removes it with /INI as well.

Unicode true
Target amd64-unicode
SetCompressor /SOLID lzma
!include FileFunc.nsh
!include LogicLib.nsh
!include MUI2.nsh
!include WinVer.nsh

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Quon"
!define RUN_KEY "Software\Microsoft\Windows\CurrentVersion\Run"
!define WINDOW_CLASS "QuonMain"

Name "Quon"
OutFile "${OUTPUT}"
RequestExecutionLevel user
InstallDir "$LOCALAPPDATA\Programs\Quon"
InstallDirRegKey HKCU "${UNINSTALL_KEY}" "InstallLocation"
BrandingText "Quon ${VERSION}"
ManifestDPIAware true

VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "Quon"
VIAddVersionKey "FileDescription" "Installs Quon"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "CompanyName" "Quon"
VIAddVersionKey "LegalCopyright" "The Quon authors, MIT licence"

!define MUI_ICON "..\res\quon.ico"
!define MUI_UNICON "..\res\quon.ico"
!define MUI_FINISHPAGE_RUN "$INSTDIR\Quon.exe"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; Ends the program that runs in $INSTDIR, so that its file can be replaced; it saves its settings. Programs in
; other folders run on.
!macro EndQuon un
Function ${un}AskToClose
    StrCpy $2 0
    ${Do}
        FindWindow $2 "${WINDOW_CLASS}" "" 0 $2
        ${If} $2 = 0
            Return
        ${EndIf}
        ; 0x1000: PROCESS_QUERY_LIMITED_INFORMATION
        System::Call 'user32::GetWindowThreadProcessId(p r2, *i .r3)'
        System::Call 'kernel32::OpenProcess(i 0x1000, i 0, i r3) p .r4'
        StrCpy $5 ""
        System::Call 'kernel32::QueryFullProcessImageNameW(p r4, i 0, w .r5, *i ${NSIS_MAX_STRLEN})'
        System::Call 'kernel32::CloseHandle(p r4)'
        ${If} $5 == "$INSTDIR\Quon.exe"
            SendMessage $2 ${WM_CLOSE} 0 0 /TIMEOUT=5000
            Return
        ${EndIf}
    ${Loop}
FunctionEnd
Function ${un}EndQuon
    StrCpy $1 0
    ${Do}
        ${IfNot} ${FileExists} "$INSTDIR\Quon.exe"
            Return
        ${EndIf}
        ClearErrors
        FileOpen $0 "$INSTDIR\Quon.exe" a
        ${IfNot} ${Errors}
            FileClose $0
            Return
        ${EndIf}
        ${If} $1 = 0
            Call ${un}AskToClose
        ${EndIf}
        IntOp $1 $1 + 1
        ${If} $1 > 100
            ${If} ${Silent}
                SetErrorLevel 2
                Abort
            ${EndIf}
            MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "Quon is still running. Please end it and try again." IDRETRY again
            Abort
            again:
            StrCpy $1 0
        ${EndIf}
        Sleep 100
    ${Loop}
FunctionEnd
!macroend
!insertmacro EndQuon ""
!insertmacro EndQuon "un."

; Older systems than Windows 10 version 1903 do not know the code page that Quon works in.
Function .onInit
    ${IfNot} ${AtLeastBuild} 18362
        MessageBox MB_OK|MB_ICONSTOP "Quon needs Windows 10 version 1903 or later." /SD IDOK
        ; 1150: ERROR_OLD_WIN_VERSION
        SetErrorLevel 1150
        Quit
    ${EndIf}
FunctionEnd

Section
    Call EndQuon
    SetOutPath "$INSTDIR"
    File "${SOURCE}/Quon.exe"
    File "${SOURCE}/Manual.chm"
    File "${SOURCE}/License.txt"
    File "${SOURCE}/ReadMe.txt"
    File "${SOURCE}/ThirdParty.txt"
    File "${SOURCE}/Fresh.ini"
    ; What the user set up is kept.
    ${IfNot} ${FileExists} "$INSTDIR\Quon.ini"
        File "${SOURCE}/Quon.ini"
    ${EndIf}
    ClearErrors
    ; In a folder of its own: programs beside Quon.exe are offered in its menu.
    CreateDirectory "$INSTDIR\Uninstall"
    WriteUninstaller "$INSTDIR\Uninstall\Uninstall.exe"
    Delete "$INSTDIR\Uninstall.exe"
    CreateShortcut "$SMPROGRAMS\Quon.lnk" "$INSTDIR\Quon.exe"

    WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayName" "Quon"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\Quon.exe"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "Publisher" "Quon"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKCU "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\Uninstall\Uninstall.exe"'
    WriteRegStr HKCU "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\Uninstall\Uninstall.exe" /S'
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoModify" 1
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoRepair" 1
    ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" "EstimatedSize" $0
SectionEnd

Function un.onInit
    ; It lies one folder below the program.
    ${GetParent} "$INSTDIR" $INSTDIR
FunctionEnd

Section "Uninstall"
    Call un.EndQuon
    ; The entry that starts Quon with Windows, if it starts this one.
    ReadRegStr $0 HKLM "${RUN_KEY}" "Quon"
    ${If} $0 == "$INSTDIR\Quon.exe"
        ClearErrors
        DeleteRegValue HKLM "${RUN_KEY}" "Quon"
        ${If} ${Errors}
            MessageBox MB_OK|MB_ICONINFORMATION "Windows still has the entry that starts Quon, and only an administrator may remove it. It does no harm.$\r$\n$\r$\nTo remove it, run this as administrator in a command prompt:$\r$\n$\r$\nreg delete HKLM\${RUN_KEY} /v Quon /f" /SD IDOK
        ${EndIf}
    ${EndIf}

    ${GetParameters} $0
    ClearErrors
    ${GetOptions} $0 "/INI" $1
    ${IfNot} ${Errors}
        Delete "$INSTDIR\Quon.ini"
        Delete "$INSTDIR\Quon.ini.before-write"
    ${ElseIf} ${FileExists} "$INSTDIR\Quon.ini"
        MessageBox MB_YESNO|MB_ICONQUESTION|MB_DEFBUTTON2 "Remove your buttons and shortcuts as well?$\r$\n$\r$\nThey are kept in $INSTDIR\Quon.ini." /SD IDNO IDNO keep
        Delete "$INSTDIR\Quon.ini"
        Delete "$INSTDIR\Quon.ini.before-write"
        keep:
    ${EndIf}
    ; Files that nothing ever reads. The copy that version 2.0.1 made (Quon.ini.before-write) is none of them:
    ; where that version was killed, it is what the user stored.
    Delete "$INSTDIR\Quon.ini.copying"
    Delete "$INSTDIR\Quon.ini.unit-1"
    Delete "$INSTDIR\Quon.ini.unit-2"
    Delete "$INSTDIR\Quon.ini.unit-3"
    Delete "$INSTDIR\Quon.ini.unit-4"
    Delete "$INSTDIR\Quon.ini.unit-*-1"
    Delete "$INSTDIR\Quon.ini.unit-*-2"
    Delete "$INSTDIR\Quon.ini.unit-*-3"
    Delete "$INSTDIR\Quon.ini.unit-*-4"
    Delete "$INSTDIR\Quon.exe"
    Delete "$INSTDIR\Manual.chm"
    Delete "$INSTDIR\License.txt"
    Delete "$INSTDIR\ReadMe.txt"
    Delete "$INSTDIR\ThirdParty.txt"
    Delete "$INSTDIR\Fresh.ini"
    Delete "$INSTDIR\Uninstall\Uninstall.exe"
    RMDir "$INSTDIR\Uninstall"
    RMDir "$INSTDIR"
    Delete "$SMPROGRAMS\Quon.lnk"
    DeleteRegKey HKCU "${UNINSTALL_KEY}"
SectionEnd
