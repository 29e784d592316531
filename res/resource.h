#pragma once

// The numbers that code and resources share. Control identifiers are part of the program's contract with
// automation: they do not change.

// Icons
#define IDI_QUON 1
#define IDI_SHELL 2
#define IDI_PREDEFINED 3
#define IDI_SETTINGS 4
#define IDI_GO 5
#define IDI_INFO 6

// Dialog templates
#define IDD_MESSAGE 300
#define IDD_OPTIONS 400
#define IDD_ORGANIZE_SHORTCUTS 500
#define IDD_EDIT_SHORTCUT 600
#define IDD_EDIT_GROUP 700
#define IDD_DEFINE_TAB 800
#define IDD_ICON_CHOOSER 900

// Main window
#define IDC_TAB_HEADER 100  // + tab number, 1 to 6
#define IDC_BUTTON_CONTAINER 200
#define IDC_BUTTON 200  // + button number, 1 to 9
#define IDC_HOVER_PICTURE 210
#define IDC_RENAME 220
#define IDC_SHORTCUTS 230
#define IDC_IMAGE_BUTTON 240  // + index, 0 to 3

// Message box and About
#define IDC_MESSAGE_TEXT 300
#define IDC_ANSWER 310  // + index, 0 to 2
#define IDC_ANSWER_1 311
#define IDC_ANSWER_2 312
#define IDC_INPUT 320
#define IDC_ABOUT_CLOSE 330
#define IDC_ABOUT_PANEL 340
#define IDC_ABOUT_VERSION 341
#define IDC_ABOUT_SUPPORT 342
#define IDC_ABOUT_WEB 343
#define IDC_ABOUT_PICTURE 344

// Options
#define IDC_OPTION 400  // + index, 0 to 9
#define IDC_POP_DELAY 420
#define IDC_EDGE 430  // + edge, 1 to 4
#define IDC_OPTIONS_CANCEL 440
#define IDC_OPTIONS_ACCEPT 441
#define IDC_OPTIONS_WARNING 450
#define IDC_HOT_KEY 460

// Organize shortcuts
#define IDC_ORGANIZE_EDIT 500
#define IDC_ORGANIZE_DELETE 501
#define IDC_ORGANIZE_QUIT 502
#define IDC_ORGANIZE_FRAME 510
#define IDC_ORGANIZE_BASKET 511
#define IDC_ORGANIZE_SCROLL 512
#define IDC_ORGANIZE_LABEL 513
#define IDC_ORGANIZE_KEYS 514

// Edit shortcut
#define IDC_SHORTCUT_NAME 600
#define IDC_SHORTCUT_FILE 601
#define IDC_SHORTCUT_LABEL 610  // + index, 0 to 2
#define IDC_SHORTCUT_EXISTS 613
#define IDC_SHORTCUT_SELECT_FILE 620
#define IDC_SHORTCUT_SELECT_FOLDER 621
#define IDC_SHORTCUT_APPLY 622
#define IDC_SHORTCUT_CANCEL 623
#define IDC_SHORTCUT_ICON 630
#define IDC_SHORTCUT_FRAME 640

// Edit group
#define IDC_GROUP_NAME 700
#define IDC_GROUP_LABEL 710
#define IDC_GROUP_EXISTS 713
#define IDC_GROUP_ADD_FILE 720
#define IDC_GROUP_ADD_FOLDER 721
#define IDC_GROUP_APPLY 722
#define IDC_GROUP_CANCEL 723
#define IDC_GROUP_ADD_URL 724
#define IDC_GROUP_DELETE_ITEM 725
#define IDC_GROUP_FRAME 730
#define IDC_GROUP_BASKET 731
#define IDC_GROUP_SCROLL 732

// Define tab
#define IDC_TAB_CAPTION 800  // + index, 0 to 2
#define IDC_TAB_LABEL 810
#define IDC_TAB_DESCRIPTION 811
#define IDC_TAB_SHOW_DESCRIPTION 820
#define IDC_TAB_APPLY 830
#define IDC_TAB_CANCEL 831

// Icon chooser
#define IDC_CHOOSER_STRIP 900
#define IDC_CHOOSER_VIEW 901  // through which the strip is seen
#define IDC_CHOOSER_SCROLL 910
#define IDC_CHOOSER_CLOSE 920
#define IDC_CHOOSER_ICON 1000  // + the icon's index in the file

// Menu commands: the first identifier of each menu
#define IDM_PREDEFINED 2000
#define IDM_SHELL 2200
#define IDM_SETTINGS 2400
#define IDM_BUTTON 2500
#define IDM_FILE_OPERATIONS 2550
#define IDM_TRAY 2600
#define IDM_ACTIVE 2700

// Private messages of the main window
#define WM_QUON_DROP (WM_APP + 2)     // a drop waits
#define WM_QUON_CHOSEN (WM_APP + 3)   // an item of the drop-down was chosen
#define WM_QUON_HAND_ON (WM_APP + 4)  // docked in front: another program is to have the foreground
