# SPDX-License-Identifier: GPL-3.0-or-later
"""What a screen reader finds: every control has a name and a role, values change by actions and by keys, and the
menus open by their letters. Fails with the first that is missing."""
import re
import subprocess
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

PATIENCE = 30  # seconds


def wait_for(what, ask):
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        try:
            found = ask()
        except Exception:  # what is asked may be gone meanwhile
            found = None
        if found:
            return found
        time.sleep(0.1)
    sys.exit(f"not found: {what}")


def press(*keys):
    subprocess.run(["xdotool", "key", *keys], check=True)


def program():
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        child = desktop.get_child_at_index(index)
        if child is not None and child.get_name().lower().startswith("quib"):
            return child
    return None


def entries(node):
    yield node
    for index in range(node.get_child_count()):
        child = node.get_child_at_index(index)
        if child is not None:
            yield from entries(child)


def find(root, role, pattern):
    for entry in entries(root):
        if entry.get_role_name() == role and re.search(pattern, entry.get_name()):
            return entry
    return None


def where(entry):
    """The way to an entry, for messages."""
    words = []
    while entry is not None and entry.get_role_name() != "application":
        words.insert(0, f"{entry.get_role_name()} {entry.get_index_in_parent()} {entry.get_name()!r}")
        entry = entry.get_parent()
    return " > ".join(words)


def focused_name(root):
    for entry in entries(root):
        if entry.get_state_set().contains(Atspi.StateType.FOCUSED) and entry.get_role_name() != "panel":
            return entry.get_name()
    return None


def main():
    app = wait_for("the program", program)
    level = wait_for("a level", lambda: find(app, "slider", r"^Kick, Level, "))
    press("Escape")  # the greeting of a first start
    frame = level
    while frame.get_role_name() != "frame":
        frame = frame.get_parent()

    # No gap: what can be used has a name and a role. Panes and fillers only hold others.
    holders = {"frame", "panel", "filler", "menu bar", "separator", "layered pane", "viewport", "unknown"}

    def look():
        seen, gaps = [], []
        for entry in entries(frame):
            role, name = entry.get_role_name(), entry.get_name()
            seen.append(role)
            if not entry.get_state_set().contains(Atspi.StateType.VISIBLE):
                continue
            is_used = entry.get_state_set().contains(Atspi.StateType.FOCUSABLE)
            if role in {"", "invalid"} or (not name and role not in holders) or (role == "unknown" and is_used):
                gaps.append(where(entry))
        return seen, gaps

    for turn in range(5):  # strips are built anew when the window gets its size: what was listed may be gone
        time.sleep(1)
        try:
            seen, gaps = look()
            break
        except GLib.GError:
            if turn == 4:
                raise
    assert not gaps, gaps
    assert len(seen) > 300, len(seen)

    # An action of the reader changes the value, and the name tells it, in decibels.
    before = level.get_name()
    assert re.fullmatch(r"Kick, Level, [+-]?\d+\.\d dB", before), before
    value = Atspi.Value.get_current_value(level)
    actions = [Atspi.Action.get_action_name(level, index).lower() for index in range(Atspi.Action.get_n_actions(level))]
    Atspi.Action.do_action(level, actions.index("increase"))
    wait_for("a louder level", lambda: level.get_name() != before)
    assert Atspi.Value.get_current_value(level) > value

    # The keys alone: the arrow goes on with what has the focus, Tab moves it.
    after = level.get_name()
    press("Down")
    wait_for("the arrow's change", lambda: level.get_name() != after)
    press("Tab")
    wait_for("the focus elsewhere", lambda: (focused_name(frame) or level.get_name()) != level.get_name())
    press("alt+f")
    wait_for("the File menu", lambda: find(app, "menu item", "^New$").get_state_set().contains(Atspi.StateType.SHOWING))
    press("Escape", "Escape")
    press("F1")
    wait_for("the page of keys", lambda: find(app, "dialog", "Keyboard shortcuts"))
    print(f"{len(seen)} entries, {before!r}")


main()
