// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The document behind the windows: the engine with its output, and the project as windows see it, a part
// for each concern. Windows read the engine's values directly and change the project only through the
// parts, so that each change is a step of undo with a name. User-interface thread.

#include <QObject>
#include <map>
#include <memory>
#include <utility>

#include "devices/COutputManager.h"
#include "document/CAutomationRecording.h"
#include "document/CContents.h"
#include "document/CControllers.h"
#include "document/CFreezing.h"
#include "document/CInstrumentStack.h"
#include "document/CLanes.h"
#include "document/CMetronomeControl.h"
#include "document/CNoteRecording.h"
#include "document/CPerformance.h"
#include "document/CPluginPlaces.h"
#include "document/CPresets.h"
#include "document/CRecording.h"
#include "document/CSelection.h"
#include "document/CSession.h"
#include "document/CSong.h"
#include "document/CTransportControl.h"
#include "engine/EngineMessages.h"

namespace quib {

class CWorkstation : public QObject {
    Q_OBJECT

public:
    CWorkstation(CSettings& settingsStore, const Folders& programFolders);
    ~CWorkstation() override;

    CAudio& Audio() noexcept { return audio; }
    COutputManager& Output() noexcept { return output; }
    CSettings& Settings() noexcept { return context.settings; }
    const Folders& ProgramFolders() const noexcept { return folders; }

    CChanges& Changes() noexcept { return changes; }
    CSelection& Selection() noexcept { return selection; }
    CControllers& Controllers() noexcept { return controllers; }
    CPluginPlaces& Places() noexcept { return places; }
    CInstrumentStack& Stack() noexcept { return stack; }
    CContents& Contents() noexcept { return contents; }
    CSong& Song() noexcept { return song; }
    CPerformance& Performance() noexcept { return performance; }
    const CLanes& Lanes() const noexcept { return lanes; }
    CAutomationRecording& AutomationRecording() noexcept { return automationRecording; }
    CPresets& Presets() noexcept { return presets; }
    CTransportControl& Transport() noexcept { return transport; }
    CRecording& Recording() noexcept { return recording; }
    CNoteRecording& NoteRecording() noexcept { return noteRecording; }
    CMetronomeControl& Metronome() noexcept { return metronome; }
    CSession& Session() noexcept { return session; }
    CFreezing& Freezing() noexcept { return freezing; }

    // Opens what the section "AudioSettings" names, or `device` if it is not empty. False when nothing
    // could be opened; the user has been told.
    bool OpenOutput(const QString& device = {});
    // The same, for settings that have changed while it runs; keeps a device that was forced.
    bool RestartOutput() { return OpenOutput(forcedDevice); }

    // The 40 ms work.
    void Tick();

Q_SIGNALS:
    // A message box, to be shown from the event loop.
    void Message(const QString& caption, const QString& text);
    // A line that needs no answer.
    void Notice(const QString& text);

private:
    void FollowNotices();
    void FollowNotice(const EngineNotice& notice);
    void FollowControllers();
    void WatchLimits();
    void LimitLearned(std::uint32_t id);

    Folders folders;
    CRecorder recorder;
    CAudio audio;
    COutputManager output;
    QString forcedDevice;
    CChanges changes{audio.graveyard};
    DocumentContext context;
    CSelection selection{context};
    CControllers controllers{context};
    CPluginPlaces places{context, controllers};
    CInstrumentStack stack{context, places, selection, controllers};
    CContents contents{context};
    CSong song{context, contents};
    CPerformance performance{context};
    CLanes lanes{context, places, contents};
    CAutomationRecording automationRecording{context, lanes};
    CTransportControl transport{context};
    CPresets presets{context, stack, transport};
    CRecording recording{context, recorder};
    CNoteRecording noteRecording{context, selection};
    CMetronomeControl metronome{context};
    CSession session{context, {places, selection, stack, contents, presets, transport, song, controllers}};
    CFreezing freezing{context, places, [this] { return session.GatherState(); }};
    std::map<std::uint32_t, std::pair<int, int>> limitsBefore;  // of instruments that learn one
};

}  // namespace quib
