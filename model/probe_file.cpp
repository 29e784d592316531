#include "model/probe_file.h"

#include <windows.h>

#include "win/handles.h"
#include "win/process_start.h"

namespace model {

ProbeFile::ProbeFile(std::string_view name, std::string_view text) : path_(win::ProgramFolder()) {
    path_.append("\\").append(name);
    const win::File file(
        CreateFileA(path_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return;
    std::string line = "\"";
    line.append(text).append("\"\r\n");
    DWORD written = 0;
    WriteFile(file.Get(), line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
    made_ = true;
}

ProbeFile::~ProbeFile() {
    // A file that could not be made is somebody else's.
    if (made_) DeleteFileA(path_.c_str());
}

}  // namespace model
