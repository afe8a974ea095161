// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Numbers of the commands of menus and keys.

namespace quib::command {

constexpr int kAbout = 104;
constexpr int kExit = 105;
constexpr int kUndo = 32800;
constexpr int kRedo = 32806;
constexpr int kTimeSignature = 32810;
constexpr int kCopy = 32811;
constexpr int kPaste = 32812;
constexpr int kSelectAll = 32818;
constexpr int kCut = 32822;
constexpr int kDelete = 32824;
constexpr int kAudioAndMidi = 32930;
constexpr int kSave = 32931;
constexpr int kSaveAs = 32932;
constexpr int kOpen = 32933;
constexpr int kNew = 32946;
constexpr int kRecentFile0 = 33000;  // and the seven that follow
constexpr int kPlaylistLoop = 33010;
constexpr int kBackupTime = 33011;
constexpr int kInfoEnglish = 33016;
constexpr int kManualEnglish = 33017;
constexpr int kKeyboardAzerty = 33026;
constexpr int kVersion = 33028;
constexpr int kAutomaticScroll = 33053;
constexpr int kSoloCumul = 33057;
constexpr int kManualFrench = 33059;
constexpr int kInfoFrench = 33061;
constexpr int kQuickStart = 33069;
constexpr int kVerticalKnob = 33070;
constexpr int kMasterDown = 33071;
constexpr int kPresetOn = 33072;
constexpr int kLevelOff = 33073;

// Those that only this program's menus have.
constexpr int kPlay = 40000;
constexpr int kScanPlugins = 40001;
constexpr int kPluginFolders = 40002;
constexpr int kPanic = 40003;
constexpr int kRecordNotes = 40004;
constexpr int kMetronome = 40005;
constexpr int kCountIn0 = 40006;  // and the two that follow: its bars
constexpr int kAddInstrument = 40080;
constexpr int kAddEffect = 40081;
constexpr int kFreeze = 40480;
constexpr int kScale0 = 40010;  // and those that follow, one for each scale
constexpr int kExport = 40030;
constexpr int kImportMidi = 40320;
constexpr int kExportMidi0 = 40321;  // and the two that follow: song, instrument, pattern
constexpr int kMidiWithoutSwing = 40324;
constexpr int kCollect = 40325;
constexpr int kTool0 = 40050;  // and those that follow, one for each tool window
constexpr int kSongWindow = 40070;
constexpr int kLearnMidi = 40260;
constexpr int kControllers = 40261;
constexpr int kPalette0 = 40340;  // and the two that follow, one for each palette
constexpr int kLaunch0 = 40240;   // and the two that follow: end of the pattern, beat, bar
constexpr int kLoop = 40243;
constexpr int kShortcuts = 40200;
constexpr int kFullScreen = 40201;
constexpr int kRestore0 = 40100;  // and the nine that follow

}  // namespace quib::command
