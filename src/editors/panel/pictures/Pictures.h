// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The kinds of pictures; what each draws is said at its source. User-interface thread.

#include "editors/panel/pictures/CPanelPicture.h"

namespace quib {

// One turn or more of a wave; a pulse's edge is its width. Roles: shape width.
class CWavePicture : public CPanelPicture {
public:
    explicit CWavePicture(int shownPeriods) : periods(shownPeriods) {}
    void Draw(CCanvas& canvas, const QRectF& area, const CPictureRoles& roles, QRgb accent) const override;
    std::vector<PictureHandle> Handles(const QRectF& area, const CPictureRoles& roles) const override;
    void Drag(int handle, const QPointF& place, const QRectF& area, CPictureRoles& roles) const override;

private:
    bool HasEdge(const CPictureRoles& roles) const;
    int periods;
};

// The voices of a unison by their pitch. Roles: count detune spread.
class CVoicesPicture : public CPanelPicture {
public:
    void Draw(CCanvas& canvas, const QRectF& area, const CPictureRoles& roles, QRgb accent) const override;
};

// The response of a filter from 20 Hz to 20 kHz. Roles: type cutoff resonance reach.
class CFilterPicture : public CPanelPicture {
public:
    void Draw(CCanvas& canvas, const QRectF& area, const CPictureRoles& roles, QRgb accent) const override;
    std::vector<PictureHandle> Handles(const QRectF& area, const CPictureRoles& roles) const override;
    void Drag(int handle, const QPointF& place, const QRectF& area, CPictureRoles& roles) const override;
};

// An envelope; each stage is as long as its knob is turned. Roles: attack decay sustain release.
class CEnvelopePicture : public CPanelPicture {
public:
    void Draw(CCanvas& canvas, const QRectF& area, const CPictureRoles& roles, QRgb accent) const override;
    std::vector<PictureHandle> Handles(const QRectF& area, const CPictureRoles& roles) const override;
    void Drag(int handle, const QPointF& place, const QRectF& area, CPictureRoles& roles) const override;
};

// A drum: its noise and its tone as they die away. Roles: tune decay tone snap colour.
class CStrokePicture : public CPanelPicture {
public:
    void Draw(CCanvas& canvas, const QRectF& area, const CPictureRoles& roles, QRgb accent) const override;
    std::vector<PictureHandle> Handles(const QRectF& area, const CPictureRoles& roles) const override;
    void Drag(int handle, const QPointF& place, const QRectF& area, CPictureRoles& roles) const override;
};

// The echoes of a delay, left above and right below. Roles: left right cross feedback.
class CTapsPicture : public CPanelPicture {
public:
    void Draw(CCanvas& canvas, const QRectF& area, const CPictureRoles& roles, QRgb accent) const override;
};

// The level of a reverb over time, in decibels. Roles: predelay size time high early late.
class CDecayPicture : public CPanelPicture {
public:
    void Draw(CCanvas& canvas, const QRectF& area, const CPictureRoles& roles, QRgb accent) const override;
    std::vector<PictureHandle> Handles(const QRectF& area, const CPictureRoles& roles) const override;
    void Drag(int handle, const QPointF& place, const QRectF& area, CPictureRoles& roles) const override;
};

// What a compressor makes of each level, and as a dot of the level now. Roles: threshold ratio knee makeup ceiling.
class CCurvePicture : public CPanelPicture {
public:
    bool IsLive() const noexcept override { return true; }
    void Draw(CCanvas& canvas, const QRectF& area, const CPictureRoles& roles, QRgb accent) const override;
    std::vector<PictureHandle> Handles(const QRectF& area, const CPictureRoles& roles) const override;
    void Drag(int handle, const QPointF& place, const QRectF& area, CPictureRoles& roles) const override;
};

// The last four seconds of a compressor: what it heard, from below, and how far it turned that down, from above. Roles:
// threshold.
class CReductionPicture : public CPanelPicture {
public:
    bool IsLive() const noexcept override { return true; }
    void Draw(CCanvas& canvas, const QRectF& area, const CPictureRoles& roles, QRgb accent) const override;
};

// The delay of each voice of a chorus over a turn. Roles: voices depth delay spread shape.
class CSwingPicture : public CPanelPicture {
public:
    void Draw(CCanvas& canvas, const QRectF& area, const CPictureRoles& roles, QRgb accent) const override;
};

// The teeth of a flanger's comb at its shortest delay. Roles: delay feedback.
class CCombPicture : public CPanelPicture {
public:
    void Draw(CCanvas& canvas, const QRectF& area, const CPictureRoles& roles, QRgb accent) const override;
};

}  // namespace quib
