// What nearly every test takes that calls the product in its own process: Windows, the test framework, the
// standard library and the kit. A test names the product's headers and the rarer ones of the kit itself.
#pragma once

// IWYU pragma: begin_exports
#include "tests/precompiled.h"
#include "tests/support/call_log.h"
#include "tests/support/held_file.h"
#include "tests/support/hidden_window.h"
#include "tests/support/modal_answers.h"
#include "tests/support/paths.h"
#include "tests/support/program_folder.h"
#include "tests/support/recorded_call.h"
#include "tests/support/scoped_ini_path.h"
#include "tests/support/text.h"
#include "tests/support/wait.h"
#include "tests/support/window.h"
// IWYU pragma: end_exports
