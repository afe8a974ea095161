// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CExportJob.h"

#include <exception>
#include <utility>

#include "document/CWorkstation.h"
#include "platform/ThreadPriority.h"

namespace quib {

namespace {

CExport::Loader LoaderOf(CWorkstation& document) {
    return [&places = document.Places(), program = document.ProgramFolders().program.toStdString()](
               const PluginReference& wanted, ESlotKind kind, PluginEnvironment& environment, std::string& error) {
        environment.applicationFolder = program;
        return places.LoadFor(environment, wanted, kind, error);
    };
}

}  // namespace

CExportJob::CExportJob(CWorkstation& document, ExportSettings settings)
    : CExportJob(std::move(settings), document.Session().Bytes(), LoaderOf(document)) {}

CExportJob::CExportJob(ExportSettings settings, std::string projectBytes, CExport::Loader load)
    : work(std::make_unique<CExport>(std::move(settings), std::move(projectBytes), std::move(load),
                                     [this](double part, int file) {
                                         share.store(part);
                                         currentFile.store(file);
                                         return !cancelled.load();
                                     })) {}

CExportJob::~CExportJob() {
    Cancel();
    if (step.valid()) step.wait();
}

double CExportJob::Seconds() const {
    return seconds.value_or(std::chrono::duration<double>(std::chrono::steady_clock::now() - begun).count());
}

CExportJob::EState CExportJob::Tick() {
    if (state != EState::kWorking) return state;
    if (!step.valid()) {
        StartNext();
        return state;
    }
    if (step.wait_for(std::chrono::seconds(0)) != std::future_status::ready) return state;
    bool done = false;
    try {
        done = step.get();
    } catch (const std::exception& failure) {
        error = failure.what();
    }
    if (!done) {
        if (error.empty()) error = work->Error();
        End(error.empty() ? EState::kCancelled : EState::kFailed);
    } else if (writing) {
        End(EState::kDone);
    } else {
        StartNext();
    }
    return state;
}

void CExportJob::StartNext() {
    writing = !work->HasMorePasses();
    if (!writing && !work->Load([this](float, const std::string&) { return !cancelled.load(); })) {
        error = work->Error();
        return End(cancelled.load() ? EState::kCancelled : EState::kFailed);
    }
    step = std::async(std::launch::async, [this] {
        SetBackgroundPriority();
        return writing ? work->Write() : work->Render();
    });
}

// The engine and its plug-ins go, and with them files that are not whole.
void CExportJob::End(EState how) {
    state = how;
    seconds = Seconds();
    level = work->Measured();
    warnings = work->Warnings();
    playedFrames = work->PlayedFrames();
    if (how == EState::kDone) clipped = work->Clipped();
    work.reset();
}

}  // namespace quib
