; The installer for one user, who needs no further rights. scripts/package gives it:
;   VERSION  of the program
;   FOLDER   what is installed, all of it
;   LISTS    with installed.nsh, which removes each file and folder of that again
;   OUTPUT   the installer
; /S installs, and removes, without a word; /D=FOLDER as the last argument chooses where.
Target amd64-unicode ; the programs run nowhere else
Unicode true
!include MUI2.nsh
!include FileFunc.nsh

!define CLASSES "Software\Classes"
!define PATCH "Plinket3.Patch"
!define APPLICATION "${CLASSES}\Applications\plinket3.exe"
!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\Plinket3"

Name "Plinket3"
OutFile "${OUTPUT}"
RequestExecutionLevel user
InstallDir "$LOCALAPPDATA\Programs\Plinket3"
InstallDirRegKey HKCU "${UNINSTALL}" InstallLocation
SetCompressor /SOLID lzma
ManifestDPIAware true
BrandingText "Plinket3 ${VERSION}"
VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName Plinket3
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey FileDescription "Installs Plinket3"
VIAddVersionKey LegalCopyright "Plinket3 developers"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_FINISHPAGE_RUN "$INSTDIR\plinket3.exe"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English

; A program that runs cannot be replaced or removed: its file cannot be opened for writing.
!macro EndFirst WHAT
    retry:
    IfFileExists "$INSTDIR\plinket3.exe" 0 free
    ClearErrors
    FileOpen $0 "$INSTDIR\plinket3.exe" a
    IfErrors 0 closed
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "Plinket3 runs, or $INSTDIR cannot be written. End the program before it is ${WHAT}." /SD IDCANCEL IDRETRY retry
    SetErrorLevel 2
    Quit
    closed:
    FileClose $0
    free:
!macroend

; The type of patches opens with this program unless another has it; all programs that can are offered.
!macro TakeType TYPE
    ReadRegStr $0 HKCU "${CLASSES}\${TYPE}" ""
    StrCmp $0 "" 0 +2
    WriteRegStr HKCU "${CLASSES}\${TYPE}" "" "${PATCH}"
    WriteRegStr HKCU "${CLASSES}\${TYPE}\OpenWithProgids" "${PATCH}" ""
    WriteRegStr HKCU "${APPLICATION}\SupportedTypes" "${TYPE}" ""
!macroend

!macro GiveTypeBack TYPE
    ReadRegStr $0 HKCU "${CLASSES}\${TYPE}" ""
    StrCmp $0 "${PATCH}" 0 +2
    DeleteRegValue HKCU "${CLASSES}\${TYPE}" ""
    DeleteRegValue HKCU "${CLASSES}\${TYPE}\OpenWithProgids" "${PATCH}"
    DeleteRegKey /ifempty HKCU "${CLASSES}\${TYPE}\OpenWithProgids"
    DeleteRegKey /ifempty HKCU "${CLASSES}\${TYPE}"
!macroend

Section
    !insertmacro EndFirst replaced
    ; What an older version has installed and this one does not.
    IfFileExists "$INSTDIR\uninstall.exe" 0 +2
    ExecWait '"$INSTDIR\uninstall.exe" /S _?=$INSTDIR'
    SetOutPath "$INSTDIR"
    File /r "${FOLDER}/*"
    WriteUninstaller "$INSTDIR\uninstall.exe"
    CreateShortcut "$SMPROGRAMS\Plinket3.lnk" "$INSTDIR\plinket3.exe"

    WriteRegStr HKCU "${CLASSES}\${PATCH}" "" "DeHackEd patch"
    WriteRegStr HKCU "${CLASSES}\${PATCH}\DefaultIcon" "" "$INSTDIR\plinket3.exe,1"
    WriteRegStr HKCU "${CLASSES}\${PATCH}\shell\open\command" "" '"$INSTDIR\plinket3.exe" "%1"'
    WriteRegStr HKCU "${APPLICATION}" FriendlyAppName Plinket3
    WriteRegStr HKCU "${APPLICATION}\shell\open\command" "" '"$INSTDIR\plinket3.exe" "%1"'
    !insertmacro TakeType .deh
    !insertmacro TakeType .bex
    WriteRegStr HKCU "${APPLICATION}\SupportedTypes" .wad ""
    WriteRegStr HKCU "${CLASSES}\.wad\OpenWithList\plinket3.exe" "" ""

    WriteRegStr HKCU "${UNINSTALL}" DisplayName Plinket3
    WriteRegStr HKCU "${UNINSTALL}" DisplayVersion "${VERSION}"
    WriteRegStr HKCU "${UNINSTALL}" DisplayIcon "$INSTDIR\plinket3.exe"
    WriteRegStr HKCU "${UNINSTALL}" Publisher "Plinket3 developers"
    WriteRegStr HKCU "${UNINSTALL}" InstallLocation "$INSTDIR"
    WriteRegStr HKCU "${UNINSTALL}" UninstallString '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKCU "${UNINSTALL}" QuietUninstallString '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKCU "${UNINSTALL}" NoModify 1
    WriteRegDWORD HKCU "${UNINSTALL}" NoRepair 1
    ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
    WriteRegDWORD HKCU "${UNINSTALL}" EstimatedSize $0
    ${RefreshShellIcons}
SectionEnd

; Settings and unsaved work, which lie elsewhere, stay; so does what somebody has put into the folder.
Section Uninstall
    !insertmacro EndFirst removed
    !include "${LISTS}/installed.nsh"
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"
    Delete "$SMPROGRAMS\Plinket3.lnk"
    !insertmacro GiveTypeBack .deh
    !insertmacro GiveTypeBack .bex
    DeleteRegKey HKCU "${CLASSES}\.wad\OpenWithList\plinket3.exe"
    DeleteRegKey /ifempty HKCU "${CLASSES}\.wad\OpenWithList"
    DeleteRegKey /ifempty HKCU "${CLASSES}\.wad"
    DeleteRegKey HKCU "${CLASSES}\${PATCH}"
    DeleteRegKey HKCU "${APPLICATION}"
    DeleteRegKey HKCU "${UNINSTALL}"
    ${un.RefreshShellIcons}
SectionEnd
