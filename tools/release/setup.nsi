; The setup file that customers download: it carries the program and the product files, unpacks them, starts the
; program with the options that it was given, hands its exit code on, and takes everything away again. It has no window
; and no box of its own. make_setup.mjs makes it:
;
;   makensis -DOUTPUT=setup.exe -DFILES=files.nsh -DICON=app.ico -DVERSION=1.2.3 -DCOMPANY=... -DPRODUCT=... \
;       -DCOPYRIGHT=... setup.nsi
;
; No plug-ins: NSIS unpacks them into the user's temporary folder, where a program of that user without any rights could
; exchange the DLL before it is loaded. For the same reason the files are not compressed as one solid block: NSIS takes
; that apart in a file in the temporary folder, and reads even this script from there. Unpacked file by file, nothing
; lies anywhere but in the folder below.

Unicode true
Target amd64-unicode
SetCompressor lzma
SetDateSave off
CRCCheck force

Name "${PRODUCT}"
OutFile "${OUTPUT}"
Icon "${ICON}"
RequestExecutionLevel admin
ManifestSupportedOS Win10
ManifestDPIAware true
XPStyle on ; has the common controls loaded from Windows and not from beside the setup file
SilentInstall silent

VIProductVersion "${VERSION}.0"
VIFileVersion "${VERSION}.0"
!macro VersionText KEY VALUE
    VIAddVersionKey /LANG=0x0409 "${KEY}" "${VALUE}"
!macroend
!insertmacro VersionText CompanyName "${COMPANY}"
!insertmacro VersionText FileDescription "${PRODUCT} Setup"
!insertmacro VersionText FileVersion "${VERSION}"
!insertmacro VersionText InternalName "OrvantaInstaller-setup"
!insertmacro VersionText LegalCopyright "${COPYRIGHT}"
!insertmacro VersionText OriginalFilename "OrvantaInstaller-${VERSION}-x64-setup.exe"
!insertmacro VersionText ProductName "${PRODUCT}"
!insertmacro VersionText ProductVersion "${VERSION}"

!include LogicLib.nsh

; NSIS cuts texts off at this length, command lines included.
!define /math LONGEST_TEXT ${NSIS_MAX_STRLEN} - 1
; The exit code for whatever goes wrong here; NSIS itself has the same for a damaged file.
!define FAILED 2
!define PROGRAM "OrvantaInstaller.exe"
; Numbered folders, with a lock beside each. Windows lets only administrators make and change anything in Program Files,
; and what is made there has these rights from its first moment; Windows, and no variable of a user, says where it is.
!define FOLDERS "$PROGRAMFILES64\Orvanta Installer Setup"

Var folder  ; full path
Var lock    ; handle of its lock, "" when somebody else has it
Var options ; the command line behind the name of the setup file

; Takes the lock of $folder, which ends with this process at the latest.
Function take_lock
    ClearErrors
    FileOpen $lock "$folder.lock" a
    ${If} ${Errors}
        StrCpy $lock ""
    ${EndIf}
FunctionEnd

; The lock file goes last: where there is none, a folder is none of ours.
Function drop_lock
    FileClose $lock
    ${IfNot} ${FileExists} "$folder\*.*"
        Delete "$folder.lock"
    ${EndIf}
FunctionEnd

; Removes the folder whose path is on the stack. A link in it is removed as such: RMDir succeeds for it, so that it is
; not entered, as RMDir /r would.
Function remove_tree
    Exch $0
    Push $1
    Push $2
    RMDir "$0"
    FindFirst $1 $2 "$0\*.*"
    ${DoUntil} $2 == ""
        ${If} $2 != "."
        ${AndIf} $2 != ".."
            Delete "$0\$2"
            ${If} ${FileExists} "$0\$2\*.*"
                Push "$0\$2"
                Call remove_tree
            ${EndIf}
        ${EndIf}
        FindNext $1 $2
    ${Loop}
    FindClose $1
    RMDir "$0"
    Pop $2
    Pop $1
    Pop $0
FunctionEnd

; Removes $folder, whose lock is ours, unless the program in it runs.
Function remove_folder
    RMDir "$folder"
    Delete "$folder\${PROGRAM}"
    ${IfNot} ${FileExists} "$folder\${PROGRAM}"
        Push $folder
        Call remove_tree
    ${EndIf}
FunctionEnd

; What setup files have left that were ended half-way: folders whose locks nobody holds.
Function remove_leftovers
    FindFirst $0 $1 "${FOLDERS} *.lock"
    ${DoUntil} $1 == ""
        StrCpy $folder "$PROGRAMFILES64\$1" -5 ; without ".lock"
        Call take_lock
        ${If} $lock != ""
            Call remove_folder
            Call drop_lock
        ${EndIf}
        FindNext $0 $1
    ${Loop}
    FindClose $0
FunctionEnd

; Makes the first folder that is not there, and takes its lock before. $folder is "" when none can be made.
Function make_folder
    ${For} $0 1 1000
        StrCpy $folder "${FOLDERS} $0"
        ${IfNot} ${FileExists} "$folder"
            Call take_lock
            ${If} $lock != ""
                ; It may have been there in the meantime, with another holding the lock.
                ${IfNot} ${FileExists} "$folder"
                    CreateDirectory "$folder"
                    ${If} ${FileExists} "$folder\*.*"
                        Return
                    ${EndIf}
                ${EndIf}
                Call drop_lock
            ${EndIf}
        ${EndIf}
    ${Next}
    StrCpy $folder ""
FunctionEnd

; Puts what follows the name of the setup file into $options, as it was typed and with the blank before it. As Windows
; has it, the name ends at the first blank that stands outside quotes.
Function read_options
    StrCpy $0 0 ; place
    StrCpy $1 0 ; inside quotes?
    ${Do}
        StrCpy $2 $CMDLINE 1 $0
        ${If} $2 == '"'
            IntOp $1 $1 ^ 1
        ${ElseIf} $2 == ""
            ${ExitDo}
        ${ElseIf} $1 = 0
            ${If} $2 == " "
            ${OrIf} $2 == "$\t"
                ${ExitDo}
            ${EndIf}
        ${EndIf}
        IntOp $0 $0 + 1
    ${Loop}
    StrCpy $options $CMDLINE "" $0
FunctionEnd

; Removes the folder, which may take a moment: a scanner may still look at what has just been closed.
Function tidy_up
    ${If} $folder != ""
        ${For} $0 1 50
            Call remove_folder
            ${IfNot} ${FileExists} "$folder\*.*"
                ${ExitFor}
            ${EndIf}
            Sleep 100
        ${Next}
        Call drop_lock
    ${EndIf}
FunctionEnd

Function .onInit
    SetErrorLevel ${FAILED}
FunctionEnd

; Unpacking has failed.
Function .onInstFailed
    Call tidy_up
FunctionEnd

Section
    ; NSIS takes /D= for itself, with all that follows it, which must not be left out in silence. That it did is seen
    ; only when it got a full path, as people give it who know other setup files of NSIS.
    ${If} $INSTDIR != ""
        Quit
    ${EndIf}
    StrLen $0 $CMDLINE
    ${If} $0 >= ${LONGEST_TEXT}
        Quit
    ${EndIf}
    Call read_options
    Call remove_leftovers
    Call make_folder
    ${If} $folder == ""
        Quit
    ${EndIf}

    ClearErrors
    !include /CHARSET=UTF8 "${FILES}"
    ${If} ${Errors}
        Abort
    ${EndIf}

    ; A --source among the options comes later than ours, and the last one counts.
    StrCpy $1 '"$folder\${PROGRAM}" --source "$folder"'
    StrLen $2 $1
    StrLen $3 $options
    IntOp $2 $2 + $3
    ${If} $2 > ${LONGEST_TEXT}
        Abort
    ${EndIf}
    ClearErrors
    ExecWait '$1$options' $2
    ${If} ${Errors}
        Abort
    ${EndIf}
    ${If} $2 = -1 ; is how NSIS says that nobody has set one; a program gets it that was ended by force
        StrCpy $2 ${FAILED}
    ${EndIf}
    SetErrorLevel $2
    Call tidy_up
SectionEnd
