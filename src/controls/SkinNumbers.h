// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The numbers of the skin's pictures: the digits at the start of their file names.

namespace quib::picture {

constexpr int kProgramIcon = 107;

constexpr int kFaderThumbUpright = 201;
constexpr int kFaderThumbLevel = 202;
constexpr int kFaderTrackUpright = 203;
constexpr int kFaderFilledUpright = 204;
constexpr int kFaderTrackLevel = 205;
constexpr int kFaderFilledLevel = 206;
constexpr int kFaderBar = 207;  // second value: cap, body, cap of 4 pixels each

constexpr int kKnob = 210;
constexpr int kKnobPointer = 211;

// Glyphs are drawn in the colour that the caller gives.
constexpr int kGlyphPlay = 301;
constexpr int kGlyphStop = 302;
constexpr int kGlyphRecord = 303;
constexpr int kGlyphLoop = 304;
constexpr int kGlyphSong = 305;
constexpr int kGlyphSynchro = 306;
constexpr int kGlyphKeyboard = 307;
constexpr int kGlyphArpeggiator = 308;
constexpr int kGlyphBall = 309;
constexpr int kGlyphMidi = 310;
constexpr int kGlyphPower = 311;
constexpr int kGlyphArrowLeft = 312;
constexpr int kGlyphArrowRight = 313;
constexpr int kGlyphArrowDown = 314;
constexpr int kGlyphPlus = 315;
constexpr int kGlyphMinus = 316;
constexpr int kGlyphChain = 317;
constexpr int kGlyphRandom = 318;
constexpr int kGlyphHold = 319;
constexpr int kGlyphPianoRoll = 320;
constexpr int kGlyphAutomation = 321;
constexpr int kGlyphPlaylist = 322;
constexpr int kGlyphHelp = 323;
constexpr int kGlyphGrip = 324;
constexpr int kGlyphFolder = 325;
constexpr int kGlyphHeadphones = 326;
constexpr int kGlyphEdit = 327;
constexpr int kGlyphMetronome = 328;
constexpr int kGlyphPoints = 340;
constexpr int kGlyphLine = 341;
constexpr int kGlyphRamp = 342;
constexpr int kGlyphSine = 343;
constexpr int kGlyphBin = 344;
constexpr int kGlyphLearn = 345;

constexpr int kGlyphSearch = 350;
constexpr int kGlyphStar = 351;
constexpr int kGlyphStarEmpty = 352;
constexpr int kGlyphClock = 353;
constexpr int kGlyphMostUsed = 354;

constexpr int kGlyphUndo = 410;
constexpr int kGlyphSave = 411;
constexpr int kGlyphFreeze = 420;

constexpr int kGlyphPattern = 360;
constexpr int kGlyphMore = 361;

// Icons that an instrument can wear: this number and the seven after it.
constexpr int kInstrumentIcon = 401;
constexpr int kInstrumentIconCount = 8;

}  // namespace quib::picture
