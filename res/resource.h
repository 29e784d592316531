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
#define IDI_LIGHT 10  // + one of the toolbar's: its light form, for dark ground, as data
#define IDI_SHELL_LIGHT 12
#define IDI_PREDEFINED_LIGHT 13
#define IDI_SETTINGS_LIGHT 14
#define IDI_GO_LIGHT 15

// Dialog templates
#define IDD_MESSAGE 300
#define IDD_OPTIONS 400
#define IDD_ORGANIZE_SHORTCUTS 500
#define IDD_EDIT_SHORTCUT 600
#define IDD_EDIT_GROUP 700
#define IDD_DEFINE_TAB 800
#define IDD_ICON_CHOOSER 900

// Main window
#define IDC_TAB_HEADER 100  // b1, + tab number, 1 to 6
#define IDC_BUTTON_CONTAINER 200
#define IDC_BUTTON 200  // pb1, + button number, 1 to 9
#define IDC_HOVER_PICTURE 210
#define IDC_RENAME 220        // t1
#define IDC_SHORTCUTS 230     // cMain
#define IDC_IMAGE_BUTTON 240  // iBut, + index, 0 to 3

// The controls of the dialogs: the form, then the control. Of an array of controls this is its first one; the
// forms' headers tell what each is.

// Message box and About
#define frmMsg_l1 300
#define frmMsg_b1 310  // + index, 0 to 2
#define frmMsg_Text1 320
#define frmMsg_b2 330
#define frmMsg_Frame2 340
#define frmMsg_VersionLabel 341
#define frmMsg_SupportLink 342
#define frmMsg_WebLink 343
#define frmMsg_ProductPicture 344

// Options
#define frmSettings_chSet 400  // + index, 0 to 9
#define frmSettings_Text1 420
#define frmSettings_o1 430      // + edge, 1 to 4
#define frmSettings_ltBut1 440  // + index, 0 to 1
#define frmSettings_Picture2 450
#define frmSettings_HotKey 460

// Organize shortcuts
#define frmCuts_Command1 500  // + index, 0 to 2
#define frmCuts_pFrame 510
#define frmCuts_pBasket 511
#define frmCuts_Scr 512
#define frmCuts_Label1 513
#define frmCuts_List1 514
#define frmCuts_Line1 515

// Edit shortcut
#define frmEdit_t1 600  // + index, 0 to 1
#define frmEdit_l1 610  // + index, 0 to 3
#define frmEdit_c1 620  // + index, 0 to 3
#define frmEdit_p1 630
#define frmEdit_Frame1 640

// Edit group
#define frmEditB_t1 700
#define frmEditB_l1 710  // + index, 0 or 3
#define frmEditB_c1 720  // + index, 0 to 5
#define frmEditB_pFrame 730
#define frmEditB_pBasket 731
#define frmEditB_Scr 732
#define frmEditB_Line1 733

// Define tab
#define frmTabPrep_Label1 800  // + index, 0 to 2
#define frmTabPrep_Text1 810   // + index, 0 to 1
#define frmTabPrep_Check1 820
#define frmTabPrep_Command1 830  // + index, 0 to 1
#define frmTabPrep_Frame1 840

// Icon chooser
#define IcoChooser_p1 900
#define IcoChooser_View 901  // through which the strip is seen
#define IcoChooser_HScr 910
#define IcoChooser_Image1 920
#define IcoChooser_p2 1000  // + the icon's index in the file

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
