#include "dialogs/pick_target.h"

#include "sys/file_operations.h"
#include "win/input_pause.h"

namespace dialogs {

std::string PickTarget(bool folder) {
    const win::InputPause pause;
    return folder ? sys::clsBmenu::GetFolder() : sys::clsBmenu::GetFile();
}

}  // namespace dialogs
