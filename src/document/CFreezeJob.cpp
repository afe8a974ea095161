// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CFreezeJob.h"

#include <exception>
#include <utility>

#include "platform/ThreadPriority.h"

namespace quib {

CFreezeJob::CFreezeJob(std::uint32_t forInstrument, FreezeSettings freezeSettings, bool mayRender,
                       CExport::Loader pluginLoader)
    : instrument(forInstrument),
      renders(mayRender),
      key(freezeSettings.key),
      file(freezeSettings.file),
      render(std::move(freezeSettings), std::move(pluginLoader), [this](double part) {
          share.store(part);
          return !cancelled.load();
      }) {
    step = std::async(std::launch::async, [this] {
        SetBackgroundPriority();
        Result result;
        result.take = ReadFrozenFile(file, key, result.error);
        return result;
    });
}

CFreezeJob::~CFreezeJob() {
    cancelled.store(true);
    if (step.valid()) step.wait();
}

bool CFreezeJob::Tick() {
    if (!step.valid()) return true;
    if (step.wait_for(std::chrono::seconds(0)) != std::future_status::ready) return false;
    Result result;
    try {
        result = step.get();
    } catch (const std::exception& failure) {
        result.error = failure.what();
    }
    take = std::move(result.take);
    if (!take && renders && !rendering) return !StartRender();
    if (!take && rendering) error = result.error;
    return true;
}

bool CFreezeJob::StartRender() {
    rendering = true;
    if (!render.Load()) {
        error = render.Error();
        return false;
    }
    step = std::async(std::launch::async, [this] {
        SetBackgroundPriority();
        Result result;
        if (render.Render()) {
            result.take = ReadFrozenFile(file, key, result.error);
        } else {
            result.error = render.Error();
        }
        return result;
    });
    return true;
}

}  // namespace quib
