// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CFolderLock.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "CTemporaryFolder.h"
#include "Testing.h"

namespace quib {
namespace {

TEST(CFolderLockTest, AFolderHasOneOwnerUntilItsProcessEndsHoweverItEnds) {
    const CTemporaryFolder temporary;
    const std::string folder = temporary.Path().string();
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        CFolderLock lock;
        const char taken = lock.Take(folder) ? 'y' : 'n';
        (void)!::write(ready[1], &taken, 1);
        ::pause();
        _exit(0);
    }
    char taken = 0;
    ASSERT_EQ(::read(ready[0], &taken, 1), 1);
    EXPECT_EQ(taken, 'y');
    CFolderLock second;
    EXPECT_FALSE(second.Take(folder));
    EXPECT_TRUE(second.Holder().starts_with(std::to_string(child) + " on ")) << second.Holder();
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    CFolderLock third;
    EXPECT_TRUE(third.Take(folder)) << "a dead process holds nothing";
    EXPECT_TRUE(CFolderLock().Take("/proc")) << "who cannot mark it is not kept out";
}

}  // namespace
}  // namespace quib
