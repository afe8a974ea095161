// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CAtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "CTemporaryFolder.h"
#include "Testing.h"
#include "platform/CFileBytes.h"

namespace quib {
namespace {

namespace fs = std::filesystem;

std::string Content(const fs::path& path) {
    CFileBytes file;
    std::string error;
    EXPECT_TRUE(file.Read(path, error)) << error;
    return std::string(file.View());
}

class CAtomicFileTest : public testing::Test {
protected:
    std::size_t FilesInFolder() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
    }
    bool Replace(std::string_view bytes) { return CAtomicFile().Replace(path, {bytes.data(), bytes.size()}, error); }

    const CTemporaryFolder temporary;
    const fs::path& folder = temporary.Path();
    const fs::path path = folder / "song.prg";
    std::string error;
};

// Counts the calls and makes one of them fail.
class CFailingCalls final : public CFileCalls {
public:
    enum class Fault { Fails, WritesShort, WritesNothing };
    int failAt = -1;
    int reason = EIO;
    Fault fault = Fault::Fails;
    int made = 0;

    int Open(const char* name, int flags, mode_t mode) override {
        return Fails() ? -1 : CFileCalls::Open(name, flags, mode);
    }
    ssize_t Write(int file, const void* bytes, std::size_t count) override {
        constexpr std::size_t piece = 1000;  // every write is short, so there are many to fail
        const std::size_t part = std::min(count, piece);
        if (!Fails()) return CFileCalls::Write(file, bytes, part);
        if (fault == Fault::WritesShort) return CFileCalls::Write(file, bytes, part / 2);
        return fault == Fault::WritesNothing ? 0 : -1;
    }
    int ChangeMode(int file, mode_t mode) override { return Fails() ? -1 : CFileCalls::ChangeMode(file, mode); }
    int Sync(int file) override { return Fails() ? -1 : CFileCalls::Sync(file); }
    int Close(int file) override {
        const bool fails = Fails();
        const int result = CFileCalls::Close(file);  // the file is gone either way
        if (fails) errno = reason;
        return fails ? -1 : result;
    }
    int Rename(const char* from, const char* to) override { return Fails() ? -1 : CFileCalls::Rename(from, to); }

private:
    bool Fails() {
        errno = reason;
        return made++ == failAt;
    }
};

TEST_F(CAtomicFileTest, ReplacesAFileAndKeepsItsPermissionsAndLinks) {
    ASSERT_TRUE(Replace("old")) << error;
    fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    const fs::path link = folder / "link.prg";
    fs::create_symlink("song.prg", link);
    ASSERT_TRUE(CAtomicFile().Replace(link, std::string_view("new"), error)) << error;
    EXPECT_EQ(Content(path), "new");
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    EXPECT_EQ(FilesInFolder(), 2U);
}

TEST_F(CAtomicFileTest, ALinkToNothingStaysAndALongNameIsSaved) {
    const fs::path link = folder / "link.prg";
    fs::create_symlink("first.prg", link);
    fs::create_symlink("song.prg", folder / "first.prg");
    ASSERT_TRUE(CAtomicFile().Replace(link, std::string_view("new"), error)) << error;
    EXPECT_TRUE(fs::is_symlink(link) && fs::is_symlink(folder / "first.prg"));
    EXPECT_EQ(Content(path), "new");

    std::string name;
    while (name.size() < 250) name += "\xC3\xA9";
    const fs::path longest = folder / (name + ".prg");
    ASSERT_TRUE(CAtomicFile().Replace(longest, std::string_view("long"), error)) << error;
    EXPECT_EQ(Content(longest), "long");
}

TEST_F(CAtomicFileTest, EveryCallThatFailsLeavesTheOldFileAndSaysWhy) {
    const std::string before = "old content";
    const std::string after(5500, 'n');
    CFailingCalls counting;
    ASSERT_TRUE(Replace(before));
    ASSERT_TRUE(CAtomicFile(counting).Replace(path, after, error)) << error;
    constexpr int afterRename = 3;  // the folder is opened, flushed and closed when the new file stands
    ASSERT_GT(counting.made, 8 + afterRename);
    for (const int reason : {ENOSPC, EIO, EDQUOT}) {
        for (int call = 0; call < counting.made; ++call) {
            ASSERT_TRUE(Replace(before));
            CFailingCalls failing;
            failing.failAt = call;
            failing.reason = reason;
            error.clear();
            const bool done = CAtomicFile(failing).Replace(path, after, error);
            EXPECT_EQ(done, call >= counting.made - afterRename) << call;
            EXPECT_EQ(Content(path), done ? after : before) << call;
            EXPECT_EQ(FilesInFolder(), 1U) << call;
            EXPECT_EQ(error, done ? "" : path.string() + ": " + std::strerror(reason));
        }
    }
}

TEST_F(CAtomicFileTest, InterruptedAndShortWritesGoOn) {
    const std::string after(5500, 'n');
    for (int call = 1; call <= 6; ++call) {  // the writes: between opening and flushing
        CFailingCalls failing;
        failing.failAt = call;
        failing.reason = EINTR;
        EXPECT_TRUE(CAtomicFile(failing).Replace(path, after, error)) << error;
        EXPECT_EQ(Content(path), after);
        CFailingCalls cutting;
        cutting.failAt = call;
        cutting.fault = CFailingCalls::Fault::WritesShort;
        EXPECT_TRUE(CAtomicFile(cutting).Replace(path, after, error)) << error;
        EXPECT_EQ(Content(path), after);
        CFailingCalls stuck;
        stuck.failAt = call;
        stuck.fault = CFailingCalls::Fault::WritesNothing;
        EXPECT_FALSE(CAtomicFile(stuck).Replace(path, after + "x", error));
        EXPECT_EQ(Content(path), after);
    }
    EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(CAtomicFileTest, RefusesWhatCannotBeReplaced) {
    EXPECT_FALSE(CAtomicFile().Replace(folder, std::string_view("x"), error));
    EXPECT_FALSE(CAtomicFile().Replace("/dev/null", std::string_view("x"), error));
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    EXPECT_FALSE(CAtomicFile().Replace(folder / "none" / "song.prg", std::string_view("x"), error));
    EXPECT_NE(error.find("none/song.prg: No such file"), std::string::npos) << error;
    if (::geteuid() == 0) return;  // who may write everything is refused nothing
    ASSERT_TRUE(Replace("kept"));
    fs::permissions(path, fs::perms::owner_read);
    EXPECT_FALSE(Replace("lost"));
    EXPECT_EQ(Content(path), "kept");
}

TEST_F(CAtomicFileTest, AKilledSaveLeavesTheOldFileOrTheNewOne) {
    // See scripts/kills.
    const auto wanted = [](const char* name, long usual) {
        const char* const value = std::getenv(name);
        return value != nullptr && *value != '\0' ? std::strtol(value, nullptr, 10) : usual;
    };
    const long megabytes = wanted("QUIB_KILL_MEGABYTES", 0);
    const std::size_t size = megabytes > 0 ? static_cast<std::size_t>(megabytes) * 1000000 : 300000;
    const std::string contents[2] = {std::string(size, 'a'), std::string(size * 2 / 3, 'b')};
    ASSERT_TRUE(Replace(contents[0]));
    std::mt19937 random(std::random_device{}());
#ifdef QUIB_SANITIZED
    constexpr int kills = 100;
    constexpr int longestLife = 60000;  // microseconds; a child starts slowly here
#else
    const long kills = wanted("QUIB_KILLS", 1000);
    const int longestLife = megabytes > 0 ? 100000 : 3000;
#endif
    bool seen[2] = {false, false};
    pid_t dead = 0;
    for (long kill = 0; kill < kills; ++kill) {
        const pid_t child = ::fork();
        if (child == 0) {
            std::string ignored;
            for (int i = 0;; ++i) CAtomicFile().Replace(path, contents[i % 2], ignored);
        }
        // From before the first call to a few saves later.
        ::usleep(static_cast<useconds_t>(random() % longestLife));
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        dead = child;
        const std::string left = Content(path);
        ASSERT_TRUE(left == contents[0] || left == contents[1]) << left.size();
        seen[left == contents[1] ? 1 : 0] = true;
    }
    // Another's, one of a process that lives, and one of ours that is no save's.
    const std::string living = ".song.prg." + std::to_string(::getppid()) + "-0.tmp";
    for (const std::string& name : {std::string(".song.prg.mine.tmp"), living}) std::ofstream(folder / name) << "x";
    ASSERT_TRUE(Replace(contents[0])) << error;
    EXPECT_EQ(FilesInFolder(), 3U) << "the next save cleans up after those that were killed, and nothing else";
    std::ofstream(folder / (".copy.prg." + std::to_string(dead) + "-0.tmp")) << "x";
    CAtomicFile::RemoveLeftovers(folder);
    EXPECT_EQ(FilesInFolder(), 3U) << "whatever they saved";
    EXPECT_TRUE(seen[0] && seen[1]) << "no save was ever finished, or none was ever cut off";
}

}  // namespace
}  // namespace quib
