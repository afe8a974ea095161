#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""House Music: a deep house track in C minor, 82 bars at 124 beats per minute.

    python3 examples/compose/house_music.py > examples/HouseMusic.prg

Bars 0 intro, 16 build, 24 drop, 40 break with a rise of six bars, 54 drop, 70 outro.
It gives the same bytes every time.
"""
import sys

import house_parts as parts
import songkit
from house_parts import ANSWER, BAR, HOME, LONG_RISE, PHRASE, RISE, VERSE
from quibproject import Arpeggiator, Band, Effect, Instrument, Pattern, Project, Strip, channel_level, send_level
from songkit import (BEND_RANGE, CUTOFF, DRIVE, KIT_DRIVE, KIT_VOLUME, NOISE_LEVEL, OSC1_LEVEL, OSC2_LEVEL, RESONANCE,
                     bars, cutoff, hold, low_cut, master, numbered, pumped, rise, sweep, throws, volume)

BARS = 82
TRIM = 0.7  # decibels added to every channel, so that the loudest beat stays below the master's clip
SYNTH, DRUMS = "QUIB synth.so", "QUIB drums.so"
REVERB, DELAY, CHAMBER = 1, 2, 3  # the shared effects

# Programs.
DEEP_HOUSE_BASS, SINE_LEAD, WARM_PAD, SWEEP_PAD, ELECTRIC_PIANO, HOUSE_STAB, GARDEN_PLUCK = 0, 8, 10, 13, 15, 18, 19
MUSIC_BOX = 46
HOUSE_CLASSIC, WIDE_HOUSE, PERCUSSION_YARD = 0, 19, 22
DRUM_CHAMBER, VOCAL_HALL, DOTTED_EIGHTH = 3, 4, 0
# Parameters.
START_PHASE = 20
SNARE_SEND, CLAP_SEND = 1 * 8 + 7, 2 * 8 + 7
TO_CHAMBER = CHAMBER / 4


def fader(decibels):
    return channel_level(decibels + TRIM)


def arrange(instrument, row):
    return songkit.arrange(instrument, row, BARS)


# phrase at bar      0  4  8 12  16 20  24 28 32 36  40 44 48  54 58 62 66  70 74 78
KICK_ROW = "          a  a  a  b | a  c | a  b  a  b | -  -  -6 | a  b  a  b | a  b  d"
HATS_ROW = "          -  a  a  h | d  g | d  c  b  c | i  i  k6 | e  f  e  f | d  h  j"
PERCUSSION_ROW = "    -  a  b  b | c  d | c  d  c  d | e  e  a6 | c  d  c  d | b  b  f"
BASS_ROW = "          -  -  -  f | a  g | a  b  c  d | -  -  -6 | c  d  c  d | a  b  e"
STAB_ROW = "          -  -  a  a | c  e | a  b  c  d | a  -  g6 | a  b  c  d | c  a  f"
PAD_ROW = "           -  a  a  a | a  e | a  b  a  b | c  d  g6 | a  b  a  b | a  a  f"
KEYS_ROW = "          -  -  -  - | -  - | -  -  -  - | a  b  c6 | d  e  d  e | d  -  -"
ARP_ROW = "           a  a  a  a | a  c | a  b  a  b | a  b  d6 | a  b  a  b | a  a  e"
HOOK_ROW = "          -  -  -  c | -  - | a  b  -  d | -  c  -6 | a  b  a  d | c  -  -"
RISER_ROW = "         -  -  -  - | -  a | b  -  -  - | b  -  c6 | b  -  -  - | b  -  -"
SHIMMER_ROW = "       -  -  -  - | -  - | -  -  a  a | -  a  b6 | -  -  a  a | a  -  -"


def kick():
    return arrange(Instrument(
        "Kick", DRUMS, HOUSE_CLASSIC,
        strip=Strip(level=fader(-4), eq_on=1, eq=(Band(60, -1), Band(300, -3), Band(4000, 3))),
        patterns=hold(numbered(parts.kick(), parts.kick(pickup=True), parts.kick(gap=True), parts.kick(stop=True)),
                      {KIT_DRIVE: 0.35, KIT_VOLUME: volume(0)}),
        # Thin and back in the intro, full from the first drop.
        mix={"Level": bars((0, fader(-6)), (15, fader(-5)), (16, fader(-5)), (23.9, fader(-5)), (24, fader(-4)),
                           (70, fader(-4)), (74, fader(-6))),
             "LP Gain": bars((0, -0.35), (12, -0.15), (15.9, -0.05), (16, -0.05), (74, -0.05), (80, -0.25))}), KICK_ROW)


def hats():
    patterns = numbered(
        parts.hats(11, claps=False, sixteenths=False, opened=False), parts.hats(12), parts.hats(13, fill=True),
        parts.hats(14, crash=True), parts.hats(15, ride=True, crash=True), parts.hats(16, ride=True, fill=True),
        parts.snare_roll(17), parts.hats(18, sixteenths=False), parts.break_hats(19),
        parts.hats(20, claps=False, sixteenths=False, opened=False, bars=3), parts.snare_roll(27, 6))
    hold(patterns, {CLAP_SEND: TO_CHAMBER, SNARE_SEND: TO_CHAMBER, KIT_DRIVE: 0.3, KIT_VOLUME: volume(0)})
    return arrange(Instrument(
        "Hats & Claps", DRUMS, WIDE_HOUSE, swing=0.12, selected=1,
        # The plug-in's own send carries claps and snares alone, the strip's hardly adds the hats.
        strip=Strip(level=fader(-4), sends={CHAMBER: send_level(-36)},
                    **low_cut(180, high=Band(6000, 4))),
        patterns=patterns, mix={"Level": bars((0, fader(-8)), (8, fader(-3)), (24, fader(-2)))}), HATS_ROW)


def percussion():
    return arrange(Instrument(
        "Percussion", DRUMS, PERCUSSION_YARD, swing=0.16, step_mode=2, selected=1,
        strip=Strip(level=fader(0), pan=0.1, sends={CHAMBER: send_level(-18)}, **low_cut(150)),
        patterns=hold(numbered(parts.percussion(21, congas=False), parts.percussion(22),
                               parts.percussion(23, clave=True), parts.percussion(24, clave=True, fill=True),
                               parts.percussion(25, congas=False, clave=True, loud=0.75),
                               parts.percussion(26, congas=False, bars=3)),
                      {KIT_VOLUME: volume(0)})), PERCUSSION_ROW)


def bass():
    level, depth = fader(-2), 22
    return arrange(Instrument(
        "Bass", SYNTH, DEEP_HOUSE_BASS, swing=0.12,
        strip=Strip(level=level, eq_on=1, eq=(Band(45, -5), Band(180, 1), Band(1000, 5))),
        patterns=numbered(*(pumped(parts.bass(*score), level, depth) for score in (
            (31, VERSE, "steady"), (32, ANSWER, "steady"), (33, VERSE, "lively"), (34, ANSWER, "lively"),
            (35, HOME, "sparse", 3), (36, VERSE, "sparse"), (37, RISE, "steady", 2)))),
        parameters={CUTOFF: sweep((12, 140), (16, 300), (22, 450), (24, 420), (40, 520), (54, 520), (70, 560),
                                  (78, 200))}), BASS_ROW)


def stabs():
    level, depth = fader(2.5), 18
    instrument = Instrument(
        "Stabs", SYNTH, HOUSE_STAB, swing=0.12,
        strip=Strip(level=level, crossfade_a=1, sends={REVERB: send_level(-14), DELAY: send_level(-18)},
                    **low_cut(220, middle=Band(900, 1.5), high=Band(3000, 3))),
        patterns=hold(numbered(*(pumped(parts.chords(*score), level, depth) for score in (
            (41, VERSE, "classic"), (42, ANSWER, "classic"), (43, VERSE, "push"), (44, ANSWER, "push"),
            (45, RISE, "eighths"), (46, HOME, "classic", 3), (47, LONG_RISE, "eighths")))), {START_PHASE: 1,
                                                                                             DRIVE: 0.45}),
        mix={"Send2 Level": throws(send_level(-18), send_level(-5), (31, 39, 61, 69))},
        parameters={CUTOFF: sweep((8, 180), (16, 600), (20, 800), (23.5, 3000), (24, 950), (32, 1200), (40, 1400),
                                  (43, 300), (48, 300), (53.5, 4200), (54, 1300), (62, 1500), (70, 1500), (81, 160))})
    # The second preset washes the chords out for a break.
    instrument.presets = [
        instrument.snapshot(),
        instrument.snapshot(selected=2, level=fader(-2), sends={REVERB: send_level(-4), DELAY: send_level(-6)},
                            eq=(Band(400, -18), Band(900, 1.5), Band(4000, -6)))]
    return arrange(instrument, STAB_ROW)


def pad():
    level, depth, alone = fader(0), 26, fader(3)
    return arrange(Instrument(
        "Pad", SYNTH, WARM_PAD,
        strip=Strip(level=level, sends={REVERB: send_level(-12)},
                    **low_cut(200, -14, middle=Band(350, -3), high=Band(5000, 2))),
        patterns=numbered(pumped(parts.pad(VERSE), level, depth), pumped(parts.pad(ANSWER), level, depth),
                          pumped(parts.pad(VERSE), alone), pumped(parts.pad(ANSWER), alone),
                          pumped(parts.pad(RISE), alone), pumped(parts.pad(HOME), level),
                          pumped(parts.pad(LONG_RISE), alone)),
        mix={"Send1 Level": bars((0, send_level(-12)), (38, send_level(-12)), (44, send_level(-6)),
                                 (53, send_level(-6)), (54, send_level(-14)), (78, send_level(-8)))},
        parameters={CUTOFF: sweep((4, 350), (16, 900), (24, 700), (40, 800), (53.5, 4200), (54, 900), (70, 1000),
                                  (82, 300))}), PAD_ROW)


def keys():
    level, depth = fader(4), 18
    return arrange(Instrument(
        "Keys", SYNTH, ELECTRIC_PIANO, swing=0.12,
        strip=Strip(level=level, pan=-0.12, crossfade_b=1,
                    sends={REVERB: send_level(-12), DELAY: send_level(-20)}, **low_cut(180, -14)),
        patterns=numbered(*(pumped(parts.chords(seed, harmony, "ballad", doubled=True), level, ducking)
                            for seed, harmony, ducking in ((61, VERSE, 0), (62, ANSWER, 0), (63, LONG_RISE, 0),
                                                           (64, VERSE, depth), (65, ANSWER, depth))))), KEYS_ROW)


def arpeggio():
    """Follows the chords; the arpeggiator itself plays the pedal point of Shimmer."""
    return arrange(Instrument(
        "Arpeggio", SYNTH, GARDEN_PLUCK,
        strip=Strip(level=fader(-6), sends={REVERB: send_level(-14), DELAY: send_level(-12)},
                    **low_cut(300, high=Band(5000, 3))),
        patterns=numbered(parts.arpeggio(51, VERSE), parts.arpeggio(52, ANSWER), parts.arpeggio(53, RISE),
                          parts.arpeggio(54, LONG_RISE), parts.arpeggio(55, HOME, 3)),
        mix={"Level": bars((0, 44), (4, 74), (14, fader(0)), (16, fader(-3)), (22, fader(0)),
                           (23.4, fader(-1)), (23.5, 0), (24, fader(-7)), (32, fader(-4)),
                           (40, fader(-3)), (47, fader(2)), (52.9, fader(4)), (53, 0), (54, fader(-6)),
                           (62, fader(-3)), (70, fader(-2)), (77, fader(-2)), (80.5, 30), (81, 0))},
        parameters={CUTOFF: sweep((0, 160), (14, 800), (24, 480), (40, 520), (53, 2600), (54, 600), (74, 700),
                                  (81, 150))}), ARP_ROW)


def shimmer():
    """The fifth of the key, which every chord has a place for, up and down its octaves."""
    return arrange(Instrument(
        "Shimmer", SYNTH, MUSIC_BOX, keys=[67, 79], keyboard_position=60,
        arpeggiator=Arpeggiator(on=1, mode=2, ext=1, ext_mode=1, velocity=1.6, interval=12, gate=1, tempo=1),
        strip=Strip(level=fader(-8), sends={REVERB: send_level(-8), DELAY: send_level(-8)}, **low_cut(500)),
        patterns=numbered(*(Pattern(steps, mix={"Pan": [(0, 0.5), (steps / 2, -0.5), (steps - 0.5, 0.5)]})
                            for steps in (PHRASE, 6 * BAR))),
        mix={"Level": bars((32, fader(-16)), (39, fader(-9)), (44, fader(-14)), (53, fader(-6)), (54, 0), (61.9, 0),
                           (62, fader(-12)), (70, fader(-9)), (73.5, 20), (74, 0))}), SHIMMER_ROW)


def hook():
    level, depth = fader(-6), 12
    instrument = Instrument(
        "Hook", SYNTH, SINE_LEAD, swing=0.12,
        strip=Strip(level=level, sends={REVERB: send_level(-12), DELAY: send_level(-10)},
                    **low_cut(250, middle=Band(1400, 2))),
        patterns=numbered(pumped(parts.hook(71, parts.HOOK_CALL), level, depth),
                          pumped(parts.hook(72, parts.HOOK_REPLY), level, depth),
                          pumped(parts.hook(73, parts.HOOK_ECHO), fader(-7)),
                          pumped(parts.hook(74, parts.HOOK_HIGH), level, depth)),
        # Once more into the echo at the ends of the drops.
        mix={"Send2 Level": throws(send_level(-10), send_level(-2), (15, 31, 39, 47, 61, 69))})
    return arrange(instrument, HOOK_ROW)


def riser():
    """Rises of four and six bars, and the way back down after a drop."""
    down = Pattern(PHRASE)
    for key in (55, 62):
        down.add(0, key, 20, 80)
    down.midi = {"Pitch Bend": [(0, 64), (24, 0), (40, 64)]}
    down.plugin = {CUTOFF: [(0, cutoff(7000)), (24, cutoff(300))], RESONANCE: [(0, 0.2)], NOISE_LEVEL: [(0, 1.0)]}
    down.mix = {"Level": [(0, fader(0)), (30, 60)]}
    patterns = numbered(rise(4, fader(4)), down, rise(6, fader(4)))
    for pattern in patterns.values():
        pattern.plugin.update({OSC1_LEVEL: [(0, 0.4)], OSC2_LEVEL: [(0, 0.3)], BEND_RANGE: [(0, 0.5)]})
    return arrange(Instrument(
        "Riser", SYNTH, SWEEP_PAD, strip=Strip(level=fader(0), sends={REVERB: send_level(-8)},
                                               **low_cut(350)), patterns=patterns), RISER_ROW)


def song():
    return Project(
        tempo=124, steps=BARS * BAR, loop=(0, 24 * BAR, 40 * BAR),
        # The break hands the chords from side A, the stabs, to side B, the keys; then both play.
        master={"Level": bars((0, 127), (52, 127), (53.75, 118), (54, 127), (79, 127), (82, 96)),
                "Crossfader": bars((0, 0), (39, 0), (42, 96), (48, 96), (53.5, 56), (68, 56), (72, 0))},
        inserts=master(0.9),
        instruments=[kick(), hats(), percussion(), bass(), stabs(), pad(), keys(), arpeggio(), hook(), riser(),
                     shimmer()],
        effects={REVERB: Effect("QUIB reverb.so", VOCAL_HALL), DELAY: Effect("QUIB delay.so", DOTTED_EIGHTH),
                 CHAMBER: Effect("QUIB reverb.so", DRUM_CHAMBER)})


if __name__ == "__main__":
    sys.stdout.buffer.write(song().text().encode("ascii"))
