// Export with all that is asked and answered, as a whole session.
#include "files/export_driver.h"
#include "support/program_test.h"

namespace marlune {
namespace {

// In the folder of the test, so that names are short.
struct FileSession : ProgramTest {
    FileSession() {
        std::filesystem::current_path(folder.path);
        session.marksAnew = false;
    }
    ~FileSession() override { std::filesystem::current_path("/"); }

    test::Session session{program};
};

TEST_F(FileSession, Export) {
    std::string meter;
    program.shell.modeless = [&](Form& form) {
        meter += form.caption + " " + std::to_string(exportMeter.ProgressBar1.minimum) + ".." +
                 std::to_string(exportMeter.ProgressBar1.maximum) + test::layoutOf(form) + "\n";
    };
    expectSession(session);
    expectKept(meter, " meter");
    EXPECT_EQ(readBytes("song1.mid"), readBytes("song2.mid"));
    EXPECT_FALSE(exportMeter.visible());
}

} // namespace
} // namespace marlune
