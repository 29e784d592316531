#include "sys/shell_link.h"

#include <windows.h>

#include <shlobj.h>

#include "sys/utility.h"
#include "win/com.h"
#include "win/message_ban.h"
#include "win/text.h"

namespace sys {
inline namespace m_Funkcije {
namespace {

// Characters: no path and no command line of Windows is longer.
constexpr size_t kLongestText = 32768;

struct Link {
    std::string target;
    std::string arguments;
};

/// The scripting object keeps its texts as bytes, 260 of them at most: it cuts a text that does not fit, and
/// writes "?" for characters that its code page does not know.
bool MayBeCut(const std::string& text) {
    constexpr size_t kLongestCharacter = 4;
    return text.size() + kLongestCharacter >= MAX_PATH || text.find('?') != std::string::npos ||
           text.find("\xEF\xBF\xBD") != std::string::npos;
}

Link ReadWithScriptShell(const std::string& path) {
    CLSID shellClass{};
    win::ComPtr<IDispatch> shell;
    if (FAILED(CLSIDFromProgID(L"WScript.Shell", &shellClass)) ||
        FAILED(
            CoCreateInstance(shellClass, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, shell.ReceiveVoid())))
        return {};
    win::Variant file(win::ToWide(path));
    win::Variant created;
    win::InvokeByName(shell.Get(), L"CreateShortcut", DISPATCH_METHOD, &file, created);
    if (created.Get()->vt != VT_DISPATCH || created.Get()->pdispVal == nullptr) return {};
    win::Variant target;
    win::Variant arguments;
    win::InvokeByName(created.Get()->pdispVal, L"TargetPath", DISPATCH_PROPERTYGET, nullptr, target);
    win::InvokeByName(created.Get()->pdispVal, L"Arguments", DISPATCH_PROPERTYGET, nullptr, arguments);
    return {target.Text(), arguments.Text()};
}

Link ReadWithShellLink(const std::string& path) {
    win::ComPtr<IShellLinkW> link;
    if (FAILED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                                link.ReceiveVoid())))
        return {};
    win::ComPtr<IPersistFile> file;
    if (FAILED(link->QueryInterface(IID_IPersistFile, file.ReceiveVoid())) ||
        FAILED(file->Load(win::ToWide(path).c_str(), STGM_READ)))
        return {};
    std::wstring target(kLongestText, L'\0');
    std::wstring arguments(kLongestText, L'\0');
    link->GetPath(target.data(), static_cast<int>(target.size()), nullptr, 0);
    link->GetArguments(arguments.data(), static_cast<int>(arguments.size()));
    return {win::ToBytes(target.c_str()), win::ToBytes(arguments.c_str())};
}

}  // namespace

std::string ReadLinkTarget(const std::string& path) {
    // COM, the shell and the servers that links lead to may all let messages run.
    win::AssertMayPump("ReadLinkTarget");
    if (!path.ends_with("lnk")) return path + "|";
    Link link = ReadWithScriptShell(path);
    if (link.target.empty() || MayBeCut(link.target) || MayBeCut(link.arguments)) {
        const Link whole = ReadWithShellLink(path);
        if (whole.target.size() >= link.target.size()) link = whole;
    }
    // The first bar is where the target ends.
    if (IsUrl(link.target)) link.target = EncodeBars(link.target);
    return link.target + "|" + link.arguments;
}

}  // namespace m_Funkcije
}  // namespace sys
