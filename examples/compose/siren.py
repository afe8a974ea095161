#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Siren: a dark techno track in E, 66 bars at 134 beats per minute.

    python3 examples/compose/siren.py > examples/Siren.prg

Bars 0 intro, 16 first drive, 32 break with the siren over one low note, 44 two bars of the siren alone, 46
second drive, 62 end. It shows automation of
cutoff and resonance, two acid lines on the two sides of the crossfader, pitch bend over octaves, an
insert, and a drum machine that chooses among its patterns by chance in pattern mode.
"""
import sys

from house_parts import (BAR, CLAP, CLOSED_HAT, CRASH, KICK, LOW_TOM, MID_TOM, OPEN_HAT, PHRASE, RIDE, RIM, SNARE,
                         Player)
from quibproject import Arpeggiator, Band, Effect, Instrument, Pattern, Project, Strip, channel_level, send_level
from songkit import (BEND_RANGE, CUTOFF, DRIVE, KIT_DRIVE, KIT_VOLUME, RESONANCE, STEREO_WIDTH, arrange, bars, bass,
                     comp, drums,
                     held, hold, low_cut, master, melody, numbered, pumped, roll, sweep, throws, volume)

BARS = 66
SYNTH, DRUMS = "QUIB synth.so", "QUIB drums.so"
REVERB, DELAY, CHAMBER = 1, 2, 3
# Programs.
ACID_LINE, SUPER_LEAD, RAVE_STAB, DEEP_SINE, GROWL = 1, 5, 20, 24, 26
DARK_DRONE, TRANCE_PLUCK, AIR_RAID, DOWN_LIFTER = 39, 55, 60, 63
TECHNO_HALL, IRON_WORKS, DEEP_TECHNO = 6, 13, 20
CATHEDRAL, DRUM_CHAMBER, DUB_CHAMBER, BASS_SWEEP, DRUM_PUNCH = 5, 3, 5, 6, 1

# Phrygian colours over a pedal of E: the chord of a stab, the root of the bass.
EM, F, AM, B = (64, 67, 71), (65, 69, 72), (64, 69, 72), (63, 66, 71)
DARK, DARK_ROOTS = (EM, EM, F, EM), (40, 40, 41, 40)
RISE, RISE_ROOTS = (EM, F, AM, B), (40, 41, 45, 47)

# phrase at bar  0  4  8  12   16 20 24 28   32 36 40   44   46 50 54 58   62
KICK_ROW = "     a  a  a  c  | a  b  a  c  | -  -  d  | -2 | a  b  a  b  | e"
HATS_ROW = "     -  a  b  b  | c  d  c  d  | -  a  e  | -2 | f  d  f  d  | b"
IRON_ROW = "     -  -  a  b  | a  b  c  b  | d  -  -  | -2 | c  b  c  b  | d"
ACID_ROW = "     -  a  a  b  | a  c  b  c  | -  a  -  | -2 | c  b  c  d  | -"
GROWL_ROW = "    -  -  -  -  | -  -  a  b  | -  -  a  | -2 | a  b  c  b  | -"
SUB_ROW = "      -  -  a  a  | a  a  b  a  | d  d  c  | e2 | a  b  a  b  | -"
STAB_ROW = "     -  -  -  a  | -  b  a  b  | -  -  c  | -2 | b  b  b  b  | d"
DRONE_ROW = "    a  a  a  a  | -  -  a  a  | a  b  b  | a2 | a  b  a  b  | a"
SIREN_ROW = "    -  -  -  -  | -  -  -  -  | a  b  c  | e2 | -  -  d  d  | -"
LEAD_ROW = "     -  -  -  -  | -  -  -  -  | -  -  -  | -2 | a  b  a  b  | -"
ARP_ROW = "      -  -  -  -  | -  a  -  a  | -  a  a  | -2 | -  a  a  a  | -"
FALL_ROW = "     -  -  -  -  | a  -  -  -  | a  -  -  | -2 | a  -  -  -  | a"


def kick():
    four = {KICK: "9...8...9...8..."}
    pushed = {KICK: "9...8...9...8..6"}
    build = Player(4)
    for bar in range(4):
        roll(build, bar * BAR, BAR if bar < 3 else 12, KICK, 50 + 12 * bar, 62 + 12 * bar, (8, 4, 2, 1)[bar])
    return Instrument(
        "Kick", DRUMS, TECHNO_HALL, inserts={1: Effect("QUIB compressor.so", DRUM_PUNCH)},
        strip=Strip(level=channel_level(-7), insert_on=(1, 0), eq_on=1, eq=(Band(52, -1.5), Band(300, -3), Band(4500,
                                                                                                                4))),
        patterns=hold(numbered(drums(1, four), drums(2, four, four, four, pushed),
                               drums(3, four, four, four, {KICK: "9...8..........."}),
                               build.pattern, drums(5, four, four, {KICK: "9...8...9......."},
                                                    {KICK: "9..............."})),
                      {KIT_VOLUME: volume(0), KIT_DRIVE: 0.45}))


def hats():
    plain = {OPEN_HAT: "..7...7...7...7."}
    tight = {OPEN_HAT: "..7...7...7...7.", CLOSED_HAT: "5.356.355.356.35"}
    full = tight | {CLAP: "....7.......7..."}
    ridden = full | {RIDE: "6.5.6.5.6.5.6.5."}
    rise = Player(15)
    roll(rise, 0, 32, SNARE, 26, 56, 4)
    roll(rise, 32, 16, SNARE, 50, 76, 2)
    roll(rise, 48, 13, SNARE, 66, 112)
    crashed = drums(16, ridden)
    crashed.add(0, CRASH, 8, 92)
    filled = drums(14, full, full, full, full | {SNARE: "..........4.5678"})
    return Instrument(
        "Hats & Claps", DRUMS, DEEP_TECHNO, swing=0.06,
        strip=Strip(level=channel_level(-2), sends={CHAMBER: send_level(-20)}, **low_cut(250, high=Band(7000, 4))),
        patterns=hold(numbered(drums(11, plain), drums(12, tight), drums(13, full), filled, rise.pattern, crashed),
                      {KIT_VOLUME: volume(0)}),
        mix={"Level": bars((0, channel_level(-5)), (16, channel_level(-1)), (66, channel_level(-1)))})


def iron():
    anvil = {RIM: "..6..5....6..5..", LOW_TOM: "......7.......5."}
    forge = {RIM: "..6..5....6..5.4", LOW_TOM: "......7.......5.", MID_TOM: "...5.......6.5.."}
    hammer = {SNARE: "......6......5..", RIM: "5..5..5..5..5.5.", LOW_TOM: "..............78"}
    return Instrument(
        "Iron", DRUMS, IRON_WORKS, swing=0.08, step_mode=2,
        strip=Strip(level=channel_level(0), pan=-0.3, sends={CHAMBER: send_level(-8), DELAY: send_level(-22)},
                    **low_cut(190)),
        patterns=hold(numbered(drums(21, anvil), drums(22, anvil, forge), drums(23, forge, hammer),
                               drums(24, {RIM: "..........5....."})),
                      {KIT_VOLUME: volume(0)}))


LINE = ((0, 0, 0.8, 112), (2, 0, 0.7, 84), (3, 12, 0.7, 96), (5, 0, 0.7, 80), (6, 1, 0.8, 100), (8, 0, 0.8, 106),
        (10, 0, 0.7, 84), (11, 10, 1.6, 96), (13, 12, 1.2, 92), (14, 0, 0.8, 88), (15, 3, 0.8, 84))
TURN = ((0, 0, 0.8, 112), (2, 12, 0.7, 92), (3, 0, 0.7, 84), (4, 0, 0.7, 80), (6, 1, 1.6, 102), (8, 12, 0.8, 98),
        (9, 0, 0.7, 80), (11, 7, 1.6, 94), (13, 6, 1.2, 92), (14, 5, 0.8, 90), (15, 3, 0.8, 86))
THIN = ((0, 0, 0.8, 108), (3, 12, 0.7, 92), (6, 1, 1.4, 98), (11, 10, 1.6, 90))


def acid():
    level = channel_level(5)
    patterns = numbered(*(pumped(bass(30 + number, [root - 7 for root in roots], *grooves), level, 14)
                          for number, (roots, grooves) in enumerate(((DARK_ROOTS, (THIN,)), (DARK_ROOTS, (THIN, LINE)),
                                                                     (DARK_ROOTS,
                                                                      (LINE, TURN)), (RISE_ROOTS, (TURN, LINE))))))
    return Instrument(
        "Acid A", SYNTH, ACID_LINE,
        strip=Strip(level=level, pan=-0.3, crossfade_a=1, sends={DELAY: send_level(-16)},
                    **low_cut(150, -14, high=Band(2500, 3))),
        patterns=patterns,
        parameters={CUTOFF: sweep((4, 90), (15.5, 700), (16, 160), (31, 2400), (32, 300), (46, 320), (54, 1100),
                                  (61.5, 3600)),
                    STEREO_WIDTH: bars((0, 0.45)), RESONANCE: bars((4, 0.55), (16, 0.72), (31, 0.85), (46, 0.72),
                           (62, 0.88))})


def growl():
    level = channel_level(5)
    figure = ((0, 0, 5.5, 104), (6, 1, 1.6, 92), (8, 0, 4.5, 100), (13, 3, 1.2, 90), (14, 1, 1.6, 94))
    reply = ((0, 0, 3.5, 104), (4, 12, 1.4, 92), (6, 1, 5.5, 98), (12, 6, 1.8, 92), (14, 5, 1.8, 92))
    return Instrument(
        "Acid B", SYNTH, GROWL, inserts={1: Effect("QUIB flanger.so", BASS_SWEEP)},
        strip=Strip(level=level, pan=0.3, crossfade_b=1, insert_on=(1, 0), sends={REVERB: send_level(-24)},
                    **low_cut(150, -14, high=Band(2500, 3))),
        patterns=numbered(*(pumped(bass(40 + number, roots, *grooves), level, 14)
                            for number, (roots,
                                         grooves) in enumerate(((DARK_ROOTS, (figure, reply)),
                                                                (RISE_ROOTS, (figure, reply)),
                                                                       (DARK_ROOTS, (reply, figure)))))),
        parameters={CUTOFF: sweep((24, 200), (31.5, 900), (40, 160), (46, 500), (61, 1800)),
                    STEREO_WIDTH: bars((0, 0.45))})


def sub():
    """Off the beat under the drive; under the siren one note an octave higher that a small speaker has as well."""
    level, depth = channel_level(-4.5), 26
    offs = ((2, 0, 1.4, 100), (6, 0, 1.4, 100), (10, 0, 1.4, 100), (14, 0, 1.4, 100))
    long, under = ((0, 0, 14, 100),), ((0, 12, 15.5, 104),)
    scores = ((DARK_ROOTS, offs), (RISE_ROOTS, offs), (RISE_ROOTS, long), (DARK_ROOTS, under), ((40,) * 4, under))
    return Instrument(
        "Sub", SYNTH, DEEP_SINE, strip=Strip(level=level, eq_on=1, eq=(Band(45, -2), Band(160, 3), Band(700, 6))),
        patterns=numbered(*(pumped(bass(50 + number, roots, groove), channel_level(-8) if groove is under else level,
                                   depth if groove is offs else 0) for number, (roots, groove) in enumerate(scores))),
        parameters={DRIVE: bars((0, 0.2), (31.9, 0.2), (32, 0.55), (45.9, 0.7), (46, 0.2))})


def stab():
    level = channel_level(1.5)
    rare = ((3, 0.9, 96), (11, 0.9, 88))
    drive = ((2, 0.9, 94), (5, 0.8, 88), (8, 0.9, 92), (11, 0.8, 90), (14, 0.9, 98))
    build = ((0, 0.8, 84), (2, 0.8, 86), (4, 0.8, 88), (6, 0.8, 90), (8, 0.8, 92), (10, 0.8, 94), (12, 0.8, 98))
    instrument = Instrument(
        "Stab", SYNTH, RAVE_STAB,
        strip=Strip(level=level, sends={REVERB: send_level(-16), DELAY: send_level(-12)}, **low_cut(260,
                                                                                                    high=Band(4000,
                                                                                                              3))),
        patterns=numbered(pumped(comp(61, DARK, rare), level, 10), pumped(comp(62, RISE, drive, rare), level, 10),
                          pumped(comp(63, RISE, build), level), pumped(comp(64, [EM] * 4, rare), level)),
        mix={"Send2 Level": throws(send_level(-12), send_level(-2), (15, 31, 53, 61))},
        parameters={CUTOFF: sweep((12, 500), (20, 1400), (31, 3000), (40, 250), (43.7, 7000), (46, 1800), (62, 3000),
                                  (66, 400))})
    instrument.presets = [instrument.snapshot(),
                          instrument.snapshot(selected=0, level=channel_level(-5),
                                              sends={REVERB: send_level(-3), DELAY: send_level(-4)})]
    return instrument


def drone():
    level = channel_level(0)
    low = [tuple(key - 12 for key in chord) for chord in DARK]
    climb = [tuple(key - 12 for key in chord) for chord in RISE]
    return Instrument(
        "Drone", SYNTH, DARK_DRONE, strip=Strip(level=level, sends={REVERB: send_level(-8)}, **low_cut(170, -18)),
        patterns=numbered(pumped(held(71, low), level), pumped(held(72, climb), level)),
        mix={"Level": bars((0, 30), (4, channel_level(0)), (15.9, channel_level(-4)), (24, channel_level(-8)),
                           (32, channel_level(1)),
                           (45.9, channel_level(2)), (46, channel_level(-6)), (62, channel_level(0)), (66, 0))},
        parameters={CUTOFF: sweep((0, 120), (16, 500), (32, 260), (45.5, 3000), (46, 500), (66, 150))})


def siren():
    """Wails of a whole octave and back; the last ones answer each other a fifth apart."""
    level = channel_level(5)
    wail = melody(81, ((0, 0, 64, 30), (2, 0, 64, 30)), 96)
    both = melody(82, ((0, 0, 64, 30), (1, 0, 71, 14), (2, 0, 64, 30), (3, 0, 71, 15)), 92)
    alarm = melody(83, tuple((bar, step, key, 3.6) for bar in range(4) for step,
                             key in ((0, 76), (4, 71), (8, 76), (12, 71))), 88)
    far = melody(84, ((0, 8, 76, 7), (2, 8, 77, 7)), 80)
    up_and_down = [(0, 64), (16, 127), (30, 30), (32, 64), (48, 127), (62, 20)]
    alone = Pattern(2 * BAR)
    alone.add(0, 64, 2 * BAR - 0.5, 104)
    alone.midi = {"Pitch Bend": [(0, 20), (12, 64), (2 * BAR - 1, 127)]}
    for pattern in (wail, both):
        pattern.midi = {"Pitch Bend": up_and_down}
    for pattern in (wail, both, alarm, far, alone):
        pumped(pattern, level)
    far.mix["Level"] = [(0, channel_level(-2))]
    return Instrument(
        "Siren", SYNTH, AIR_RAID, strip=Strip(level=level, sends={REVERB: send_level(-6), DELAY: send_level(-10)},
                                              **low_cut(350, middle=Band(1800, -3))),
        patterns=hold(numbered(wail, both, alarm, far, alone), {BEND_RANGE: 0.5}),
        mix={"Pan": bars((32, -0.5), (36, 0.5), (40, -0.3), (44, 0), (46, 0.3), (54, -0.6), (58, 0.6), (62, 0))},
        parameters={CUTOFF: sweep((32, 600), (40, 2500), (45.8, 8000), (54, 2200), (62, 3000))})


THEME = ((0, 0, 76, 5.5), (0, 6, 77, 1.8), (0, 8, 76, 3.8), (0, 12, 71, 3.8), (1, 0, 72, 5.5), (1, 6, 71, 1.8),
         (1, 8, 69, 7),
         (2, 0, 76, 5.5), (2, 6, 77, 1.8), (2, 8, 81, 3.8), (2, 12, 79, 3.8),
                           (3, 0, 78, 5.5), (3, 6, 75, 1.8), (3, 8, 71, 7))
HIGH = ((0, 0, 83, 3.8), (0, 4, 79, 1.8), (0, 6, 76, 5.5), (0, 12, 79, 3.8), (1, 0, 77, 3.8), (1, 4, 81, 1.8),
        (1, 6, 84, 9),
        (2, 0, 81, 3.8), (2, 4, 84, 1.8), (2, 6, 81, 5.5), (2, 12, 76, 3.8),
                           (3, 0, 75, 3.8), (3, 4, 78, 3.8), (3, 8, 83, 7.5))


def lead():
    level = channel_level(4)
    patterns = [melody(91, THEME), melody(92, HIGH)]
    for pattern in patterns:
        pattern.midi = {"Modulation Wheel": [(0, 0), (24, 0), (28, 50), (32, 0), (56, 0), (60, 60), (63, 0)]}
        pumped(pattern, level, 10)
    return Instrument(
        "Theme", SYNTH, SUPER_LEAD, strip=Strip(level=level, sends={REVERB: send_level(-12), DELAY: send_level(-14)},
                                                **low_cut(300)),
        patterns=numbered(*patterns), parameters={CUTOFF: sweep((46, 2800), (54, 6500), (62, 9500))})


def arpeggio():
    return Instrument(
        "Arpeggio", SYNTH, TRANCE_PLUCK, keys=[64, 71, 76], keyboard_position=60,
        arpeggiator=Arpeggiator(on=1, mode=0, ext=1, velocity=1.2, interval=12, gate=1),
        strip=Strip(level=channel_level(0), sends={REVERB: send_level(-12), DELAY: send_level(-12)}, **low_cut(500)),
        patterns={0: Pattern(PHRASE, mix={"Pan": [(0, 0.5), (PHRASE / 2, -0.5), (PHRASE - 0.5, 0.5)]})},
        mix={"Level": bars((0, 0), (19.9, 0), (20, channel_level(0)), (24, channel_level(0)), (24.1, 0),
                           (28, channel_level(1)), (31.9, channel_level(1)), (32, 0), (36, 20),
                           (43.8, channel_level(4)), (43.9, 0), (50, channel_level(0.5)), (62, channel_level(1)),
                           (62.1, 0))},
        parameters={CUTOFF: sweep((20, 700), (32, 1500), (36, 400), (43.5, 5000), (50, 1500), (62, 3000)),
                    DRIVE: bars((0, 0.1), (50, 0.3))})


def fall():
    pattern = Pattern(PHRASE)
    for key in (52, 59):
        pattern.add(0, key, 28, 96)
    return Instrument("Fall", SYNTH, DOWN_LIFTER,
                      strip=Strip(level=channel_level(-4), sends={REVERB: send_level(-6)}, **low_cut(250)),
                      patterns={0: pattern})


def song():
    made = ((kick(), KICK_ROW), (hats(), HATS_ROW), (iron(), IRON_ROW), (acid(), ACID_ROW), (growl(), GROWL_ROW),
            (sub(), SUB_ROW),
            (stab(), STAB_ROW), (drone(), DRONE_ROW), (siren(), SIREN_ROW), (lead(),
                                                                             LEAD_ROW), (arpeggio(), ARP_ROW),
                                                                             (fall(), FALL_ROW))
    return Project(
        tempo=134, steps=BARS * BAR, loop=(0, 16 * BAR, 32 * BAR),
        # From acid line A over to B and back, and both at the end.
        master={"Crossfader": bars((0, 0), (23.9, 0), (28, 100), (32, 64), (46, 20), (50, 64), (62, 64)),
                "Level": bars((0, 127), (64, 127), (66, 80))},
        inserts=master(3.75), instruments=[arrange(instrument, row, BARS) for instrument, row in made],
        effects={REVERB: Effect("QUIB reverb.so", CATHEDRAL), DELAY: Effect("QUIB delay.so", DUB_CHAMBER),
                 CHAMBER: Effect("QUIB reverb.so", DRUM_CHAMBER)})


if __name__ == "__main__":
    sys.stdout.buffer.write(song().text().encode("ascii"))
