// Saves on a disk that fails at any of its calls, fills up, or loses the process in the middle: the old file
// or the new one, whole; the user is told; and nothing is left behind for good.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "panel/editing.h"
#include "program/recovery.h"
#include "support/failing_calls.h"
#include "support/program_test.h"

namespace marlune {
namespace {

using test::failAtCall;
using test::Failing;

constexpr int kMostCalls = 40;

struct FailingDisk : ProgramTest {
    ~FailingDisk() override { failAtCall(0, Failing::none); }

    // How many of the disk's calls save() makes; done is asked after each attempt that fails.
    int everyCall(Failing how, const std::function<void()>& save, const std::function<void(int)>& done) {
        for (int n = 1; n < kMostCalls; ++n) {
            program.shell.boxes.clear();
            failAtCall(n, how);
            save();
            const bool failed = test::failedCalls() > 0;
            failAtCall(0, Failing::none);
            if (!failed) return n - 1;
            SCOPED_TRACE(n);
            done(n);
        }
        return kMostCalls;
    }

    // Ends a process inside each of the calls of save(), n times in all.
    int everyDeath(const std::function<void()>& save, const std::function<void()>& done) {
        for (int n = 1; n < kMostCalls; ++n) {
            const pid_t child = ::fork();
            if (child == 0) {
                failAtCall(n, Failing::death);
                save();
                ::_exit(1); // it came through
            }
            int status = 0;
            ::waitpid(child, &status, 0);
            done();
            if (status != 0) return n - 1;
        }
        return kMostCalls;
    }

    std::string files(const std::string& inside) const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(inside))
            names.push_back(entry.path().filename().string());
        std::ranges::sort(names);
        return test::joined(names);
    }
    static std::size_t boxes(const TestProgram& program) { return program.shell.boxes.size(); }
};

TEST_F(FailingDisk, AProjectIsTheOldOneOrTheNewOneAndAFailureIsTold) {
    const std::string name = folder.file("song.mlp");
    auto edit = [tempo = 60]() mutable { project.tempo = 60 + tempo++ % 100; };
    const auto save = [&] {
        edit();
        markProject();
        mnuFileSavePatt_Click();
    };
    project.tempo = 50;
    saveProjectFile(name);
    nameProject(name);
    std::vector<std::uint8_t> old = readBytes(name);
    for (const Failing how : {Failing::error, Failing::full}) {
        const int calls = everyCall(how, save, [&](int) {
            const bool taken = readBytes(name) == projectFileBytes();
            EXPECT_TRUE(taken || readBytes(name) == old);
            EXPECT_EQ(program.shell.boxes.size(), taken ? 0U : 1U);
            EXPECT_EQ(editingState->projectDirty, !taken);
            EXPECT_EQ(program.shell.modified, !taken);
            EXPECT_EQ(files(folder.path), "song.mlp");
            old = readBytes(name);
        });
        EXPECT_EQ(calls, 8); // create, mode, write, flush, close, rename; flush and close the folder
        EXPECT_EQ(readBytes(name), projectFileBytes());
        old = readBytes(name);
    }
    const int deaths = everyDeath(save, [&] {
        const std::vector<std::uint8_t> now = readBytes(name);
        EXPECT_TRUE(now == old || now.size() == old.size());
        loadProjectFile(name); // whole
        EXPECT_TRUE(program.shell.boxes.empty());
        saveProjectFile(name);
        EXPECT_EQ(files(folder.path), "song.mlp");
        old = readBytes(name);
    });
    EXPECT_EQ(deaths, 8);
}

TEST_F(FailingDisk, SettingsAreTheOldOnesOrTheNewOnes) {
    setConfigFolder(folder.path);
    const auto save = [] {
        config.syncOffset = config.syncOffset + 1;
        knobLabel[0] = std::to_string(config.syncOffset);
        MDIForm_QueryUnload();
    };
    const auto takenUp = [] { // both files whole, each old or new
        const GlobalConfig wanted = config;
        EXPECT_TRUE(loadGlobalConfig());
        const int behind = wanted.syncOffset - config.syncOffset;
        const int labelBehind = wanted.syncOffset - std::stoi(knobLabel[0]);
        config = wanted;
        return std::pair(behind, labelBehind);
    };
    save();
    for (const Failing how : {Failing::error, Failing::full}) {
        int last = 0, lastLabel = 0;
        const int calls = everyCall(how, save, [&](int) {
            const auto [behind, label] = takenUp();
            EXPECT_TRUE(behind == 0 || behind == last + 1) << behind;
            EXPECT_TRUE(label == 0 || label == lastLabel + 1) << label;
            EXPECT_EQ(boxes(program), behind + label > 0 ? 1U : 0U);
            EXPECT_EQ(files(folder.path), "labels.cfg marlune.cfg");
            last = behind, lastLabel = label;
        });
        EXPECT_EQ(calls, 16);
        EXPECT_EQ(takenUp(), std::pair(0, 0));
    }
    EXPECT_EQ(everyDeath(save, [&] { EXPECT_TRUE(loadGlobalConfig()); }), 16);
    saveGlobalConfig();
    EXPECT_EQ(files(folder.path), "labels.cfg marlune.cfg");
}

// A copy of unsaved work that could not be kept is no copy, and what it has left goes with the next start.
TEST_F(FailingDisk, ACopyOfUnsavedWorkIsWholeOrNone) {
    const std::string copies = folder.file("copies");
    const auto work = [&] { // that is nowhere but here
        project.tempo = 50;
        startRecovery(copies);
        project.tempo = 111;
    };
    work();
    const std::vector<std::uint8_t> wanted = projectFileBytes();
    const auto startAgain = [&] {
        project.tempo = 50;
        startRecovery(copies);
        program.shell.answers = {BoxAnswer::yes};
        return offerRecovery();
    };
    int offered = 0;
    const int deaths = everyDeath(keepRecovery, [&] {
        if (startAgain()) {
            ++offered;
            EXPECT_EQ(projectFileBytes(), wanted);
            contentIsSaved();
        }
        EXPECT_EQ(files(copies), "");
        work();
    });
    EXPECT_EQ(deaths, 16);
    EXPECT_EQ(offered, 3); // from the rename on
    const pid_t child = ::fork();
    if (child == 0) {
        keepRecovery();
        ::_exit(0);
    }
    ::waitpid(child, nullptr, 0);
    failAtCall(1, Failing::full); // taken up on a disk that is full: the old copy is the only one
    EXPECT_TRUE(startAgain());
    failAtCall(0, Failing::none);
    startRecovery("");
    EXPECT_TRUE(startAgain());
    EXPECT_EQ(projectFileBytes(), wanted);
    startRecovery("");
}

} // namespace
} // namespace marlune
