// Sound servers in trouble.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "boundary/midi_bytes.h"
#include "platform/play_clock.h"
#include "platform/synth.h"
#include "support/test_program.h"

namespace marlune {
namespace {

// A server that accepts and never answers.
TEST(SoundServers, ThatHangHoldUpNeitherTheStartNorTheEnd) {
    const test::TemporaryFolder folder;
    sockaddr_un address{AF_UNIX, {}};
    folder.file("socket").copy(address.sun_path, sizeof address.sun_path - 1);
    const int server = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(bind(server, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(server, 1), 0);
    setenv("PULSE_SERVER", ("unix:" + folder.file("socket")).c_str(), 1);
    setenv("PULSE_COOKIE", folder.file("cookie").c_str(), 1);
    SystemPlayClock clock;
    {
        Synth synth(clock, nullptr, {});
        synth.addUser();
        const int caller = accept(server, nullptr, nullptr); // it has come that far
        EXPECT_GE(caller, 0);
        synth.removeUser(); // as a port that is closed to be opened again
        synth.addUser();
        EXPECT_TRUE(synth.opening());
        EXPECT_STREQ(synth.driverName(), "");
        synth.send(noteOn(0, 60, 100), clock.nowNs());
        synth.poll();
    }
    unsetenv("PULSE_SERVER");
    close(server);
}

} // namespace
} // namespace marlune
