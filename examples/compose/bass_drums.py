#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Bass & Drums: fast broken beats over two basses in F minor, 76 bars at 172 beats per minute.

    python3 examples/compose/bass_drums.py > examples/BassDrums.prg

Bars 0 intro, 16 first drop of twenty bars, 36 break, 46 two bars of silence and a fill, 48 second drop on a riff
and a beat of its own in three times eight bars, 72 end. It shows a broken beat in many variations,
the drum machine's own sends, a crushed parallel insert, two basses that the crossfader throws to and
fro within a bar, and kits that change with the program.
"""
import sys

from house_parts import (BAR, CLOSED_HAT, CRASH, HIGH_TOM, KICK, LOW_TOM, MID_TOM, OPEN_HAT, PHRASE, RIDE, SHAKER,
                         SNARE,
                         TAMBOURINE, Player)
from quibproject import Arpeggiator, Band, Effect, Instrument, Pattern, Project, Strip, channel_level, send_level
from songkit import (CUTOFF, KIT_VOLUME, STEREO_WIDTH, arrange, bars, bass, comp, drums, held, hold, looped, low_cut,
                     master, melody,
                     numbered, pumped, roll, sweep, throws, volume)

BARS = 76
SYNTH, DRUMS, LOOPS = "QUIB synth.so", "QUIB drums.so", "QUIB Loops.so"
REVERB, DELAY, CHAMBER = 1, 2, 3
# Programs.
REESE_BASS, GLASS_PAD, ELECTRIC_PIANO, DEEP_SINE = 2, 12, 15, 24
GROWL, WHISTLE, KOTO_PLUCK, DOWN_LIFTER = 26, 36, 54, 63
BREAK_ROOM, GARAGE_BOX, VOCAL_HALL, DRUM_CHAMBER, DOTTED_EIGHTH, PARALLEL_CRUSH, BASS_SWEEP = 21, 23, 4, 3, 0, 5, 6
BREAK_LOOP = 46
SNARE_SEND, HAT_SEND = 1 * 8 + 7, 5 * 8 + 7  # of the kit, to the shared effects
TO_CHAMBER = CHAMBER / 4
LOOP_LOW_CUT = 9

FM9, DBMAJ9, EBSUS, CM7 = (63, 67, 68, 72), (63, 65, 68, 72), (61, 63, 68, 70), (63, 67, 70, 72)
AB6, BBM9, C7 = (63, 65, 68, 72), (61, 65, 68, 72), (64, 67, 70, 73)
VERSE, VERSE_ROOTS = (FM9, DBMAJ9, EBSUS, CM7), (41, 37, 39, 36)
LIFT, LIFT_ROOTS = (BBM9, DBMAJ9, AB6, C7), (34, 37, 44, 36)
RISE, RISE_ROOTS = (BBM9, DBMAJ9, AB6, CM7, DBMAJ9, C7), (34, 37, 44, 36, 37, 36)
# Of the second drop: two bars a chord, then one.
DROP, DROP_ROOTS = (FM9, FM9, AB6, EBSUS, DBMAJ9, DBMAJ9, CM7, C7), (41, 41, 44, 39, 37, 37, 36, 36)

# phrase at bar   0  4  8  12   16 20 24 28 32   36 40   46   48 56 64   72
BREAK_ROW = "      -  -  f  g  | a  b  a  c  d  | -  l6 | m2 | i8 j8 k8 | h"
TOP_ROW = "        -  a  a  -  | b  b  b  b  b  | a  d6 | -2 | c8 c8 c8 | a"
LOOP_ROW = "       -  -  -  -  | -  -  a  a  a  | -  -6 | -2 | -8 a8 a8 | -"
REESE_ROW = "      -  -  -  -  | a  b  a  b  c  | -  g6 | -2 | f8 f8 f8 | e"
GROWL_ROW = "      -  -  -  -  | -  -  a  b  a  | -  -6 | -2 | d8 e8 d8 | -"
SUB_ROW = "        -  -  c  c  | a  a  a  b  a  | c  e6 | -2 | f8 f8 f8 | d"
KEYS_ROW = "       a  a  a  b  | -  -  c  d  -  | a  f6 | -2 | h8 g8 g8 | e"
PAD_ROW = "        a  a  a  b  | -  a  -  b  a  | a  d6 | -2 | e8 e8 e8 | c"
WHISTLE_ROW = "    -  -  a  -  | -  -  -  b  -  | a  -6 | d2 | -8 e8 c8 | -"
ARP_ROW = "        a  a  a  a  | -  -  -  -  -  | -  b6 | -2 | -8 -8 c8 | a"
FALL_ROW = "       -  -  -  -  | a  -  -  -  -  | a  -6 | -2 | a  -4 a -4 a -4 | a"


def breaks():
    one = {KICK: "9.........7.....", SNARE: "....9..3.4..9...", CLOSED_HAT: "7.5.7.5.7.5.7.5."}
    two = {KICK: "9.......3.7...5.", SNARE: "....9..4.3..9..4", CLOSED_HAT: "7.5.7.5.7.5.7.5."}
    three = {KICK: "9.8.......7.....", SNARE: "....9..3.4....9.", OPEN_HAT: "..........6.....",
             CLOSED_HAT: "7.5.7.5.7...7.5."}
    four = {KICK: "9.....7...7..6..", SNARE: "....9.3.3...9.45", CLOSED_HAT: "7.5.7.5.7.5.7.5."}
    toms = {KICK: "9.........7.....", SNARE: "....9...........", HIGH_TOM: "........77......",
            MID_TOM: "..........77....", LOW_TOM: "............8888"}
    stutter = {KICK: "9..9..9.........", SNARE: "........4.5.6789"}
    half = {KICK: "9...............", SNARE: "........9.......", CLOSED_HAT: "5...4...5...4..."}
    ride = {RIDE: "7...6...7...6..."}
    crashed = drums(5, one | ride, two | ride, three | ride, four | ride)
    crashed.add(0, CRASH, 8, 96)
    rise = Player(7)
    roll(rise, 0, 32, SNARE, 28, 58, 4)
    roll(rise, 32, 16, SNARE, 54, 80, 2)
    roll(rise, 48, 12, SNARE, 74, 112)
    # The beat of the second drop: half the pace at first, then kicks that run ahead of the snares.
    step = {KICK: "9..........5....", SNARE: "........9.....3.", CLOSED_HAT: "7545754575457545"}
    lazy = {KICK: "9.....7...7.....", SNARE: "........9..3..4.", CLOSED_HAT: "7545754575457.45",
            OPEN_HAT: ".............6.."}
    run = {KICK: "9.9.......97....", SNARE: "....9..4.4..9..4", RIDE: "7.6.7.6.7.6.7.6."}
    late = {KICK: "9.9.......9.....", SNARE: "....9..4.4....9.", RIDE: "7.6.7.6.7.6.7.6."}
    ahead = {KICK: "..9.9.....9..6..", SNARE: ".4..9..4.4....9.", RIDE: "7.6.7.6.7.6.7.6."}
    halfstep = drums(9, step, lazy, step, lazy, step, lazy, step, stutter, bars=8)
    running = drums(10, run, run, late, ahead, run, four | ride, late, toms, bars=8)
    last = drums(11, run, ahead, late, ahead, run, late, ahead, stutter, bars=8)
    for pattern in (halfstep, running, last):
        pattern.add(0, CRASH, 8, 100)
    last.add(4 * BAR, CRASH, 8, 90)
    climb = Player(12, 6 * BAR)
    roll(climb, 0, 48, SNARE, 26, 52, 4)
    roll(climb, 48, 32, SNARE, 50, 80, 2)
    roll(climb, 80, 14, SNARE, 74, 112)
    pickup = Player(13, 2 * BAR)
    roll(pickup, 24, 8, SNARE, 60, 116)
    pickup.play(20, KICK, 1, 110)
    pickup.play(22, LOW_TOM, 1, 100)
    patterns = numbered(drums(1, one, two), drums(2, one, two, three, four), drums(3, one, three, two, toms),
                        drums(4, two, one, four, stutter),
                        crashed, drums(6, half), rise.pattern, drums(8, one, three, half,
                                                                     {KICK: "9...............",
                                                                      SNARE: "....7..........."}),
                        halfstep, running, last, climb.pattern, pickup.pattern)
    hold(patterns, {KIT_VOLUME: volume(1), SNARE_SEND: TO_CHAMBER, HAT_SEND: TO_CHAMBER})
    instrument = Instrument(
        "Breaks", DRUMS, BREAK_ROOM, inserts={1: Effect("QUIB compressor.so", PARALLEL_CRUSH)},
        strip=Strip(level=channel_level(-6), insert_on=(1, 0), sends={CHAMBER: send_level(-20)},
                    eq_on=1, eq=(Band(70, -1), Band(450, -2), Band(7000, 6))), patterns=patterns)
    # A second preset with the crushed copy off and more room, for the break.
    instrument.presets = [instrument.snapshot(),
                          instrument.snapshot(selected=5, insert_on=(0, 0), sends={CHAMBER: send_level(-6)})]
    return instrument


def top():
    soft = {SHAKER: "6.4.6.4.6.4.6.46"}
    push = {SHAKER: "7.4.7.447.4.7.46", TAMBOURINE: "....5.......5...", OPEN_HAT: "......5........."}
    full = {SHAKER: "7.4.7.447.4.7.46", TAMBOURINE: "....6.......6...", RIDE: "..6...6...6...6."}
    return Instrument(
        "Tops", DRUMS, GARAGE_BOX, swing=0.1,
        strip=Strip(level=channel_level(5), pan=0.1, sends={CHAMBER: send_level(-20)}, **low_cut(350, high=Band(8000,
                                                                                                                4))),
        patterns=hold(numbered(drums(11, soft), drums(12, push), drums(13, full), drums(14, soft, bars=6)),
                      {KIT_VOLUME: volume(0)}))


def loop():
    return Instrument(
        "Break loop", LOOPS, strip=Strip(level=channel_level(-3), pan=-0.15, sends={CHAMBER: send_level(-18)},
                                         **low_cut(300)),
        patterns=hold({0: looped(BREAK_LOOP)}, {LOOP_LOW_CUT: 0.6}))


def reese():
    level = channel_level(1.5)
    roll_ = ((0, 0, 2.6, 106), (3, 0, 2.4, 96), (6, 0, 3.4, 100), (10, 12, 1.4, 88), (12, 0, 3.6, 102))
    step = ((0, 0, 5.4, 106), (6, 3, 1.6, 92), (8, 5, 1.6, 94), (10, 0, 3.4, 100), (14, -2, 1.6, 92))
    long = ((0, 0, 15, 96),)
    gallop = ((0, 0, 1.4, 108), (3, 0, 1.4, 96), (6, 12, 0.8, 90), (8, 0, 2.4, 104), (11, 3, 1.4, 96),
                           (14, -2, 1.8, 92))
    turn = ((0, 0, 2.6, 106), (4, 12, 0.8, 92), (6, 10, 0.8, 90), (8, 7, 1.4, 96), (11, 5, 1.4, 94), (14, 3, 1.8, 92))
    patterns = numbered(bass(31, VERSE_ROOTS, roll_, step), bass(32, LIFT_ROOTS, roll_, step),
                        bass(33, VERSE_ROOTS, step, roll_),
                        bass(34, LIFT_ROOTS, long), bass(35, (41, 41, 29, 29), step, long),
                        bass(36, DROP_ROOTS, gallop, gallop, gallop, turn), bass(37, RISE_ROOTS, long))
    for number, pattern in patterns.items():
        pumped(pattern, level)
        bright = 0.16 if number == 5 else 0.08
        pattern.plugin = {CUTOFF: [point for bar in range(pattern.steps // BAR) for point in
                                   ((bar * BAR, 0.5 + bright), (bar * BAR + 6, 0.66 + bright),
                                    (bar * BAR + 10, 0.54 + bright), (bar * BAR + 15.5, 0.7 + bright))]}
    return Instrument(
        "Reese", SYNTH, REESE_BASS, strip=Strip(level=level, crossfade_a=1, sends={REVERB: send_level(-26)},
                                                **low_cut(110, -14, high=Band(3000, 4))),
        patterns=patterns, parameters={STEREO_WIDTH: bars((0, 0.4))})


def growl():
    level = channel_level(5)
    answer = ((1, 12, 0.8, 100), (3, 0, 1.6, 96), (6, 12, 0.8, 96), (7, 10, 0.8, 92), (8, 0, 3.4, 104),
              (13, 7, 0.8, 90), (14, 5, 1.4, 94))
    talk = ((0, 0, 1.6, 104), (2, 0, 0.8, 90), (4, 12, 1.6, 98), (7, 0, 2.6, 96), (11, 3, 0.8, 90), (12, 5, 3.4, 100))
    shout = ((0, 0, 0.8, 108), (2, 12, 0.8, 100), (4, 12, 2.6, 104), (8, 0, 0.8, 96), (10, 3, 2.6, 100),
                           (14, 12, 1.6, 96))
    echo = ((2, 12, 0.8, 96), (3, 10, 0.8, 92), (6, 7, 3.4, 104), (11, 12, 0.8, 92), (12, 15, 3.4, 100))
    return Instrument(
        "Growl", SYNTH, GROWL, inserts={1: Effect("QUIB flanger.so", BASS_SWEEP)},
        strip=Strip(level=level, crossfade_b=1, insert_on=(1, 0), sends={DELAY: send_level(-20)},
                                     **low_cut(130, -14, high=Band(3000, 4))),
        patterns=numbered(*(pumped(bass(40 + number, roots, *grooves), level)
                            for number, (roots,
                                         grooves) in enumerate(((VERSE_ROOTS, (answer, talk)),
                                                                (LIFT_ROOTS, (answer, talk)),
                                                                       (VERSE_ROOTS, (talk, answer)),
                                                                (DROP_ROOTS, (shout, echo, shout, talk)),
                                                                (DROP_ROOTS, (echo, shout, answer, echo)))))),
        parameters={CUTOFF: sweep((24, 300), (35, 900), (48, 1300), (56, 900), (72, 2400)),
                    STEREO_WIDTH: bars((0, 0.4))})


def sub():
    level = channel_level(-6)
    groove = ((0, 0, 2.6, 104), (3, 0, 2.4, 96), (6, 0, 3.4, 100), (10, 0, 1.6, 96), (12, 0, 3.6, 100))
    long = ((0, 0, 15, 96),)
    roots = lambda keys: tuple(key if key > 35 else key + 12 for key in keys)
    return Instrument(
        "Sub", SYNTH, DEEP_SINE, strip=Strip(level=level, eq_on=1, eq=(Band(50, 2), Band(200, -6), Band(900, -12))),
        patterns=numbered(*(pumped(pattern, level) for pattern in (
            bass(51, roots(VERSE_ROOTS), groove), bass(52, roots(LIFT_ROOTS),
                                                       groove), bass(53, roots(VERSE_ROOTS), long),
            bass(54, (41, 41, 41, 41), long), bass(55, roots(RISE_ROOTS), long),
            bass(56, roots(DROP_ROOTS), ((0, 0, 1.4, 104), (3, 0, 4.4, 100), (8, 0, 2.4, 102), (11, 0, 2.6, 96)))))))


def keys():
    level = channel_level(2)
    dreamy = ((0, 7, 84), (8, 3, 72), (11, 4.5, 78))
    off = ((3, 1.4, 88), (6, 2.6, 92), (11, 1.4, 84), (14, 1.6, 86))
    last = comp(65, [FM9, DBMAJ9, FM9, FM9], dreamy, dreamy, ((0, 15, 84),), ((0, 12, 70),))
    return Instrument(
        "Keys", SYNTH, ELECTRIC_PIANO, strip=Strip(level=level, pan=-0.12,
                                                   sends={REVERB: send_level(-9),
                                                          DELAY: send_level(-14)}, **low_cut(200)),
        patterns=numbered(*(pumped(pattern, level) for pattern in (
            comp(61, VERSE, dreamy), comp(62, LIFT, dreamy), comp(63, VERSE, off), comp(64, LIFT, off), last,
            comp(66, RISE, dreamy), comp(67, DROP, off, ((2, 1.4, 86), (5, 1.4, 84), (8, 2.6, 92), (13, 2.4, 88))),
            comp(68, DROP, ((0, 1.2, 98), (6, 1.2, 92)), ((3, 1.2, 92), (14, 1.6, 96)))))),
        mix={"Send2 Level": throws(send_level(-14), send_level(-4), (15, 31, 45, 63, 71))})


def pad():
    level = channel_level(-1)
    open_ = [tuple(key + (12 if voice % 2 else 0) for voice, key in enumerate(chord)) for chord in VERSE]
    lift = [tuple(key + (12 if voice % 2 else 0) for voice, key in enumerate(chord)) for chord in LIFT]
    rise = [tuple(key + (12 if voice % 2 else 0) for voice, key in enumerate(chord)) for chord in RISE]
    drop = [tuple(key + (12 if voice % 2 else 0) for voice, key in enumerate(chord)) for chord in DROP]
    return Instrument(
        "Pad", SYNTH, GLASS_PAD, strip=Strip(level=level, sends={REVERB: send_level(-6)}, **low_cut(280)),
        patterns=numbered(pumped(held(71, open_, 80), level), pumped(held(72, lift, 80), level),
                          pumped(held(73, [open_[0]] * 4, 76), level), pumped(held(74, rise, 80), level),
                          pumped(held(75, drop, 80), level)),
        mix={"Level": bars((0, 40), (6, channel_level(-1)), (16, channel_level(-5)), (36, channel_level(0)),
                           (45.9, channel_level(1)), (48, channel_level(-3)), (56, channel_level(-4)),
                           (72, channel_level(-1)), (76, 20))})


CALL = ((0, 0, 84, 3.6), (0, 4, 80, 1.6), (0, 6, 79, 5), (0, 12, 75, 3.6), (1, 0, 77, 7), (1, 8, 80, 1.6),
        (1, 10, 79, 1.6), (1, 12, 75, 3.6),
        (2, 0, 80, 3.6), (2, 4, 82, 3.6), (2, 8, 84, 7), (3, 0, 82, 3.6), (3, 4, 79, 3.6), (3, 8, 75, 7))
THEME = ((0, 0, 84, 5), (0, 6, 87, 1.6), (0, 8, 84, 3.6), (0, 12, 80, 3.6), (1, 0, 79, 5), (1, 6, 80, 1.6),
                           (1, 8, 84, 7),
         (2, 0, 87, 5), (2, 6, 84, 1.6), (2, 8, 80, 3.6), (2, 12, 84, 3.6), (3, 0, 82, 5), (3, 6, 80, 1.6),
                           (3, 8, 79, 7),
         (4, 0, 80, 5), (4, 6, 84, 1.6), (4, 8, 87, 3.6), (4, 12, 89, 3.6), (5, 0, 87, 5), (5, 6, 84, 1.6),
         (5, 8, 80, 7), (6, 0, 79, 5), (6, 6, 82, 1.6), (6, 8, 87, 3.6), (6, 12, 84, 3.6), (7, 0, 88, 7),
         (7, 8, 85, 3.6), (7, 12, 82, 3.6))
SUMMIT = tuple((bar, step, key + (12 if bar in (3, 7) and key < 82 else 0), length) for bar, step, key,
               length in THEME[:14]) + (
    (4, 0, 92, 5), (4, 6, 89, 1.6), (4, 8, 87, 7), (5, 0, 84, 3.6), (5, 4, 87, 3.6), (5, 8, 89, 7), (6, 0, 91, 7),
    (6, 8, 87, 7), (7, 0, 88, 7), (7, 8, 91, 7))


def whistle():
    level = channel_level(-12)
    far = melody(81, ((0, 0, 84, 10), (1, 0, 80, 10), (2, 0, 82, 10), (3, 0, 79, 10)), 74)
    patterns = [far, melody(82, CALL, 84), melody(83, SUMMIT, 88), melody(
        84, ((0, 12, 79, 3.6), (1, 0, 80, 3.6), (1, 4, 82, 3.6), (1, 8, 85, 3.6), (1, 12, 88, 3.8)), 88, 2),
                melody(85, THEME, 86)]
    for pattern in patterns:
        pattern.midi = {"Pitch Bend": [(0, 56), (0.8, 64), (31.5, 64), (32, 56), (32.8, 64)],
                        "Modulation Wheel": [(0, 0), (9, 40), (16, 0), (41, 50), (48, 0)]}
        pumped(pattern, level)
    patterns[2].mix["Level"] = [(0, channel_level(-14.5))]
    return Instrument("Whistle", SYNTH, WHISTLE,
                      strip=Strip(level=level, sends={REVERB: send_level(-7), DELAY: send_level(-10)}, **low_cut(400)),
                      patterns=numbered(*patterns))


def arpeggio():
    return Instrument(
        "Koto", SYNTH, KOTO_PLUCK, keys=[65, 68, 72, 75], keyboard_position=60,
        arpeggiator=Arpeggiator(on=1, mode=2, hole=1, ext=1, velocity=1.5, interval=12, gate=1),
        strip=Strip(level=channel_level(2), pan=0.1, sends={REVERB: send_level(-10), DELAY: send_level(-10)},
                    **low_cut(350)),
        patterns=numbered(*(Pattern(steps, mix={"Pan": [(0, -0.5), (steps / 2, 0.5), (steps - 0.5, -0.5)]})
                            for steps in (PHRASE, 6 * BAR, 8 * BAR))),
        mix={"Level": bars((0, 20), (4, channel_level(1)), (15.8, channel_level(4)), (15.9, 0), (39.9, 0),
                           (40, channel_level(-2)), (45.8, channel_level(4)), (45.9, 0), (63.9, 0),
                           (64, channel_level(-1)), (72, channel_level(2)), (74, channel_level(-3)), (75, 0))},
        parameters={CUTOFF: sweep((0, 500), (15, 2500), (40, 600), (45.5, 3500), (64, 1800), (76, 600))})


def fall():
    pattern = Pattern(PHRASE)
    for key in (53, 60):
        pattern.add(0, key, 28, 94)
    return Instrument("Fall", SYNTH, DOWN_LIFTER,
                      strip=Strip(level=channel_level(-4), sends={REVERB: send_level(-6)}, **low_cut(300)),
                      patterns={0: pattern})


def thrown():
    """The crossfader hands over from bass to bass in the drops: calmly at first, ever faster towards the end of a
    section, and by other lengths in each."""
    points, hands = [(0, 0), (24, 0)], (20, 107)
    for start, lengths in ((24, (2, 2, 1, 1, 1, 1, 1, 1, 0.5, 0.5, 0.5, 0.5)), (48,
                           (1, 1, 1.5, 0.5, 1, 1, 1, 0.5, 0.5)),
                           (56, (1.5, 0.5, 1.5, 0.5, 0.75, 0.75, 0.5, 1, 1)),
                           (64, (0.5, 1, 0.5, 1, 1, 0.5, 0.5, 1, 0.25, 0.25, 0.25, 0.25, 0.5, 0.5))):
        for turn, length in enumerate(lengths):
            points += [(start, hands[turn % 2]), (start + length - 0.05, hands[turn % 2])]
            start += length
    return bars(*points, (72, 40))


def song():
    made = ((breaks(), BREAK_ROW), (top(), TOP_ROW), (loop(), LOOP_ROW), (reese(), REESE_ROW), (growl(), GROWL_ROW),
            (sub(), SUB_ROW), (keys(), KEYS_ROW), (pad(), PAD_ROW), (whistle(), WHISTLE_ROW), (arpeggio(), ARP_ROW),
            (fall(), FALL_ROW))
    return Project(
        tempo=172, steps=BARS * BAR, loop=(0, 16 * BAR, 36 * BAR),
        master={"Crossfader": thrown(), "Level": bars((0, 127), (74, 127), (76, 80))},
        inserts=master(1.6), instruments=[arrange(instrument, row, BARS) for instrument, row in made],
        effects={REVERB: Effect("QUIB reverb.so", VOCAL_HALL), DELAY: Effect("QUIB delay.so", DOTTED_EIGHTH),
                 CHAMBER: Effect("QUIB reverb.so", DRUM_CHAMBER)})


if __name__ == "__main__":
    sys.stdout.buffer.write(song().text().encode("ascii"))
