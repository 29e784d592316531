// Everything for a whole-program test: start the program, find its windows, act as its user, look at the
// result.
//
//     TEST(PanelTest, OpensAMenuOnRightClick) {
//         ProgramFolder folder;
//         folder.WriteIniText("[Settings]\r\n...");
//         RunningProgram quon = StartQuon(folder);                              // running_program.h
//         const Window panel = quon.WaitForWindow({.class_name = "QuonMain"});  // window.h
//         mouse::RightClick(panel.Child(IDC_BUTTON + 1));                       // input.h
//         PopupMenu::Wait(quon.Id()).Choose("Free button");                     // popup_menu.h
//         MessageBoxWindow::Wait(quon.Id()).ClickButton(0);                     // message_box_window.h
//         WaitFor("it is free", [&] { return panel.Child(IDC_BUTTON + 1).Text() == "Empty"; });  // wait.h
//         EXPECT_EQ(quon.CloseAndWait(), 0u);
//         EXPECT_EQ(folder.IniValue("Buttons", "11"), "");                      // program_folder.h
//     }
//
// Each header begins with what it is good for. Nothing here waits for a fixed time; neither should a test.
#pragma once

// IWYU pragma: begin_exports
#include "tests/precompiled.h"
#include "tests/support/input.h"
#include "tests/support/message_box_window.h"
#include "tests/support/paths.h"
#include "tests/support/popup_menu.h"
#include "tests/support/program_folder.h"
#include "tests/support/running_program.h"
#include "tests/support/screen.h"
#include "tests/support/test_target.h"
#include "tests/support/tooltip_window.h"
#include "tests/support/wait.h"
#include "tests/support/window.h"
// IWYU pragma: end_exports
