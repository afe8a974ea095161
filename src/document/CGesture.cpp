// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/CGesture.h"

#include <algorithm>
#include <utility>

#include "document/CChanges.h"

namespace quib {

namespace {

// In the order of the changes, and backwards in the reverse one.
template <class Moves>
void RunAll(const Moves& moves) {
    for (const std::function<void()>& move : moves) move();
}

}  // namespace

void CGesture::Note(const void* thing, std::function<void()> back, std::function<void()> forth) {
    forth();
    const auto known =
        std::find_if(parts.begin(), parts.end(), [thing](const Move& part) { return part.thing == thing; });
    if (known == parts.end()) {
        parts.push_back({thing, std::move(back), std::move(forth)});
    } else {
        known->forth = std::move(forth);
    }
}

void CGesture::Set(const std::shared_ptr<CValue>& value, float next, const std::function<void()>& afterwards) {
    const auto set = [value, afterwards](float number) {
        value->Set(number);
        if (afterwards) afterwards();
    };
    Note(
        value.get(), [set, before = value->Get()] { set(before); }, [set, next] { set(next); });
}

void CGesture::Finish(const QString& name, const void* mergeWith) {
    if (parts.empty()) return;
    std::vector<std::function<void()>> forth;
    std::vector<std::function<void()>> back;
    for (Move& part : parts) forth.push_back(std::move(part.forth));
    for (auto part = parts.rbegin(); part != parts.rend(); ++part) back.push_back(std::move(part->back));
    parts.clear();
    changes.PushDone(
        name, [forth = std::move(forth)] { RunAll(forth); }, [back = std::move(back)] { RunAll(back); }, mergeWith);
}

void CGesture::Cancel() {
    for (auto part = parts.rbegin(); part != parts.rend(); ++part) part->back();
    parts.clear();
}

}  // namespace quib
