; The installer for 64-bit Windows, for all users of the machine. scripts/lib/packages.sh gives
;   VERSION   the project's version
;   PAYLOAD   the folder to pack
;   FILES     a file with the macros InstallFiles and RemoveFiles for that folder, and its size, KILOBYTES
;   OUTPUT    the installer to write
;
;   zuPolicyManager-setup.exe [/S] [/D=FOLDER]        /S asks nothing; /D comes last, without quotes
;
; Exit codes of the installer and of the uninstaller: 0 done, 1 cancelled, 2 failed. A failure leaves nothing half done: an
; older version stays while a program uses it, and an installation that cannot register the component is undone.
Target amd64-unicode
SetCompressor /SOLID lzma
ManifestSupportedOS all
RequestExecutionLevel admin
CRCCheck force

!include LogicLib.nsh
!include "${FILES}"

!define MODULE "zuPolicyManager64.dll"
!define TOOL "zupolicy.exe"
!define UNINSTALLER "Uninstall.exe"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\zuPolicyManager"

Name "zuPolicyManager ${VERSION}"
OutFile "${OUTPUT}"
InstallDir "$PROGRAMFILES64\zuPolicyManager"
; An update goes where the older version is.
InstallDirRegKey HKLM "${UNINSTALL_KEY}" "InstallLocation"
BrandingText " "
ShowInstDetails nevershow
ShowUninstDetails nevershow

VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "zuPolicyManager"
VIAddVersionKey "ProductVersion" "${VERSION}.0"
VIAddVersionKey "FileVersion" "${VERSION}.0"
VIAddVersionKey "FileDescription" "zuPolicyManager installer"
VIAddVersionKey "LegalCopyright" ""

LicenseData "${PAYLOAD}/LICENSE.txt"
Page license
Page directory
Page instfiles
UninstPage uninstConfirm
UninstPage instfiles

; Shows the reason and ends with exit code 2.
!macro Fail TEXT
  MessageBox MB_OK|MB_ICONSTOP "${TEXT}" /SD IDOK
  SetErrorLevel 2
  Abort "${TEXT}"
!macroend

; Fails before anything has changed when a file cannot be replaced or deleted: a loaded module or a running program cannot
; be opened for writing.
!macro FailWhenInUse FILE
  ${If} ${FileExists} "$INSTDIR\${FILE}"
    ClearErrors
    FileOpen $0 "$INSTDIR\${FILE}" a
    ${If} ${Errors}
      !insertmacro Fail "$INSTDIR\${FILE} is in use. End the programs that use it and try again."
    ${EndIf}
    FileClose $0
  ${EndIf}
!macroend

; Removes the installed version, wherever it is. Its uninstaller runs from a copy made here, so that it can delete itself.
; It would make a copy of its own otherwise, and the installer could not wait for that one.
!macro RemoveOlder
  ReadRegStr $1 HKLM "${UNINSTALL_KEY}" "InstallLocation"
  ${If} $1 != ""
  ${AndIf} ${FileExists} "$1\${UNINSTALLER}"
    InitPluginsDir
    ClearErrors
    CopyFiles /SILENT "$1\${UNINSTALLER}" "$PLUGINSDIR\older.exe"
    ExecWait '"$PLUGINSDIR\older.exe" /S _?=$1' $2
    ${If} ${Errors}
    ${OrIf} $2 <> 0
      !insertmacro Fail "The version in $1 could not be removed. End the programs that use it and try again."
    ${EndIf}
  ${EndIf}
!macroend

!macro RemoveInstalled
  !insertmacro RemoveFiles
  Delete "$INSTDIR\${UNINSTALLER}"
  RMDir "$INSTDIR"
  DeleteRegKey HKLM "${UNINSTALL_KEY}"
!macroend

!macro FailAndTakeBack TEXT
  UnRegDLL "$INSTDIR\${MODULE}"
  !insertmacro RemoveInstalled
  !insertmacro Fail "${TEXT}"
!macroend

!macro WriteUninstallEntry
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayName" "zuPolicyManager"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\${TOOL}"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "Publisher" "The zuPolicyManager developers"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\${UNINSTALLER}"'
  WriteRegStr HKLM "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\${UNINSTALLER}" /S'
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "EstimatedSize" ${KILOBYTES}
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoRepair" 1
!macroend

Section
  SetRegView 64
  !insertmacro FailWhenInUse "${MODULE}"
  !insertmacro FailWhenInUse "${TOOL}"
  !insertmacro RemoveOlder

  ; A file that cannot be written sets the error flag. Without this it would end the installation at once.
  SetOverwrite try
  ClearErrors
  !insertmacro InstallFiles
  WriteUninstaller "$INSTDIR\${UNINSTALLER}"
  !insertmacro WriteUninstallEntry
  ; The current folder of a process cannot be removed.
  SetOutPath "$TEMP"
  ${If} ${Errors}
    !insertmacro FailAndTakeBack "The files could not be written to $INSTDIR."
  ${EndIf}

  RegDLL "$INSTDIR\${MODULE}"
  ${If} ${Errors}
    !insertmacro FailAndTakeBack "$INSTDIR\${MODULE} could not be registered. Nothing was installed."
  ${EndIf}
SectionEnd

Section Uninstall
  SetRegView 64
  SetOutPath "$TEMP"
  !insertmacro FailWhenInUse "${MODULE}"
  !insertmacro FailWhenInUse "${TOOL}"
  ${If} ${FileExists} "$INSTDIR\${MODULE}"
    ClearErrors
    UnRegDLL "$INSTDIR\${MODULE}"
    ${If} ${Errors}
      !insertmacro Fail "$INSTDIR\${MODULE} could not be unregistered. Nothing was removed."
    ${EndIf}
  ${EndIf}
  !insertmacro RemoveInstalled
SectionEnd
