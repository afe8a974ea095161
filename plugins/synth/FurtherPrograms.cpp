// SPDX-License-Identifier: GPL-3.0-or-later
#include "synth/SynthParameters.h"

namespace quibplug {

namespace {

using P = ParameterValue;

// Bass
constexpr P kDeepSine[] = {{kOsc1Wave, kWaveSine}, {kOsc1Octave, -1},    {kOsc2Wave, kWaveTriangle}, {kOsc2Octave, -1},
                           {kOsc2Level, 0.18f},    {kSubWave, kSubSine}, {kSubLevel, 0.35f},         {kDrive, 22},
                           {kCutoff, 900},         {kKeyTrack, 30},      {kFilterEnvelope, 8},       {kAmpDecay, 3000},
                           {kAmpSustain, 0.8f},    {kAmpRelease, 110},   {kPlayMode, kModeMono},     {kGlideTime, 25},
                           {kVolume, 0.821f}};
constexpr P kRoundPick[] = {
    {kOsc1Wave, kWaveTriangle}, {kOsc1Octave, -1},     {kOsc2Wave, kWavePulse}, {kOsc2Octave, -1},
    {kOsc2Width, 22},           {kOsc2Level, 0.4f},    {kNoiseLevel, 0.03f},    {kCutoff, 620},
    {kResonance, 14},           {kFilterEnvelope, 34}, {kKeyTrack, 45},         {kVelocityToFilter, 20},
    {kAmpDecay, 1500},          {kAmpSustain, 0.25f},  {kAmpRelease, 80},       {kModDecay, 420},
    {kPlayMode, kModeMono},     {kDrive, 14},          {kVolume, 0.881f}};
constexpr P kGrowl[] = {{kOsc1Wave, kWaveSaw}, {kOsc1Octave, -1}, {kOsc2Wave, kWavePulse}, {kOsc2Octave, -2},
                        {kOsc2Level, 0.7f},    {kOsc2Fine, 8},    {kUnisonVoices, 2},      {kUnisonDetune, 12},
                        {kUnisonSpread, 40},   {kCutoff, 380},    {kResonance, 46},        {kDrive, 62},
                        {kFilterEnvelope, 20}, {kKeyTrack, 30},   {kAmpSustain, 0.9f},     {kAmpRelease, 90},
                        {kLfo2Wave, kLfoSine}, {kLfo2Rate, 6},    {kLfo2ToCutoff, 26},     {kPlayMode, kModeMono},
                        {kGlideTime, 40},      {kVolume, 1.348f}};
constexpr P kSquareSub[] = {{kOsc1Wave, kWavePulse}, {kOsc1Octave, -1},    {kSubWave, kSubSquare}, {kSubLevel, 0.7f},
                            {kCutoff, 340},          {kResonance, 8},      {kFilterEnvelope, 18},  {kKeyTrack, 50},
                            {kAmpDecay, 2200},       {kAmpSustain, 0.65f}, {kAmpRelease, 70},      {kModDecay, 260},
                            {kPlayMode, kModeMono},  {kVolume, 0.379f}};
constexpr P kRubberBass[] = {{kOsc1Wave, kWaveSaw}, {kOsc1Octave, -1},        {kOsc2Wave, kWaveTriangle},
                             {kOsc2Octave, -2},     {kOsc2Level, 0.7f},       {kFilterType, kLowPass12},
                             {kCutoff, 260},        {kResonance, 58},         {kFilterEnvelope, 46},
                             {kKeyTrack, 35},       {kVelocityToFilter, 24},  {kAmpDecay, 1300},
                             {kAmpSustain, 0.35f},  {kAmpRelease, 80},        {kModDecay, 340},
                             {kGlideTime, 70},      {kPlayMode, kModeLegato}, {kDrive, 18},
                             {kVolume, 1.000f}};
constexpr P kSlapTine[] = {
    {kOsc1Wave, kWaveSine}, {kOsc1Octave, -1},       {kOsc2Wave, kWaveSine}, {kOsc2Octave, 1},    {kOsc2Level, 0.05f},
    {kFmAmount, 16},        {kFmEnvelope, 64},       {kSubWave, kSubSine},   {kSubLevel, 0.3f},   {kNoiseLevel, 0.02f},
    {kCutoff, 6500},        {kVelocityToFilter, 24}, {kAmpDecay, 1600},      {kAmpSustain, 0.3f}, {kAmpRelease, 90},
    {kModDecay, 240},       {kPlayMode, kModeMono},  {kVelocityToLevel, 75}, {kVolume, 0.566f}};
constexpr P kHooverBass[] = {{kOsc1Wave, kWaveSaw},
                             {kOsc1Octave, -1},
                             {kOsc2Wave, kWavePulse},
                             {kOsc2Octave, 0},
                             {kOsc2Width, 30},
                             {kOsc2Level, 0.5f},
                             {kSubLevel, 0.5f},
                             {kUnisonVoices, 4},
                             {kUnisonDetune, 34},
                             {kUnisonSpread, 60},
                             {kStartPhase, kPhaseRandom},
                             {kCutoff, 1700},
                             {kResonance, 20},
                             {kDrive, 30},
                             {kKeyTrack, 30},
                             {kAmpAttack, 4},
                             {kAmpSustain, 0.9f},
                             {kAmpRelease, 160},
                             {kModAttack, 30},
                             {kModDecay, 420},
                             {kModToPitch, 3},
                             {kLfo1Rate, 0.8f},
                             {kLfo1ToWidth, 25},
                             {kPlayMode, kModeMono},
                             {kGlideTime, 110},
                             {kVolume, 1.015f}};

// Lead
constexpr P kWoodFlute[] = {
    {kOsc1Wave, kWaveTriangle}, {kOsc2Wave, kWaveSine}, {kOsc2Octave, 1},   {kOsc2Level, 0.12f},
    {kNoiseLevel, 0.06f},       {kCutoff, 2400},        {kKeyTrack, 70},    {kFilterEnvelope, 14},
    {kAmpAttack, 45},           {kAmpSustain, 0.85f},   {kAmpRelease, 160}, {kModAttack, 25},
    {kModDecay, 300},           {kModSustain, 35},      {kLfo1Rate, 5.1f},  {kLfo1Fade, 800},
    {kLfo1ToPitch, 12},         {kLfo2Rate, 5.1f},      {kLfo2Sync, 0},     {kLfo2ToLevel, 12},
    {kPlayMode, kModeLegato},   {kGlideTime, 35},       {kVolume, 0.728f},  {kStereoWidth, 45}};
constexpr P kBrassSection[] = {{kOsc1Wave, kWaveSaw}, {kOsc2Wave, kWaveSaw},   {kOsc2Fine, 8},
                               {kOsc1Fine, -6},       {kOsc2Level, 0.9f},      {kUnisonVoices, 2},
                               {kUnisonDetune, 9},    {kUnisonSpread, 70},     {kStartPhase, kPhaseRandom},
                               {kCutoff, 520},        {kResonance, 10},        {kFilterEnvelope, 40},
                               {kKeyTrack, 45},       {kVelocityToFilter, 18}, {kAmpAttack, 28},
                               {kAmpDecay, 1800},     {kAmpSustain, 0.8f},     {kAmpRelease, 150},
                               {kModAttack, 55},      {kModDecay, 900},        {kModSustain, 55},
                               {kModRelease, 160},    {kLfo1Fade, 900},        {kLfo1Rate, 5},
                               {kLfo1ToPitch, 6},     {kVolume, 0.135f}};
constexpr P kFifthLead[] = {{kOsc1Wave, kWaveSaw}, {kOsc2Wave, kWaveSaw}, {kOsc2Semitone, 7},
                            {kOsc2Fine, 3},        {kOsc2Level, 0.8f},    {kUnisonVoices, 3},
                            {kUnisonDetune, 12},   {kUnisonSpread, 80},   {kStartPhase, kPhaseRandom},
                            {kCutoff, 4200},       {kResonance, 14},      {kFilterEnvelope, 16},
                            {kKeyTrack, 45},       {kAmpAttack, 2},       {kAmpSustain, 0.8f},
                            {kAmpRelease, 240},    {kModDecay, 900},      {kVolume, 0.169f}};
constexpr P kChipLead[] = {{kOsc1Wave, kWavePulse}, {kOsc1Width, 25},   {kOsc2Wave, kWavePulse}, {kOsc2Width, 50},
                           {kOsc2Octave, 1},        {kOsc2Level, 0.2f}, {kAmpAttack, 0.5f},      {kAmpDecay, 900},
                           {kAmpSustain, 0.6f},     {kAmpRelease, 40},  {kLfo1Wave, kLfoSquare}, {kLfo1Rate, 7},
                           {kLfo1Fade, 900},        {kLfo1ToPitch, 20}, {kPlayMode, kModeMono},  {kCutoff, 14000},
                           {kVolume, 0.330f},       {kStereoWidth, 50}};
constexpr P kTalkingLead[] = {
    {kOsc1Wave, kWaveSaw}, {kOsc2Wave, kWavePulse}, {kOsc2Width, 20},   {kOsc2Level, 0.5f},  {kFilterType, kBandPass12},
    {kCutoff, 850},        {kResonance, 62},        {kDrive, 45},       {kKeyTrack, 40},     {kFilterEnvelope, 18},
    {kAmpAttack, 6},       {kAmpSustain, 0.9f},     {kAmpRelease, 140}, {kModAttack, 90},    {kModDecay, 700},
    {kModSustain, 20},     {kLfo2Wave, kLfoSine},   {kLfo2Rate, 3},     {kLfo2ToCutoff, 10}, {kPlayMode, kModeLegato},
    {kGlideTime, 80},      {kVolume, 2.000f},       {kStereoWidth, 50}};
constexpr P kWhistle[] = {{kOsc1Wave, kWaveSine},   {kOsc1Octave, 1},  {kNoiseLevel, 0.04f}, {kFilterType, kLowPass12},
                          {kCutoff, 5200},          {kKeyTrack, 80},   {kAmpAttack, 30},     {kAmpSustain, 0.9f},
                          {kAmpRelease, 120},       {kLfo1Rate, 5.8f}, {kLfo1Fade, 300},     {kLfo1ToPitch, 24},
                          {kPlayMode, kModeLegato}, {kGlideTime, 90},  {kVolume, 0.647f},    {kStereoWidth, 40}};
constexpr P kWideSquare[] = {
    {kOsc1Wave, kWavePulse}, {kOsc2Wave, kWavePulse}, {kOsc2Octave, -1},         {kOsc2Level, 0.6f},
    {kUnisonVoices, 5},      {kUnisonDetune, 18},     {kUnisonSpread, 95},       {kStartPhase, kPhaseRandom},
    {kCutoff, 6200},         {kResonance, 6},         {kKeyTrack, 40},           {kAmpAttack, 3},
    {kAmpSustain, 0.85f},    {kAmpRelease, 220},      {kLfo1Wave, kLfoTriangle}, {kLfo1Rate, 0.5f},
    {kLfo1ToWidth, 18},      {kVolume, 0.097f}};

// Pad
constexpr P kChoirPad[] = {{kOsc1Wave, kWavePulse},
                           {kOsc1Width, 38},
                           {kOsc2Wave, kWaveTriangle},
                           {kOsc2Octave, 1},
                           {kOsc2Level, 0.3f},
                           {kNoiseLevel, 0.03f},
                           {kUnisonVoices, 5},
                           {kUnisonDetune, 19},
                           {kUnisonSpread, 90},
                           {kStartPhase, kPhaseRandom},
                           {kFilterType, kBandPass12},
                           {kCutoff, 780},
                           {kResonance, 28},
                           {kKeyTrack, 55},
                           {kAmpAttack, 420},
                           {kAmpSustain, 0.9f},
                           {kAmpRelease, 1500},
                           {kModAttack, 900},
                           {kModSustain, 40},
                           {kFilterEnvelope, 10},
                           {kLfo1Rate, 0.31f},
                           {kLfo1ToWidth, 14},
                           {kLfo2Sync, 0},
                           {kLfo2Rate, 0.23f},
                           {kLfo2ToCutoff, 4},
                           {kVolume, 0.339f}};
constexpr P kDarkDrone[] = {{kOsc1Wave, kWaveSaw}, {kOsc1Octave, -1},
                            {kOsc2Wave, kWaveSaw}, {kOsc2Octave, -2},
                            {kOsc2Fine, 7},        {kOsc2Level, 0.8f},
                            {kUnisonVoices, 4},    {kUnisonDetune, 16},
                            {kUnisonSpread, 100},  {kStartPhase, kPhaseRandom},
                            {kCutoff, 320},        {kResonance, 24},
                            {kDrive, 20},          {kKeyTrack, 30},
                            {kAmpAttack, 900},     {kAmpSustain, 0.95f},
                            {kAmpRelease, 2600},   {kLfo2Sync, 0},
                            {kLfo2Rate, 0.08f},    {kLfo2ToCutoff, 14},
                            {kVolume, 0.307f}};
constexpr P kBrightAir[] = {{kOsc1Wave, kWaveSaw},
                            {kOsc1Octave, 1},
                            {kOsc2Wave, kWaveSaw},
                            {kOsc2Level, 0.5f},
                            {kNoiseLevel, 0.08f},
                            {kUnisonVoices, 6},
                            {kUnisonDetune, 24},
                            {kUnisonSpread, 100},
                            {kStartPhase, kPhaseRandom},
                            {kFilterType, kHighPass12},
                            {kCutoff, 650},
                            {kResonance, 6},
                            {kKeyTrack, 60},
                            {kAmpAttack, 520},
                            {kAmpSustain, 0.85f},
                            {kAmpRelease, 2000},
                            {kLfo2Sync, 0},
                            {kLfo2Rate, 0.2f},
                            {kLfo2ToPan, 25},
                            {kVolume, 0.155f}};
constexpr P kMovingPad[] = {{kOsc1Wave, kWavePulse}, {kOsc1Width, 45},    {kOsc2Wave, kWaveSaw},
                            {kOsc2Fine, 10},         {kOsc2Level, 0.6f},  {kUnisonVoices, 3},
                            {kUnisonDetune, 13},     {kUnisonSpread, 90}, {kStartPhase, kPhaseRandom},
                            {kCutoff, 900},          {kResonance, 26},    {kKeyTrack, 40},
                            {kAmpAttack, 260},       {kAmpSustain, 0.9f}, {kAmpRelease, 1200},
                            {kLfo1Rate, 0.27f},      {kLfo1ToWidth, 30},  {kLfo2Wave, kLfoTriangle},
                            {kLfo2Rate, 1},          {kLfo2ToCutoff, 16}, {kLfo2ToPan, 30},
                            {kVolume, 0.163f}};
constexpr P kIcePad[] = {{kOsc1Wave, kWaveSine}, {kOsc1Octave, 1},     {kOsc2Wave, kWaveTriangle},
                         {kOsc2Octave, 2},       {kOsc2Semitone, 7},   {kOsc2Level, 0.14f},
                         {kFmAmount, 14},        {kFmEnvelope, 20},    {kUnisonVoices, 4},
                         {kUnisonDetune, 11},    {kUnisonSpread, 100}, {kStartPhase, kPhaseRandom},
                         {kCutoff, 9000},        {kAmpAttack, 340},    {kAmpDecay, 4000},
                         {kAmpSustain, 0.6f},    {kAmpRelease, 2800},  {kModAttack, 500},
                         {kModDecay, 4000},      {kModRelease, 2000},  {kLfo2Sync, 0},
                         {kLfo2Rate, 0.35f},     {kLfo2ToPan, 45},     {kVolume, 0.159f}};
constexpr P kHollowPad[] = {
    {kOsc1Wave, kWaveTriangle},  {kOsc2Wave, kWavePulse}, {kOsc2Octave, -1},   {kOsc2Width, 50},
    {kOsc2Level, 0.45f},         {kUnisonVoices, 3},      {kUnisonDetune, 10}, {kUnisonSpread, 80},
    {kStartPhase, kPhaseRandom}, {kCutoff, 1500},         {kResonance, 18},    {kKeyTrack, 50},
    {kAmpAttack, 380},           {kAmpSustain, 0.85f},    {kAmpRelease, 1500}, {kModAttack, 1200},
    {kModSustain, 60},           {kFilterEnvelope, 12},   {kVolume, 0.211f}};
constexpr P kPulseGate[] = {
    {kOsc1Wave, kWaveSaw}, {kOsc2Wave, kWaveSaw}, {kOsc2Fine, 11},         {kOsc2Level, 0.8f},
    {kUnisonVoices, 4},    {kUnisonDetune, 18},   {kUnisonSpread, 90},     {kStartPhase, kPhaseRandom},
    {kCutoff, 2400},       {kResonance, 16},      {kKeyTrack, 35},         {kAmpAttack, 8},
    {kAmpSustain, 0.95f},  {kAmpRelease, 300},    {kLfo2Wave, kLfoSquare}, {kLfo2Rate, 8},
    {kLfo2ToLevel, 88},    {kVolume, 0.156f}};

// Keys
constexpr P kBellKeys[] = {{kOsc1Wave, kWaveSine}, {kOsc2Wave, kWaveSine}, {kOsc2Octave, 2},       {kOsc2Semitone, 5},
                           {kOsc2Level, 0.06f},    {kFmAmount, 22},        {kFmEnvelope, 36},      {kCutoff, 12000},
                           {kAmpAttack, 0.6f},     {kAmpDecay, 5200},      {kAmpSustain, 0},       {kAmpRelease, 1400},
                           {kModDecay, 2600},      {kModRelease, 1200},    {kVelocityToLevel, 75}, {kVolume, 0.201f},
                           {kStereoWidth, 50}};
constexpr P kMusicBox[] = {{kOsc1Wave, kWaveSine}, {kOsc1Octave, 1}, {kOsc2Wave, kWaveSine}, {kOsc2Octave, 3},
                           {kOsc2Level, 0.2f},     {kFmAmount, 4},   {kFmEnvelope, 26},      {kAmpAttack, 0.5f},
                           {kAmpDecay, 2400},      {kAmpSustain, 0}, {kAmpRelease, 900},     {kModDecay, 500},
                           {kVelocityToLevel, 70}, {kCutoff, 16000}, {kVolume, 0.209f},      {kStereoWidth, 50}};
constexpr P kVibes[] = {{kOsc1Wave, kWaveSine}, {kOsc2Wave, kWaveSine}, {kOsc2Octave, 2},   {kOsc2Level, 0.12f},
                        {kFmAmount, 3},         {kFmEnvelope, 16},      {kAmpAttack, 0.7f}, {kAmpDecay, 6000},
                        {kAmpSustain, 0},       {kAmpRelease, 700},     {kModDecay, 300},   {kLfo2Sync, 0},
                        {kLfo2Rate, 5.2f},      {kLfo2ToLevel, 32},     {kCutoff, 8000},    {kVelocityToLevel, 70},
                        {kVolume, 0.226f},      {kStereoWidth, 50}};
constexpr P kSoftKeys[] = {
    {kOsc1Wave, kWaveTriangle}, {kOsc2Wave, kWaveSine}, {kOsc2Octave, 1},  {kOsc2Level, 0.25f},  {kUnisonVoices, 2},
    {kUnisonDetune, 6},         {kUnisonSpread, 60},    {kCutoff, 1700},   {kKeyTrack, 50},      {kFilterEnvelope, 16},
    {kVelocityToFilter, 18},    {kAmpAttack, 2},        {kAmpDecay, 4200}, {kAmpSustain, 0.12f}, {kAmpRelease, 320},
    {kModDecay, 900},           {kVelocityToLevel, 72}, {kVolume, 0.166f}};
constexpr P kHarpsi[] = {
    {kOsc1Wave, kWavePulse},    {kOsc1Width, 9},   {kOsc2Wave, kWaveSaw},  {kOsc2Octave, 1},   {kOsc2Level, 0.35f},
    {kFilterType, kHighPass12}, {kCutoff, 260},    {kKeyTrack, 60},        {kAmpAttack, 0.5f}, {kAmpDecay, 2600},
    {kAmpSustain, 0},           {kAmpRelease, 90}, {kVelocityToLevel, 45}, {kVolume, 0.091f},  {kStereoWidth, 50}};
constexpr P kReedOrgan[] = {
    {kOsc1Wave, kWavePulse}, {kOsc1Width, 30},       {kOsc2Wave, kWaveSaw}, {kOsc2Octave, 1},       {kOsc2Level, 0.3f},
    {kOsc2Fine, 4},          {kSubWave, kSubSquare}, {kSubLevel, 0.3f},     {kCutoff, 1900},        {kKeyTrack, 45},
    {kAmpAttack, 35},        {kAmpSustain, 0.95f},   {kAmpRelease, 90},     {kVelocityToLevel, 20}, {kLfo1Rate, 5.6f},
    {kLfo1ToPitch, 3},       {kLfo2Sync, 0},         {kLfo2Rate, 5.6f},     {kLfo2ToLevel, 8},      {kVolume, 0.077f},
    {kStereoWidth, 50}};
constexpr P kMarimba[] = {
    {kOsc1Wave, kWaveSine},  {kOsc2Wave, kWaveSine}, {kOsc2Octave, 2},   {kOsc2Level, 0.18f}, {kFmAmount, 5},
    {kFmEnvelope, 22},       {kNoiseLevel, 0.015f},  {kAmpAttack, 0.6f}, {kAmpDecay, 900},    {kAmpSustain, 0},
    {kAmpRelease, 260},      {kModDecay, 120},       {kCutoff, 5000},    {kKeyTrack, 40},     {kVelocityToLevel, 80},
    {kVelocityToFilter, 18}, {kVolume, 0.233f},      {kStereoWidth, 50}};

// Pluck
constexpr P kNylonPluck[] = {{kOsc1Wave, kWaveTriangle},
                             {kOsc2Wave, kWavePulse},
                             {kOsc2Width, 18},
                             {kOsc2Level, 0.35f},
                             {kNoiseLevel, 0.02f},
                             {kCutoff, 900},
                             {kResonance, 8},
                             {kFilterEnvelope, 34},
                             {kKeyTrack, 60},
                             {kVelocityToFilter, 24},
                             {kAmpAttack, 0.8f},
                             {kAmpDecay, 2600},
                             {kAmpSustain, 0},
                             {kAmpRelease, 260},
                             {kModDecay, 520},
                             {kVelocityToLevel, 75},
                             {kVolume, 0.226f},
                             {kStereoWidth, 50}};
constexpr P kMutedPluck[] = {
    {kOsc1Wave, kWaveSaw}, {kOsc2Wave, kWavePulse}, {kOsc2Octave, -1}, {kOsc2Level, 0.3f},      {kCutoff, 420},
    {kResonance, 18},      {kFilterEnvelope, 36},   {kKeyTrack, 45},   {kVelocityToFilter, 22}, {kAmpAttack, 0.7f},
    {kAmpDecay, 480},      {kAmpSustain, 0},        {kAmpRelease, 90}, {kModDecay, 170},        {kDrive, 12},
    {kVolume, 0.233f},     {kStereoWidth, 55}};
constexpr P kKotoPluck[] = {{kOsc1Wave, kWavePulse}, {kOsc1Width, 12},       {kOsc2Wave, kWaveTriangle},
                            {kOsc2Level, 0.5f},      {kOsc2Fine, 3},         {kFilterType, kLowPass12},
                            {kCutoff, 1300},         {kResonance, 24},       {kFilterEnvelope, 38},
                            {kKeyTrack, 65},         {kAmpAttack, 0.5f},     {kAmpDecay, 2200},
                            {kAmpSustain, 0},        {kAmpRelease, 500},     {kModDecay, 260},
                            {kModToPitch, 0.35f},    {kVelocityToLevel, 75}, {kVolume, 0.181f},
                            {kStereoWidth, 50}};
constexpr P kTrancePluck[] = {
    {kOsc1Wave, kWaveSaw},   {kOsc2Wave, kWaveSaw}, {kOsc2Octave, 1},      {kOsc2Level, 0.5f},
    {kUnisonVoices, 5},      {kUnisonDetune, 17},   {kUnisonSpread, 90},   {kStartPhase, kPhaseRandom},
    {kCutoff, 700},          {kResonance, 16},      {kFilterEnvelope, 54}, {kKeyTrack, 40},
    {kVelocityToFilter, 16}, {kAmpAttack, 0.8f},    {kAmpDecay, 1100},     {kAmpSustain, 0},
    {kAmpRelease, 420},      {kModDecay, 480},      {kModRelease, 300},    {kVolume, 0.265f}};
constexpr P kBubblePluck[] = {
    {kOsc1Wave, kWaveSine}, {kOsc2Wave, kWaveTriangle}, {kOsc2Octave, 1}, {kOsc2Level, 0.2f}, {kCutoff, 700},
    {kResonance, 66},       {kFilterEnvelope, 40},      {kKeyTrack, 70},  {kAmpAttack, 0.7f}, {kAmpDecay, 700},
    {kAmpSustain, 0},       {kAmpRelease, 200},         {kModDecay, 150}, {kModToPitch, 5},   {kVelocityToLevel, 65},
    {kVolume, 0.610f},      {kStereoWidth, 50}};

// Strings
constexpr P kSoloStrings[] = {
    {kOsc1Wave, kWaveSaw}, {kOsc2Wave, kWaveSaw}, {kOsc2Fine, 5},      {kOsc2Level, 0.6f},
    {kUnisonVoices, 2},    {kUnisonDetune, 7},    {kUnisonSpread, 40}, {kStartPhase, kPhaseRandom},
    {kCutoff, 2600},       {kResonance, 16},      {kKeyTrack, 60},     {kAmpAttack, 110},
    {kAmpSustain, 0.9f},   {kAmpRelease, 260},    {kLfo1Rate, 5.6f},   {kLfo1Fade, 700},
    {kLfo1ToPitch, 16},    {kFilterEnvelope, 8},  {kModAttack, 160},   {kModSustain, 70},
    {kVolume, 0.168f},     {kStereoWidth, 45}};
constexpr P kOctaveStrings[] = {
    {kOsc1Wave, kWaveSaw},       {kOsc2Wave, kWaveSaw}, {kOsc2Octave, 1},    {kOsc2Fine, -5},
    {kOsc2Level, 0.6f},          {kUnisonVoices, 5},    {kUnisonDetune, 17}, {kUnisonSpread, 95},
    {kStartPhase, kPhaseRandom}, {kCutoff, 3400},       {kResonance, 4},     {kKeyTrack, 45},
    {kAmpAttack, 140},           {kAmpSustain, 0.9f},   {kAmpRelease, 650},  {kLfo1Rate, 5.2f},
    {kLfo1Fade, 1200},           {kLfo1ToPitch, 5},     {kVolume, 0.121f}};
constexpr P kTremoloStrings[] = {{kOsc1Wave, kWaveSaw}, {kOsc2Wave, kWaveSaw}, {kOsc2Fine, 9},
                                 {kOsc1Fine, -7},       {kOsc2Level, 0.8f},    {kUnisonVoices, 4},
                                 {kUnisonDetune, 14},   {kUnisonSpread, 90},   {kStartPhase, kPhaseRandom},
                                 {kCutoff, 2900},       {kKeyTrack, 45},       {kAmpAttack, 60},
                                 {kAmpSustain, 0.9f},   {kAmpRelease, 420},    {kLfo2Wave, kLfoTriangle},
                                 {kLfo2Rate, 8},        {kLfo2ToLevel, 55},    {kVolume, 0.122f}};

// Effects
constexpr P kAirRaid[] = {{kOsc1Wave, kWavePulse}, {kOsc1Width, 40},    {kOsc2Wave, kWaveSaw},
                          {kOsc2Fine, 6},          {kOsc2Level, 0.6f},  {kUnisonVoices, 2},
                          {kUnisonDetune, 10},     {kUnisonSpread, 50}, {kCutoff, 3600},
                          {kResonance, 24},        {kDrive, 20},        {kAmpAttack, 160},
                          {kAmpSustain, 0.95f},    {kAmpRelease, 900},  {kLfo1Wave, kLfoTriangle},
                          {kLfo1Rate, 0.35f},      {kLfo1ToPitch, 200}, {kModAttack, 1400},
                          {kModSustain, 100},      {kModRelease, 1500}, {kModToPitch, 7},
                          {kVolume, 0.208f},       {kStereoWidth, 45}};
constexpr P kLaser[] = {{kOsc1Wave, kWaveSaw}, {kOsc2Wave, kWaveSine}, {kOsc2Octave, 2},      {kOsc2Level, 0.2f},
                        {kCutoff, 6000},       {kResonance, 40},       {kFilterEnvelope, 30}, {kAmpAttack, 0.5f},
                        {kAmpDecay, 700},      {kAmpSustain, 0},       {kAmpRelease, 160},    {kModDecay, 520},
                        {kModToPitch, 24},     {kVolume, 0.310f},      {kStereoWidth, 55}};
constexpr P kWind[] = {{kOsc1Wave, kWaveSine},     {kOsc1Level, 0},    {kNoiseLevel, 1},    {kUnisonVoices, 1},
                       {kFilterType, kBandPass12}, {kCutoff, 700},     {kResonance, 70},    {kKeyTrack, 100},
                       {kAmpAttack, 900},          {kAmpSustain, 1},   {kAmpRelease, 1800}, {kLfo1Wave, kLfoRandom},
                       {kLfo1Rate, 0.8f},          {kLfo1ToCutoff, 9}, {kLfo2Sync, 0},      {kLfo2Rate, 0.13f},
                       {kLfo2ToCutoff, 12},        {kLfo2ToPan, 50},   {kVolume, 1.224f},   {kStereoWidth, 45}};
constexpr P kDownLifter[] = {{kOsc1Wave, kWaveSaw}, {kOsc2Wave, kWaveSaw}, {kOsc2Semitone, 7},
                             {kOsc2Level, 0.6f},    {kNoiseLevel, 0.6f},   {kUnisonVoices, 4},
                             {kUnisonDetune, 30},   {kUnisonSpread, 100},  {kStartPhase, kPhaseRandom},
                             {kCutoff, 240},        {kResonance, 34},      {kFilterEnvelope, 84},
                             {kAmpAttack, 1},       {kAmpDecay, 5000},     {kAmpSustain, 0.1f},
                             {kAmpRelease, 2200},   {kModDecay, 6500},     {kModRelease, 2400},
                             {kModToPitch, 12},     {kVolume, 0.222f}};

constexpr ProgramSpec kFurtherPrograms[] = {
    {"Deep Sine", kDeepSine},
    {"Round Pick", kRoundPick},
    {"Growl", kGrowl},
    {"Square Sub", kSquareSub},
    {"Rubber Bass", kRubberBass},
    {"Slap Tine", kSlapTine},
    {"Hoover Bass", kHooverBass},
    {"Wood Flute", kWoodFlute},
    {"Brass Section", kBrassSection},
    {"Fifth Lead", kFifthLead},
    {"Chip Lead", kChipLead},
    {"Talking Lead", kTalkingLead},
    {"Whistle", kWhistle},
    {"Wide Square", kWideSquare},
    {"Choir Pad", kChoirPad},
    {"Dark Drone", kDarkDrone},
    {"Bright Air", kBrightAir},
    {"Moving Pad", kMovingPad},
    {"Ice Pad", kIcePad},
    {"Hollow Pad", kHollowPad},
    {"Pulse Gate", kPulseGate},
    {"Bell Keys", kBellKeys},
    {"Music Box", kMusicBox},
    {"Vibes", kVibes},
    {"Soft Keys", kSoftKeys},
    {"Harpsi", kHarpsi},
    {"Reed Organ", kReedOrgan},
    {"Marimba", kMarimba},
    {"Nylon Pluck", kNylonPluck},
    {"Muted Pluck", kMutedPluck},
    {"Koto Pluck", kKotoPluck},
    {"Trance Pluck", kTrancePluck},
    {"Bubble Pluck", kBubblePluck},
    {"Solo Strings", kSoloStrings},
    {"Octave Strings", kOctaveStrings},
    {"Tremolo Strings", kTremoloStrings},
    {"Air Raid", kAirRaid},
    {"Laser", kLaser},
    {"Wind", kWind},
    {"Down Lifter", kDownLifter},
};

}  // namespace

std::span<const ProgramSpec> FurtherSynthPrograms() { return kFurtherPrograms; }

}  // namespace quibplug
