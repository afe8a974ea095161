#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""House Ya: a bright disco house track in A minor, 66 bars at 126 beats per minute.

    python3 examples/compose/house_ya.py > examples/HouseYa.prg

Bars 0 intro that climbs, 16 groove, 32 break, 44 a bar of stops, 45 theme, 61 outro of five bars. It shows loops
that follow the tempo, a filter swept over whole sections, a flanger in time with the song, and a hand-over by the
crossfader.
"""
import sys

from house_parts import (BAR, CLAP, CRASH, HIGH_TOM, KICK, LOW_TOM, MID_TOM, OPEN_HAT, PHRASE, RIDE, SNARE, TAMBOURINE,
                         Player)
from quibproject import Arpeggiator, Band, Effect, Instrument, Pattern, Project, Strip, channel_level, send_level
from songkit import (BEND_RANGE, CUTOFF, KIT_VOLUME, NOISE_LEVEL, OSC1_LEVEL, OSC2_LEVEL, arrange, bars, bass, comp,
                     drums, held, hold, looped, low_cut,
                     master, melody, numbered, pumped, rise, roll, sweep, throws, volume)

BARS = 66
SYNTH, DRUMS, LOOPS = "QUIB synth.so", "QUIB drums.so", "QUIB Loops.so"
REVERB, DELAY, FLANGER, CHAMBER = 1, 2, 3, 4
# Programs.
SWEEP_PAD, HOUSE_ORGAN, HOUSE_STAB, ROUND_PICK, TALKING_LEAD = 13, 14, 18, 25, 35
TRANCE_PLUCK, OCTAVE_STRINGS, DOWN_LIFTER = 55, 58, 63
HOUSE_CLASSIC, WIDE_HOUSE, CONCERT_HALL, DRUM_CHAMBER, PING_PONG, FOUR_BARS = 0, 19, 0, 3, 1, 1
HATS_LOOP, SHAKER_LOOP = 37, 45

# Voices of each chord, from one to the next by steps; the root of the bass.
DM9, G13, CM9, AM9 = (65, 69, 72, 76), (65, 69, 71, 76), (64, 67, 71, 74), (64, 67, 71, 72)
FM9, EM7, E7 = (64, 67, 69, 72), (62, 67, 71, 74), (62, 68, 71, 74)
VERSE, VERSE_ROOTS = (AM9, DM9, G13, CM9), (33, 38, 43, 36)
LIFT, LIFT_ROOTS = (FM9, EM7, DM9, E7), (41, 40, 38, 40)
CLIMB, CLIMB_ROOTS = (DM9, EM7, FM9, E7), (38, 40, 41, 44)

SWING = 0.14
# phrase at bar  0  4  8  12   16 20 24 28   32 36 40   44   45 49 53 57   61
KICK_ROW = "     -  a  a  c  | a  b  a  b  | -  -  d  | f1 | a  b  a  b  | e5"
HATS_ROW = "     a  a  a  a  | a  a  a  a  | b  b  -  | -1 | a  a  a  a  | c5"
TOP_ROW = "      -  -  a  d  | a  b  a  b  | -  c  d  | g1 | e  f  e  f  | h5"
BASS_ROW = "     -  -  f  g  | a  c  b  c  | -  -  d  | h1 | b  c  b  c  | e5"
STAB_ROW = "     c  d  a  e  | a  b  a  b  | a  b  b  | f1 | a  b  a  b  | g5"
ORGAN_ROW = "    -  -  -  -  | -  -  a  b  | a  b  b  | -1 | c  d  c  d  | -5"
STRING_ROW = "   -  -  -  e  | -  -  -  a  | b  c  a  | -1 | b  c  b  c  | d5"
LEAD_ROW = "     -  -  -  -  | -  -  -  -  | -  a  -  | e1 | b  c  b  d  | -5"
ARP_ROW = "      -  -  -  a  | -  -  -  -  | a  a  a  | -1 | -  a  -  a  | -5"
FALL_ROW = "     -  -  -  -  | a  -  -  -  | a  -  -  | -1 | a  -  -  -  | a  -1"
RISE_ROW = "     -  -  -  a  | -  -  -  -  | -  -  a  | -1 | -  -  -  -  | -5"


def kick():
    plain = {KICK: "9...8...9...8..."}
    fill = {KICK: "9...8...9...8.6."}
    stop = {KICK: "9...8...9......."}
    riser = drums(4, {KICK: "7...7...7...7..."}, {KICK: "7...7...7...7..."}, {KICK: "7.7.7.7.7.7.7.7."}, {})
    return Instrument(
        "Kick", DRUMS, HOUSE_CLASSIC, strip=Strip(level=channel_level(-6), eq_on=1,
                                                  eq=(Band(58, -1), Band(350, -3), Band(4000, 3))),
        patterns=hold(numbered(drums(1, plain), drums(2, plain, plain, plain, fill),
                               drums(3, plain, plain, plain, stop),
                               riser, drums(5, plain, plain, plain, stop, {KICK: "9..............."}, bars=5),
                               drums(6, {KICK: "9..9..9........."})), {KIT_VOLUME: volume(0)}),
        # From a thin tap to the full drum, phrase by phrase.
        mix={"Level": bars((0, channel_level(-11)), (8, channel_level(-9)), (12, channel_level(-7.5)),
                           (15.9, channel_level(-7)), (16, channel_level(-6))),
             "LP Gain": bars((0, -0.6), (8, -0.4), (12, -0.3), (15.9, -0.2), (16, -0.05), (66, -0.05))})


def hats():
    """The shaker and hat loops, made at 124 and played at the song's tempo."""
    return Instrument(
        "Hat loops", LOOPS, strip=Strip(level=channel_level(-9), pan=0.1, sends={CHAMBER: send_level(-22)},
                                        **low_cut(300)),
        patterns=numbered(looped(HATS_LOOP, SHAKER_LOOP), looped(SHAKER_LOOP, every=1),
                          looped(HATS_LOOP, SHAKER_LOOP, bars=5)),
        mix={"Level": bars((0, channel_level(-12)), (4, channel_level(-10)), (8, channel_level(-9)),
                           (12, channel_level(-8))),
             "HP Gain": bars((0, -0.4), (12, 0.15), (32, -0.3), (40, 0.15))})


def top():
    clap = {CLAP: "....8.......8...", OPEN_HAT: "..7...7...7...7."}
    busy = {CLAP: "....8.......8..4", OPEN_HAT: "..7...7...7...7.", TAMBOURINE: "....5.......5..."}
    rolled = drums(13, busy, busy, busy, {CLAP: "....8.......", OPEN_HAT: "..7...7..."})
    for step, key in enumerate((HIGH_TOM, HIGH_TOM, MID_TOM, MID_TOM, LOW_TOM, LOW_TOM)):
        rolled.add(3 * BAR + 10 + step, key, 0.5, 70 + 6 * step)
    player = Player(15)
    roll(player, 0, 32, SNARE, 30, 60, 4)
    roll(player, 32, 16, SNARE, 56, 80, 2)
    roll(player, 48, 14, SNARE, 70, 112)
    build = player.pattern
    crashed = drums(16, busy | {RIDE: "6.4.6.4.6.4.6.4."})
    crashed.add(0, CRASH, 8, 84)
    ridden = drums(17, busy | {RIDE: "6.4.6.4.6.4.6.4."}, busy | {RIDE: "6.4.6.4.6.4.6.4.", SNARE: "...........3..5."})
    return Instrument(
        "Claps & Ride", DRUMS, WIDE_HOUSE, swing=SWING, step_mode=1,
        strip=Strip(level=channel_level(-2), sends={CHAMBER: send_level(-18)}, **low_cut(180, high=Band(7000, 3))),
        patterns=hold(numbered(drums(11, clap), rolled, drums(12, {CLAP: "............7..."}), build, crashed, ridden,
                               drums(18, {CLAP: "8..8..8.......44"}),
                               drums(19, clap, clap, clap, {CLAP: "....8......5678."}, {CRASH: "6..............."},
                                     bars=5)),
                      {KIT_VOLUME: volume(0)}))


def low():
    level, depth = channel_level(4.5), 18
    walk = ((0, 0, 1.6, 108), (3, 0, 0.7, 84), (4, 12, 0.8, 92), (7, 0, 0.8, 90), (10, 12, 0.8, 94), (12, 7, 1.4, 90),
            (14, 10, 1.4, 92))
    answer = ((0, 0, 1.6, 106), (3, 12, 0.7, 88), (6, 0, 0.8, 96), (8, 7, 0.8, 86), (10, 12, 1.4, 96), (13, 0, 0.7, 80),
              (14, -2, 1.4, 92))
    calm = ((0, 0, 2.6, 104), (6, 0, 1.4, 92), (11, 12, 0.8, 88))
    climb = tuple((step, 12 if step % 8 == 6 else 0, 1.4, 84 + step) for step in range(0, BAR, 2))
    last = bass(35, (33, 33, 33, 33, 33), calm, calm, calm, calm, ((0, 0, 10, 104),))
    return Instrument(
        "Bass", SYNTH, ROUND_PICK, swing=SWING, strip=Strip(level=level, eq_on=1,
                                                            eq=(Band(60, -4), Band(220, 0), Band(1000, 5))),
        patterns=numbered(pumped(bass(31, VERSE_ROOTS, calm), level, depth),
                          pumped(bass(32, VERSE_ROOTS, walk, answer), level, depth),
                          pumped(bass(33, LIFT_ROOTS, walk, answer), level,
                                 depth), pumped(bass(34, LIFT_ROOTS, calm), level),
                          pumped(last, level, depth), pumped(bass(36, VERSE_ROOTS, calm), channel_level(1), depth),
                          pumped(bass(37, CLIMB_ROOTS, climb), channel_level(3), depth),
                          pumped(bass(38, (40, 40, 40, 40), ((0, 0, 2, 108), (3, 0, 2, 104), (6, 0, 2, 108))), level)),
        parameters={CUTOFF: sweep((8, 260), (16, 900), (24, 1200), (32, 900), (45, 1200), (61, 900), (66, 300))})


def stabs():
    level = channel_level(4.5)
    funky = ((0, 0.8, 96), (3, 0.8, 86), (6, 1.4, 100), (9, 0.7, 82), (11, 0.8, 90), (14, 1.4, 96))
    reply = ((2, 0.8, 90), (3, 0.8, 82), (6, 1.4, 98), (10, 0.8, 92), (13, 0.7, 84), (14, 1.4, 96))
    lower = [tuple(key - 12 for key in chord) for chord in VERSE]
    half = [tuple(key - 12 if voice > 1 else key for voice, key in enumerate(chord)) for chord in VERSE]
    higher = [(chord[1], chord[2], chord[3], chord[0] + 12) for chord in CLIMB]
    stops = ((0, 1.6, 100), (3, 1.6, 98), (6, 1.6, 104))
    instrument = Instrument(
        "Stabs", SYNTH, HOUSE_STAB, swing=SWING,
        strip=Strip(level=level, crossfade_a=1, sends={REVERB: send_level(-16), FLANGER: send_level(-3)},
                    **low_cut(200)),
        patterns=numbered(pumped(comp(41, VERSE, funky, reply), level, 16),
                          pumped(comp(42, LIFT, funky, reply), level, 16),
                          # The intro climbs by inversions: an octave below, half of it, in place, above.
                          pumped(comp(43, lower, funky, reply), channel_level(2), 6),
                          pumped(comp(44, half, funky, reply), channel_level(3), 12),
                          pumped(comp(45, higher, funky, reply), level, 16), pumped(comp(46, [E7] * 4, stops), level),
                          pumped(comp(47, VERSE + (AM9,), funky, reply), level, 16)),
        mix={"Send3 ON": bars((0, 1), (15.9, 1), (16, 0), (32, 1), (45, 0)),
             "Send3 Level": bars((0, send_level(-3)), (32, send_level(0)), (45, send_level(-30)))},
        parameters={CUTOFF: sweep((0, 240), (4, 420), (8, 800), (12, 1500), (15.8, 4500), (16, 1100), (28, 1900),
                                  (31.8, 5000),
                                  (32, 240), (43.5, 6500), (44, 4000), (45, 1600), (61, 2000), (65.5, 160))})
    instrument.presets = [instrument.snapshot(),
                          instrument.snapshot(selected=1, level=channel_level(0), sends={REVERB: send_level(-5)})]
    return instrument


def organ():
    level = channel_level(4.5)
    off_beats = ((2, 1.2, 92), (6, 1.2, 96), (10, 1.2, 92), (14, 1.2, 98))
    long = ((0, 7, 84), (8, 3, 78), (12, 3.5, 80))
    return Instrument(
        "Organ", SYNTH, HOUSE_ORGAN, swing=SWING,
        strip=Strip(level=level, pan=-0.15, crossfade_b=1, sends={REVERB: send_level(-12)}, **low_cut(220)),
        patterns=numbered(pumped(comp(51, VERSE, long), level), pumped(comp(52, LIFT, long), level),
                          pumped(comp(53, VERSE, off_beats), level, 12), pumped(comp(54, LIFT, off_beats), level, 12)))


def strings():
    level = channel_level(1)
    over = [tuple(key + 12 for key in chord[1:]) for chord in VERSE]
    above = [tuple(key + 12 for key in chord[1:]) for chord in LIFT]
    climb = [tuple(key + 12 for key in chord[1:]) for chord in CLIMB]
    last = held(64, [over[0]] * 3 + [()] * 2)
    return Instrument(
        "Strings", SYNTH, OCTAVE_STRINGS,
        strip=Strip(level=level, pan=0.12, sends={REVERB: send_level(-8)}, **low_cut(350, high=Band(6000, 2))),
        patterns=numbered(pumped(held(61, above), level), pumped(held(62, over), level, 14),
                          pumped(held(63, above), level, 14),
                          pumped(last, level), pumped(held(65, climb), channel_level(-1))),
        parameters={CUTOFF: sweep((12, 900), (15.8, 5000), (28, 1200), (32, 2600), (43.8, 7000), (45, 3600),
                                  (66, 1500))})


CALL = ((0, 2, 76, 1.8), (0, 4, 79, 1.8), (0, 6, 81, 4.5), (0, 12, 79, 1.8), (0, 14, 76, 1.8),
        (1, 2, 77, 1.8), (1, 4, 76, 1.8), (1, 6, 74, 4.5), (1, 12, 72, 1.8), (1, 14, 74, 1.8),
        (2, 2, 76, 1.8), (2, 4, 74, 1.8), (2, 6, 71, 4.5), (2, 14, 72, 1.8),
        (3, 0, 74, 2.8), (3, 4, 76, 2.8), (3, 8, 79, 6))
REPLY = ((0, 2, 81, 1.8), (0, 4, 79, 1.8), (0, 6, 76, 4.5), (0, 12, 77, 1.8), (0, 14, 79, 1.8),
         (1, 2, 79, 1.8), (1, 4, 76, 1.8), (1, 6, 74, 6), (1, 14, 71, 1.8),
         (2, 0, 72, 2.8), (2, 4, 74, 2.8), (2, 8, 77, 2.8), (2, 12, 81, 3),
         (3, 0, 80, 3.5), (3, 4, 83, 3.5), (3, 8, 80, 2.8), (3, 12, 76, 3))


def lead():
    level = channel_level(-0.5)
    patterns = [melody(71, CALL[:8], 80), melody(72, CALL), melody(73, REPLY),
                melody(74, REPLY[:9] + ((2, 0, 69, 14),)),
                melody(75, ((0, 8, 71, 1.6), (0, 10, 74, 1.6), (0, 12, 76, 1.6), (0, 14, 80, 1.8)), 96)]
    for pattern in patterns:
        pattern.midi = {"Modulation Wheel": [(0, 0), (9, 0), (11, 60), (13, 0), (25, 0), (27, 60), (30, 0)],
                        "Pitch Bend": [(5.5, 64), (5.9, 50), (6.6, 64)]}
        pumped(pattern, level)
    return Instrument(
        "Talker", SYNTH, TALKING_LEAD, swing=SWING,
        strip=Strip(level=level, sends={REVERB: send_level(-14), DELAY: send_level(-12)}, **low_cut(250)),
        patterns=numbered(*patterns), mix={"Send2 Level": throws(send_level(-12), send_level(-3),
                           (39, 44, 48, 56, 60))})


def arpeggio():
    return Instrument(
        "Arpeggio", SYNTH, TRANCE_PLUCK, keys=[69, 76, 81], keyboard_position=60,
        arpeggiator=Arpeggiator(on=1, mode=2, ext=1, ext_mode=1, velocity=1.4, interval=12, gate=1),
        strip=Strip(level=channel_level(-5), sends={REVERB: send_level(-14), DELAY: send_level(-12)}, **low_cut(400)),
        patterns={0: Pattern(PHRASE, mix={"Pan": [(0, -0.5), (PHRASE / 2, 0.5), (PHRASE - 0.5, -0.5)]})},
        mix={"Level": bars((0, 0), (12, 30), (15.7, channel_level(0)), (15.8, 0), (32, 0), (33, channel_level(-4)),
                           (43.7, channel_level(-2)), (43.8, 0), (49, 0), (49.1, channel_level(-4)),
                           (52.9, channel_level(-4)), (53, 0), (57, channel_level(-4)), (61, channel_level(-4)),
                           (62, 0))},
        parameters={CUTOFF: sweep((12, 300), (16, 2600), (32, 400), (44, 4000), (61, 2500))})


def fall():
    pattern = Pattern(PHRASE)
    for key in (57, 64):
        pattern.add(0, key, 24, 92)
    pattern.plugin = {NOISE_LEVEL: [(0, 0.9)]}
    return Instrument("Fall", SYNTH, DOWN_LIFTER,
                      strip=Strip(level=channel_level(-3), sends={REVERB: send_level(-8)}, **low_cut(300)),
                      patterns={0: pattern})


def riser():
    pattern = rise(4, channel_level(2))
    pattern.plugin.update({OSC1_LEVEL: [(0, 0.4)], OSC2_LEVEL: [(0, 0.3)], BEND_RANGE: [(0, 0.5)]})
    return Instrument("Riser", SYNTH, SWEEP_PAD,
                      strip=Strip(level=channel_level(-2), sends={REVERB: send_level(-8)}, **low_cut(350)),
                      patterns={0: pattern})


def song():
    made = ((kick(), KICK_ROW), (hats(), HATS_ROW), (top(), TOP_ROW), (low(), BASS_ROW), (stabs(), STAB_ROW),
            (organ(), ORGAN_ROW), (strings(), STRING_ROW), (lead(), LEAD_ROW), (arpeggio(), ARP_ROW),
            (fall(), FALL_ROW), (riser(), RISE_ROW))
    return Project(
        tempo=126, steps=BARS * BAR, loop=(0, 16 * BAR, 32 * BAR),
        # In the break the stabs on side A give way to the organ on side B; in the theme both play.
        master={"Crossfader": bars((0, 0), (31.9, 0), (34, 70), (40, 110), (43.5, 64), (66, 64)),
                "Level": bars((0, 127), (63, 127), (66, 90))},
        inserts=master(2.6), instruments=[arrange(instrument, row, BARS) for instrument, row in made],
        effects={REVERB: Effect("QUIB reverb.so", CONCERT_HALL), DELAY: Effect("QUIB delay.so", PING_PONG),
                 FLANGER: Effect("QUIB flanger.so", FOUR_BARS), CHAMBER: Effect("QUIB reverb.so", DRUM_CHAMBER)})


if __name__ == "__main__":
    sys.stdout.buffer.write(song().text().encode("ascii"))
