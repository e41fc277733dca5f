// Clock, lock, folders and signals of this machine.
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <thread>

#include "platform/config_folder.h"
#include "platform/frame_time.h"
#include "platform/instance_lock.h"
#include "platform/platform.h"
#include "platform/play_clock.h"
#include "platform/signals.h"
#include "support/counting_sink.h"

namespace marlune {
namespace {

constexpr std::int64_t kMs = 1'000'000;

TEST(PlayClock, RunsOnWhateverItsSourceDoes) {
    SystemPlayClock clock;
    const std::int64_t start = monotonicNs();
    EXPECT_LT(std::abs(clock.nowNs() - start), 20 * kMs);
    clock.follow(start, clock.at(start) + 5 * kMs, 0.5);
    EXPECT_EQ(clock.at(start + 40 * kMs) - clock.at(start), 20 * kMs);
    const std::int64_t before = clock.nowNs();
    clock.follow(start, before - 1000 * kMs, 1.0); // the source fell back: the clock stands
    EXPECT_EQ(clock.nowNs(), before);
    clock.follow(start, before + 1, 1.0);
    EXPECT_GT(clock.nowNs(), before);
}

TEST(PlayClock, NeverRunsBackwardsForAnyThread) {
    SystemPlayClock clock;
    std::atomic<bool> done{false};
    std::atomic<int> backwards{0};
    const auto read = [&] {
        for (std::int64_t last = 0; !done;) {
            const std::int64_t now = clock.nowNs();
            if (now < last || now > monotonicNs() + 2000 * kMs) ++backwards; // or a torn line
            last = now;
        }
    };
    std::thread one(read), two(read);
    for (int i = 0; i < 200000; ++i) {
        const std::int64_t now = monotonicNs();
        clock.follow(now, now + i % 3 * (100 * kMs), i % 2 ? 0.99 : 1.01);
    }
    done = true;
    one.join();
    two.join();
    EXPECT_EQ(backwards, 0);
}

TEST(FrameTime, IsExactForYears) {
    const FrameTime time{123456789, 44100};
    for (const std::int64_t frame :
         {std::int64_t{0}, std::int64_t{1}, std::int64_t{-44101}, std::int64_t{44100} * 86400 * 400 + 77})
        EXPECT_EQ(time.frameAt(time.nsAt(frame)), frame);
    const FrameTime even{987654321012345, 48000};
    for (std::int64_t i = 1; i < 600; ++i)
        EXPECT_EQ(even.frameAt(5000 + i * 17 * kMs) - even.frameAt(5000 + (i - 1) * 17 * kMs), 816);
}

TEST(InstanceLock, RefusesASecondInstanceUntilTheFirstEnds) {
    const std::string path = testing::TempDir() + "lock-" + std::to_string(getpid());
    const pid_t child = fork();
    if (child == 0) {
        InstanceLock lock(path);
        if (lock.acquire()) raise(SIGSTOP);
        _exit(1);
    }
    int status = 0;
    waitpid(child, &status, WUNTRACED);
    ASSERT_TRUE(WIFSTOPPED(status)) << "it has the lock";
    InstanceLock lock(path);
    EXPECT_FALSE(lock.acquire());
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    EXPECT_TRUE(lock.acquire());
    EXPECT_FALSE(InstanceLock(path).acquire());
    EXPECT_TRUE(InstanceLock("/nowhere/lock").acquire());
    unlink(path.c_str());
}

TEST(ConfigFolder, IsBesideTheProgramOrTheUsers) {
    const std::string home = testing::TempDir() + "home-" + std::to_string(getpid());
    setenv("XDG_CONFIG_HOME", home.c_str(), 1);
    EXPECT_EQ(configFolder(testing::TempDir()), testing::TempDir());
    EXPECT_EQ(configFolder("/usr/bin"), home + "/marlune200q");
    EXPECT_EQ(access((home + "/marlune200q").c_str(), W_OK), 0);
    setenv("XDG_CONFIG_HOME", "relative", 1);
    setenv("HOME", home.c_str(), 1);
    EXPECT_EQ(configFolder("/nowhere"), home + "/.config/marlune200q");
    unsetenv("XDG_CONFIG_HOME"); // sound libraries look there too
    EXPECT_EQ(programFolder().find('/'), 0U);
}

TEST(Signals, BecomeReadable) {
    Signals signals;
    pollfd waiting{signals.fd(), POLLIN, 0};
    EXPECT_EQ(poll(&waiting, 1, 0), 0);
    for (const int number : {SIGTERM, SIGINT}) {
        raise(number);
        EXPECT_EQ(poll(&waiting, 1, 1000), 1);
        EXPECT_TRUE(signals.take());
        EXPECT_FALSE(signals.take());
    }
}

TEST(Platform, OpensItsBuiltInDevicesOnABareMachineAndPrintsNothing) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    for (const bool ports : {false, true}) {
        Platform platform({"", ports, true});
        ASSERT_GE(platform.outputs().count(), 2);
        ASSERT_GE(platform.inputs().count(), 1);
        for (int i = 0; i < 2; ++i) {
            OutputPort* port = platform.outputs().open(i);
            ASSERT_NE(port, nullptr);
            for (int n = 0; n < 20000; ++n) port->send({3, {0xB0, 16, 0}}, platform.clock().nowNs());
            platform.poll();
            platform.outputs().close(port);
        }
        test::CountingSink sink;
        EXPECT_TRUE(platform.inputs().open(0, sink));
        platform.inputs().close();
    }
    EXPECT_EQ(testing::internal::GetCapturedStdout() + testing::internal::GetCapturedStderr(), "");
}

} // namespace
} // namespace marlune
