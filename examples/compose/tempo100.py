#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Tempo 100: a slow, swung piece with electric piano and vibraphone in D minor, 62 bars at 100 beats per
minute.

    python3 examples/compose/tempo100.py > examples/Tempo100.prg

Bars 0 intro, 8 verse, 20 bridge, 28 verse, 36 solo chorus, 44 six bars of bridge, 50 verse, 58 end. It shows strong
swing, a tempo lane that slows the last bars down, loops stretched far from their own tempo, patterns in a chain and
inserts.
"""
import sys

from house_parts import BAR, CLOSED_HAT, CRASH, KICK, OPEN_HAT, PHRASE, RIDE, RIM, SNARE, TAMBOURINE
from quibproject import Arpeggiator, Band, Effect, Instrument, Pattern, Project, Strip, channel_level, send_level
from songkit import (CUTOFF, KIT_VOLUME, arrange, bars, bass, comp, cutoff, drums, held, hold, looped, low_cut, master,
                     melody, numbered, pumped, sweep, throws, volume)

BARS = 62
SYNTH, DRUMS, LOOPS = "QUIB synth.so", "QUIB drums.so", "QUIB Loops.so"
REVERB, DELAY, CHAMBER = 1, 2, 3
# Programs.
ELECTRIC_PIANO, SLOW_STRINGS, ROUND_PICK, WOOD_FLUTE, VIBES, MARIMBA = 15, 22, 25, 31, 47, 51
LIVE_ROOM, JAZZ_CLUB, CONCERT_HALL, SMALL_ROOM, WORN_TAPE, PIANO_CHORUS, GENTLE_BUS, SMOOTH = 16, 18, 0, 1, 4, 5, 0, 1
SHAKER_LOOP, CLAVE_LOOP = 45, 51
LOOP_STRETCH, LOOP_HIGH_CUT = 4, 10

# Piano voicings without roots, moving by steps, and the roots below.
DM9, GM9, C13, FMAJ9 = (60, 64, 65, 69), (58, 62, 65, 69), (58, 62, 64, 69), (57, 60, 64, 67)
BBMAJ9, EM7B5, A7, DM6 = (57, 60, 62, 65), (58, 62, 64, 67), (58, 61, 64, 67), (57, 59, 62, 65)
VERSE, VERSE_ROOTS = (DM9, GM9, C13, FMAJ9), (38, 43, 36, 41)
TURN, TURN_ROOTS = (BBMAJ9, EM7B5, A7, DM6), (34, 40, 33, 38)
BRIDGE, BRIDGE_ROOTS = (GM9, C13, FMAJ9, BBMAJ9), (43, 36, 41, 34)
LONG_BRIDGE, LONG_ROOTS = BRIDGE + (EM7B5, A7), BRIDGE_ROOTS + (40, 33)

SWING = 0.24
# phrase at bar   0  4   8  12 16   20 24   28 32   36   44   50 54   58
BEAT_ROW = "      -  c | a  b  a  | c  d  | a  b  | f8 | c6 | a  b | e"
BRUSH_ROW = "     a  a | -  a  b  | b  b  | a  b  | b8 | a6 | a  b | a"
LOOP_ROW = "      -  a | a  a  b  | b  a  | b  b  | a8 | b6 | b  b | -"
BASS_ROW = "      -  c | a  b  a  | d  e  | a  b  | g8 | h6 | a  b | f"
PIANO_ROW = "     a  b | a  b  a  | c  d  | a  b  | f8 | g6 | a  b | e"
VIBES_ROW = "     -  -  | -  a  b | -  -  | a  b  | d8 | -6 | a  b | c"
FLUTE_ROW = "     -  -  | -  -  - | a  b  | -  c  | -8 | d6 | -  c | -"
STRING_ROW = "    -  -  | -  -  a | b  c  | d  a  | -8 | f6 | d  a | e"
ARP_ROW = "       a  a | -  -  -  | a  a  | -  -  | -8 | b6 | -  - | a"


def beat():
    groove = {KICK: "9......5.78.....", SNARE: "....8.......8...", CLOSED_HAT: "6.5.6.546.5.6.5."}
    turn = {KICK: "9..4...5.78...5.", SNARE: "....8..3....8..3", CLOSED_HAT: "6.5.6.546.5.6.5.",
            OPEN_HAT: "..............6."}
    fill = {KICK: "9......5.7......", SNARE: "....8.....3.4567", CLOSED_HAT: "6.5.6.54"}
    light = {KICK: "8.........6.....", RIM: "....7.......7...", CLOSED_HAT: "5.4.5.435.4.5.4."}
    ridden = {KICK: "9......5.78.....", SNARE: "....8.......8...", RIDE: "6..56..56..56..5"}
    last = drums(5, groove, turn, {KICK: "9......5.7......", SNARE: "....7......."}, {KICK: "8..............."})
    last.add(3 * BAR, CRASH, 10, 70)
    # Under the solo: the ride leads, the snare answers it softly.
    solo = {KICK: "8..3..5.6.....4.", SNARE: "..2.7..32..27..3", RIDE: "8..57..58..57..5"}
    push = {KICK: "8..3..5.6..4....", SNARE: "..2.7..3..3.7.2.", RIDE: "8..57..58..57.55"}
    chorus = drums(6, solo, push, solo, push, solo, push, solo,
                   {KICK: "8..3..5.6.......", SNARE: "..2.7..3.4.56789", RIDE: "8..57..5"}, bars=8)
    chorus.add(0, CRASH, 10, 76)
    return Instrument(
        "Beat", DRUMS, LIVE_ROOM, swing=SWING, inserts={1: Effect("QUIB compressor.so", GENTLE_BUS)}, step_mode=1,
        strip=Strip(level=channel_level(-6), insert_on=(1, 0), sends={CHAMBER: send_level(-22)},
                    eq_on=1, eq=(Band(60, -2), Band(400, -2), Band(7000, 6))),
        patterns=hold(numbered(drums(1, groove, turn), drums(2, groove, turn, groove, fill), drums(3, light),
                               drums(4, ridden, ridden, ridden, fill), last, chorus), {KIT_VOLUME: volume(0)}))


def brushes():
    sweep_ = {SNARE: "3.2.4.2.3.2.4.2.", TAMBOURINE: "............4..."}
    more = {SNARE: "3.2.4.23.32.4.2.", RIDE: "5...5..45...5..4"}
    return Instrument(
        "Brushes", DRUMS, JAZZ_CLUB, swing=SWING, strip=Strip(level=channel_level(5), pan=0.2,
                                                               sends={CHAMBER: send_level(-18)}, **low_cut(200)),
        patterns=hold(numbered(drums(11, sweep_), drums(12, sweep_, more)), {KIT_VOLUME: volume(0)}))


def loops():
    """A shaker made at 124 and claves made at 120, both stretched smoothly, claves far away."""
    patterns = hold(numbered(looped(SHAKER_LOOP), looped(SHAKER_LOOP, CLAVE_LOOP)),
                    {LOOP_STRETCH: 1, LOOP_HIGH_CUT: 0.86})
    return Instrument(
        "Loops", LOOPS, SMOOTH, strip=Strip(level=channel_level(-5), pan=-0.3,
                                            sends={CHAMBER: send_level(-10), DELAY: send_level(-20)}, **low_cut(400)),
        patterns=patterns)


def low():
    level = channel_level(5)
    groove = ((0, 0, 2.6, 106), (5, 0, 0.8, 80), (7, 12, 0.8, 84), (8, 7, 1.6, 94), (11, 0, 0.8, 84), (14, -2, 1.4, 92))
    reply = ((0, 0, 2.6, 104), (3, 7, 0.8, 80), (6, 12, 1.4, 92), (10, 0, 1.6, 96), (13, 5, 0.8, 82), (14, 7, 1.4, 88))
    calm = ((0, 0, 5, 100), (8, 7, 3, 86), (12, 0, 3, 88))
    last = bass(36, (34, 33, 38, 38), calm, calm, ((0, 0, 8, 96),), ((0, 0, 14, 90),))
    # A note a beat, the last one leading into the next bar's root from above or below.
    walk = tuple(((0, 0, 3.4, 104), (4, third, 3.2, 90), (8, 7, 3.2, 96), (12, lead, 3, 92), (15, 0, 0.8, 70))
                 for third, lead in ((3, 6), (3, -6), (4, 4), (4, -6), (4, 7), (3, -6), (4, 4), (3, 2)))
    return Instrument(
        "Bass", SYNTH, ROUND_PICK, swing=SWING, strip=Strip(level=level, eq_on=1,
                                                            eq=(Band(55, -3), Band(220, 2), Band(1000, 6))),
        patterns=numbered(*(pumped(pattern, level) for pattern in (
            bass(31, VERSE_ROOTS, groove, reply), bass(32, TURN_ROOTS, groove, reply), bass(33, TURN_ROOTS, calm),
            bass(34, BRIDGE_ROOTS, calm, reply), bass(35, TURN_ROOTS, reply, groove), last,
            bass(37, VERSE_ROOTS + TURN_ROOTS, *walk), bass(38, LONG_ROOTS, calm, reply)))),
        parameters={CUTOFF: bars((0, cutoff(800)), (36, cutoff(1000)), (44, cutoff(800)))})


def piano():
    level = channel_level(6)
    slow = ((0, 5, 84), (7, 2.5, 72), (11, 4, 78))
    groove = ((0, 2.4, 90), (3, 1.4, 74), (7, 2.6, 84), (11, 1.2, 76), (14, 1.6, 80))
    back = ((2, 1.6, 80), (5, 1.4, 74), (8, 3, 88), (13, 2.4, 80))
    end = comp(45, [BBMAJ9, A7, DM9, DM6], slow, slow, ((0, 15, 84),), ((0, 15, 76),))
    instrument = Instrument(
        "Piano", SYNTH, ELECTRIC_PIANO, swing=SWING, inserts={1: Effect("QUIB chorus.so", PIANO_CHORUS)},
        strip=Strip(level=level, insert_on=(1, 0), crossfade_a=1,
                    sends={REVERB: send_level(-14), DELAY: send_level(-20)}, **low_cut(140, -8)),
        patterns=numbered(*(pumped(pattern, level) for pattern in (
            comp(41, VERSE, groove, back), comp(42, TURN, groove, back), comp(43, BRIDGE, slow,
                                                                              back), comp(44, TURN, slow), end,
            comp(46, VERSE + TURN, ((2, 1.2, 78), (7, 2, 84), (14, 1.4, 74)), ((0, 1.2, 80), (5, 1.2, 74),
                           (10, 3, 84))),
            comp(47, LONG_BRIDGE, slow, back)))))
    instrument.presets = [instrument.snapshot(),
                          instrument.snapshot(selected=3, level=channel_level(-1), insert_on=(0, 0),
                                              sends={REVERB: send_level(-4)})]
    return instrument


TUNE = ((0, 2, 77, 1.4), (0, 4, 76, 1.4), (0, 6, 74, 1.4), (0, 8, 72, 1.4), (0, 10, 74, 4), (1, 2, 74, 1.4),
        (1, 4, 77, 1.4),
        (1, 6, 81, 5), (1, 14, 79, 1.4), (2, 0, 76, 3), (2, 4, 74, 1.4),
                           (2, 6, 72, 1.4), (2, 8, 69, 5), (3, 0, 72, 1.4),
        (3, 2, 76, 1.4), (3, 4, 79, 3), (3, 8, 77, 1.4), (3, 10, 76, 5))
AGAIN = ((0, 2, 74, 1.4), (0, 4, 77, 1.4), (0, 6, 81, 1.4), (0, 8, 82, 5), (0, 14, 81, 1.4), (1, 0, 79, 3),
         (1, 4, 76, 1.4), (1, 6, 74, 5),
         (2, 0, 73, 1.4), (2, 2, 76, 1.4), (2, 4, 79, 1.4), (2, 6, 82, 3),
                           (2, 10, 81, 1.4), (2, 12, 79, 1.4), (2, 14, 76, 1.4),
         (3, 0, 77, 3), (3, 4, 74, 1.4), (3, 6, 71, 1.4), (3, 8, 69, 7))


SOLO = ((0, 0, 74, 1), (0, 1, 77, 1), (0, 2, 81, 2.5), (0, 6, 79, 1), (0, 7, 77, 1), (0, 8, 76, 1.4), (0, 10, 74, 1.4),
        (0, 12, 72, 1), (0, 13, 74, 2.5), (1, 2, 74, 1), (1, 3, 77, 1), (1, 4, 82, 2.5), (1, 8, 81, 1), (1, 9, 79, 1),
        (1, 10, 77, 1.4), (1, 12, 74, 1), (1, 13, 77, 1), (1, 14, 81, 2), (2, 1, 82, 1), (2, 2, 81, 1), (2, 3, 79, 1),
        (2, 4, 76, 2.5), (2, 8, 74, 1), (2, 9, 76, 1), (2, 10, 79, 1), (2, 11, 82, 2), (2, 14, 81, 1.8),
        (3, 0, 84, 3), (3, 4, 81, 1), (3, 5, 79, 1), (3, 6, 76, 1), (3, 7, 72, 3.5), (3, 12, 69, 1), (3, 13, 72, 1),
        (3, 14, 76, 1), (3, 15, 79, 1), (4, 0, 81, 1.6), (4, 2, 77, 1), (4, 3, 81, 1), (4, 4, 86, 3.5), (4, 8, 84, 1),
        (4, 9, 82, 1), (4, 10, 81, 1.4), (4, 12, 77, 1.4), (4, 14, 74, 1.4), (5, 0, 76, 1), (5, 1, 79, 1),
        (5, 2, 82, 1), (5, 3, 86, 2.5), (5, 6, 88, 1.4), (5, 8, 86, 1), (5, 9, 82, 1), (5, 10, 79, 1), (5, 11, 76, 2.5),
        (5, 14, 79, 1.6), (6, 0, 82, 1.4), (6, 2, 81, 1), (6, 3, 79, 1), (6, 4, 76, 1), (6, 5, 73, 2.5), (6, 8, 76, 1),
        (6, 9, 79, 1), (6, 10, 82, 1), (6, 11, 85, 1), (6, 12, 88, 1.4), (6, 14, 85, 1.4), (7, 0, 86, 3.5),
        (7, 4, 83, 1), (7, 5, 81, 1), (7, 6, 77, 1.4), (7, 8, 74, 6))


def vibraphone():
    level = channel_level(6)
    end = melody(53, ((0, 2, 77, 3), (0, 6, 74, 3), (1, 2, 73, 3), (1, 6, 76, 3), (2, 0, 77, 8), (2, 8, 81, 8),
                      (3, 0, 86, 14)), 84)
    return Instrument(
        "Vibraphone", SYNTH, VIBES, swing=SWING, strip=Strip(level=level, pan=0.18, crossfade_b=1,
                                                             sends={REVERB: send_level(-12),
                                                                    DELAY: send_level(-16)}, **low_cut(250, -10)),
        patterns=numbered(pumped(melody(51, TUNE), level), pumped(melody(52, AGAIN), level), pumped(end, level),
                          pumped(melody(54, SOLO, 96), channel_level(6))),
        mix={"Send2 Level": throws(send_level(-16), send_level(-5), (19, 35, 43, 57))})


def flute():
    level = channel_level(-8)
    first = melody(61, ((0, 0, 74, 9), (0, 10, 77, 5), (1, 0, 76, 6), (1, 7, 74, 1.8), (1, 9, 76, 6), (2, 0, 79, 9),
                        (2, 10, 76, 5), (3, 0, 77, 12)), 86)
    second = melody(62, ((0, 0, 81, 7), (0, 8, 82, 7), (1, 0, 79, 10), (1, 12, 76, 3.5), (2, 0, 76, 6), (2, 6, 73, 3),
                         (2, 10, 79, 5), (3, 0, 74, 13)), 88)
    third = melody(63, ((0, 8, 81, 7), (1, 8, 79, 7), (2, 8, 82, 7), (3, 4, 81, 10)), 78)
    fourth = melody(64, ((0, 0, 82, 7), (0, 8, 81, 3.5), (0, 12, 79, 3.5), (1, 0, 76, 9), (1, 10, 79, 5), (2, 0, 81, 7),
                         (2, 8, 84, 7), (3, 0, 82, 5), (3, 6, 81, 9), (4, 0, 79, 7), (4, 8, 82, 7), (5, 0, 85, 9),
                         (5, 10, 81, 5.5)), 88)
    for pattern in (first, second, third, fourth):
        pattern.midi = {"Modulation Wheel": [(0, 0), (5, 10), (9, 50), (16, 0), (21, 10), (26, 50), (32, 0), (40, 50),
                                             (48, 10), (58, 60), (63, 0)]}
        pumped(pattern, level)
    return Instrument("Flute", SYNTH, WOOD_FLUTE,
                      strip=Strip(level=level, pan=-0.1, sends={REVERB: send_level(-8), DELAY: send_level(-14)},
                                  **low_cut(300)),
                      patterns=numbered(first, second, third, fourth))


def strings():
    level = channel_level(-1)
    up = lambda chords: [tuple(key + 12 for key in chord[1:]) for chord in chords]
    return Instrument(
        "Strings", SYNTH, SLOW_STRINGS, strip=Strip(level=level, sends={REVERB: send_level(-8)}, **low_cut(250)),
        patterns=numbered(*(pumped(held(70 + number, up(chords), 78), level)
                            for number, chords in enumerate((TURN, BRIDGE, TURN, VERSE, (BBMAJ9, A7, DM9, DM9),
                                                             LONG_BRIDGE)))),
        mix={"Level": bars((16, 30), (20, channel_level(-1)), (27, channel_level(0)), (28, channel_level(-3)),
                           (44, channel_level(0)), (50, channel_level(-3)), (58, channel_level(0)), (62, 20))},
        parameters={CUTOFF: sweep((16, 900), (20, 2200), (27.5, 5000), (28, 1800), (44, 2400), (49.5, 5000),
                           (50, 1800),
                                                                                                              (62,
                                                                                                               900))})


def arpeggio():
    return Instrument(
        "Marimba", SYNTH, MARIMBA, keys=[62, 65, 69], keyboard_position=60, swing=SWING,
        arpeggiator=Arpeggiator(on=1, mode=3, ext=1, velocity=1.8, interval=12, gate=1, tempo=1),
        strip=Strip(level=channel_level(4), sends={REVERB: send_level(-10), DELAY: send_level(-12)}, **low_cut(300)),
        patterns=numbered(*(Pattern(steps, mix={"Pan": [(0, -0.6), (steps / 2, 0.6), (steps - 0.5, -0.6)]})
                            for steps in (PHRASE, 6 * BAR))),
        mix={"Level": bars((0, channel_level(3)), (7, channel_level(3)), (8, 0), (20, channel_level(0)),
                           (27.9, channel_level(2)),
                           (28, 0), (44, channel_level(-2)), (49.9, channel_level(1)), (50, 0), (58, channel_level(-1)),
                           (60.5, 0))})


def song():
    made = ((beat(), BEAT_ROW), (brushes(), BRUSH_ROW), (loops(), LOOP_ROW), (low(), BASS_ROW), (piano(), PIANO_ROW),
            (vibraphone(), VIBES_ROW), (flute(), FLUTE_ROW), (strings(), STRING_ROW), (arpeggio(), ARP_ROW))
    return Project(
        tempo=100, steps=BARS * BAR, loop=(0, 8 * BAR, 20 * BAR),
        # The last phrase slows down; the crossfader leans to the piano, then to the vibraphone.
        master={"Tempo": bars((0, 100), (59, 100), (60.5, 92), (61.8, 72)),
                "Crossfader": bars((0, 30), (12, 64), (20, 50), (28, 70), (36, 90), (44, 50), (50, 64), (62, 64))},
        inserts=master(3.7), instruments=[arrange(instrument, row, BARS) for instrument, row in made],
        effects={REVERB: Effect("QUIB reverb.so", CONCERT_HALL), DELAY: Effect("QUIB delay.so", WORN_TAPE),
                 CHAMBER: Effect("QUIB reverb.so", SMALL_ROOM)})


if __name__ == "__main__":
    sys.stdout.buffer.write(song().text().encode("ascii"))
