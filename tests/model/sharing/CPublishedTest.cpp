// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/sharing/CPublished.h"

#include "Testing.h"
#include "platform/SpinPause.h"

namespace quib {
namespace {

#if defined(__SANITIZE_THREAD__)
constexpr std::uint64_t kEdits = 600'000;
#else
constexpr std::uint64_t kEdits = 4'000'000;
#endif
constexpr std::uint64_t kFewestBlocks = 2'000;

// A number and its complement, both gone once it is destroyed. Volatile, so that the compiler keeps the
// last stores into a dying object.
struct Payload {
    explicit Payload(std::uint64_t start = 0) : number(start), complement(~start) {}
    ~Payload() {
        number = 1;
        complement = 1;
    }
    Payload(const Payload&) = delete;
    Payload& operator=(const Payload&) = delete;

    bool IsWholeAfterAPause() const {
        const std::uint64_t first = number;
        for (int pause = 0; pause < 20; ++pause) SpinPause();
        return first == ~complement;
    }

    volatile std::uint64_t number;
    volatile std::uint64_t complement;
};

TEST(CPublishedTest, TheRenderThreadNeverSeesAFreedObjectWhileTheEditorPublishesAsFastAsItCan) {
    CRenderClock clock;
    CGraveyard graveyard(clock);
    CPublished<Payload> first;
    CPublished<Payload> second;
    std::atomic<bool> stop{false};
    std::atomic<std::uint64_t> blocks{0};
    std::atomic<std::uint64_t> broken{0};
    std::thread render([&] {
        while (!stop.load(std::memory_order_relaxed)) {
            clock.BeginBlock();
            if (!first.ForRender().IsWholeAfterAPause()) broken.fetch_add(1, std::memory_order_relaxed);
            if (!second.ForRender().IsWholeAfterAPause()) broken.fetch_add(1, std::memory_order_relaxed);
            clock.EndBlock();
            blocks.fetch_add(1, std::memory_order_relaxed);
        }
    });
    std::size_t mostPending = 0;
    for (std::uint64_t edit = 1; edit <= kEdits || blocks.load(std::memory_order_relaxed) < kFewestBlocks; ++edit) {
        (edit % 2 == 0 ? first : second).Publish(std::make_shared<const Payload>(edit), graveyard);
        graveyard.Collect();
        mostPending = std::max(mostPending, graveyard.Pending());
    }
    stop = true;
    render.join();
    EXPECT_EQ(broken.load(), 0U);
    EXPECT_GT(mostPending, 0U) << "no edit ever met an open block";
    graveyard.Collect();
    EXPECT_EQ(graveyard.Pending(), 0U);
}

class CGraveyardTest : public testing::Test {
protected:
    std::shared_ptr<const int> Make(int value) {
        return {new int(value), [this](const int* dying) {
                    freed.push_back(*dying);
                    delete dying;
                }};
    }

    std::vector<int> freed;
    CRenderClock clock;
    CGraveyard graveyard{clock};
};

TEST_F(CGraveyardTest, NothingIsFreedWhileABlockThatMaySeeItIsOpen) {
    CPublished<int> published(Make(0));
    clock.BeginBlock();
    published.Publish(Make(1), graveyard);
    graveyard.Collect();
    EXPECT_TRUE(freed.empty());
    clock.EndBlock();
    clock.BeginBlock();  // sees 1; nobody sees 0 any more
    published.Publish(Make(2), graveyard);
    graveyard.Collect();
    EXPECT_EQ(freed, (std::vector{0}));
    clock.EndBlock();
    graveyard.Collect();
    EXPECT_EQ(freed, (std::vector{0, 1}));
    EXPECT_EQ(*published.ForEdit(), 2);
}

TEST_F(CGraveyardTest, WithNoBlockOpenEverythingIsFreedAtOnce) {
    CPublished<int> published(Make(0));
    for (const bool hasRendered : {false, true}) {
        if (hasRendered) {
            clock.BeginBlock();
            clock.EndBlock();
        }
        published.Publish(Make(1), graveyard);
        published.Publish(Make(2), graveyard);
        graveyard.Collect();
        EXPECT_EQ(graveyard.Pending(), 0U);
    }
    EXPECT_EQ(freed.size(), 4U);
}

TEST_F(CGraveyardTest, ABlockThatItsDeviceLeftOpenHoldsNothingOnceTheDeviceIsGone) {
    CPublished<int> published(Make(0));
    clock.BeginBlock();
    published.Publish(Make(1), graveyard);
    clock.CloseOpenBlock();
    graveyard.Collect();
    EXPECT_EQ(freed, (std::vector{0}));
    clock.BeginBlock();
    published.Publish(Make(2), graveyard);
    graveyard.Collect();
    EXPECT_EQ(freed, (std::vector{0})) << "the next device's blocks count as before";
}

TEST_F(CGraveyardTest, WhatUndoStillHoldsOutlivesItsBurial) {
    CPublished<int> published(Make(0));
    std::shared_ptr<const int> undo = published.ForEdit();
    published.Publish(Make(1), graveyard);
    graveyard.Collect();
    EXPECT_EQ(graveyard.Pending(), 0U);
    EXPECT_TRUE(freed.empty());
    published.Publish(undo, graveyard);
    EXPECT_EQ(&published.ForRender(), undo.get());
}

TEST_F(CGraveyardTest, WhatIsFreedMayBuryMore) {
    auto outer = std::shared_ptr<const int>(new int(0), [this](const int* dying) {
        graveyard.Bury(Make(1));
        delete dying;
    });
    graveyard.Bury(std::move(outer));
    graveyard.Collect();
    EXPECT_EQ(graveyard.Pending(), 0U);
    EXPECT_EQ(freed, (std::vector{1}));
}

#ifndef NDEBUG
TEST_F(CGraveyardTest, ASecondEditingThreadAndASecondOpenBlockAreFound) {
    CPublished<int> published(Make(0));
    EXPECT_DEATH(std::thread([&] { published.Publish(Make(1), graveyard); }).join(), "one editing thread");
    clock.BeginBlock();
    EXPECT_DEATH(clock.BeginBlock(), "one thread renders");
    EXPECT_DEATH(std::thread([&] { clock.EndBlock(); }).join(), "ends where it began");
}
#endif

}  // namespace
}  // namespace quib
