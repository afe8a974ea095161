// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Runs the command-line programs as a user would and keeps what they print.

#include <sys/wait.h>
#include "CTemporaryFolder.h"
#include "Testing.h"

namespace quib {

class CToolTest : public testing::Test {
protected:
    struct Outcome {
        int exitCode;
        std::string output;
        std::string error;
    };

    std::string Path(const std::string& name) const { return (folder / name).string(); }

    Outcome Run(const std::string& tool, const std::string& arguments) const {
        return RunCommand(std::string(QUIB_BIN_DIR "/") + tool + " " + arguments);
    }
    Outcome RunCommand(const std::string& words) const {
        const std::string command = words + " >" + Path("stdout") + " 2>" + Path("stderr") + " </dev/null";
        const int status = std::system(command.c_str());  // NOLINT(concurrency-mt-unsafe)
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, Read("stdout"), Read("stderr")};
    }

    std::string Read(const std::string& name) const {
        std::ifstream file(Path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void Write(const std::string& name, const std::string& bytes) const {
        std::ofstream(Path(name), std::ios::binary) << bytes;
    }

    const CTemporaryFolder temporary;
    const std::filesystem::path& folder = temporary.Path();
};

}  // namespace quib
