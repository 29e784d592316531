#include "tests/support/neighbour.h"

#include <stdexcept>

#include "tests/support/target/ids.h"
#include "tests/support/test_target.h"
#include "tests/support/text.h"
#include "tests/support/wait.h"

namespace testkit {

Neighbour::Neighbour(const ProgramFolder& folder, const std::string& name, const std::string& title)
    : path_(folder.CopyIn(TestTargetExe(), name)),
      program_(path_, {.arguments = title}),
      window_(program_.WaitForWindow({.class_name = Utf8(target::kClass)})) {}

void Neighbour::CopyText(const std::string& text, unsigned times) const {
    Order(target::kOrderCopyText + (ULONG_PTR{times} << 8), Wide(text));
}

void Neighbour::CopyFiles(const std::vector<std::string>& paths) const {
    std::wstring list;
    for (const std::string& path : paths)
        list += Wide(path) + L'\0';
    Order(target::kOrderCopyFiles, list + L'\0');
}

void Neighbour::HoldClipboard() const { Order(target::kOrderHoldClipboard, {}); }

void Neighbour::LetClipboardGo() const { Order(target::kOrderLetClipboardGo, {}); }

void Neighbour::Hang() const {
    window_.Post(WM_COMMAND, target::kCommandHang);
    WaitFor("the neighbour hangs", [&] {
        DWORD_PTR answer = 0;
        return SendMessageTimeoutW(window_.Handle(), WM_NULL, 0, 0, SMTO_NORMAL, 50, &answer) == 0;
    });
}

void Neighbour::Order(ULONG_PTR order, const std::wstring& data) const {
    COPYDATASTRUCT sent = {};
    sent.dwData = order;
    sent.cbData = static_cast<DWORD>(data.size() * sizeof(wchar_t));
    sent.lpData = const_cast<wchar_t*>(data.c_str());
    // Somebody else may have the clipboard open at this moment.
    WaitFor("the neighbour obeys",
            [&] { return window_.Send(WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&sent)) == 1; });
}

}  // namespace testkit
