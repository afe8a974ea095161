// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/quib-render/LoadByName.h"

#include "platform/CChildProcess.h"
#include "platform/Paths.h"

namespace quib {

namespace {

constexpr const char* kPatience = "10";  // seconds
constexpr double kLongestScan = 15;      // seconds, for the process itself

// What it says is "quib-scan: reason" or "quib-scan: file: reason".
std::string WithoutName(const std::string& message) {
    const std::string first = message.substr(0, message.find('\n'));
    const auto colon = first.rfind(": ");
    return colon == std::string::npos ? first : first.substr(colon + 2);
}

}  // namespace

CProjectPlugins::CProjectPlugins(const std::vector<std::filesystem::path>& userFolders)
    : finder(ShippedLibraries(), userFolders, SystemPluginFolders()) {}

std::shared_ptr<CPlugin> CProjectPlugins::Load(const PluginReference& wanted, ESlotKind kind,
                                               PluginEnvironment& environment, std::string& error) {
    const auto library = finder.Find(wanted, kind);
    if (library) return IsSound(*library, error) ? CPlugin::Load(*library, kind, environment, error) : nullptr;
    error = "not found in any plug-in folder";
    return nullptr;
}

bool CProjectPlugins::IsBuiltIn(const std::filesystem::path& library) {
    std::error_code failure;
    const std::filesystem::path folder = std::filesystem::canonical(library, failure).parent_path();
    const auto isOwn = [&](const char* name) {
        return !failure && std::filesystem::equivalent(folder, ShippedLibraries() / name, failure) && !failure;
    };
    return isOwn("PluginInstruments") || isOwn("PluginEffects");
}

bool CProjectPlugins::IsSound(const std::filesystem::path& library, std::string& error) {
    if (IsBuiltIn(library)) return true;
    const auto [known, isNew] = scanned.try_emplace(library);
    if (isNew) {
        CChildProcess scan;
        if (!scan.Start(ExecutableFolder() / "quib-scan",
                        {"--timeout", kPatience, std::filesystem::absolute(library).string()})) {
            known->second = "cannot be tried first, since quib-scan does not start";
        } else if (const auto code = scan.Wait(kLongestScan); code != 0) {
            known->second = code == -1 || scan.Errors().empty() ? "ended while it was tried in a process of its own"
                                                                : WithoutName(scan.Errors());
        }
    }
    error = known->second;
    return error.empty();
}

}  // namespace quib
