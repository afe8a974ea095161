// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The instrument and the pattern that the tool windows show. User-interface thread.

#include <QObject>

#include "document/DocumentContext.h"

namespace quib {

class CSelection : public QObject {
    Q_OBJECT

public:
    explicit CSelection(const DocumentContext& document) : context(document) {}

    // Index in the list of instruments; -1 when there is none.
    int CurrentIndex() const noexcept { return current; }
    void SetCurrent(int index);
    // The same, told even when the index is that of before: another instrument may stand there.
    void Renew(int index);
    // Null when there is none.
    std::shared_ptr<CInstrument> CurrentInstrument() const { return context.Instrument(current); }
    // The pattern of it that editors show: the selected one.
    int CurrentPattern() const;

Q_SIGNALS:
    void CurrentChanged(int index);

private:
    const DocumentContext& context;
    int current = -1;
};

}  // namespace quib
