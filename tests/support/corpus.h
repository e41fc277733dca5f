// What the fuzzers were started from and what they found on the way: each file of a folder under fuzz/corpus
// through the target that the test program links, to the last look.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "../fuzz/turns.h"
#include "support/test_program.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace marlune::test {

inline void look(const std::vector<std::uint8_t>& bytes) {
    fuzz::everyInput = true;
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

inline void expectHarmless(const std::string& corpus) {
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(MARLUNE_CORPUS "/" + corpus)) {
        SCOPED_TRACE(entry.path().filename());
        look(readBytes(entry.path()));
        ++files;
    }
    EXPECT_GE(files, 4) << corpus;
}

} // namespace marlune::test
