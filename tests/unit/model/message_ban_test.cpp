// What is called while a unit of writes is open must not let messages run: the shell's icons, the opening of
// a target, the reading of a link, the properties of a file.
#include "win/message_ban.h"

#include "model/launching.h"
#include "model/target_icon.h"
#include "sys/file_operations.h"
#include "sys/shell_link.h"
#include "tests/support/unit_test.h"

namespace model {
namespace {

using ::testing::ElementsAre, ::testing::IsEmpty;

std::vector<std::string> g_breaches;

TEST(ModelMessageBanTest, IsBrokenByIconsAndByOpening) {
    g_breaches.clear();
    const auto shell = FAKE_CALL(ShellExecuteA, [] { return reinterpret_cast<HINSTANCE>(INT_PTR{42}); });
    const auto properties = ANSWER_CALL(ShellExecuteExA, TRUE);
    win::SetBanBreachHandler([](const char* routine) noexcept { g_breaches.emplace_back(routine); });
    const auto letMessagesRun = [] {
        static_cast<void>(TargetIcon("C:\\gone.txt", 0, 32));
        static_cast<void>(IconOfKind("C:\\gone.txt", 32));
        std::string target = "C:\\gone.txt";
        int show = SW_SHOWNORMAL;
        LaunchTarget(target, false, show, "");
        sys::ReadLinkTarget("C:\\gone.txt");
        sys::clsBmenu::ShowProperties("C:\\gone.txt");
    };
    letMessagesRun();
    EXPECT_THAT(g_breaches, IsEmpty());
    {
        const win::MessageBan ban;
        letMessagesRun();
    }
    win::SetBanBreachHandler(nullptr);
    EXPECT_THAT(g_breaches, ElementsAre("TargetIcon", "IconOfKind", "LaunchTarget", "OpenInShell",
                                        "ReadLinkTarget", "ShowProperties"));
}

}  // namespace
}  // namespace model
