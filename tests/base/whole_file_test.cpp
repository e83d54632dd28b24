#include "src/base/whole_file.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/ptrace.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <sstream>

namespace snmpmain {
namespace {

const std::string kOld = std::string("rocommunity old\n") + std::string(6000, '#') + "\nend\n";
const std::string kNew = "rocommunity new\nend\n";

constexpr int kNotAllowed = 77;  // exit status: this machine lets us not

// Runs `work` in a process of its own, which is killed at its nth system call (0: never). Returns
// its exit status, or -1 when it was killed.
int RunInChild(const std::function<int()>& work, int killedAt = 0) {
    const pid_t child = ::fork();
    if (child == 0) {
        if (killedAt > 0) {
            if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) {
                ::_exit(kNotAllowed);
            }
            ::raise(SIGSTOP);
        }
        ::_exit(work());
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    for (int i = 0; i < killedAt && WIFSTOPPED(status); ++i) {
        ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
        ::waitpid(child, &status, 0);
    }
    if (WIFSTOPPED(status)) {
        ::kill(child, SIGKILL);
        ::waitpid(child, &status, 0);
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

class WholeFileTest : public testing::Test {
  protected:
    WholeFileTest() {
        char name[] = "/tmp/snmpmain_file.XXXXXX";
        folder_ = ::mkdtemp(name);
        path_ = folder_ + "/snmpd.conf";
    }
    ~WholeFileTest() override {
        ::chmod(folder_.c_str(), 0755);
        std::filesystem::remove_all(folder_);
    }

    void Write(const std::string& path, const std::string& text) {
        std::ofstream(path) << text;
    }
    std::string Content() {
        std::stringstream text;
        text << std::ifstream(path_).rdbuf();
        return text.str();
    }

    // Gives the file to a user who may not make files beside it; `work` is to be run as that user.
    std::function<int()> AsUserOfTheFileAlone(const std::function<int()>& work) {
        constexpr uid_t kNobody = 65534;
        if (::geteuid() != 0) {
            ::chmod(folder_.c_str(), 0555);
            return work;
        }
        ::chmod(folder_.c_str(), 0755);
        EXPECT_EQ(::chown(path_.c_str(), kNobody, kNobody), 0);
        return [work] { return ::setresuid(kNobody, kNobody, kNobody) == 0 ? work() : 99; };
    }

    std::string folder_;
    std::string path_;
};

TEST_F(WholeFileTest, KilledAtAnySystemCallLeavesTheOldTextOrTheNewOne) {
    const auto replace = [&] { return static_cast<int>(ReplaceFile(path_, kNew)); };
    for (const bool inPlace : {false, true}) {
        bool wasOld = false;
        bool wasNew = false;
        for (int call = 1, result = -1; result < 0; ++call) {
            std::filesystem::remove(path_);
            Write(path_, kOld);
            result = RunInChild(inPlace ? AsUserOfTheFileAlone(replace) : replace, call);
            std::string text = Content();
            while (text.ends_with("\n\n")) {
                text.pop_back();
            }
            wasOld = wasOld || text == kOld;
            wasNew = wasNew || text == kNew;
            EXPECT_TRUE(text == kOld || text == kNew) << inPlace << " " << call << ": " << text;
            if (result == kNotAllowed) {
                GTEST_SKIP() << "an emulator, which cannot trace";
            }
            ASSERT_LE(result, 0);
            ASSERT_LT(call, 500);
        }
        EXPECT_TRUE(wasOld && wasNew && Content() == kNew);
        EXPECT_EQ(std::filesystem::status(path_).permissions(), std::filesystem::perms(0600));
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_), {}), 1);
    }
}

TEST_F(WholeFileTest, FullDiskLeavesTheOldText) {
    const std::string longText(9000, 'x');
    const auto onSmallDisk = [&](bool inPlace) {
        return RunInChild([&] {
            const int spaces = CLONE_NEWNS | (::geteuid() == 0 ? 0 : CLONE_NEWUSER);
            if (::unshare(spaces) != 0 || ::mount("", "/", "", MS_REC | MS_PRIVATE, "") != 0 ||
                ::mount("tmpfs", folder_.c_str(), "tmpfs", 0, "size=32k") != 0) {
                return kNotAllowed;
            }
            Write(path_, kOld);
            Write(folder_ + "/filler", std::string(100'000, 'x'));
            const auto replace = [&] { return static_cast<int>(ReplaceFile(path_, longText)); };
            const std::function<int()> run = inPlace ? AsUserOfTheFileAlone(replace) : replace;
            const int full = RunInChild(run);
            const bool isWhole = Content() == kOld;
            std::filesystem::remove(folder_ + "/filler");
            return (full == static_cast<int>(FileResult::kCannotWrite) ? 0 : 1) +
                   (isWhole ? 0 : 2) + (RunInChild(run) == 0 && Content() == longText ? 0 : 4);
        });
    };
    const int result = onSmallDisk(false);
    if (result == kNotAllowed) {
        GTEST_SKIP() << "no file system of its own";
    }
    EXPECT_EQ(result, 0);
    EXPECT_EQ(onSmallDisk(true), 0);
}

}  // namespace
}  // namespace snmpmain
