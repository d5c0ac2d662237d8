// SPDX-FileCopyrightText: 2026 Chimewerk developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "linux/keys/xdg_permission_page.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <string>

#include "linux/base/core_dumps.h"
#include "support/open_descriptors.h"
#include "support/run_queue.h"
#include "tools/files/temporary_folder.h"
#include "tools/files/text_file.h"

namespace chimewerk {
namespace {

/// Puts a fake xdg-open first in $PATH.
class ThePermissionPage : public testing::Test {
protected:
    ThePermissionPage() { setenv("PATH", (folder.path().string() + ":" + path).c_str(), 1); }
    ~ThePermissionPage() override { setenv("PATH", path.c_str(), 1); }

    void install(const std::string& script) const {
        std::ofstream(folder / "xdg-open") << "#!/bin/sh\n" << script << '\n';
        chmod((folder / "xdg-open").c_str(), 0700);
    }
    std::string opened() const { return readFile(folder / "opened"); }
    /// Returns whether this process has no child left, not even a zombie.
    static bool allReaped() {
        siginfo_t child{};
        return waitid(P_ALL, 0, &child, WEXITED | WNOHANG | WNOWAIT) < 0 && errno == ECHILD;
    }

    const std::string path = std::getenv("PATH");
    TemporaryFolder folder;
    EpollMainQueue queue;
};

TEST_F(ThePermissionPage, IsOpenedByTheDesktopEachTimeItIsShown) {
    install("echo \"$@\" >> " + folder / "opened");
    XdgPermissionPage page(queue, "/some where/page.html");
    const std::size_t before = openDescriptors();
    page.show();
    page.show();
    EXPECT_TRUE(runUntil(queue, [] { return allReaped(); }));
    EXPECT_EQ(opened(), "/some where/page.html\n/some where/page.html\n");
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(ThePermissionPage, StaysOpenWhenTheProgramEnds) {
    install("read line < " + folder / "pipe" + "; echo \"$line\" > " + folder / "opened");
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    {
        XdgPermissionPage page(queue, "/page.html");
        page.show();
        EXPECT_EQ(wakeUpsWithin(queue, Seconds{0.1}), 0);
    }
    std::ofstream(folder / "pipe") << "still there\n";
    EXPECT_GT(waitpid(-1, nullptr, 0), 0);
    EXPECT_EQ(opened(), "still there\n");
}

TEST_F(ThePermissionPage, IsOpenedByAProgramThatMayWriteCoreDumpsAsBefore) {
    rlimit before{};
    getrlimit(RLIMIT_CORE, &before);
    const rlimit given{.rlim_cur = std::min<rlim_t>(before.rlim_max, 4096),
                       .rlim_max = before.rlim_max};
    setrlimit(RLIMIT_CORE, &given);
    forbidCoreDumps();
    // The limit is restored while the program starts.
    install("sleep 0.1; prlimit --core --output SOFT --noheadings --pid $$ > " + folder / "opened");
    XdgPermissionPage page(queue, "/page.html");
    page.show();
    EXPECT_TRUE(runUntil(queue, [] { return allReaped(); }));
    EXPECT_EQ(opened(), std::to_string(given.rlim_cur) + "\n");
    setrlimit(RLIMIT_CORE, &before);
}

TEST_F(ThePermissionPage, FailsSilentlyIfNothingCanOpenIt) {
    setenv("PATH", folder.path().c_str(), 1);
    XdgPermissionPage page(queue, "/page.html");
    page.show();
    EXPECT_TRUE(runUntil(queue, [] { return allReaped(); }));
}

}  // namespace
}  // namespace chimewerk
