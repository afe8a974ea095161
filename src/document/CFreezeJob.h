// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Gets the take of one instrument: reads the one that is there or, where that is wanted, renders it. Plug-ins are
// loaded on the user-interface thread, from where all calls come; all the rest is done on a thread that stands back
// behind the others. An object that goes ends what is under way.

#include <atomic>
#include <future>
#include <memory>
#include <string>

#include "document/FrozenProject.h"
#include "export/freeze/CFreezeRender.h"
#include "export/freeze/CFrozenFile.h"

namespace quib {

class CFreezeJob {
public:
    CFreezeJob(std::uint32_t forInstrument, FreezeSettings freezeSettings, bool mayRender,
               CExport::Loader pluginLoader);
    ~CFreezeJob();
    CFreezeJob(const CFreezeJob&) = delete;
    CFreezeJob& operator=(const CFreezeJob&) = delete;

    std::uint32_t Instrument() const noexcept { return instrument; }
    bool Renders() const noexcept { return renders; }
    double Share() const noexcept { return share.load(); }
    // Goes on to the next step when one is done; true at the end. From a timer.
    bool Tick();
    // At the end. Null with or without an error.
    const std::shared_ptr<const CFrozenTake>& Take() const noexcept { return take; }
    const std::string& Error() const noexcept { return error; }

private:
    struct Result {
        std::shared_ptr<const CFrozenTake> take;
        std::string error;
    };
    bool StartRender();

    std::uint32_t instrument;
    bool renders;
    std::string key;
    std::filesystem::path file;
    std::atomic<bool> cancelled{false};
    std::atomic<double> share{0};
    CFreezeRender render;
    bool rendering = false;
    std::future<Result> step;
    std::shared_ptr<const CFrozenTake> take;
    std::string error;
};

}  // namespace quib
