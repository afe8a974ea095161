// SPDX-License-Identifier: GPL-3.0-or-later
#include "project/ProjectFile.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <sstream>

#include "model/plugin/PluginBank.h"
#include "project/GeneratedProject.h"

namespace quib {
namespace {

using generated::BytesOf;
using generated::TestPluginLoader;

ProjectState Read(const std::string& bytes, const PluginLoader& load = TestPluginLoader()) {
    ProjectState state;
    std::string error;
    EXPECT_TRUE(ReadProject(bytes, load, state, error)) << error;
    return state;
}

TEST(ProjectFile, LoadAndSaveTwiceGivesTheSameBytes) {
    const std::string first = BytesOf(generated::EveryRecord());
    const std::string second = BytesOf(Read(first));
    EXPECT_EQ(second, BytesOf(Read(second)));
    EXPECT_EQ(first, second);  // the generated one holds nothing that the format cuts
}

}  // namespace
}  // namespace quib
