// SPDX-License-Identifier: GPL-3.0-or-later
#include <iterator>
#include <vector>

#include "synth/SynthParameters.h"

namespace quibplug {

namespace {

using P = ParameterValue;

// Bass
constexpr P kDeepHouseBass[] = {{kOsc1Wave, kWaveTriangle},
                                {kOsc1Octave, -1},
                                {kOsc2Wave, kWavePulse},
                                {kOsc2Octave, -1},
                                {kOsc2Level, 0.32f},
                                {kOsc2Fine, 4},
                                {kSubWave, kSubSine},
                                {kSubLevel, 0.5f},
                                {kCutoff, 420},
                                {kResonance, 18},
                                {kDrive, 25},
                                {kFilterEnvelope, 26},
                                {kKeyTrack, 40},
                                {kVelocityToFilter, 14},
                                {kAmpDecay, 1620},
                                {kAmpSustain, 0.6f},
                                {kAmpRelease, 90},
                                {kModDecay, 924},
                                {kModSustain, 0},
                                {kModRelease, 120},
                                {kPlayMode, kModeMono},
                                {kVolume, 1.152f}};
constexpr P kAcidLine[] = {
    {kOsc1Wave, kWaveSaw},     {kOsc1Octave, -1},    {kPlayMode, kModeLegato}, {kGlideTime, 60},
    {kFilterType, kLowPass24}, {kCutoff, 190},       {kResonance, 72},         {kDrive, 38},
    {kFilterEnvelope, 44},     {kKeyTrack, 30},      {kVelocityToFilter, 20},  {kAmpDecay, 2500},
    {kAmpSustain, 0.5f},       {kAmpRelease, 60},    {kModDecay, 1100},        {kModSustain, 0},
    {kModRelease, 90},         {kWheelToCutoff, 36}, {kWheelToVibrato, 0},     {kVolume, 1.948f}};
constexpr P kReeseBass[] = {{kOsc1Wave, kWaveSaw}, {kOsc1Octave, -1},      {kOsc2Wave, kWaveSaw}, {kOsc2Octave, -1},
                            {kOsc2Level, 0.8f},    {kOsc2Fine, 17},        {kOsc1Fine, -17},      {kSubWave, kSubSine},
                            {kSubLevel, 0.6f},     {kPlayMode, kModeMono}, {kGlideTime, 45},      {kCutoff, 1100},
                            {kResonance, 12},      {kDrive, 30},           {kKeyTrack, 30},       {kAmpSustain, 1},
                            {kAmpRelease, 120},    {kLfo2Rate, 0.22f},     {kLfo2ToCutoff, 12},   {kVolume, 1.028f}};
constexpr P kFmBass[] = {{kOsc1Wave, kWaveSine}, {kOsc1Octave, -1},  {kOsc2Wave, kWaveSine},  {kOsc2Octave, 0},
                         {kOsc2Level, 0},        {kFmAmount, 24},    {kFmEnvelope, 70},       {kSubWave, kSubSine},
                         {kSubLevel, 0.25f},     {kCutoff, 9000},    {kVelocityToFilter, 18}, {kAmpDecay, 1800},
                         {kAmpSustain, 0.45f},   {kAmpRelease, 100}, {kModDecay, 1540},       {kModRelease, 120},
                         {kPlayMode, kModeMono}, {kVolume, 0.526f}};
constexpr P kPulseBass[] = {
    {kOsc1Wave, kWavePulse}, {kOsc1Octave, -1},  {kOsc1Width, 32},        {kOsc2Wave, kWaveSaw},
    {kOsc2Octave, -1},       {kOsc2Level, 0.5f}, {kOsc2Fine, 7},          {kSubWave, kSubSquare},
    {kSubLevel, 0.3f},       {kCutoff, 520},     {kResonance, 32},        {kDrive, 20},
    {kFilterEnvelope, 38},   {kKeyTrack, 40},    {kVelocityToFilter, 18}, {kAmpDecay, 1260},
    {kAmpSustain, 0.5f},     {kAmpRelease, 70},  {kModDecay, 704},        {kModSustain, 8},
    {kModRelease, 80},       {kLfo1Rate, 0.6f},  {kLfo1ToWidth, 10},      {kPlayMode, kModeMono},
    {kVolume, 0.862f}};

// Lead
constexpr P kSuperLead[] = {
    {kOsc1Wave, kWaveSaw}, {kOsc2Wave, kWaveSaw}, {kOsc2Octave, 1},    {kOsc2Level, 0.35f},
    {kUnisonVoices, 7},    {kUnisonDetune, 22},   {kUnisonSpread, 85}, {kStartPhase, kPhaseRandom},
    {kNoiseLevel, 0.03f},  {kCutoff, 9500},       {kResonance, 8},     {kKeyTrack, 40},
    {kFilterEnvelope, 10}, {kAmpAttack, 2},       {kAmpDecay, 1200},   {kAmpSustain, 0.75f},
    {kAmpRelease, 260},    {kModDecay, 1100},     {kVolume, 0.196f}};
constexpr P kSquareLead[] = {
    {kOsc1Wave, kWavePulse}, {kOsc1Width, 50},       {kOsc2Wave, kWavePulse}, {kOsc2Octave, -1},   {kOsc2Level, 0.3f},
    {kOsc2Fine, 5},          {kPlayMode, kModeMono}, {kGlideTime, 70},        {kCutoff, 3200},     {kResonance, 18},
    {kKeyTrack, 50},         {kFilterEnvelope, 14},  {kAmpAttack, 2},         {kAmpSustain, 0.8f}, {kAmpRelease, 140},
    {kModDecay, 880},        {kLfo1Rate, 5.4f},      {kLfo1Fade, 700},        {kLfo1ToPitch, 14},  {kVolume, 0.528f},
    {kStereoWidth, 55}};
constexpr P kWidthLead[] = {{kOsc1Wave, kWavePulse},
                            {kOsc1Width, 40},
                            {kOsc2Wave, kWavePulse},
                            {kOsc2Width, 65},
                            {kOsc2Fine, 9},
                            {kOsc1Fine, -6},
                            {kOsc2Level, 0.8f},
                            {kUnisonVoices, 2},
                            {kUnisonDetune, 9},
                            {kUnisonSpread, 70},
                            {kStartPhase, kPhaseRandom},
                            {kCutoff, 5200},
                            {kResonance, 22},
                            {kKeyTrack, 40},
                            {kFilterEnvelope, 12},
                            {kAmpAttack, 3},
                            {kAmpSustain, 0.8f},
                            {kAmpRelease, 220},
                            {kModDecay, 1320},
                            {kLfo1Wave, kLfoTriangle},
                            {kLfo1Rate, 0.9f},
                            {kLfo1ToWidth, 28},
                            {kVolume, 0.098f}};
constexpr P kSineLead[] = {{kOsc1Wave, kWaveSine},
                           {kOsc2Wave, kWaveTriangle},
                           {kOsc2Octave, 1},
                           {kOsc2Level, 0.2f},
                           {kPlayMode, kModeLegato},
                           {kGlideTime, 120},
                           {kDrive, 18},
                           {kCutoff, 6000},
                           {kKeyTrack, 60},
                           {kAmpAttack, 8},
                           {kAmpSustain, 0.9f},
                           {kAmpRelease, 200},
                           {kLfo1Rate, 5},
                           {kLfo1Fade, 500},
                           {kLfo1ToPitch, 18},
                           {kVolume, 0.774f},
                           {kStereoWidth, 45}};
constexpr P kDriveLead[] = {
    {kOsc1Wave, kWaveSaw}, {kOsc2Wave, kWaveSaw},  {kOsc2Semitone, 7}, {kOsc2Fine, -4},         {kOsc2Level, 0.7f},
    {kSubLevel, 0.25f},    {kPlayMode, kModeMono}, {kGlideTime, 40},   {kCutoff, 2600},         {kResonance, 42},
    {kDrive, 60},          {kFilterEnvelope, 24},  {kKeyTrack, 50},    {kVelocityToFilter, 12}, {kAmpAttack, 1.5f},
    {kAmpSustain, 0.8f},   {kAmpRelease, 130},     {kModDecay, 1980},  {kModSustain, 30},       {kLfo1Fade, 600},
    {kLfo1ToPitch, 10},    {kVolume, 1.754f},      {kStereoWidth, 45}};

// Pad
constexpr P kWarmPad[] = {
    {kOsc1Wave, kWaveSaw}, {kOsc2Wave, kWaveTriangle}, {kOsc2Octave, -1},     {kOsc2Level, 0.6f},
    {kUnisonVoices, 4},    {kUnisonDetune, 14},        {kUnisonSpread, 80},   {kStartPhase, kPhaseRandom},
    {kCutoff, 1150},       {kResonance, 10},           {kFilterEnvelope, 22}, {kKeyTrack, 40},
    {kAmpAttack, 550},     {kAmpDecay, 2500},          {kAmpSustain, 0.8f},   {kAmpRelease, 1600},
    {kModAttack, 1400},    {kModDecay, 4000},          {kModSustain, 50},     {kModRelease, 1600},
    {kLfo2Sync, 0},        {kLfo2Rate, 0.17f},         {kLfo2ToCutoff, 5},    {kVolume, 0.166f}};
constexpr P kHorizonPad[] = {{kOsc1Wave, kWaveSaw}, {kOsc2Wave, kWaveSaw}, {kOsc2Octave, 1},
                             {kOsc2Level, 0.35f},   {kOsc2Fine, 6},        {kUnisonVoices, 7},
                             {kUnisonDetune, 26},   {kUnisonSpread, 100},  {kStartPhase, kPhaseRandom},
                             {kCutoff, 3600},       {kFilterEnvelope, 12}, {kKeyTrack, 30},
                             {kAmpAttack, 320},     {kAmpSustain, 0.9f},   {kAmpRelease, 2200},
                             {kModAttack, 2200},    {kModSustain, 60},     {kModRelease, 2200},
                             {kLfo2Sync, 0},        {kLfo2Rate, 0.11f},    {kLfo2ToCutoff, 7},
                             {kVolume, 0.140f}};
constexpr P kGlassPad[] = {{kOsc1Wave, kWaveSine},
                           {kOsc2Wave, kWaveSine},
                           {kOsc2Octave, 1},
                           {kOsc2Semitone, 7},
                           {kOsc2Level, 0.22f},
                           {kFmAmount, 30},
                           {kFmEnvelope, 26},
                           {kUnisonVoices, 3},
                           {kUnisonDetune, 8},
                           {kUnisonSpread, 90},
                           {kStartPhase, kPhaseRandom},
                           {kCutoff, 7000},
                           {kAmpAttack, 220},
                           {kAmpDecay, 3500},
                           {kAmpSustain, 0.7f},
                           {kAmpRelease, 2600},
                           {kModAttack, 300},
                           {kModDecay, 3500},
                           {kModSustain, 20},
                           {kModRelease, 2500},
                           {kLfo2Sync, 0},
                           {kLfo2Rate, 0.3f},
                           {kLfo2ToPan, 35},
                           {kVolume, 0.170f}};
constexpr P kSweepPad[] = {{kOsc1Wave, kWaveSaw}, {kOsc2Wave, kWavePulse}, {kOsc2Width, 30},
                           {kOsc2Level, 0.6f},    {kOsc2Fine, -8},         {kUnisonVoices, 3},
                           {kUnisonDetune, 16},   {kUnisonSpread, 80},     {kStartPhase, kPhaseRandom},
                           {kNoiseLevel, 0.05f},  {kCutoff, 300},          {kResonance, 48},
                           {kFilterEnvelope, 52}, {kKeyTrack, 30},         {kAmpAttack, 200},
                           {kAmpSustain, 0.8f},   {kAmpRelease, 1800},     {kModAttack, 3200},
                           {kModDecay, 6000},     {kModSustain, 25},       {kModRelease, 1800},
                           {kLfo1Rate, 0.4f},     {kLfo1ToWidth, 15},      {kVolume, 0.200f}};

// Keys
constexpr P kHouseOrgan[] = {
    {kOsc1Wave, kWaveSine}, {kOsc2Wave, kWavePulse}, {kOsc2Octave, 1},  {kOsc2Level, 0.32f},  {kSubWave, kSubSine},
    {kSubLevel, 0.7f},      {kCutoff, 2200},         {kResonance, 8},   {kDrive, 12},         {kFilterEnvelope, 22},
    {kKeyTrack, 60},        {kVelocityToFilter, 12}, {kAmpDecay, 1620}, {kAmpSustain, 0.55f}, {kAmpRelease, 90},
    {kModDecay, 352},       {kModRelease, 80},       {kVolume, 0.160f}, {kStereoWidth, 55}};
constexpr P kElectricPiano[] = {
    {kOsc1Wave, kWaveSine}, {kOsc2Wave, kWaveSine},  {kOsc2Fine, 2},     {kOsc2Level, 0.08f}, {kFmAmount, 18},
    {kFmEnvelope, 54},      {kSubWave, kSubSine},    {kSubLevel, 0.05f}, {kDrive, 15},        {kCutoff, 5200},
    {kKeyTrack, 50},        {kVelocityToFilter, 26}, {kAmpAttack, 0.8f}, {kAmpDecay, 5200},   {kAmpSustain, 0},
    {kAmpRelease, 260},     {kVelocityToLevel, 75},  {kModDecay, 1980},  {kModRelease, 260},  {kLfo2Rate, 4.6f},
    {kLfo2ToPan, 30},       {kVolume, 0.216f},       {kStereoWidth, 50}};
constexpr P kClavichord[] = {
    {kOsc1Wave, kWavePulse}, {kOsc1Width, 14},   {kOsc2Wave, kWavePulse},   {kOsc2Width, 25},   {kOsc2Octave, 0},
    {kOsc2Fine, 4},          {kOsc2Level, 0.4f}, {kFilterType, kLowPass12}, {kCutoff, 1600},    {kResonance, 30},
    {kFilterEnvelope, 26},   {kKeyTrack, 60},    {kVelocityToFilter, 22},   {kAmpAttack, 0.6f}, {kAmpDecay, 2550},
    {kAmpSustain, 0},        {kAmpRelease, 60},  {kVelocityToLevel, 75},    {kModDecay, 572},   {kModRelease, 60},
    {kVolume, 0.124f},       {kStereoWidth, 50}};
constexpr P kDrawbarOrgan[] = {
    {kOsc1Wave, kWaveSine},      {kOsc2Wave, kWaveSine}, {kOsc2Octave, 1},   {kOsc2Semitone, 7}, {kOsc2Level, 0.55f},
    {kSubWave, kSubSine},        {kSubLevel, 0.8f},      {kUnisonVoices, 2}, {kUnisonDetune, 4}, {kUnisonSpread, 70},
    {kStartPhase, kPhaseRandom}, {kDrive, 28},           {kCutoff, 6500},    {kAmpAttack, 2},    {kAmpSustain, 1},
    {kAmpRelease, 60},           {kVelocityToLevel, 15}, {kLfo1Rate, 6.4f},  {kLfo1ToPitch, 5},  {kLfo2Rate, 6.4f},
    {kLfo2ToLevel, 14},          {kLfo2ToPan, 20},       {kVolume, 0.200f},  {kStereoWidth, 30}};

// Stab and pluck
constexpr P kHouseStab[] = {{kOsc1Wave, kWaveSaw},   {kOsc2Wave, kWaveSaw}, {kOsc2Octave, 0},      {kOsc2Fine, 9},
                            {kOsc1Fine, -5},         {kOsc2Level, 0.8f},    {kSubLevel, 0.22f},    {kNoiseLevel, 0.04f},
                            {kUnisonVoices, 2},      {kUnisonDetune, 8},    {kUnisonSpread, 70},   {kCutoff, 760},
                            {kResonance, 30},        {kDrive, 22},          {kFilterEnvelope, 42}, {kKeyTrack, 35},
                            {kVelocityToFilter, 16}, {kAmpAttack, 0.8f},    {kAmpDecay, 1054},     {kAmpSustain, 0.04f},
                            {kAmpRelease, 240},      {kModDecay, 792},      {kModSustain, 0},      {kModRelease, 220},
                            {kVolume, 0.326f},       {kStereoWidth, 45}};
constexpr P kGardenPluck[] = {
    {kOsc1Wave, kWaveSaw}, {kOsc2Wave, kWavePulse}, {kOsc2Octave, 1},        {kOsc2Width, 35},   {kOsc2Level, 0.3f},
    {kUnisonVoices, 3},    {kUnisonDetune, 9},      {kUnisonSpread, 75},     {kCutoff, 480},     {kResonance, 22},
    {kFilterEnvelope, 50}, {kKeyTrack, 50},         {kVelocityToFilter, 18}, {kAmpAttack, 0.7f}, {kAmpDecay, 2210},
    {kAmpSustain, 0},      {kAmpRelease, 500},      {kModDecay, 924},        {kModRelease, 350}, {kVolume, 0.312f}};
constexpr P kRaveStab[] = {{kOsc1Wave, kWaveSaw}, {kOsc2Wave, kWavePulse}, {kOsc2Semitone, 7},  {kOsc2Width, 40},
                           {kOsc2Level, 0.6f},    {kUnisonVoices, 5},      {kUnisonDetune, 20}, {kUnisonSpread, 80},
                           {kDrive, 35},          {kCutoff, 1500},         {kResonance, 25},    {kFilterEnvelope, 30},
                           {kKeyTrack, 40},       {kAmpAttack, 0.8f},      {kAmpDecay, 1530},   {kAmpSustain, 0.12f},
                           {kAmpRelease, 300},    {kModDecay, 1056},       {kModSustain, 10},   {kModRelease, 300},
                           {kVolume, 0.420f}};

// Strings
constexpr P kStringMachine[] = {
    {kOsc1Wave, kWaveSaw},     {kOsc2Wave, kWaveSaw}, {kOsc2Octave, 1},       {kOsc2Level, 0.5f},
    {kUnisonVoices, 3},        {kUnisonDetune, 11},   {kUnisonSpread, 90},    {kStartPhase, kPhaseRandom},
    {kFilterType, kLowPass12}, {kCutoff, 4200},       {kKeyTrack, 25},        {kAmpAttack, 90},
    {kAmpSustain, 0.9f},       {kAmpRelease, 700},    {kVelocityToLevel, 30}, {kLfo1Rate, 5.8f},
    {kLfo1ToPitch, 7},         {kLfo2Sync, 0},        {kLfo2Rate, 0.6f},      {kLfo2ToPan, 20},
    {kVolume, 0.124f}};
constexpr P kSlowStrings[] = {
    {kOsc1Wave, kWaveSaw},       {kOsc2Wave, kWaveSaw}, {kOsc2Fine, 11},     {kOsc1Fine, -5},
    {kOsc2Level, 0.8f},          {kUnisonVoices, 5},    {kUnisonDetune, 17}, {kUnisonSpread, 85},
    {kStartPhase, kPhaseRandom}, {kNoiseLevel, 0.015f}, {kCutoff, 2100},     {kKeyTrack, 45},
    {kFilterEnvelope, 8},        {kAmpAttack, 420},     {kAmpSustain, 0.9f}, {kAmpRelease, 1100},
    {kModAttack, 900},           {kModSustain, 60},     {kModRelease, 900},  {kLfo1Rate, 5.1f},
    {kLfo1Fade, 1200},           {kLfo1ToPitch, 8},     {kVolume, 0.120f}};

// Effect
constexpr P kStarfall[] = {{kOsc1Wave, kWavePulse},
                           {kOsc1Width, 30},
                           {kOsc2Wave, kWaveSaw},
                           {kOsc2Octave, 1},
                           {kOsc2Fine, 20},
                           {kOsc2Level, 0.5f},
                           {kNoiseLevel, 0.35f},
                           {kUnisonVoices, 3},
                           {kUnisonDetune, 35},
                           {kUnisonSpread, 100},
                           {kStartPhase, kPhaseRandom},
                           {kFilterType, kBandPass12},
                           {kCutoff, 900},
                           {kResonance, 45},
                           {kFilterEnvelope, 36},
                           {kAmpAttack, 60},
                           {kAmpDecay, 4000},
                           {kAmpSustain, 0.4f},
                           {kAmpRelease, 2500},
                           {kModAttack, 20},
                           {kModDecay, 7700},
                           {kModRelease, 2500},
                           {kModToPitch, 12},
                           {kLfo1Wave, kLfoRandom},
                           {kLfo1Rate, 9},
                           {kLfo1ToCutoff, 16},
                           {kLfo2Rate, 6},
                           {kLfo2ToPan, 70},
                           {kVolume, 0.500f}};

constexpr ProgramSpec kPrograms[] = {
    {"Deep House Bass", kDeepHouseBass},
    {"Acid Line", kAcidLine},
    {"Reese Bass", kReeseBass},
    {"FM Bass", kFmBass},
    {"Pulse Bass", kPulseBass},
    {"Super Lead", kSuperLead},
    {"Square Lead", kSquareLead},
    {"Width Lead", kWidthLead},
    {"Sine Lead", kSineLead},
    {"Drive Lead", kDriveLead},
    {"Warm Pad", kWarmPad},
    {"Horizon Pad", kHorizonPad},
    {"Glass Pad", kGlassPad},
    {"Sweep Pad", kSweepPad},
    {"House Organ", kHouseOrgan},
    {"Electric Piano", kElectricPiano},
    {"Clavichord", kClavichord},
    {"Drawbar Organ", kDrawbarOrgan},
    {"House Stab", kHouseStab},
    {"Garden Pluck", kGardenPluck},
    {"Rave Stab", kRaveStab},
    {"String Machine", kStringMachine},
    {"Slow Strings", kSlowStrings},
    {"Starfall", kStarfall},
};

}  // namespace

std::span<const ProgramSpec> SynthPrograms() {
    static const std::vector<ProgramSpec> all = [] {
        std::vector<ProgramSpec> list(std::begin(kPrograms), std::end(kPrograms));
        const std::span<const ProgramSpec> further = FurtherSynthPrograms();
        list.insert(list.end(), further.begin(), further.end());
        return list;
    }();
    return all;
}

}  // namespace quibplug
