// Numbers of everything in OrvantaInstaller.rc. Numbers only: a resource named
// by a text could be found by that text, and no icon of ours must be.
#pragma once

#define IDI_APPLICATION_ICON 107
#define IDI_SMALL_ICON 108

#define IDR_MAIN_MENU 109
#define IDR_MAIN_ACCELERATORS 109
#define IDD_ABOUT 103

#define IDS_PROGRAM_TITLE 103
#define IDS_SUITE_NAME 104
#define IDS_CONSOLE_NAME 105
#define IDS_LINKWARD_NAME 106

#define IDM_ABOUT 104
#define IDM_EXIT 105

#ifndef IDC_STATIC
#define IDC_STATIC (-1)
#endif
