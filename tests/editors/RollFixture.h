// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// A document for piano rolls that keeps every step, and writes down what it is told.

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "editors/pianoroll/IPianoRollHost.h"

namespace quib {

class CFakeDocument : public IPianoRollHost {
public:
    void Preview(const NoteState& state) override {
        ++previews;
        if (!before) before = now;
        now = state.pattern;
    }
    void Finish(const char* name) override {
        EXPECT_TRUE(before != nullptr) << "a step of nothing";
        steps.push_back({name, before, now});
        before = nullptr;
    }
    void Cancel() override {
        now = before;
        before = nullptr;
    }
    void SelectionChanged(const NoteState& state) override { selected = state.selection.size(); }
    void SetLength(int newLength) override { lengths.push_back(newLength); }
    void Audition(int key, int velocity, bool on) override {
        sounding[key] += on ? 1 : -1;
        if (on) heard.push_back({0, 0, key, velocity});
    }
    bool TakeKey(int key) override {
        takenKey = key;
        return limitIsArmed;
    }
    void SetKeyLimit(bool upper, int key, bool done) override {
        (upper ? upperLimit : lowerLimit) = key;
        limitDone = done;
    }
    void ShowMenu(int /*x*/, int /*y*/) override { ++menus; }
    void ShowRowMenu(int key) override { rowOfMenu = key; }
    void ViewChanged() override { ++views; }
    void RowFocused(int key) override { focused = key; }

    bool IsSilent() const {
        for (const auto& [key, count] : sounding) {
            if (count != 0) return false;
        }
        return true;
    }

    struct Step {
        std::string name;
        std::shared_ptr<const CPattern> from;
        std::shared_ptr<const CPattern> to;
    };
    std::shared_ptr<const CPattern> now;
    std::shared_ptr<const CPattern> before;  // of the open gesture
    std::vector<Step> steps;
    std::vector<int> lengths;
    std::vector<Note> heard;
    std::map<int, int> sounding;
    std::size_t selected = 0;
    int previews = 0, menus = 0, rowOfMenu = -1, views = 0, focused = -1, takenKey = -1, lowerLimit = 0,
        upperLimit = 128;
    bool limitIsArmed = false, limitDone = false;
};

}  // namespace quib
