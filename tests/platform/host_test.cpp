// Clock, lock, folders and signals of this machine.
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <thread>

#include "platform/config_folder.h"
#include "platform/frame_time.h"
#include "platform/instance_lock.h"
#include "platform/platform.h"
#include "platform/play_clock.h"
#include "platform/settings_file.h"
#include "platform/signals.h"
#include "support/test_program.h"

namespace marlune {
namespace {

constexpr std::int64_t kMs = 1'000'000;

TEST(PlayClock, RunsOnWhateverItsSourceDoes) {
    SystemPlayClock clock;
    const std::int64_t start = monotonicNs();
    EXPECT_LT(std::abs(clock.nowNs() - start), 20 * kMs);
    clock.follow(start, clock.at(start) + 5 * kMs, 0.5);
    EXPECT_EQ(clock.at(start + 40 * kMs) - clock.at(start), 20 * kMs);
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
    {
        const std::jthread one(read), two(read);
        for (int i = 0; i < 200000; ++i) {
            const std::int64_t now = monotonicNs();
            clock.follow(now, now + i % 3 * (100 * kMs), i % 2 ? 0.99 : 1.01);
        }
        done = true;
    }
    EXPECT_EQ(backwards, 0);
}

TEST(FrameTime, IsExactForYears) {
    const FrameTime time{123456789, 44100};
    for (const std::int64_t frame :
         {std::int64_t{0}, std::int64_t{1}, std::int64_t{-44101}, std::int64_t{44100} * 86400 * 400 + 77})
        EXPECT_EQ(time.frameAt(time.nsAt(frame)), frame);
}

TEST(FrameTime, GoesOnWithoutALeapWhereTheRateChanges) {
    FrameTime time{1'000'000'000, 48000};
    const std::int64_t frame = std::int64_t{48000} * 3600 + 7;
    const std::int64_t then = time.nsAt(frame);
    time.changeRate(frame, 44100);
    EXPECT_EQ(time.nsAt(frame), then);
    EXPECT_EQ(time.nsAt(frame + 44100), then + FrameTime::kSecond);
    EXPECT_EQ(time.frameAt(then + FrameTime::kSecond / 2), frame + 22050);
}

TEST(InstanceLock, RefusesASecondInstanceUntilTheFirstEnds) {
    const test::TemporaryFolder folder;
    test::writeBytes(folder.file("lock"), {}); // left behind by one that was killed
    {
        InstanceLock first(folder.file("lock"));
        EXPECT_TRUE(first.acquire());
        EXPECT_FALSE(InstanceLock(folder.file("lock")).acquire());
    }
    EXPECT_TRUE(InstanceLock(folder.file("lock")).acquire());
    EXPECT_TRUE(InstanceLock("/nowhere/lock").acquire());
}

TEST(ConfigFolder, IsBesideTheProgramOrTheUsers) {
    const test::TemporaryFolder home;
    setenv("XDG_CONFIG_HOME", home.path.c_str(), 1);
    EXPECT_EQ(configFolder(testing::TempDir()), testing::TempDir());
    EXPECT_EQ(configFolder("/usr/bin"), home.file("marlune200q"));
    EXPECT_EQ(access(home.file("marlune200q").c_str(), W_OK), 0);
    setenv("XDG_CONFIG_HOME", "relative", 1);
    setenv("HOME", home.path.c_str(), 1);
    EXPECT_EQ(configFolder("/nowhere"), home.file(".config/marlune200q"));
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

TEST(SettingsFile, GivesTheFirstLineWithTheKey) {
    const test::TemporaryFolder folder;
    EXPECT_TRUE(roomWanted(folder.path)); // no file
    const std::string text = "# room = on\n room\t=  off \r\nroom = on\nempty =\nno line";
    test::writeBytes(folder.file("settings.cfg"), {text.begin(), text.end()});
    EXPECT_FALSE(roomWanted(folder.path));
    EXPECT_EQ(settingOf(folder.path, "empty", "x"), "");
    EXPECT_EQ(settingOf(folder.path, "no line", "x"), "x");
}

} // namespace
} // namespace marlune
