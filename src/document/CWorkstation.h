// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The workstation behind the windows: it owns the engine, its output, the project and the undo steps, and
// offers every change that a window makes. Windows read the engine's values directly and change the
// project only here, so that each change is a step of undo with a name. User-interface thread.
//
// It is long because it is the one face of the project; each group of functions has a source of its own.

#include <QColor>
#include <QDateTime>
#include <QObject>
#include <QUndoStack>
#include <array>
#include <functional>
#include <map>
#include <memory>
#include <set>

#include "devices/COutputManager.h"
#include "document/CAsyncSave.h"
#include "document/CRecorder.h"
#include "document/Folders.h"
#include "engine/CAudio.h"
#include "model/Presets.h"
#include "model/files/LoadContext.h"
#include "model/plugin/CPluginFinder.h"
#include "project/ProjectFile.h"
#include "project/ProjectState.h"

namespace quib {

class CAutomationTake;
class CSettings;

// A place for a plug-in. `instrument`: its id, for the first two kinds. `index`: 0.., but for kInstrument.
struct SlotPlace {
    enum class EKind { kInstrument, kInsert, kMasterInsert, kEffect };
    EKind kind = EKind::kInstrument;
    std::uint32_t instrument = 0;
    int index = 0;
};

class CWorkstation : public QObject {
    Q_OBJECT

public:
    CWorkstation(CSettings& settingsStore, const Folders& programFolders);
    ~CWorkstation() override;

    CAudio& Audio() noexcept { return audio; }
    COutputManager& Output() noexcept { return output; }
    QUndoStack& Undo() noexcept { return undo; }
    CSettings& Settings() noexcept { return settings; }
    const Folders& ProgramFolders() const noexcept { return folders; }
    CRecorder& Recorder() noexcept { return recorder; }
    CAsyncSave& Saver() noexcept { return saver; }

    // Opens what the section "AudioSettings" names, or `device` if it is not empty. False when nothing
    // could be opened; the user has been told.
    bool OpenOutput(const QString& device = {});
    // The same, for settings that have changed while it runs; keeps a device that was forced.
    bool RestartOutput() { return OpenOutput(forcedDevice); }

    // --- Instruments ------------------------------------------------------------------------------

    const InstrumentList& Instruments() const { return *audio.instruments.ForEdit(); }
    // Null for an index or id that is not there.
    std::shared_ptr<CInstrument> Instrument(int index) const;
    std::shared_ptr<CInstrument> InstrumentById(std::uint32_t id) const;
    int IndexOf(std::uint32_t id) const;  // -1: not there

    // The instrument that the tool windows show; -1 when there is none.
    int CurrentIndex() const noexcept { return current; }
    void SetCurrent(int index);

    // A plug-in by its name in the lists or by its path, or an instrument file. Gives its index, or -1;
    // `error` is then empty when the user has been told already.
    int AddInstrument(const QString& nameOrPath, QString& error);
    void RemoveInstrument(int index);
    void MoveInstrument(int from, int to);
    void DuplicateInstrument(int index);
    void ResetInstrument(int index);
    void RenameInstrument(int index, const QString& title);
    void SetIcon(int index, int icon);
    bool LoadInstrument(int index, const QString& path, QString& error);
    bool SaveInstrument(int index, const QString& path, QString& error);
    bool LoadPattern(int index, const QString& path, QString& error);
    bool SavePattern(int index, const QString& path, QString& error);
    // Look of the strip. An invalid colour: the skin's own.
    QColor StripColour(int index) const;
    void SetStripColour(int index, const QColor& colour);
    bool IsCollapsed(int index) const;
    void SetCollapsed(int index, bool collapsed);

    // --- Plug-ins ---------------------------------------------------------------------------------

    // Null for a place that does not exist.
    std::shared_ptr<const PluginSlot> Slot(const SlotPlace& place) const;
    bool LoadPlugin(const SlotPlace& place, const QString& nameOrPath, QString& error);
    void ClearPlugin(const SlotPlace& place);
    bool LoadBank(const SlotPlace& place, const QString& path, QString& error);
    bool SaveBank(const SlotPlace& place, const QString& path, QString& error);
    bool LoadProgram(const SlotPlace& place, const QString& path, QString& error);
    bool SaveProgram(const SlotPlace& place, const QString& path, QString& error);
    void SelectProgram(const std::shared_ptr<CPlugin>& plugin, int program);
    // A parameter (0..1) was moved in a page of ours.
    void ParameterEdited(const std::shared_ptr<CPlugin>& plugin, int parameter, float before, float after);
    // Where a loaded plug-in stands; false when it stands nowhere.
    bool FindPlugin(const CPlugin* plugin, SlotPlace& place) const;
    // From now on the parameters that the user moves in the plug-in's own window are steps of undo.
    void WatchParameters(const std::shared_ptr<CPlugin>& plugin);
    void UnwatchParameters(const CPlugin* plugin);
    // Finds again what the plug-in folders hold.
    void RefreshPlugins() { finder.Refresh(); }
    // Follows a change of the folders that the user has added.
    void ReadPluginFolders();
    // What libraries hold, by which a project's plug-ins are found whose libraries have other names here.
    void SetPluginIdentities(CPluginFinder::Identities known) { finder.SetIdentities(std::move(known)); }

    // --- Patterns, playlist, automation -----------------------------------------------------------

    void SelectPattern(int instrument, int pattern);
    // The notes, the marks and the pattern's points of automation.
    void CopyPattern(int instrument, int from, int to);
    void SetPattern(std::uint32_t id, int pattern, std::shared_ptr<const CPattern> next, const QString& undoName);
    void SetPlaylist(std::uint32_t id, std::shared_ptr<const Playlist> next, const QString& undoName);
    enum class ELanes { kMidi, kMix, kPlugin, kInsert1, kInsert2 };
    void SetLanes(std::uint32_t id, ELanes family, std::shared_ptr<const CEventLanes> next, const QString& undoName);
    void SetMasterLanes(std::shared_ptr<const CEventLanes> next, const QString& undoName);
    void SetBallSounds(std::uint32_t id, std::shared_ptr<const BallSoundList> next, const QString& undoName);
    void SetStepNumberMode(int instrument, StepNumberMode mode);
    int PlaylistSteps() const noexcept { return playlistSteps; }
    void SetPlaylistSteps(int steps);

    // --- Values -----------------------------------------------------------------------------------

    // A gesture on a value has ended: becomes a step of undo, merged with wheel turns just before.
    // `afterwards` is run when the value goes back and forth; equaliser bands follow by themselves.
    void ValueEdited(CValue& value, float before, float after, const QString& name,
                     std::function<void()> afterwards = {});
    void ValueEdited(CIntegerValue& value, int before, int after, const QString& name,
                     std::function<void()> afterwards = {});
    // While a gesture goes on: lets the engine follow an equaliser band that has moved.
    void ValueMoved(CValue& value);

    // Solo is a way of listening: it is neither saved nor a step of undo. Exclusive, or adding up when
    // "SoloCumulMode" is on.
    bool IsSolo(int index) const;
    void ToggleSolo(int index);

    // --- Presets ----------------------------------------------------------------------------------

    void AddPreset(int instrument);
    void PastePreset(int instrument, int preset);
    void RemovePreset(int instrument, int preset);
    void RecallPreset(int instrument, int preset);
    // Of every instrument that has one of that number, as the preset selector does; nothing when
    // "PresetOn" is off.
    void RecallPresets(int preset);
    int PresetCount() const;  // of the instrument that has most
    CValue& SelectedPreset() noexcept { return presetSelected; }
    // MIDI assignment of the selector: channel selector, base note, mode.
    void SetPresetMidi(int channel, int baseNote, int mode);

    // --- Transport, recorder ----------------------------------------------------------------------

    void Play();
    void Stop();
    bool IsPlaying() { return audio.Picture().playing; }
    void Locate(int step);
    // Sets the tempo from the time between two calls or more.
    void TapTempo();
    bool StartRecording(const QString& path);
    void StopRecording() { recorder.Stop(); }
    bool IsRecording() const { return recorder.IsRecording(); }
    QString RecorderText() const;
    double RecordedSeconds() const { return recorder.Now().seconds; }
    quint64 RecordedBytes() const { return recorder.Now().bytes; }
    // A steady tone into the master bus, to check levels.
    void SetTestTone(bool on) { audio.testTone.Set(on ? 1.0F : 0.0F); }

    // --- Project ----------------------------------------------------------------------------------

    void NewProject();
    bool LoadProject(const QString& path, QString& error, const LoadProgress& progress = {});
    // As LoadProject, from a copy of the project `projectFile` (empty: of one without a file).
    bool LoadSession(const QString& path, const QString& projectFile, bool modified, QString& error);
    // Gathers the state now and writes it on another thread; `done` is told the error, or nothing.
    void SaveProject(const QString& path, std::function<void(const QString& error)> done);
    bool SaveProject(const QString& path, QString& error);  // waits for the disk
    // Writes a copy without touching name and mark of the project. Another thread writes.
    void WriteCopy(const QString& path, CAsyncSave::Done done = {});
    // The periodic backup, and one more among the last ten with their times.
    void WriteBackup(bool timed);
    // Puts a copy of a file among the timed backups, under the time of its last change.
    void KeepCopy(const QString& path);
    QStringList TimedBackups() const;  // newest first
    ProjectState GatherState();
    QString ProjectPath() const { return projectPath; }
    QString ProjectName() const;
    bool IsModified() const { return touched || !undo.isClean(); }
    // What was left out at the last loading, one line each.
    const std::vector<std::string>& Warnings() const noexcept { return warnings; }
    DetectorSettings& Detector() noexcept { return detector; }

    // The 40 ms work.
    void Tick();

Q_SIGNALS:
    void ProjectReplaced();
    void InstrumentsChanged();
    void InstrumentChanged(quint32 id);
    void SlotChanged();
    void CurrentChanged(int index);
    void ModifiedChanged(bool modified);
    void ProjectPathChanged();
    void ParameterMoved(const void* plugin, int parameter);
    // A message box, to be shown from the event loop.
    void Message(const QString& caption, const QString& text);
    // A plug-in asks for another size of its window (pixels).
    void EditorSizeWanted(const void* plugin, int width, int height);

private:
    using Instrumented = std::shared_ptr<CInstrument>;

    void ConnectEnvironment();
    void PushChange(const QString& name, std::function<void()> forth, std::function<void()> back, bool isDone = false);
    // Instruments
    void SetInstruments(InstrumentList list, int nextCurrent, const QString& name);
    void PublishInstruments(const InstrumentList& list, int nextCurrent);
    void ReplaceInstrument(int index, Instrumented next, const QString& name);
    Instrumented MakeInstrument(const QString& nameOrPath, QString& error);
    void ApplySolo();
    // Plug-ins
    CPublished<PluginSlot>* PublishedSlot(const SlotPlace& place) const;
    CPublished<PluginSlot>* PublishedSlot(const Instrumented& owner, const SlotPlace& place) const;
    std::shared_ptr<CPlugin> LoadNamed(const PluginReference& wanted, SlotKind kind, std::string& error);
    std::shared_ptr<CPlugin> LoadLibrary(const QString& nameOrPath, SlotKind kind, QString& error);
    PluginLoader Loader();
    void PublishSlot(const SlotPlace& place, std::shared_ptr<const PluginSlot> next, const QString& name);
    struct PluginState;
    static PluginState StateOf(CPlugin& plugin);
    static void SetState(CPlugin& plugin, const PluginState& state);
    bool ChangeState(const SlotPlace& place, const QString& name, const std::function<bool(CPlugin&)>& change);
    void ParameterMovedInWindow(CPlugin& plugin, int parameter, float value);
    std::shared_ptr<CPlugin> Shared(const CPlugin& plugin) const;
    void ForEachSlot(const std::function<void(const PluginSlot&, const SlotPlace&)>& visit) const;
    // Values
    Instrumented OwnerOf(const void* value) const;
    std::function<void()> EqualizerFollows(const Instrumented& owner, const void* value);
    // Presets
    std::vector<std::int32_t> HeldKeysOf(const CInstrument& instrument);
    void SetPresets(const Instrumented& instrument, std::vector<Preset> next, const QString& name);
    void ApplyPreset(const Instrumented& instrument, const Preset& preset);
    void PollRecalls();
    // Project
    void Publish(ProjectState state, const QString& path);
    std::string Bytes();
    void SetSaved(const QString& path);
    void TellModified();
    // Tick
    void FollowNotices();
    void FollowNotice(const EngineNotice& notice);
    void IdlePlugins();
    void ReportFaults();
    void WatchRecorder();
    void Touch();

    CSettings& settings;
    Folders folders;
    CRecorder recorder;
    CAudio audio;
    COutputManager output;
    CPluginFinder finder;
    CAsyncSave saver;
    QString forcedDevice;

    int current = -1;
    std::set<std::uint32_t> soloed;
    std::map<std::uint32_t, std::vector<std::int32_t>> loadedKeys;  // held when the project was loaded
    CValue presetSelected;
    int playlistSteps = 0;
    DetectorSettings detector;
    QString projectPath;
    std::vector<std::string> warnings;
    std::map<const CPlugin*, std::vector<float>> watched;  // values of parameters
    bool touched = false;                                  // changed by what is no step of undo
    bool toldModified = false;
    bool messageShown = false;  // a plug-in's loading told the user why it failed

    struct Recall {
        Instrumented instrument;
        std::unique_ptr<CPresetRecall> work;
    };
    std::vector<Recall> recalls;
    std::unique_ptr<CAutomationTake> take;
    std::vector<std::uint64_t> taps;  // nanoseconds
    QDateTime lastTimedBackup;
    std::size_t backedUp = 0;  // fingerprint of the last timed backup
    int recordedRate = 0;
    std::string reportedRecorderError;

    QUndoStack undo;  // last: its steps hold plug-ins, which go before the engine
};

}  // namespace quib
