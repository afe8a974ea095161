# SPDX-License-Identifier: GPL-3.0-or-later
"""What the compositions share: units of the plug-ins' parameters, lanes told in bars, drums told in
rows of digits, and the master's limiter.
"""
import math

import house_parts as parts
from house_parts import BAR, Player
from quibproject import Band, Effect, Pattern

# Parameters of the synthesiser, the drums and the compressor, as lanes number them.
OSC1_LEVEL, OSC2_LEVEL, NOISE_LEVEL, CUTOFF, RESONANCE, DRIVE, BEND_RANGE, STEREO_WIDTH = 5, 11, 14, 24, 25, 26, 57, 60
KIT_DRIVE, KIT_VOLUME = 128, 131
LIMITER_LEVEL, LIMITER_CEILING, LIMITER_ONLY = 1, 11, 3


def master(decibels):
    """A limiter on the master that is fed that much louder and lets nothing above -1.5 dBFS pass, so
    that the peaks between the samples stay below -1 dBFS."""
    return {1: Effect("QUIB compressor.so", LIMITER_ONLY,
                      parameters={LIMITER_LEVEL: [(0, volume(decibels))], LIMITER_CEILING: [(0, (24 - 1.5) / 24)]})}


def cutoff(hertz):
    """The synthesiser's cutoff, 20 Hz to 20 kHz, as a lane has it."""
    return math.log(hertz / 20) / math.log(1000)


def bars(*points):
    """Song points told in bars."""
    return [(bar * BAR, value) for bar, value in points]


def sweep(*points):
    """A cutoff lane of the song: (bar, hertz)."""
    return bars(*((bar, cutoff(hertz)) for bar, hertz in points))


def low_cut(hertz, decibels=-18, middle=None, high=None):
    """An equaliser that leaves the bottom to kick and bass."""
    return {"eq_on": 1, "eq": (Band(hertz, decibels), middle or Band(500), high or Band(2000))}


def volume(decibels):
    """The volume of a drum kit, up to +6 dB, as a lane has it."""
    return math.sqrt(10 ** (decibels / 20) / 2)


def hold(patterns, settings):
    """Settings of the plug-in that differ from the program, at the start of every pattern."""
    for pattern in patterns.values():
        for parameter, value in settings.items():
            pattern.plugin.setdefault(parameter, [(0, value)])
    return patterns


def pumped(pattern, level, depth=0):
    """The pattern with its level ducking under the kick, or at rest."""
    pattern.mix["Level"] = parts.pump(level, depth, pattern.steps) if depth else [(0, level)]
    return pattern


def numbered(*patterns):
    return dict(enumerate(patterns))


def throws(quiet, loud, at):
    """A send that opens for the second half of the given bars."""
    points = [(0, quiet)]
    for bar in at:
        start = bar * BAR + 8
        points += [(start - 0.5, quiet), (start, loud), (start + 7, loud), (start + 8, quiet)]
    return points


def rows(player, bar, lines, loud=1.0):
    """Adds a bar of drums: {key: "9...5..."}, a digit a stroke, a dot nothing; halves repeat."""
    for key, text in lines.items():
        text = (text * BAR)[:BAR]
        for step, mark in enumerate(text):
            if mark != ".":
                player.play(bar * BAR + step, key, 1, loud * (14 + 12.5 * int(mark)), 4)


def drums(seed, *by_bar, loud=1.0, bars=4):
    """A phrase; fewer bars are repeated."""
    player = Player(seed, bars * BAR)
    for bar in range(bars):
        rows(player, bar, by_bar[bar % len(by_bar)], loud)
    return player.pattern


def roll(player, start, steps, key, quiet, strong, every=1):
    """Strokes from quiet to strong."""
    for step in range(0, steps, every):
        player.play(start + step, key, 0.5, quiet + (strong - quiet) * step / steps, 3)


def melody(seed, notes, velocity=92, bars=None):
    """(bar, step, key, length) of a phrase, four bars at least unless told; strong beats louder."""
    player = Player(seed, BAR * (bars or max(4, 1 + max(bar for bar, *_ in notes))))
    for bar, step, key, length in notes:
        player.play(bar * BAR + step, key, length, velocity + (7 if step % 4 == 0 else 0), 5)
    return player.pattern


def bass(seed, roots, *grooves):
    """A root a bar; grooves of (step, above the root, length, velocity) take turns."""
    player = Player(seed, BAR * len(roots))
    for bar, root in enumerate(roots):
        for step, interval, length, velocity in grooves[bar % len(grooves)]:
            player.play(bar * BAR + step, root + interval, length, velocity, 4)
    return player.pattern


def comp(seed, chords, *rhythms):
    """A chord, as its keys, a bar; rhythms of (step, length, velocity) take turns."""
    player = Player(seed, BAR * len(chords))
    for bar, keys in enumerate(chords):
        for step, length, velocity in rhythms[bar % len(rhythms)]:
            player.chord(bar * BAR + step, keys, length, velocity)
    return player.pattern


def held(seed, chords, velocity=84):
    """Whole bars; a voice that the next chord shares is held."""
    player = Player(seed, BAR * len(chords))
    for bar, keys in enumerate(chords):
        for key in keys:
            if bar > 0 and key in chords[bar - 1]:
                continue
            end = bar + 1
            while end < len(chords) and key in chords[end]:
                end += 1
            player.play(bar * BAR, key, (end - bar) * BAR - 0.25, velocity)
    return player.pattern


def rise(bars_long, level):
    """For a Sweep Pad: noise and a fifth that climb an octave."""
    steps = bars_long * BAR
    up = Pattern(steps)
    for key in (55, 62):
        up.add(0, key, steps - 1, 90)
    up.midi = {"Pitch Bend": [(0, 64), (steps / 4, 64), (steps - 1, 127)]}
    up.plugin = {CUTOFF: [(0, cutoff(250)), (steps - 2, cutoff(9000))], RESONANCE: [(0, 0.3)],
                 NOISE_LEVEL: [(0, 0.2), (steps, 1.0)]}
    up.mix = {"Level": [(0, 80), (steps - 4, level), (steps - 0.5, level)]}
    return up


def looped(*keys, every=2, bars=4):
    """Keys of the loop player, each started anew every so many bars."""
    pattern = Pattern(bars * BAR)
    for key in keys:
        for bar in range(0, bars, every):
            pattern.add(bar * BAR, key, every * BAR - 0.1, 100)
    return pattern


def phrases(row):
    """(letter, bars) of a row: a letter plays that pattern, a dash is silence; four bars, or as many as the number
    behind it says."""
    return [(word[0], int(word[1:] or 4)) for word in row.replace("|", " ").split()]


def arrange(instrument, row, song_bars):
    """Lays the patterns of a row into the song: a is pattern 0. A pattern shorter than its phrase starts over."""
    step = 0
    instrument.playlist = []
    made = phrases(row)
    for index, (letter, length) in enumerate(made):
        if letter == "-":
            step += length * BAR
            continue
        number, end = ord(letter) - ord("a"), step + length * BAR
        steps = instrument.patterns[number].steps
        cut = index + 1 < len(made) and made[index + 1][0] != "-"
        if (end - step) % steps and not cut:
            raise ValueError(f"{instrument.title}: nothing ends pattern {letter} after {length} bars")
        instrument.playlist += [(number, start, 0) for start in range(step, end, steps)]
        step = end
    if step != song_bars * BAR:
        raise ValueError(f"{instrument.title}: {step / BAR} bars instead of {song_bars}")
    return instrument
