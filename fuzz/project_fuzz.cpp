// Project files: loaded, played in both modes, saved, loaded again; what was saved once comes back the same.
#include <cstdint>
#include <cstdlib>

#include "files/project_file.h"
#include "project/run_state.h"
#include "song/mode_switch.h"
#include "support/test_program.h"
#include "transport/transport.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace marlune;
    static const test::TemporaryFolder folder;
    test::writeBytes(folder.file("in.mlp"), {data, data + size});
    test::Options options;
    options.recorded = false;
    test::TestProgram program(options);
    loadProjectFile(folder.file("in.mlp"));
    if (!program.copyDifference().empty()) std::abort();
    playButton();
    program.play(18);
    Check1_Click();
    program.play(18);
    StopPlay();
    Check1_Click();
    saveProjectFile(folder.file("a.mlp"));
    loadProjectFile(folder.file("a.mlp"));
    saveProjectFile(folder.file("b.mlp"));
    if (test::readBytes(folder.file("a.mlp")) != test::readBytes(folder.file("b.mlp"))) std::abort();
    return 0;
}
