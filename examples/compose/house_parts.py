# SPDX-License-Identifier: GPL-3.0-or-later
"""The patterns of House Music: harmony, drums, bass, chords, hook and effects."""
import random

from quibproject import Pattern

BAR = 16
PHRASE = 4 * BAR  # every pattern is one phrase of four bars
OFF_BEATS = (2, 6, 10, 14)

# Keys of the drums.
KICK, RIM, SNARE, CLAP, LOW_TOM, CLOSED_HAT, MID_TOM, OPEN_HAT = 36, 37, 38, 39, 41, 42, 45, 46
HIGH_TOM, CRASH, RIDE, TAMBOURINE, SHAKER, CLAVES = 48, 49, 51, 54, 70, 75

# A chord: the bass note, four close voices for stabs, and the pad's root with four open voices.
# From chord to chord each upper voice stays or goes one step.
CHORDS = {
    "Cm9": (60, (63, 67, 70, 74), (48, 58, 63, 67, 74)),
    "Abmaj9": (56, (63, 67, 70, 72), (44, 58, 63, 67, 72)),
    "Fm9": (53, (63, 67, 68, 72), (41, 56, 63, 67, 72)),
    "Gm11": (55, (62, 65, 70, 72), (43, 58, 62, 65, 72)),
    "Ebmaj9": (51, (65, 67, 70, 74), (39, 58, 62, 67, 77)),
    "Abmaj7": (56, (63, 67, 68, 72), (44, 60, 63, 67, 75)),
    "Bb9sus": (58, (63, 65, 68, 72), (46, 58, 63, 68, 77)),
    "G7alt": (55, (63, 65, 68, 71), (43, 59, 65, 68, 75)),
}
VERSE = ("Cm9", "Abmaj9", "Fm9", "Gm11")
ANSWER = ("Cm9", "Ebmaj9", "Abmaj7", "Bb9sus")
RISE = ("Fm9", "Gm11", "Abmaj7", "G7alt")
LONG_RISE = ("Fm9", "Gm11", "Abmaj7", "Bb9sus", "Abmaj7", "G7alt")
HOME = ("Cm9", "Abmaj9", "Fm9", "Cm9")


class Player:
    """Adds notes with small differences of strength, always the same for one seed."""

    def __init__(self, seed, steps=PHRASE):
        self.chance = random.Random(seed)
        self.pattern = Pattern(steps)

    def vary(self, value, spread=5):
        return value + spread * (2 * self.chance.random() - 1)

    def play(self, position, key, length, velocity, spread=5):
        self.pattern.add(position, key, length, self.vary(velocity, spread))

    def chord(self, position, keys, length, velocity, strum=0.03):
        """Low to high, each voice a little later; the top one sings."""
        for voice, key in enumerate(keys):
            accent = 6 if voice == len(keys) - 1 else 0
            self.play(position + strum * voice, key, length, velocity + accent)


def pump(level, depth, steps=PHRASE):
    """Level points that duck by `depth` on every beat and swell until the next."""
    points = [(0, level - depth)]
    for beat in range(0, steps, 4):
        points += [(beat + 0.4, level - depth), (beat + 2.6, level), (beat + 3.7, level), (beat + 4, level - depth)]
    return points


# --- drums

def kick(bars=4, pickup=False, gap=False, stop=False):
    player = Player(1)
    for bar in range(bars):
        for beat in range(4):
            last = bar == bars - 1
            if (gap and last and beat >= 2) or (stop and last and beat > 0):
                continue
            player.play(bar * BAR + 4 * beat, KICK, 1, 116 if beat % 2 == 0 else 103, 3)
    if pickup:
        player.play(PHRASE - 2, KICK, 1, 66)
    return player.pattern


def hats(seed, claps=True, sixteenths=True, opened=True, ride=False, crash=False, fill=False, bars=4):
    player = Player(seed)
    for bar in range(bars):
        start = bar * BAR
        rolling = fill and bar == 3
        if claps:
            player.play(start + 4, CLAP, 1, 86)
            if not rolling:
                player.play(start + 12, CLAP, 1, 90)
            if bar == 1 and sixteenths:
                player.play(start + 15, CLAP, 1, 48)
        for step in range(BAR):
            if rolling and step >= 12:
                continue
            if step in OFF_BEATS:
                player.play(start + step, OPEN_HAT if opened else CLOSED_HAT, 1, 110 if opened else 92)
            elif sixteenths:
                player.play(start + step, CLOSED_HAT, 1, {0: 80, 1: 54, 3: 68}[step % 4], 7)
        if ride:
            for step in range(0, BAR, 2):
                player.play(start + step, RIDE, 1, 86 if step % 4 == 2 else 64, 6)
        if rolling:
            for step in range(10, 16):
                player.play(start + step, SNARE, 0.5, 42 + 6 * (step - 10), 3)
            player.play(start + 15.5, SNARE, 0.5, 84, 3)
    if crash:
        player.play(0, CRASH, 8, 68)
    return player.pattern


def snare_roll(seed, bars=4):
    """Quarters, eighths, sixteenths, growing, and a breath before the drop."""
    player = Player(seed, bars * BAR)
    for step in range(bars * BAR - 4):
        left, share = bars - step // BAR, step / (bars * BAR)
        period = {1: 1, 2: 2}.get(left, 4)
        if step % period == 0:
            player.play(step, SNARE, 1, 34 + 58 * share, 4)
        if step % 4 == 0:
            player.play(step, CLAP, 1, 38 + 34 * share, 4)
        if step % 4 == 2:
            player.play(step, OPEN_HAT, 1, 60 + 30 * share)
    return player.pattern


def break_hats(seed):
    player = Player(seed)
    for bar in range(4):
        player.play(bar * BAR + 12, CLAP, 1, 82)
        for step in range(0, BAR, 2):
            player.play(bar * BAR + step, CLOSED_HAT, 1, 50 if step % 4 else 34, 7)
    return player.pattern


CONGAS = ((3, HIGH_TOM, 50), (4, HIGH_TOM, 78), (7, MID_TOM, 44), (11, HIGH_TOM, 46), (12, MID_TOM, 84),
          (14, LOW_TOM, 92), (15, LOW_TOM, 58))
CLAVE = ((0, 3, 6, 10, 12), (2, 4, 7, 10, 13), (0, 3, 6, 10, 12), (2, 4, 8, 11, 14))


def percussion(seed, congas=True, clave=False, fill=False, loud=1.0, bars=4):
    player = Player(seed)
    for bar in range(bars):
        start = bar * BAR
        for step in range(BAR):
            player.play(start + step, SHAKER, 0.5, loud * (58, 34, 76, 44)[step % 4], 8)
        for step, key, velocity in CONGAS if congas else ():
            if fill and bar == 3 and step >= 11:
                continue
            if bar % 2 == 1 and step == 3:
                step = 2
            player.play(start + step, key, 1, loud * velocity, 8)
        for step in CLAVE[bar] if clave else ():
            player.play(start + step, RIM, 0.5, loud * 66, 6)
        if bar % 2 == 1:
            player.play(start + 12, TAMBOURINE, 1, loud * 60)
    if fill:
        for index, key in enumerate((HIGH_TOM, HIGH_TOM, MID_TOM, MID_TOM, LOW_TOM, LOW_TOM)):
            player.play(3 * BAR + 10 + index, key, 1, 54 + 5 * index, 4)
    return player.pattern


# --- bass

SCALE = (0, 2, 3, 5, 7, 8, 10)  # C minor


def neighbour(target, origin):
    """The note of the scale next to `target` on the side of `origin`."""
    step = 1 if origin > target else -1
    key = target + step
    while key % 12 not in SCALE:
        key += step
    return key


GROOVES = {
    # (step, above the root, length, velocity)
    "steady": (((0, 0, 1.4, 108), (3, 0, 0.7, 78), (6, 0, 1.6, 102), (10, 12, 0.8, 88), (11, 0, 1.2, 96)),
               ((0, 0, 1.4, 106), (3, 0, 0.7, 80), (6, 0, 1.2, 100), (8, 7, 0.8, 76), (10, 12, 0.7, 90),
                (11, 0, 1.4, 94))),
    "lively": (((0, 0, 1.2, 108), (2, 12, 0.7, 84), (3, 0, 0.7, 78), (6, 0, 1.4, 104), (9, 12, 0.6, 80),
                (10, 0, 0.8, 94), (11, 7, 0.8, 82)),
               ((0, 0, 1.4, 106), (3, 12, 0.7, 86), (5, 0, 0.7, 76), (6, 0, 1.4, 102), (8, 7, 0.8, 80),
                (10, 10, 0.8, 88), (11, 12, 0.9, 92))),
    "sparse": (((0, 0, 2.4, 100), (6, 0, 1.6, 92)), ((0, 0, 2.4, 100), (6, 0, 1.6, 90), (11, 0, 1.0, 78))),
}


def bass(seed, chords, groove, bars=4):
    player = Player(seed)
    for bar in range(bars):
        root = CHORDS[chords[bar]][0]
        following = CHORDS[chords[(bar + 1) % 4]][0]
        for step, interval, length, velocity in GROOVES[groove][bar % 2]:
            player.play(bar * BAR + step, root + interval, length, velocity)
        if groove != "sparse" and bar + 1 < max(bars, 4):
            player.play(bar * BAR + 14, neighbour(following, root), 1.5, 94)
        elif groove != "sparse":
            player.play(bar * BAR + 13, root + 7, 0.8, 84)
            player.play(bar * BAR + 14, neighbour(following, root), 1.5, 96)
    return player.pattern


# --- chords

RHYTHMS = {
    # (step, length, velocity, whether the chord of the next bar comes early)
    "classic": (((0, 1.6, 102, 0), (3, 0.9, 84, 0), (6, 1.8, 98, 0), (11, 0.9, 88, 0), (14, 1.6, 96, 1)),
                ((3, 0.9, 88, 0), (6, 1.4, 96, 0), (9, 0.8, 80, 0), (12, 0.9, 92, 0), (14, 1.6, 98, 1))),
    "push": (((2, 1.2, 96, 0), (5, 0.8, 86, 0), (8, 1.6, 94, 0), (11, 0.9, 84, 0), (13, 0.8, 80, 0), (14, 1.6, 98, 1)),
             ((2, 1.2, 96, 0), (6, 1.8, 98, 0), (10, 0.8, 82, 0), (11, 0.8, 88, 0), (14, 1.6, 100, 1))),
    "eighths": (((0, 0.9, 80, 0), (2, 0.9, 92, 0), (4, 0.9, 82, 0), (6, 0.9, 94, 0), (8, 0.9, 84, 0), (10, 0.9, 94, 0),
                 (12, 0.9, 86, 0), (14, 0.9, 96, 0)),) * 2,
    "ballad": (((0, 5.5, 84, 0), (6, 3.5, 78, 0), (11, 2.5, 70, 0), (14, 1.8, 74, 0)),
               ((0, 5.5, 84, 0), (6, 1.6, 74, 0), (8, 5.5, 84, 0), (14, 1.8, 72, 0))),
}


def chords(seed, harmony, rhythm, bars=None, transpose=0, doubled=False):
    player = Player(seed, BAR * len(harmony))
    for bar in range(bars or len(harmony)):
        early = harmony[(bar + 1) % len(harmony)]
        for step, length, velocity, ahead in RHYTHMS[rhythm][bar % 2]:
            voices = [key + transpose for key in CHORDS[early if ahead else harmony[bar]][1]]
            if doubled:
                voices = [voices[0] - 12] + voices
            player.chord(bar * BAR + step, voices, length, velocity)
    return player.pattern


def pad(harmony):
    """Whole bars; a voice that stays is held over the bar line."""
    player = Player(5, BAR * len(harmony))
    voices = [CHORDS[name][2] for name in harmony]
    for bar, keys in enumerate(voices):
        for key in keys:
            if bar > 0 and key in voices[bar - 1]:
                continue
            end = bar + 1
            while end < len(harmony) and key in voices[end]:
                end += 1
            player.play(bar * BAR, key, (end - bar) * BAR - 0.25, 84)
    return player.pattern


def arpeggio(seed, harmony, bars=None):
    """Sixteenths up and down through each chord and two voices more: ten notes against sixteen steps, so that no
    bar begins like the one before."""
    player = Player(seed, BAR * len(harmony))
    for step in range((bars or len(harmony)) * BAR):
        voices = CHORDS[harmony[step // BAR]][1]
        ladder = voices + (voices[0] + 12, voices[1] + 12)
        place = step % 10
        if step % BAR in (5, 11) and step // BAR % 2 == 0:
            continue
        player.play(step, ladder[place if place < 6 else 10 - place], 0.6, 98 if step % 4 == 0 else 76, 12)
    player.pattern.mix["Pan"] = [(0, -0.45), (player.pattern.steps / 2, 0.45), (player.pattern.steps - 0.5, -0.45)]
    return player.pattern


# --- hook: (bar, step, key, length)

HOOK_CALL = ((0, 4, 75, 1.6), (0, 6, 74, 1.1), (0, 7, 72, 3), (0, 12, 70, 1.1), (0, 13, 72, 4.5),
             (1, 4, 75, 1.6), (1, 6, 74, 1.1), (1, 7, 72, 2), (1, 10, 70, 1.1), (1, 11, 67, 5),
             (2, 4, 75, 1.6), (2, 6, 77, 1.1), (2, 7, 79, 3.6), (2, 11, 77, 1.1), (2, 12, 75, 1.1), (2, 13, 74, 2.8),
             (3, 4, 77, 1.6), (3, 6, 74, 1.1), (3, 7, 70, 3), (3, 13, 70, 1.1), (3, 14, 72, 1.9))
HOOK_REPLY = ((0, 4, 75, 1.6), (0, 6, 74, 1.1), (0, 7, 72, 3), (0, 12, 74, 1.1), (0, 13, 75, 4.5),
              (1, 4, 79, 1.6), (1, 6, 77, 1.1), (1, 7, 74, 3), (1, 12, 74, 1.1), (1, 13, 77, 2.5),
              (2, 2, 79, 1.6), (2, 4, 82, 2.1), (2, 6, 79, 1.6), (2, 8, 75, 2.1), (2, 10, 77, 1.1), (2, 11, 75, 4),
              (3, 2, 77, 1.6), (3, 4, 75, 2.1), (3, 6, 72, 3), (3, 11, 72, 1.1), (3, 12, 70, 2.1), (3, 14, 74, 1.9))
HOOK_HIGH = ((0, 2, 79, 1.1), (0, 3, 82, 1.6), (0, 6, 79, 1.1), (0, 7, 75, 3), (0, 12, 74, 1.1), (0, 13, 75, 4.5),
             (1, 2, 79, 1.1), (1, 4, 82, 1.6), (1, 6, 86, 1.1), (1, 7, 82, 3), (1, 12, 79, 1.1), (1, 13, 77, 2.5),
             (2, 2, 79, 1.6), (2, 4, 84, 2.1), (2, 6, 82, 1.6), (2, 8, 79, 2.1), (2, 10, 77, 1.1), (2, 11, 75, 4),
             (3, 0, 77, 2.8), (3, 4, 80, 1.6), (3, 6, 82, 3), (3, 10, 80, 1.1), (3, 11, 77, 1.1), (3, 12, 75, 2.1),
             (3, 14, 74, 1.9))
HOOK_ECHO = ((0, 4, 75, 1.6), (0, 6, 74, 1.1), (0, 7, 72, 6),
             (2, 4, 75, 1.6), (2, 6, 77, 1.1), (2, 7, 79, 7))


def hook(seed, melody):
    player = Player(seed)
    for bar, step, key, length in melody:
        player.play(bar * BAR + step, key, length, 96 if step % 4 == 0 else 86, 6)
    # A scoop into the first note of each bar, and vibrato on what is held.
    bend, wheel = [], []
    for bar in range(4):
        start = bar * BAR
        bend += [(start + 3.6, 64), (start + 3.9, 52), (start + 4.8, 64), (start + 15.9, 64)]
        wheel += [(start, 10), (start + 7, 0), (start + 9, 70), (start + 11, 0), (start + 15, 60)]
    player.pattern.midi["Pitch Bend"] = bend
    player.pattern.midi["Modulation Wheel"] = wheel
    return player.pattern
