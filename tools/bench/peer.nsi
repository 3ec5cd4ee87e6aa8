; The same installation as an NSIS package: what `OrvantaInstaller.exe --silent` does on a machine that has
; neither product, step by step, with the files stored as they are. tools/bench.mjs makes it with makensis and
; runs it with /S. Where there are several ways it takes the quicker one, so that the comparison flatters the
; package: no checksum of itself, services by System calls instead of sc.exe, and as updater and uninstaller the
; small programs that NSIS writes instead of copies of the package.
;
;   makensis -DSOURCE=folder with the sample products -DOUTPUT=package.exe [-DMANY=folder] peer.nsi
;
; Left out, because a package would not do it: ending browsers, and taking back what waits for a restart.

Target amd64-unicode
Unicode true
Name "Orvanta peer"
OutFile "${OUTPUT}"
SetCompress off
CRCCheck off
SilentInstall silent
RequestExecutionLevel admin
ShowInstDetails nevershow

!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall"
!define HOST "NativeMessagingHosts\com.veyra.linkward"
!define CONSOLE "$PROGRAMFILES64\Brackenfold\FWC"
!define LINKWARD "$PROGRAMFILES64\Brackenfold\Veyra Linkward"
!define DATA "C:\ProgramData\Brackenfold\Veyra Linkward"

!macro Line TEXT
    FileWrite $0 '${TEXT}$\r$\n'
!macroend

!macro ManifestBegin NAME
    FileOpen $0 "${LINKWARD}\com.veyra.linkward.${NAME}.json" w
    !insertmacro Line '{'
    !insertmacro Line '  "name": "com.veyra.linkward",'
    !insertmacro Line '  "description": "Veyra Linkward - Website Threat Classification",'
    !insertmacro Line '  "path": "C:\\Program Files\\Brackenfold\\Veyra Linkward\\VeyraLinkwardCommunicator.exe",'
    !insertmacro Line '  "type": "stdio",'
!macroend

!macro Host KEY NAME
    WriteRegStr HKLM "SOFTWARE\${KEY}\${HOST}" "" "${LINKWARD}\com.veyra.linkward.${NAME}.json"
!macroend

Function Console
    SetOutPath "${CONSOLE}"
    File "${SOURCE}/Fortwright.exe"
    File "${SOURCE}/WebView2Loader.dll"
    WriteUninstaller "${CONSOLE}\updater.exe"
    CreateShortcut "$DESKTOP\Fortwright Console.lnk" "${CONSOLE}\Fortwright.exe" "" "${CONSOLE}\Fortwright.exe" 0 \
        SW_SHOWNORMAL "" "Fortwright Console"
    nsExec::Exec '"$SYSDIR\cmd.exe" /C schtasks /Create /F /TN "Brackenfold\FWC Updater" /TR \
        "\"${CONSOLE}\updater.exe\"" /SC WEEKLY /D SUN /ST 03:00 /RL HIGHEST /RU SYSTEM'
    Pop $0
    WriteRegStr HKLM "${UNINSTALL}\FortwrightConsole" "DisplayName" "Fortwright Console"
    WriteRegStr HKLM "${UNINSTALL}\FortwrightConsole" "DisplayVersion" "1.0.0"
    WriteRegStr HKLM "${UNINSTALL}\FortwrightConsole" "Publisher" "Brackenfold LTD"
    WriteRegStr HKLM "${UNINSTALL}\FortwrightConsole" "InstallLocation" "${CONSOLE}"
    WriteRegStr HKLM "${UNINSTALL}\FortwrightConsole" "UninstallString" '"${CONSOLE}\updater.exe" /uninstall'
    WriteRegStr HKLM "${UNINSTALL}\FortwrightConsole" "DisplayIcon" "${CONSOLE}\Fortwright.exe,0"
    WriteRegStr HKLM "${UNINSTALL}\FortwrightConsole" "URLInfoAbout" "https://www.brackenfold.example/"
    WriteRegDWORD HKLM "${UNINSTALL}\FortwrightConsole" "EstimatedSize" 50000
    WriteRegDWORD HKLM "${UNINSTALL}\FortwrightConsole" "NoModify" 1
    WriteRegDWORD HKLM "${UNINSTALL}\FortwrightConsole" "NoRepair" 1
    WriteRegStr HKLM "${UNINSTALL}\FortwrightConsole" "InstallDate" "20260101"
FunctionEnd

Function Files
    CreateDirectory "${DATA}\logs"
    SetOutPath "${LINKWARD}\extensions"
    File "${SOURCE}/*.crx"
    SetOutPath "${LINKWARD}"
    File /r /x *.crx /x *.vybf /x *.pem /x Fortwright.exe /x WebView2Loader.dll "${SOURCE}/*"
    !ifdef MANY
        SetOutPath "${LINKWARD}\many"
        File "${MANY}/*"
    !endif
    SetOutPath "${DATA}"
    File "${SOURCE}/*.vybf"
    WriteUninstaller "${LINKWARD}\VeyraLinkwardInstaller.exe"
FunctionEnd

; 0xF003F and 0xF01FF: all rights; 0x10, 2, 1: own process, automatic start, normal errors.
Function Service
    System::Call 'advapi32::OpenSCManagerW(p 0, p 0, i 2) p .r0'
    System::Call 'advapi32::CreateServiceW(p r0, w "VeyraLinkward", w "Veyra Linkward", i 0xF01FF, i 0x10, i 2, \
        i 1, w "${LINKWARD}\VeyraLinkward.exe", p 0, p 0, p 0, p 0, p 0) p .r1'
    StrCmp $1 0 0 +3
    SetErrorLevel 1
    Return
    System::Call '*(w "Veyra Linkward - Real-time website threat classification") p .r2'
    System::Call 'advapi32::ChangeServiceConfig2W(p r1, i 1, p r2)'
    System::Free $2
    System::Call '*(i 1, i 3000, i 1, i 5000, i 1, i 10000) p .r3'
    System::Call '*(i 86400, i 0, p 0, p 0, i 3, i 0, p r3) p .r2'
    System::Call 'advapi32::ChangeServiceConfig2W(p r1, i 2, p r2)'
    System::Free $2
    System::Free $3
    System::Call 'advapi32::StartServiceW(p r1, i 0, p 0) i .r2'
    StrCmp $2 0 0 +2
    SetErrorLevel 1
    System::Call 'advapi32::CloseServiceHandle(p r1)'
    System::Call 'advapi32::CloseServiceHandle(p r0)'
FunctionEnd

Function Hosts
    !insertmacro ManifestBegin chromium
    !insertmacro Line '  "allowed_origins": ['
    !insertmacro Line '    "chrome-extension://dgldcbgpnkooljhfhcjpkojcdnfkepnb/",'
    !insertmacro Line '    "chrome-extension://kembcdlbgbcnnchcnbdhbmbhbejnedjf/"'
    !insertmacro Line '  ]'
    !insertmacro Line '}'
    FileClose $0
    !insertmacro Host "Microsoft\Edge" chromium
    !insertmacro Host "Google\Chrome" chromium
    !insertmacro Host "BraveSoftware\Brave-Browser" chromium
    !insertmacro Host "Vivaldi" chromium
    !insertmacro Host "Opera Software\Opera Stable" chromium
    !insertmacro Host "Opera Software\Opera GX Stable" chromium
    !insertmacro ManifestBegin firefox
    !insertmacro Line '  "allowed_extensions": ["veyra-linkward@apps.brackenfold.example"]'
    !insertmacro Line '}'
    FileClose $0
    !insertmacro Host "Mozilla" firefox
FunctionEnd

Function Entry
    WriteRegStr HKLM "${UNINSTALL}\VeyraLinkward" "DisplayName" "Veyra Linkward"
    WriteRegStr HKLM "${UNINSTALL}\VeyraLinkward" "UninstallString" \
        "${LINKWARD}\VeyraLinkwardInstaller.exe --uninstall-gui"
    WriteRegStr HKLM "${UNINSTALL}\VeyraLinkward" "QuietUninstallString" \
        "${LINKWARD}\VeyraLinkwardInstaller.exe --uninstall"
    WriteRegStr HKLM "${UNINSTALL}\VeyraLinkward" "InstallLocation" "${LINKWARD}"
    WriteRegStr HKLM "${UNINSTALL}\VeyraLinkward" "Publisher" "Brackenfold"
    WriteRegStr HKLM "${UNINSTALL}\VeyraLinkward" "DisplayVersion" "1.0.0"
    WriteRegStr HKLM "${UNINSTALL}\VeyraLinkward" "ExtensionId" "dgldcbgpnkooljhfhcjpkojcdnfkepnb"
FunctionEnd

Section
    SetRegView 64
    SetErrorLevel 0
    Call Console
    Call Files
    Call Service
    Call Hosts
    Call Entry
SectionEnd

Section Uninstall
SectionEnd
