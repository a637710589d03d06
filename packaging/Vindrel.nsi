; The installer for artists. Given by the one who calls makensis: VERSION, STAGE (the folder of what is installed), FILES (the
; lines that install the manual, in an order that no disk has a say in), OUTPUT, COPYRIGHT, and LICENSE_FILE when there is a
; licence to agree to.
Target amd64-unicode
SetCompressor /SOLID lzma
; No times of this machine: the same input is the same installer.
SetDateSave off

!include MUI2.nsh
!include LogicLib.nsh
!include FileFunc.nsh

!define KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Vindrel"
!define HOST_KEY "Software\Adobe\After Effects"
!define USUAL_FOLDER "$PROGRAMFILES64\Adobe\Common\Plug-ins\7.0\MediaCore\Vindrel"
; Everything but the module and its settings: nothing that the host would have to search.
!define OWN_FOLDER "$PROGRAMFILES64\Vindrel"

Name "Vindrel ${VERSION}"
OutFile "${OUTPUT}"
InstallDir "${USUAL_FOLDER}"
RequestExecutionLevel admin
ManifestSupportedOS all
BrandingText "${COPYRIGHT}"
VIProductVersion "${VERSION}.0"
VIAddVersionKey /LANG=1033 "ProductName" "Vindrel"
VIAddVersionKey /LANG=1033 "ProductVersion" "${VERSION}"
VIAddVersionKey /LANG=1033 "FileVersion" "${VERSION}"
VIAddVersionKey /LANG=1033 "FileDescription" "Installer of Vindrel"
VIAddVersionKey /LANG=1033 "CompanyName" "The Vindrel Developers"
VIAddVersionKey /LANG=1033 "LegalCopyright" "${COPYRIGHT}"

Var versions  ; of the host, for the page of folders

!ifdef LICENSE_FILE
  !insertmacro MUI_PAGE_LICENSE "${LICENSE_FILE}"
!endif
!define MUI_DIRECTORYPAGE_TEXT_TOP "Found: $versions$\r$\n$\r$\nVindrel goes into the plug-in folder that all versions of After Effects search. For a single version choose a folder in its own Support Files\Plug-ins."
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_SHOWREADME "${OWN_FOLDER}\manual\index.html"
!define MUI_FINISHPAGE_SHOWREADME_TEXT "Open the manual"
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English

; $R0 becomes 1 while a program of the host's name runs. The list of processes is the system's own; an entry of it is 568 bytes
; long, begins with its size and has the file's name at byte 44; the fourth number only fills up to the pointer behind it.
!macro HostRunsFunction un
Function ${un}HostRuns
  StrCpy $R0 0
  System::Call 'kernel32::CreateToolhelp32Snapshot(i 2, i 0) p .r1'
  System::Alloc 568
  Pop $2
  System::Call '*$2(i 568)'
  System::Call 'kernel32::Process32FirstW(p r1, p r2) i .r3'
  ${While} $3 <> 0
    System::Call '*$2(i, i, i, i, p, i, i, i, i, i, &w260 .r4)'
    ${If} $4 == "AfterFX.exe"
      StrCpy $R0 1
    ${EndIf}
    System::Call 'kernel32::Process32NextW(p r1, p r2) i .r3'
  ${EndWhile}
  System::Free $2
  System::Call 'kernel32::CloseHandle(p r1)'
FunctionEnd

; Goes on only when the host is closed: a module in use can't be replaced, and its settings would be read from the old one.
Function ${un}RefuseWhileHostRuns
  again:
  Call ${un}HostRuns
  ${If} $R0 = 1
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "After Effects is running. Close it, and try again." /SD IDCANCEL IDRETRY again
    SetErrorLevel 3
    Quit
  ${EndIf}
FunctionEnd
!macroend
!insertmacro HostRunsFunction ""
!insertmacro HostRunsFunction "un."

; Where the host looks for effects, from its own entries: the highest version decides, and the page names all of them.
Function FindHost
  StrCpy $versions ""
  StrCpy $0 0
  ${Do}
    EnumRegKey $1 HKLM "${HOST_KEY}" $0
    ${If} $1 == ""
      ${Break}
    ${EndIf}
    ReadRegStr $2 HKLM "${HOST_KEY}\$1" "CommonPluginInstallPath"
    ${If} $2 != ""
      ${If} $versions != ""
        StrCpy $versions "$versions, "
      ${EndIf}
      StrCpy $versions "$versionsAfter Effects $1"
      ; As numbers: 9.0 is older than 24.0.
      StrCpy $4 $1
      ${If} $3 == ""
      ${OrIf} $4 > $3
        StrCpy $3 $4
        StrCpy $5 $2
      ${EndIf}
    ${EndIf}
    IntOp $0 $0 + 1
  ${Loop}
  ${If} $versions == ""
    StrCpy $versions "no After Effects. The folder below is the usual one."
  ${EndIf}
FunctionEnd

Function .onInit
  SetRegView 64
  SetShellVarContext all
  StrCpy $3 ""
  StrCpy $5 ""
  Call FindHost
  ; A folder that was named by /D stays; then the one of an earlier installation, then the host's.
  ${If} $INSTDIR == "${USUAL_FOLDER}"
    ReadRegStr $0 HKLM "${KEY}" "ModuleFolder"
    ${If} $0 != ""
      StrCpy $INSTDIR $0
    ${ElseIf} $5 != ""
      StrCpy $6 $5 1 -1
      ${If} $6 == "\"
        StrCpy $5 $5 -1
      ${EndIf}
      StrCpy $INSTDIR "$5\Vindrel"
    ${EndIf}
  ${EndIf}
  Call RefuseWhileHostRuns
FunctionEnd

Section
  SetRegView 64
  SetShellVarContext all
  SetOutPath "$INSTDIR"
  ; A module that an earlier installation put elsewhere would be loaded beside this one.
  ReadRegStr $0 HKLM "${KEY}" "ModuleFolder"
  ${If} $0 != ""
  ${AndIf} $0 != $INSTDIR
    Delete "$0\Vindrel.aex"
    Rename "$0\Vindrel.ini" "$INSTDIR\Vindrel.ini"
    RMDir "$0"
  ${EndIf}

  ClearErrors
  File "${STAGE}\Vindrel.aex"
  ${If} ${Errors}
    SetErrorLevel 4
    Abort "Vindrel.aex can't be written into $INSTDIR."
  ${EndIf}
  ; Ordinary users store their defaults in it: a file that is there stays as it is, and all of them may write it.
  FileOpen $0 "$INSTDIR\Vindrel.ini" a
  FileClose $0
  nsExec::Exec 'icacls "$INSTDIR\Vindrel.ini" /grant *S-1-5-32-545:(M)'
  Pop $0

  SetOutPath "${OWN_FOLDER}"
  File "${STAGE}\NOTICE.txt"
  File "${STAGE}\README.txt"
  File "${STAGE}\SHA256SUMS.txt"
  !ifdef LICENSE_FILE
    File "${LICENSE_FILE}"
  !endif
  File "${STAGE}\NOTICE.spdx"
  RMDir /r "${OWN_FOLDER}\manual"
  !include "${FILES}"
  SetOutPath "${OWN_FOLDER}"
  WriteUninstaller "${OWN_FOLDER}\Uninstall.exe"
  CreateShortcut "$SMPROGRAMS\Vindrel manual.lnk" "${OWN_FOLDER}\manual\index.html"

  WriteRegStr HKLM "${KEY}" "DisplayName" "Vindrel"
  WriteRegStr HKLM "${KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKLM "${KEY}" "Publisher" "The Vindrel Developers"
  WriteRegStr HKLM "${KEY}" "InstallLocation" "${OWN_FOLDER}"
  WriteRegStr HKLM "${KEY}" "ModuleFolder" "$INSTDIR"
  WriteRegStr HKLM "${KEY}" "UninstallString" '"${OWN_FOLDER}\Uninstall.exe"'
  WriteRegStr HKLM "${KEY}" "QuietUninstallString" '"${OWN_FOLDER}\Uninstall.exe" /S'
  WriteRegDWORD HKLM "${KEY}" "NoModify" 1
  WriteRegDWORD HKLM "${KEY}" "NoRepair" 1
  ${GetSize} "${OWN_FOLDER}" "/S=0K" $0 $1 $2
  WriteRegDWORD HKLM "${KEY}" "EstimatedSize" $0
SectionEnd

Function un.onInit
  SetRegView 64
  SetShellVarContext all
  Call un.RefuseWhileHostRuns
FunctionEnd

Section Uninstall
  SetRegView 64
  SetShellVarContext all
  ReadRegStr $1 HKLM "${KEY}" "ModuleFolder"
  ${If} $1 != ""
    Delete "$1\Vindrel.aex"
    ; An empty file holds nobody's settings. A silent removal takes all, unless it is told /KEEPSETTINGS.
    ${GetParameters} $2
    ClearErrors
    ${GetOptions} $2 "/KEEPSETTINGS" $3
    ${If} ${Errors}
      FileOpen $4 "$1\Vindrel.ini" r
      FileSeek $4 0 END $5
      FileClose $4
      ${If} $5 > 0
        MessageBox MB_YESNO|MB_ICONQUESTION "Remove the stored defaults, too?" /SD IDYES IDNO keep
      ${EndIf}
      Delete "$1\Vindrel.ini"
      keep:
    ${EndIf}
    RMDir "$1"
  ${EndIf}
  Delete "$SMPROGRAMS\Vindrel manual.lnk"
  RMDir /r "${OWN_FOLDER}\manual"
  Delete "${OWN_FOLDER}\*.txt"
  Delete "${OWN_FOLDER}\NOTICE.spdx"
  Delete "${OWN_FOLDER}\Uninstall.exe"
  RMDir "${OWN_FOLDER}"
  DeleteRegKey HKLM "${KEY}"
SectionEnd
