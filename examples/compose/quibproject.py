# SPDX-License-Identifier: GPL-3.0-or-later
"""Writes project files (.prg) from plain Python values.

A composition builds a Project of Instruments, each with Patterns, a playlist and automation, and
prints Project.text(). Positions and lengths are in steps (sixteenth notes), levels 0..127, automation
points (step, value) in the range of what they move. Lanes are told by the names below.
"""
import copy
import math
from dataclasses import dataclass, field

MIX_LANES = ["Level", "Pan", "Mute", "EQ ON", "LP Freq", "LP Q", "LP Gain", "BP Freq", "BP Q", "BP Gain",
             "HP Freq", "HP Q", "HP Gain", "Insert1 ON", "Insert2 ON", "Send1 ON", "Send1 Level", "Send2 ON",
             "Send2 Level", "Send3 ON", "Send3 Level", "Send4 ON", "Send4 Level", "Synchro"]
MIDI_LANES = ["Pitch Bend", "Modulation Wheel", "Aftertouch", "ProgramChange"]
MASTER_LANES = ["Level", "Crossfader", "Insert1 ON", "Insert2 ON", "Tempo"]
PATTERN_COUNT = 16
SEND_COUNT = 4


def channel_level(decibels):
    """The fader position of a channel (0 dB is 106, the top +6 dB), from -12 dB up."""
    return round(127 + (decibels - 20 * math.log10(2)) / (20 * math.log10(1.0335578)))


def send_level(decibels):
    """The position of a send or of the master fader (the top is 0 dB), from -60 dB up."""
    if decibels >= -12:
        return round(127 + decibels / (20 * math.log10(1.0222485)))
    return max(0, round(63 + (decibels - 20 * math.log10(0.25)) / (20 * math.log10(1.0920085))))


def eq_frequency(hertz):
    return math.log(hertz / 20) / math.log(800)


def eq_gain(decibels):
    return decibels / 20


@dataclass
class Pattern:
    steps: int = 16
    notes: list = field(default_factory=list)  # (position, key, length, velocity)
    midi: dict = field(default_factory=dict)  # lane name -> points
    plugin: dict = field(default_factory=dict)  # parameter index -> points
    mix: dict = field(default_factory=dict)  # lane name -> points
    used: int = 1  # taken by chain and random playback

    def add(self, position, key, length, velocity):
        if not (0 <= position < self.steps and 0 <= key <= 127 and length > 0):
            raise ValueError(f"note {key} at {position} does not fit a pattern of {self.steps} steps")
        self.notes.append((position, key, length, max(1, min(127, round(velocity)))))


@dataclass
class Arpeggiator:
    on: int = 0
    mode: int = 0  # 0 up, 1 down, 2 up and down, 3 random
    hole: int = 0
    ext: int = 0
    ext_mode: int = 0
    velocity: float = 0  # randomness
    interval: int = 0  # semitones
    gate: int = 0  # the step divided by 2^gate
    tempo: int = 0  # every 2^tempo steps


@dataclass
class Band:
    hertz: float
    gain: float = 0  # decibels
    resonance: float = 0.707


@dataclass
class Strip:
    level: float = 73.67
    pan: float = 0
    mute: int = 0
    crossfade_a: int = 0
    crossfade_b: int = 0
    synchro: int = 0
    insert_on: tuple = (0, 0)
    sends: dict = field(default_factory=dict)  # 1..4 -> level
    eq_on: int = 0
    eq: tuple = field(default_factory=lambda: (Band(100), Band(500), Band(2000)))


# Numbers of the icons, and words of the titles that wear them. 0 is the synthesiser.
ICONS = ((2, ("bass", "sub", "reese", "growl", "talker")), (3, ("keys", "piano", "organ", "stab", "vibra", "marimba")),
         (4, ("pad", "drone", "fall", "riser")), (5, ("acid", "theme", "hook", "siren", "whistle", "flute")),
         (6, ("strings", "koto")))
DRUM_ICON, LOOP_ICON = 1, 7


def icon_of(instrument):
    """The icon that suits an instrument's plug-in and title."""
    if "drums" in instrument.plugin:
        return DRUM_ICON
    if "Loops" in instrument.plugin:
        return LOOP_ICON
    title = instrument.title.lower()
    return next((icon for icon, words in ICONS if any(word in title for word in words)), 0)


@dataclass
class Instrument:
    title: str
    plugin: str
    program: int = 0
    icon: int = None  # None: by plug-in and title
    strip: Strip = field(default_factory=Strip)
    arpeggiator: Arpeggiator = field(default_factory=Arpeggiator)
    step_mode: int = 0  # 0 loop, 1 chain, 2 random, 3 hold
    swing: float = 0  # share of a step by which every second step is late
    keys: list = field(default_factory=list)  # held on the on-screen keyboard
    keyboard_position: int = 48
    selected: int = 0
    patterns: dict = field(default_factory=dict)  # 0..15 -> Pattern
    playlist: list = field(default_factory=list)  # (pattern, start step, repeat)
    mix: dict = field(default_factory=dict)  # lane name -> points of the song
    parameters: dict = field(default_factory=dict)  # parameter index -> points of the song
    inserts: dict = field(default_factory=dict)  # 1, 2 -> Effect
    presets: list = field(default_factory=list)  # Instruments, as snapshot() gives them

    def snapshot(self, **changes):
        """What a preset of this instrument keeps, with some strip settings or the pattern changed."""
        preset = copy.deepcopy(self)
        preset.selected = changes.pop("selected", self.selected)
        for name, value in changes.items():
            getattr(preset.strip, name)
            setattr(preset.strip, name, value)
        return preset

    def automated(self):
        """The parameters that have a lane, in order."""
        found = set(self.parameters)
        for pattern in self.patterns.values():
            found |= set(pattern.plugin)
        return sorted(found)


@dataclass
class Effect:
    plugin: str
    program: int = 0
    on: int = 1  # of inserts
    parameters: dict = field(default_factory=dict)  # parameter index -> points of the song


@dataclass
class Project:
    tempo: float = 120
    steps: int = 16
    master_level: float = 127
    crossfade: float = 0
    loop: tuple = (0, 0, 0)  # on, start, end
    master: dict = field(default_factory=dict)  # lane name -> points of the song
    inserts: dict = field(default_factory=dict)  # 1, 2 -> Effect
    instruments: list = field(default_factory=list)
    effects: dict = field(default_factory=dict)  # 1..4 -> Effect

    def text(self):
        return ProjectWriter().project(self)


def real(value):
    return f"{value:.4f}"


class ProjectWriter:
    """Lines of a project file, in the order in which the program writes them."""

    def __init__(self):
        self.lines = []

    def line(self, *fields):
        self.lines.append("".join(f"{item};" for item in fields) + "\r\n")

    def points(self, head, points):
        if points:
            self.line(*head, *(real(number) for point in sorted(points, key=lambda p: p[0]) for number in point))

    def project(self, project):
        self.line("VERSION", "1.5")
        self.line("TEMPO", f"{project.tempo:f}")
        self.line("MASTER_LEVEL", f"{project.master_level:f}")
        self.line("PLAYLIST_STEP_NUMBER", project.steps)
        self.line("SONG_MODE", f"{1:f}")
        self.line("SYNCHRO_ON", f"{0:f}")
        self.line("LOOP_ON", f"{project.loop[0]:f}")
        self.line("LOOP_START", project.loop[1])
        self.line("LOOP_END", project.loop[2])
        self.line("CROSSFADE", f"{project.crossfade:f}")
        self.line("PRESET_SELECTED", f"{0:f}")
        self.line("PRESET_MIDI", 0, 0, 0)
        for name in ("EQFREQ", "EQRES", "ATTACK", "RELEASE", "THRESHOLD", "LEVEL", "GAIN"):
            self.line(f"DETECTOR_{name}", f"{0:f}")
        for number, insert in sorted(project.inserts.items()):
            self.line(f"MASTER_INSERT{number}_PLUGIN", insert.plugin.removesuffix(".so"))
            self.line(f"MASTER_INSERT{number}_ON", real(insert.on))
            self.plugin(f"MASTER_INSERT_PRESET_{number}", f"MASTER_INSERT_PARAM_EVENTS_{number}", insert)
        for index, name in enumerate(MASTER_LANES):
            self.points(("MASTER_MIX_EVENTS", index), project.master.get(name))
        for instrument in project.instruments:
            self.instrument(instrument)
        for number, effect in sorted(project.effects.items()):
            self.line(f"EFFECT_{number}", effect.plugin.removesuffix(".so"))
            self.plugin(f"EFFECT_PRESET_{number}", f"EFFECT_PARAM_EVENTS_{number}", effect)
        return "".join(self.lines)

    def plugin(self, state_key, events_key, plugin):
        """State and automation of a plug-in; a state without an image only selects the program."""
        self.state(state_key, plugin.program)
        self.parameter_events(events_key, plugin.parameters)

    def state(self, key, program):
        self.line(key, "START")
        self.line("PRESET_INDEX", program)
        self.line("PRESET", "END")

    def parameter_events(self, key, parameters):
        self.line(key, "START")
        for index, points in sorted(parameters.items()):
            self.points(("PARAM_EVENTS", index), points)
        self.line("PARAM_EVENTS", "END")

    def instrument(self, instrument):
        self.line("PLUGIN", instrument.plugin)
        self.line("TITLE", instrument.title)
        self.line("ICONE", icon_of(instrument) if instrument.icon is None else instrument.icon)
        for key, value in (("MIDIINCHANNEL", 0), ("MIDIKEYFROM", 0), ("MIDIKEYTO", 127), ("MIDIKEYTRANSPOSE", 0),
                           ("MIDIPITCH", 1), ("MIDIMODWHEEL", 1), ("MIDIAFTERTOUCH", 1), ("MIDIPROGRAMCHANGE", 1)):
            self.line(key, value)
        self.keyboard("", instrument)
        self.line("STEPNUMBER", self.longest(instrument))
        self.mix_settings(instrument)
        self.line("PATTERNSELECTED", instrument.selected)
        self.sends_and_equaliser("", instrument.strip)
        if instrument.automated():
            self.line("EVENT_PLUGIN_PARAM", *instrument.automated())
        for preset in instrument.presets:
            self.preset(preset)
        if instrument.playlist:
            self.line("PLAYLIST", *(number for entry in instrument.playlist for number in entry))
        for index, name in enumerate(MIX_LANES):
            self.points(("MIX_EVENTS", index), instrument.mix.get(name))
        self.patterns(instrument)
        self.parameter_events("PLUGIN_PARAM_EVENTS", instrument.parameters)
        self.state("PLUGIN_PRESET", instrument.program)
        for number, insert in sorted(instrument.inserts.items()):
            self.line(f"INSERT{number}_PLUGIN", insert.plugin)
            self.line(f"INSERT{number}_ON", real(insert.on))
            self.plugin(f"INSERT_PRESET_{number}", f"INSERT_PARAM_EVENTS_{number}", insert)
        self.line("PLUGIN", "END")

    def keyboard(self, prefix, instrument):
        self.line(f"{prefix}KEYBOARDON", 1 if instrument.keys else 0)
        self.line(f"{prefix}KEYBOARD_POSITION", instrument.keyboard_position)
        if instrument.keys:
            self.line(f"{prefix}KEYBOARD_KEYS", *instrument.keys)

    def mix_settings(self, instrument):
        strip, arpeggiator = instrument.strip, instrument.arpeggiator
        for key, value in (("LEVEL", strip.level), ("PAN", strip.pan), ("MUTE", strip.mute),
                           ("CROSSFADEA", strip.crossfade_a), ("CROSSFADEB", strip.crossfade_b),
                           ("SYNCHRO_INST", strip.synchro), ("ARPEG_ON", arpeggiator.on),
                           ("ARPEG_MODE", arpeggiator.mode), ("ARPEG_HOLE", arpeggiator.hole),
                           ("ARPEG_EXT", arpeggiator.ext), ("ARPEG_EXTMODE", arpeggiator.ext_mode),
                           ("ARPEG_VELOCITY", arpeggiator.velocity), ("ARPEG_INTERVAL", arpeggiator.interval),
                           ("ARPEG_GATETIME", arpeggiator.gate), ("ARPEG_TEMPO", arpeggiator.tempo)):
            self.line(key, real(value))

    def sends_and_equaliser(self, prefix, strip):
        for number in range(1, SEND_COUNT + 1):
            self.line(f"{prefix}EFFECT{number}_ON", real(1 if number in strip.sends else 0))
            self.line(f"{prefix}EFFECT{number}_LEVEL", real(strip.sends.get(number, 0)))
        self.line(f"{prefix}EQ_ON", real(strip.eq_on))
        for number, band in enumerate(strip.eq, 1):
            self.line(f"{prefix}EQ{number}_FREQ", real(eq_frequency(band.hertz)))
            self.line(f"{prefix}EQ{number}_RES", real(band.resonance))
            self.line(f"{prefix}EQ{number}_GAIN", real(eq_gain(band.gain)))

    def notes(self, key, number, pattern):
        notes = sorted(pattern.notes, key=lambda note: note[0])
        items = [item for note in notes for item in (real(note[0]), note[1], real(note[2]), note[3])]
        self.line(key, number, pattern.steps, pattern.used, *items)

    def longest(self, instrument):
        return max((pattern.steps for pattern in instrument.patterns.values()), default=16)

    def patterns(self, instrument):
        self.line("PATTERNS", "START")
        ends = [max([pattern.steps] + [int(note[0] + note[2]) for note in pattern.notes[-1:]])
                for pattern in instrument.patterns.values()]
        self.line("STEPNUMBER_MODE", max([48] + ends) + 1, instrument.step_mode, real(instrument.swing))
        self.line("PLUGIN_NAME", instrument.plugin.removesuffix(".so"))
        for number in range(PATTERN_COUNT):
            pattern = instrument.patterns.get(number)
            if pattern is None:
                continue
            self.notes("PATTERN_NOTES", number, pattern)
            self.pattern_points("PATTERN_MIDIPARAM_EVENTS", number, MIDI_LANES, pattern.midi)
            for index, points in sorted(pattern.plugin.items()):
                self.points(("PATTERN_PLUGINPARAM_EVENTS", number, index), points)
            self.pattern_points("PATTERN_MIXPARAM_EVENTS", number, MIX_LANES, pattern.mix)
        self.line("PATTERNS", "END")

    def pattern_points(self, key, number, names, lanes):
        for index, name in enumerate(names):
            self.points((key, number, index), lanes.get(name))

    def preset(self, preset):
        strip = preset.strip
        self.line("PRESET_ADD", "")
        self.line("PRESET_STEPNUMBER_MODE", self.longest(preset), preset.step_mode, real(preset.swing))
        for number, pattern in sorted(preset.patterns.items()):
            self.notes("PRESET_PATTERN_NOTES", number, pattern)
        # Both sides of the crossfader stand under one key.
        for key, value in (("LEVEL", strip.level), ("PAN", strip.pan), ("MUTE", strip.mute),
                           ("CROSSFADEA", strip.crossfade_a), ("CROSSFADEA", strip.crossfade_b),
                           ("SYNCHRO", strip.synchro)):
            self.line(f"PRESET_{key}", real(value))
        self.line("PRESET_PATTERNSELECTED", preset.selected)
        for number, on in enumerate(strip.insert_on, 1):
            self.line(f"PRESET_INSERT{number}_ON", real(on))
        self.sends_and_equaliser("PRESET_", strip)
        if preset.automated():
            self.line("PRESET_EVENT_PLUGIN_PARAM", *preset.automated())
        for number, pattern in sorted(preset.patterns.items()):
            self.pattern_points("PRESET_PATTERN_MIDIPARAM_EVENTS", number, MIDI_LANES, pattern.midi)
            self.pattern_points("PRESET_PATTERN_MIXPARAM_EVENTS", number, MIX_LANES, pattern.mix)
            for index, points in sorted(pattern.plugin.items()):
                self.points(("PRESET_PATTERN_PLUGINPARAM_EVENTS", number, index), points)
        self.keyboard("PRESET_", preset)
