// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What MIDI controllers move: learning, the list, its place in the project and in the settings. Each change is a step
// of undo; what goes with an instrument or a plug-in goes in the step of that one. User-interface thread.

#include <QObject>
#include <QString>
#include <functional>
#include <optional>
#include <vector>

#include "document/DocumentContext.h"
#include "model/control/CControlLearner.h"
#include "model/control/CControlMap.h"

namespace quib {

class CControllers : public QObject {
    Q_OBJECT

public:
    explicit CControllers(const DocumentContext& document) : context(document) { ProjectReplaced({}); }

    const CControlMap& Map() const { return *context.audio.controlMap.ForEdit(); }
    // The binding of a target, or null.
    const CControlMap::Entry* Find(const ControlTarget& target) const;

    // What a setting of an instrument, or with null of the master section, is to MIDI; nothing for others.
    std::optional<ControlTarget> TargetOf(const std::shared_ptr<CInstrument>& instrument, const void* setting) const;
    // "CC 21", and with the channel; the name of a target without that of its instrument.
    static QString SourceText(const ControlSource& source);
    static QString ChannelText(int selector);
    QString TargetText(const ControlTarget& target) const;
    // The title of the instrument, or "Master".
    QString OwnerText(const ControlTarget& target) const;

    // The next thing that is moved or pressed on a controller moves `target`. It takes the place of what did so before.
    void Learn(const ControlTarget& target);
    void CancelLearning();
    const std::optional<ControlTarget>& Learning() const noexcept { return learning; }
    // The learn mode of the windows: what is clicked is learned. It stays on from one control to the next.
    void SetPicking(bool on);
    bool IsPicking() const noexcept { return picking; }

    void Bind(const ControlBinding& binding);
    // An index of the table; one that is not there changes nothing.
    void Change(std::size_t index, const ControlBinding& next);
    void Remove(std::size_t index);
    // Those of a target.
    void Forget(const ControlTarget& target);
    void RemoveAll();

    // Parts of the document tell what goes or moves, inside the step of undo in which it does.
    void Drop(const std::function<bool(const ControlTarget&)>& goes, const QString& name);
    void Retarget(const std::function<bool(ControlTarget&)>& change, const QString& name);

    // What the engine tells of a message while something is learned: see EngineNotice::kControlHeard.
    void Hear(std::int32_t message);
    // From the 40 ms timer. `moved` gets each target that has been moved since the last time.
    void Tick(const std::function<void(const ControlTarget&)>& moved);

    // Those of the project, instruments by their places; and taking over those of another project.
    std::vector<ControlBinding> ForProject() const;
    void ProjectReplaced(const std::vector<ControlBinding>& bindings);

Q_SIGNALS:
    // The table, what is being learned, or the learn mode.
    void Changed();
    void Bound(const quib::ControlBinding& binding);

private:
    void Set(CControlMap next, const QString& name);
    void Publish(const std::shared_ptr<const CControlMap>& map);
    void Learned(const CControlLearner::Learned& found);
    std::vector<ControlBinding> Kept() const;
    void Keep() const;

    const DocumentContext& context;
    std::optional<ControlTarget> learning;
    bool picking = false;
    CControlLearner learner;
    std::vector<std::uint32_t> seen;  // moves of the table's bindings, in its order
};

}  // namespace quib
